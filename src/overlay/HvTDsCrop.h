// The crop box of the effect: four lines whose places are properties, in percent of the picture.
#pragma once

#include <array>
#include <cstddef>

#include "overlay/HvTCropBox.h"
#include "overlay/HvTDsObject.h"
#include "platform/IDSProperties.h"

namespace vblur {

class HvTDsCrop : public HvTDsObject, public HvTCropBox {
 public:
  // Limited to the project's frame, in frame pixels.
  HvTDsCrop();
  ~HvTDsCrop() override;

  void BindProperties(const GUID& left, const GUID& right, const GUID& bottom, const GUID& top);

  std::int32_t OnPropertyChange(const GUID& property, const DSVariant* value) override;
  // All four lines or none: the first property that cannot be read leaves everything as it was.
  void OnTime(double time) override;
  // The edges that the pen held, each on its own. The host refuses what limits of no extent divide to.
  void Commit() override;
  void Refresh() override { OnTime(kNow); }

 private:
  // In the order in which they are read and written.
  enum Line : std::size_t { kLeftLine, kRightLine, kBottomLine, kTopLine, kLines };
  using Places = std::array<double, kLines>;
  // Of the limits along the axis that a line moves on.
  struct Span {
    float from;
    float extent;
  };

  Places CurrentPlaces() const;
  void TakePlaces(const Places& places);
  Span SpanOf(Line line) const;
  // Between a percentage of the limits and frame pixels: read in double precision, written in single. Limits
  // of no extent give no finite percentage.
  double PlaceOf(Line line, double percent) const;
  float PercentOf(Line line, float place) const;

  std::array<GUID, kLines> properties_;
};

}  // namespace vblur
