// The off-screen surface and its fonts, checked in rendered pictures.
#include <array>
#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/host/gl/PaintedPicture.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

using OffScreenSurfacePicture = PaintedPicture;

TEST_F(OffScreenSurfacePicture, ShowsTheFramePixelByPixelAndOpaque) {
  Paint();
  for (std::int32_t y = 0; y < 30; ++y) {
    for (std::int32_t x = 0; x < 40; ++x)
      EXPECT_EQ(PixelAt(picture, x, y), (Rgba{x, y, 7, 255}));
  }
  EXPECT_EQ(info.width, 40);
  EXPECT_EQ(info.height, 30);
  EXPECT_EQ(info.worldWidth, 40.0);
}

TEST_F(OffScreenSurfacePicture, ShowsTheNearestPixelAtAZoomAndGreyOutside) {
  geometry.SetZoom(3.0);
  Paint();
  EXPECT_EQ(PixelAt(picture, 20, 15), (Rgba{20, 15, 7, 255}));
  EXPECT_EQ(PixelAt(picture, 19, 14), (Rgba{19, 14, 7, 255}));
  EXPECT_EQ(PixelAt(picture, 22, 17), (Rgba{20, 15, 7, 255}));
  EXPECT_EQ(PixelAt(picture, 23, 18), (Rgba{21, 16, 7, 255}));
  geometry.SetZoom(0.5);
  Paint();
  EXPECT_EQ(PixelAt(picture, 9, 15), (Rgba{153, 153, 153, 255}));
  EXPECT_EQ(PixelAt(picture, 10, 15), (Rgba{1, 16, 7, 255}));
  EXPECT_EQ(PixelAt(picture, 29, 21), (Rgba{39, 28, 7, 255}));
  EXPECT_EQ(PixelAt(picture, 30, 21), (Rgba{153, 153, 153, 255}));
  EXPECT_EQ(info.x, -20.0);
  EXPECT_EQ(info.worldHeight, 60.0);
}

TEST_F(OffScreenSurfacePicture, ShowsDeepFramesAndThoseThatLieElsewhere) {
  HostImage deep;
  deep.Reset(16, 4, 2, 2);
  deep.Clear();
  ImageRecord place;
  place.position = {10.0, 10.0};
  place.size = {20.0, 10.0};
  deep.Place(place);
  const std::array<std::int16_t, 4> colour{8192, -5, 20000, 0};
  std::memcpy(deep.Row(1) + 8, colour.data(), sizeof colour);
  PaintViewer(*viewer, deep, geometry, *surface);
  ReadBack(*surface, picture);
  EXPECT_EQ(PixelAt(picture, 9, 12), (Rgba{153, 153, 153, 255}));
  EXPECT_EQ(PixelAt(picture, 10, 10), (Rgba{0, 0, 0, 255}));
  EXPECT_EQ(PixelAt(picture, 19, 19), (Rgba{0, 0, 0, 255}));
  EXPECT_EQ(PixelAt(picture, 20, 15), (Rgba{128, 0, 255, 255}));
  EXPECT_EQ(PixelAt(picture, 29, 19), (Rgba{128, 0, 255, 255}));
  EXPECT_EQ(PixelAt(picture, 29, 20), (Rgba{153, 153, 153, 255}));
}

TEST_F(OffScreenSurfacePicture, HasTheToolsLinesOnTop) {
  draw = [] {
    glColor3f(1.0F, 0.0F, 0.0F);
    glBegin(GL_LINES);
    glVertex2f(5.5F, 10.5F);
    glVertex2f(15.5F, 10.5F);
    glEnd();
  };
  Paint();
  for (std::int32_t x = 0; x < 40; ++x) {
    // A line draws all pixels except the last.
    const bool isOn = x >= 5 && x < 15;
    EXPECT_EQ(PixelAt(picture, x, 10), isOn ? (Rgba{255, 0, 0, 255}) : (Rgba{x, 10, 7, 255})) << x;
    EXPECT_EQ(PixelAt(picture, x, 11), (Rgba{x, 11, 7, 255}));
  }
}

TEST_F(OffScreenSurfacePicture, BeginsEveryPaintWithTheSameMatrices) {
  std::array<GLint, 2> modes{};
  std::array<std::array<GLfloat, 16>, 2> projection{};
  int paint = 0;
  draw = [&] {
    glGetIntegerv(GL_MATRIX_MODE, &modes[static_cast<std::size_t>(paint)]);
    glGetFloatv(GL_PROJECTION_MATRIX, projection[static_cast<std::size_t>(paint)].data());
    // Must not affect the next paint.
    glMatrixMode(GL_PROJECTION);
    glScalef(2.0F, 2.0F, 2.0F);
    ++paint;
  };
  Paint();
  Paint();
  EXPECT_EQ(PixelAt(picture, 12, 3), (Rgba{12, 3, 7, 255}));
  EXPECT_EQ(modes, (std::array<GLint, 2>{GL_MODELVIEW, GL_MODELVIEW}));
  // A shift of 1 / 128 of a pixel in the middle, and none at the right and upper edge.
  const float x = 1.0F / 64.0F / 40.0F;
  const float y = 1.0F / 64.0F / 30.0F;
  const std::array<GLfloat, 16> shifted{1 - x - 1e-6F, 0, 0, 0, 0, 1 - y - 1e-6F, 0, 0, 0, 0, 1, 0, x, y, 0, 1};
  EXPECT_EQ(projection[0], shifted);
  EXPECT_EQ(projection[1], shifted);
}

TEST_F(OffScreenSurfacePicture, DrawsText) {
  draw = [] {
    const HDC dc = wglGetCurrentDC();
    const HFONT font = CreateFontA(18, 0, 0, 0, 700, 0, 0, 0, 0, 0, 0, 0, 0, "helv");
    ASSERT_NE(font, nullptr) << "this machine has no font";
    const HFONT before = SelectObject(dc, font);
    const GLuint base = glGenLists(96);
    EXPECT_TRUE(wglUseFontBitmapsW(dc, 32, 96, base));
    EXPECT_EQ(SelectObject(dc, before), font);
    EXPECT_TRUE(DeleteObject(font));
    std::array<GLfloat, 4> start{};
    std::array<GLfloat, 4> place{};
    glColor3f(1.0F, 1.0F, 0.0F);
    glRasterPos2f(4.0F, 8.0F);
    glGetFloatv(GL_CURRENT_RASTER_POSITION, start.data());
    EXPECT_NEAR(start[0], 4.0F, 0.02F);
    EXPECT_NEAR(start[1], 8.0F, 0.02F);
    glListBase(base - 32);
    glCallLists(1, GL_UNSIGNED_BYTE, "A");
    glGetFloatv(GL_CURRENT_RASTER_POSITION, place.data());
    EXPECT_GE(place[0], 4.0F + 8.0F);
    EXPECT_LE(place[0], 4.0F + 18.0F);
    const float advance = place[0] - start[0];
    EXPECT_EQ(advance, std::round(advance)) << "whole pixels";
    EXPECT_EQ(place[1], start[1]);
    const GLfloat afterLetter = place[0];
    glCallLists(1, GL_UNSIGNED_BYTE, " ");
    glGetFloatv(GL_CURRENT_RASTER_POSITION, place.data());
    EXPECT_GT(place[0], afterLetter) << "a space has a width";
    glDeleteLists(base, 96);
  };
  Paint();
  const auto isLit = [&](std::int32_t x, std::int32_t y) { return PixelAt(picture, x, y) == Rgba{255, 255, 0, 255}; };
  // From the first to the last lit pixel of a row; 0 for a dark row.
  const auto span = [&](std::int32_t y) {
    std::int32_t first = 40;
    std::int32_t last = -1;
    for (std::int32_t x = 0; x < 40; ++x) {
      if (!isLit(x, y)) continue;
      first = std::min(first, x);
      last = x;
    }
    return std::max(0, last - first + 1);
  };
  std::int32_t highest = 8;
  while (span(highest + 1) > 0)
    ++highest;
  EXPECT_EQ(span(7), 0) << "it stands on the baseline";
  EXPECT_GE(highest, 8 + 9);
  EXPECT_LE(highest, 8 + 15);
  EXPECT_GE(span(8), 8) << "an A is wide at its feet";
  EXPECT_LE(span(highest), 6) << "and narrow at its top";
  EXPECT_FALSE(isLit(4 + span(8) / 2, 8)) << "with a gap between the feet";
}

TEST(OffScreenSurface, RefusesWhatItCannotPaint) {
  const auto failure = CaughtFailure([] { MakeOffScreenSurface(1 << 24, 8); });
  EXPECT_EQ(failure->Code(), ExitCode::WrongUsage);
  EXPECT_EQ(std::string(failure->what()).rfind("a view of 16777216 x 8 pixels: expected at most ", 0), 0u);
}

TEST(OffScreenSurface, SeveralExistSideBySide) {
  const auto first = MakeOffScreenSurface(4, 4);
  const auto second = MakeOffScreenSurface(4, 4);
  const std::vector<std::byte> white(64, std::byte{255});
  const std::vector<std::byte> black(64, std::byte{0});
  for (const auto& [surface, colour] : {std::pair(first.get(), &white), std::pair(second.get(), &black)}) {
    ASSERT_TRUE(surface->Begin());
    surface->PaintPicture(*colour);
    surface->End();
  }
  HostImage picture;
  ReadBack(*first, picture);
  EXPECT_EQ(PixelAt(picture, 2, 2), (Rgba{255, 255, 255, 255}));
  ReadBack(*second, picture);
  EXPECT_EQ(PixelAt(picture, 2, 2), (Rgba{0, 0, 0, 255}));
}

}  // namespace
}  // namespace vblur::host
