// Blur and sharpen of a picture: runs the chain of processors for the chosen channels.
#pragma once

#include <cstdint>

#include "image/Sampler.h"

namespace vblur {

enum FuzzMethod : std::int32_t { kFuzzBlur = 0, kFuzzSharpen = 1 };

// The channels to filter. Any other value filters nothing.
enum FuzzMode : std::int32_t {
  kFuzzRGBA = 0,
  kFuzzAlpha = 1,
  kFuzzRGB = 2,
  kFuzzGrey = 3,  // red, spread over all colours
  kFuzzRed = 4,
  kFuzzGreen = 5,
  kFuzzBlue = 6,
  kFuzzLuminance = 7,
  kFuzzU = 8,
  kFuzzV = 9,
  kFuzzChroma = 10,
};

// Instances: <R8, Ri, 255>, <R16, Ri, 32767> and <Rf, Rf, 1>. Set window, interrupt record and fields, then call
// process(source, result). A channel that is not filtered is the source's, exactly; but the modes from kFuzzLuminance
// on convert all integer colours to YUV and back, which loses the lowest bit of each.
template <class Pixel, class Accum, std::int32_t Max>
class FuzzSampler : public Sampler<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>> {
 public:
  using Texture = HvTexture<Pixel, Accum>;

  void preProcess(Texture* in, Texture* out) override;
  void postProcess(Texture* in, Texture* out) override;

  std::int32_t method = kFuzzBlur;
  std::int32_t mode = kFuzzRGBA;
  // The radius of one box along each axis, in pixels: a third of the user's size.
  float sizeX = 0.0f;
  float sizeY = 0.0f;

 private:
  template <int R, int G, int B, int A>
  void filterDirectly(Texture* in, Texture* out);
  void filterGrey(Texture* in, Texture* out);
  template <class Plane>
  void filterGreyIn(Texture* in, Texture* out);
  void filterFloatGrey(Texture* in, Texture* out);
  template <int Y, int U, int V>
  void filterYuv(Texture* in, Texture* out);
  template <int Y, int U, int V>
  void filterFloatYuv(Texture* in, Texture* out);
  template <class Plane, int Y, int U, int V>
  bool filterYuvIn(Texture* in, Texture* out);
  template <class Filter, class Plane>
  bool filterPlane(Plane& plane, const Texture& out) const;

  template <int R, int G, int B, int A>
  void copyChannelsOf(Texture* in, Texture* out, bool inWindow);
  template <class Filter>
  void setUp(Filter& filter) const;
  // The size that the filter takes.
  static float settled(float size);
  template <class Plane>
  bool makePlane(Plane& plane, const Imager& reader, const Texture& in, const Texture& out);
  bool coversTarget(const Imager& window, const Texture& out) const;
  // Whether results keep the range of the components: radii below zero amplify.
  bool boxesKeepRange() const;
  template <class Reader>
  void widenWindow(Reader& reader) const;
};

extern template class FuzzSampler<R8, Ri, 255>;
extern template class FuzzSampler<R16, Ri, 32767>;
extern template class FuzzSampler<Rf, Rf, 1>;

}  // namespace vblur
