// The effect's crop box: four lines bound to properties, in percent of the limits.
#pragma once

#include <array>
#include <cstddef>

#include "overlay/HvTCropBox.h"
#include "overlay/HvTDsObject.h"
#include "platform/IDSProperties.h"

namespace vblur {

class HvTDsCrop : public HvTDsObject, public HvTCropBox {
 public:
  // The limits are the project's frame, in pixels.
  HvTDsCrop();
  ~HvTDsCrop() override;

  void BindProperties(const GUID& left, const GUID& right, const GUID& bottom, const GUID& top);

  std::int32_t OnPropertyChange(const GUID& property, const DSVariant* value) override;
  // All four lines or none: nothing changes if a property cannot be read.
  void OnTime(double time) override;
  // One write per edge of the mask. Limits without extent give infinity or NaN, which the host refuses.
  void Commit() override;
  void Refresh() override { OnTime(kNow); }

 private:
  // The order of reads and writes.
  enum Line : std::size_t { kLeftLine, kRightLine, kBottomLine, kTopLine, kLines };
  using Places = std::array<double, kLines>;
  // The limits along the axis on which a line moves.
  struct Span {
    float from;
    float extent;
  };

  Places CurrentPlaces() const;
  void TakePlaces(const Places& places);
  Span SpanOf(Line line) const;
  // Percent of the limits to frame pixels, in double precision, and back, in single precision.
  double PlaceOf(Line line, double percent) const;
  float PercentOf(Line line, float place) const;

  std::array<GUID, kLines> properties_;
};

}  // namespace vblur
