// What is behind the system's names of fonts where they are the host's own.
#include <gtest/gtest.h>

#include "tests/host/gl/PaintedPicture.h"

namespace vblur::host {
namespace {

using OffScreenSurfaceFont = PaintedPicture;

TEST_F(OffScreenSurfaceFont, IsChosenBeforeItFillsLists) {
  draw = [] {
    const HDC dc = wglGetCurrentDC();
    const HFONT font = CreateFontA(18, 0, 0, 0, 700, 0, 0, 0, 0, 0, 0, 0, 0, "helv");
    ASSERT_NE(font, nullptr) << "this machine has no font";
    EXPECT_FALSE(wglUseFontBitmapsW(dc, 32, 96, 1)) << "no font was chosen yet";
    EXPECT_EQ(SelectObject(dc, font), nullptr);
    EXPECT_EQ(SelectObject(dc, nullptr), font);
    EXPECT_TRUE(DeleteObject(font));
  };
  Paint();
}

TEST(OffScreenSurface, HasNoFontWithoutAPaint) {
  EXPECT_EQ(wglGetCurrentDC(), nullptr);
  EXPECT_EQ(SelectObject(nullptr, nullptr), nullptr);
  EXPECT_FALSE(DeleteObject(nullptr));
  EXPECT_FALSE(wglUseFontBitmapsW(nullptr, 32, 96, 1));
}

}  // namespace
}  // namespace vblur::host
