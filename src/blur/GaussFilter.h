// The filter: three boxes one after the other along x into an intermediate picture, then three along y into the
// output. The cost of a pixel does not depend on the size.
//
// Values keep the scale and the precision of the pixel type: each box rounds to whole pixel units, or to a float,
// before the next one sees it, and the intermediate has the pixels of the picture.
//
// Processing a filter again equals processing a new one with the same fields and window.
#pragma once

#include <cstdint>
#include <memory>

#include "blur/FilterChannelsFwd.h"
#include "blur/LineBlock.h"
#include "image/ChannelMask.h"
#include "image/Sampler.h"

namespace vblur {

template <class Box>
struct PlainPass;
template <class Pixel, class Accum>
class StripPasses;
template <class Pixel, class Accum>
class FusedPasses;

// Filters the components of a ChannelMask and neither reads nor writes the others, but for sizes of 0 on both axes,
// which copy whole pixels. Instances: R8, R16 and Ri with Ri, C8 and C16 with Ci, int with int, Rf with Rf, Cf
// with Cf.
template <class Pixel, class Accum>
class GaussFilter : public Sampler<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>> {
 public:
  using Texture = HvTexture<Pixel, Accum>;

  // filterChannels<Mask, Pixel, Accum>() selects the components; it must outlive the filter.
  explicit GaussFilter(const FilterChannels<Pixel, Accum>& channels);
  ~GaussFilter() override;

  void preProcess(Texture* in, Texture* out) override;
  void processRows(Texture* in, Texture* out) override;
  void postProcess(Texture* in, Texture* out) override;
  void prePass(Texture* in, Texture* out) override;

  // The radius of one box along each axis, in pixels. The preparation divides sizeX by the pixel aspect and limits both
  // to three times the longer side of the picture. On floats, which have no use for it, a radius below 0 counts as 0.
  float sizeX = 0.0f;
  float sizeY = 0.0f;
  std::int32_t boxes = 3;
  // True: components that are not filtered become those of the input, within the window. False: they keep the output's
  // values. With true, no pixel of the input may share memory with another pixel of the output.
  bool keepsOthers = false;
  // True: `intermediate` holds the picture between the passes, at every CPU level. False, for speed: it stays null
  // where vector code runs; do not read it or set `copyBack` then.
  bool keepsIntermediate = true;
  std::int32_t savedWriteOriginX = 0;
  std::int32_t savedWriteOriginY = 0;
  // Where the copy back reads the input.
  std::int32_t savedInputOriginX = 0;
  std::int32_t savedInputOriginY = 0;
  std::int32_t savedEdgeX = 0;
  std::int32_t savedEdgeY = 0;
  Pixel savedOutsideColour{};
  // An intermediate of the right size is reused.
  std::unique_ptr<Texture> intermediate;
  std::int32_t savedWindowX1 = 0;
  std::int32_t savedWindowX2 = 0;
  std::int32_t savedWindowY1 = 0;
  std::int32_t savedWindowY2 = 0;
  // Non-zero: the last pass copies the filtered components of the intermediate to the output. The preparation clears
  // it; a derived class may set it after that.
  std::int32_t copyBack = 0;
  std::int32_t lineLengthX = 0;
  std::int32_t lineLengthY = 0;

 private:
  void limitSizes();
  // How many rows the intermediate has above and below the picture.
  std::int32_t verticalMargin() const;
  void save(const Texture& in, const Texture& out);
  void restoreWindow();
  void restore(Texture& in, Texture& out);
  void copyWhole(Texture* in, Texture* out);

  bool fillsIntermediate() const;
  bool makeIntermediate();
  void clearIntermediate();
  void copyIntermediate(const Texture& out);
  void copyOthers(const Texture& in, const Texture& out);

  bool runsInStrips() const;
  void processFused(const Texture& in, const Texture& out);
  void makeVectorPasses(const Texture& in, const Texture& out);
  bool makeFused(const Texture& in, const Texture& out);
  void makeStrips(const Texture& in);
  void processStrips(const Texture& in, const Texture& out);

  template <class Filter>
  void filterPlain(const PlainPass<BoxOf<Pixel>>& plain, const Filter& filter, const Texture& in, const Texture& out);
  void filterAlongX(const Texture& in);
  void filterAlongY(const Texture& out);

  const FilterChannels<Pixel, Accum>& channels_;
  // At most one of them.
  std::unique_ptr<StripPasses<Pixel, Accum>> strips_;
  std::unique_ptr<FusedPasses<Pixel, Accum>> fused_;
  bool runsAlone_ = false;  // kOneThread before the run
};

// The filter on four-component pixels. Max is the full scale of the chain that it belongs to and has no part in the
// arithmetic.
template <class Pixel, class Accum, std::int32_t Max, int R, int G, int B, int A>
class BlurRGBAGauss : public GaussFilter<Pixel, Accum> {
 public:
  BlurRGBAGauss() : GaussFilter<Pixel, Accum>(filterChannels<ChannelMask<R, G, B, A>, Pixel, Accum>()) {}
};

// The filter on one plain integer per pixel; only the first flag has a component to choose.
template <class T, class Accum, std::int32_t Max, int A, int B, int C, int D>
class BlurGeneralGauss : public GaussFilter<T, Accum> {
 public:
  BlurGeneralGauss() : GaussFilter<T, Accum>(filterChannels<ChannelMask<A, B, C, D>, T, Accum>()) {}
};

}  // namespace vblur
