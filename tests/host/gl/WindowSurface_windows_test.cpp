// The surface of a real window: what it shows, keeps and loses.
#include "host/viewer/WindowSurface.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "host/viewer/ViewerWindow.h"
#include "tests/host/gl/PaintedPicture.h"
#include "tests/support/host/FailureOf.h"
// After those of the project, whose names its macros would replace.
#include <windows.h>

namespace vblur::host {
namespace {

std::vector<std::byte> Plain(std::int32_t width, std::int32_t height, std::array<int, 3> colour) {
  std::vector<std::byte> pixels;
  for (std::int32_t i = 0; i < width * height; ++i) {
    for (const int component : colour)
      pixels.push_back(static_cast<std::byte>(component));
    pixels.push_back(std::byte{255});
  }
  return pixels;
}

class WindowSurface : public testing::Test {
 protected:
  // The client area.
  void Show(std::int32_t width, std::int32_t height) {
    RECT outer{0, 0, width, height};
    ::AdjustWindowRectEx(&outer, WS_OVERLAPPEDWINDOW, FALSE, 0);
    ::SetWindowPos(window.Handle(), nullptr, 40, 40, outer.right - outer.left, outer.bottom - outer.top, SWP_NOZORDER);
    ::ShowWindow(window.Handle(), SW_SHOWNORMAL);
    Settle();
  }
  // The display's server answers in its own time.
  static void Settle() {
    for (int i = 0; i < 20; ++i) {
      MSG message;
      while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE)
        ::DispatchMessageW(&message);
      ::Sleep(10);
    }
  }
  static void Paint(ViewerSurface& surface, std::array<int, 3> colour) {
    ASSERT_TRUE(surface.Begin());
    surface.PaintPicture(Plain(surface.Width(), surface.Height(), colour));
    surface.End();
    surface.Present();
  }
  static Rgba Middle(ViewerSurface& surface) {
    HostImage picture;
    ReadBack(surface, picture);
    return PixelAt(picture, surface.Width() / 2, surface.Height() / 2);
  }

  ViewerWindow window;
};

TEST_F(WindowSurface, ShowsWhatIsPainted) {
  Show(200, 100);
  const auto surface = MakeWindowSurface(window.Handle(), 200, 100);
  Paint(*surface, {200, 100, 50});
  EXPECT_EQ(Middle(*surface), (Rgba{200, 100, 50, 255}));
  Settle();
  // As the display has it.
  const HDC screen = ::GetDC(nullptr);
  POINT middle{100, 50};
  ::ClientToScreen(window.Handle(), &middle);
  EXPECT_EQ(::GetPixel(screen, middle.x, middle.y), RGB(200, 100, 50));
  ::ReleaseDC(nullptr, screen);
}

TEST_F(WindowSurface, KeepsItsPictureWhileTheWindowIsHiddenOrMinimized) {
  Show(60, 40);
  const auto surface = MakeWindowSurface(window.Handle(), 60, 40);
  Paint(*surface, {1, 2, 3});
  ::ShowWindow(window.Handle(), SW_MINIMIZE);
  Settle();
  EXPECT_EQ(Middle(*surface), (Rgba{1, 2, 3, 255}));
  Paint(*surface, {4, 5, 6});
  EXPECT_EQ(Middle(*surface), (Rgba{4, 5, 6, 255}));
  ::ShowWindow(window.Handle(), SW_HIDE);
  EXPECT_EQ(Middle(*surface), (Rgba{4, 5, 6, 255}));
}

TEST_F(WindowSurface, HasAnotherSizeAfterAResize) {
  Show(60, 40);
  const auto surface = MakeWindowSurface(window.Handle(), 60, 40);
  for (const auto& [width, height] : {std::pair{300, 20}, std::pair{1, 1}, std::pair{60, 200}}) {
    surface->Resize(width, height);
    EXPECT_EQ(surface->Width(), width);
    EXPECT_EQ(surface->Height(), height);
    Paint(*surface, {9, 8, 7});
    EXPECT_EQ(Middle(*surface), (Rgba{9, 8, 7, 255}));
  }
  const auto failure = CaughtFailure([&] { surface->Resize(1 << 24, 8); });
  EXPECT_EQ(failure->Code(), ExitCode::WrongUsage);
}

TEST_F(WindowSurface, ComesASecondTimeForTheSameWindow) {
  Show(60, 40);
  for (int i = 0; i < 3; ++i) {
    const auto surface = MakeWindowSurface(window.Handle(), 60, 40);
    Paint(*surface, {10, 20, 30 + i});
    EXPECT_EQ(Middle(*surface), (Rgba{10, 20, 30 + i, 255}));
  }
}

TEST_F(WindowSurface, CannotBePaintedOnWhenItsWindowHasGone) {
  const auto surface = MakeWindowSurface(window.Handle(), 60, 40);
  ::DestroyWindow(window.Handle());
  EXPECT_FALSE(surface->Begin());
  surface->Present();
  HostImage picture;
  const auto failure = CaughtFailure([&] { ReadBack(*surface, picture); });
  EXPECT_EQ(failure->Code(), ExitCode::SomeFramesFailed);
  EXPECT_STREQ(failure->what(), "the viewer's surface cannot be painted on");
  EXPECT_EQ(CaughtFailure([&] { surface->Resize(8, 8); })->Code(), ExitCode::SomeFramesFailed);
}

TEST_F(WindowSurface, NeedsAWindow) {
  const auto failure = CaughtFailure([] { MakeWindowSurface(nullptr, 4, 4); });
  EXPECT_EQ(failure->Code(), ExitCode::SomeFramesFailed);
  EXPECT_EQ(std::string(failure->what()).rfind("no OpenGL that paints the viewer: no window", 0), 0u)
      << failure->what();
}

}  // namespace
}  // namespace vblur::host
