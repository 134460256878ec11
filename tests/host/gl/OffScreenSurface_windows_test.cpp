// What only Windows has: its fonts as lists of OpenGL, windows behind the surfaces, and handles that are given back.
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/gl/PaintedPicture.h"
#include "tests/support/host/FailureOf.h"
// After those of the project, whose names its macros would replace.
#include <windows.h>

namespace vblur::host {
namespace {

using OffScreenSurfaceLists = PaintedPicture;

TEST_F(OffScreenSurfaceLists, AreMadeOf96Characters) {
  draw = [] {
    const HDC dc = wglGetCurrentDC();
    const HFONT font = CreateFontA(18, 0, 0, 0, 700, 0, 0, 0, 0, 0, 0, 0, 0, "helv");
    const HFONT before = SelectObject(dc, font);
    const GLuint base = glGenLists(96);
    ASSERT_NE(base, 0u);
    ASSERT_TRUE(wglUseFontBitmapsW(dc, 32, 96, base));
    SelectObject(dc, before);
    EXPECT_TRUE(DeleteObject(font));
    glListBase(base - 32);
    for (GLuint character = 32; character < 127; ++character) {
      EXPECT_TRUE(glIsList(base + character - 32)) << character;
      std::array<GLfloat, 4> place{};
      glRasterPos2f(4.0F, 8.0F);
      const auto byte = static_cast<GLubyte>(character);
      glCallLists(1, GL_UNSIGNED_BYTE, &byte);
      glGetFloatv(GL_CURRENT_RASTER_POSITION, place.data());
      EXPECT_GT(place[0], 4.0F + 1.0F) << character << " has a width";
      EXPECT_LT(place[0], 4.0F + 24.0F) << character;
      EXPECT_NEAR(place[1], 8.0F, 0.02F) << character << " stays on the line";
    }
    EXPECT_TRUE(glIsList(base + 95));
    glDeleteLists(base, 96);
    EXPECT_FALSE(glIsList(base));
  };
  Paint();
}

// Of this thread.
std::vector<HWND> Windows() {
  std::vector<HWND> windows;
  const auto keep = [](HWND window, LPARAM into) -> BOOL {
    reinterpret_cast<std::vector<HWND>*>(into)->push_back(window);
    return TRUE;
  };
  ::EnumThreadWindows(::GetCurrentThreadId(), keep, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

DWORD SystemHandles() {
  DWORD count = 0;
  ::GetProcessHandleCount(::GetCurrentProcess(), &count);
  return count;
}

void PaintOnce(ViewerSurface& surface) {
  const std::vector<std::byte> white(
      static_cast<std::size_t>(surface.Width()) * 4 * static_cast<std::size_t>(surface.Height()), std::byte{255});
  ASSERT_TRUE(surface.Begin());
  surface.PaintPicture(white);
  surface.End();
}

TEST(OffScreenSurface, GivesBackItsWindowsAndHandles) {
  // The driver keeps what the first ones make it load.
  for (int i = 0; i < 3; ++i)
    PaintOnce(*MakeOffScreenSurface(64, 64));
  const auto windows = Windows().size();
  const DWORD handles = SystemHandles();
  const DWORD drawing = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS);
  const DWORD user = ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS);
  for (int i = 0; i < 200; ++i)
    PaintOnce(*MakeOffScreenSurface(64, 64));
  EXPECT_EQ(Windows().size(), windows);
  EXPECT_LE(SystemHandles(), handles + 2);
  EXPECT_LE(::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS), drawing + 2);
  EXPECT_LE(::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS), user + 2);
  EXPECT_EQ(::wglGetCurrentContext(), nullptr);
}

TEST(OffScreenSurface, GivesBackTheWindowOfASurfaceThatIsTooLarge) {
  const auto windows = Windows().size();
  for (int i = 0; i < 20; ++i)
    CaughtFailure([] { MakeOffScreenSurface(1 << 24, 8); });
  EXPECT_EQ(Windows().size(), windows);
}

// Lists outlive the surface on which they were made, as those of a tool's font do when a view gets a window.
TEST(OffScreenSurface, SharesListsWithTheNext) {
  auto first = MakeOffScreenSurface(4, 4);
  ASSERT_TRUE(first->Begin());
  const GLuint list = glGenLists(1);
  glNewList(list, GL_COMPILE);
  glColor3f(1.0F, 0.0F, 0.0F);
  glRectf(-1.0F, -1.0F, 1.0F, 1.0F);
  glEndList();
  first->End();
  const auto second = MakeOffScreenSurface(4, 4);
  first.reset();
  ASSERT_TRUE(second->Begin());
  ASSERT_TRUE(glIsList(list));
  glCallList(list);
  second->End();
  HostImage picture;
  ReadBack(*second, picture);
  EXPECT_EQ(PixelAt(picture, 1, 1), (Rgba{255, 0, 0, 255}));
}

}  // namespace
}  // namespace vblur::host
