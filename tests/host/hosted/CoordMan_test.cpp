#include "host/hosted/CoordMan.h"

#include <gtest/gtest.h>

#include "host/hosted/HostOrigin.h"

namespace vblur::host {
namespace {

class PlainImage : public IDSImage {
 public:
  HRESULT IsUsable() const override { return kOk; }
  GUID Format() const override { return MFIF_RGBA_RAW_32; }
  DSPixelPair Size() const override { return {4, 3}; }
  void* FirstPixel() const override { return nullptr; }
  DSWorldPair WorldPosition() const override { return {0.25, 9.75}; }
  DSWorldPair WorldSize() const override { return {4, 3}; }
};

class PlacedImage : public PlainImage, public IHostOrigin {
 public:
  DSPixelPair HostOrigin() const override { return {3, -7}; }
};

TEST(CoordMan, ConvertsWithTheProxyFactors) {
  const CoordMan coordMan({0.5, 0.25});
  EXPECT_EQ(coordMan.ToRenderedPixels({1, 1}).x, 0.5);
  EXPECT_EQ(coordMan.ToRenderedPixels({1, 1}).y, 0.25);
  EXPECT_EQ(coordMan.ToRenderedPixels({-8, 12}).x, -4.0);
  EXPECT_EQ(coordMan.ToRenderedPixels({-8, 12}).y, 3.0);
  EXPECT_EQ(coordMan.ToFullPixels({1, 1}).x, 1.0);
  EXPECT_EQ(coordMan.ToFullPixels({-8, 12}).y, 12.0);
}

TEST(CoordMan, ReturnsTheOriginOfAnImage) {
  const CoordMan coordMan({1, 1});
  const PlacedImage placed;
  EXPECT_EQ(coordMan.PixelOrigin(placed).x, 3);
  EXPECT_EQ(coordMan.PixelOrigin(placed).y, -7);
  const PlainImage plain;
  EXPECT_EQ(coordMan.PixelOrigin(plain).x, 0);
  EXPECT_EQ(coordMan.PixelOrigin(plain).y, 0);
}

}  // namespace
}  // namespace vblur::host
