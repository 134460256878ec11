// A view's window under the hands of a user: what the mouse drags is what a pen script drags.
#include "host/viewer/LiveView.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/properties/PropertyText.h"
#include "tests/support/TestServer.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"
// After those of the project, whose names its macros would replace.
#include <windows.h>

namespace vblur::host {
namespace {

using Lines = std::vector<std::string>;
using Colour3 = std::array<int, 3>;
constexpr Colour3 kGrey{90, 90, 90};
constexpr Colour3 kRing{179, 179, 0};

// A grey frame of 200 x 120 pixels with a ring of 30 pixels at its middle.
class LiveViewOfAFrame : public testing::Test {
 protected:
  LiveViewOfAFrame() {
    HostImage image;
    image.Reset(8, 4, 200, 120);
    std::fill_n(image.Row(0), image.ByteCount(), std::byte{90});
    PictureWriter().Write(folder.path() / "in.png", image, nullptr, true);
    job.folder = folder.path();
    job.input.emplace().file = "in.png";
    job.output.file = "out.png";
    job.frames = FrameRange{0, 0};
    job.properties.Set(PropertyNamed("Blur").guid, 30.0);
  }

  void Open(const std::string& page = "FullBlurPPG") {
    view.reset();
    session.reset();
    lines.clear();
    // Away from the window, which opens at the other corner.
    ::SetCursorPos(1270, 1010);
    session.emplace(job, 0, ViewOptions{}, TestServer().Factory(), context, &trace);
    session->OpenPage(page, false);
    view.emplace(*session, "a view");
    Settle();
  }
  // The display's server answers in its own time.
  void Settle() {
    for (int i = 0; i < 15; ++i) {
      view->HandleMessages();
      ::Sleep(10);
    }
  }
  // At a pixel of the surface, y upwards.
  void Post(UINT message, int x, int y) {
    RECT inner{};
    ::GetClientRect(view->Window(), &inner);
    ::PostMessageW(view->Window(), message, 0, MAKELPARAM(x, inner.bottom - 1 - y));
    view->HandleMessages();
  }
  void Drag(int x, int y, int toX, int toY) {
    Post(WM_MOUSEMOVE, x, y);
    Post(WM_LBUTTONDOWN, x, y);
    Post(WM_MOUSEMOVE, (x + toX) / 2, (y + toY) / 2);
    Post(WM_MOUSEMOVE, toX, toY);
    Post(WM_LBUTTONUP, toX, toY);
  }
  // The same by a script, in a session of its own.
  PropertyStore Scripted(const std::string& page, int x, int y, int toX, int toY) {
    ViewSession other(job, 0, ViewOptions{}, TestServer().Factory(), context, nullptr);
    other.OpenPage(page, false);
    const auto at = [](double atX, double atY) { return std::to_string(atX + 0.5) + " " + std::to_string(atY + 0.5); };
    for (const PenEvent& event : ParsePenScript(
             "move " + at(x, y) + "\ndown " + at(x, y) + "\nmove " + at(toX, toY) + "\nup " + at(toX, toY), "test", ""))
      other.Apply(event);
    return other.Properties();
  }
  double Now(std::string_view name) const { return session->Properties().ValueAt(PropertyNamed(name).guid, 0.0); }
  Lines Writes() const {
    Lines writes;
    constexpr std::string_view kCall = "tool.SetAnimatedProperty";
    for (const std::string& line : lines) {
      if (line.rfind(kCall, 0) == 0) writes.push_back(line.substr(kCall.size(), line.find(" =") - kCall.size()));
    }
    return writes;
  }
  std::ptrdiff_t Paints() const {
    return std::ranges::count_if(lines, [](const std::string& line) { return line.rfind("tool.OnRender", 0) == 0; });
  }
  Colour3 Pixel(std::int32_t x, std::int32_t y) {
    session->Paint(picture);
    const std::byte* const pixel = picture.Row(y) + static_cast<std::size_t>(x) * 4;
    return {std::to_integer<int>(pixel[0]), std::to_integer<int>(pixel[1]), std::to_integer<int>(pixel[2])};
  }
  // As the display shows it.
  Colour3 Screen(int x, int y) {
    RECT inner{};
    ::GetClientRect(view->Window(), &inner);
    POINT place{x, inner.bottom - 1 - y};
    ::ClientToScreen(view->Window(), &place);
    const HDC screen = ::GetDC(nullptr);
    const COLORREF colour = ::GetPixel(screen, place.x, place.y);
    ::ReleaseDC(nullptr, screen);
    return {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
  }
  // Whether the display comes to show something at this place of the middle row: a busy machine's takes its time.
  bool SeesRingAt(int x) {
    const int middle = session->Geometry().SurfaceHeight() / 2;
    for (int i = 0; i < 15; ++i) {
      Settle();
      if (Screen(x - 1, middle) != kGrey || Screen(x, middle) != kGrey || Screen(x + 1, middle) != kGrey) return true;
    }
    return false;
  }

  ScratchFolder folder;
  Job job;
  ExecuteContext context;
  Lines lines;
  CallTrace trace{[this](const std::string& line) { lines.push_back(line); }};
  std::optional<ViewSession> session;
  std::optional<LiveView> view;
  HostImage picture;
};

TEST_F(LiveViewOfAFrame, ShowsTheFrameWithTheRingOnTheDisplay) {
  Open();
  EXPECT_TRUE(::IsWindowVisible(view->Window()));
  EXPECT_EQ(session->Geometry().SurfaceWidth(), 200);
  EXPECT_EQ(session->Geometry().SurfaceHeight(), 120);
  EXPECT_EQ(Screen(100, 60), kGrey);
  EXPECT_EQ(Screen(20, 100), kGrey);
  EXPECT_TRUE(SeesRingAt(130));
  EXPECT_TRUE(SeesRingAt(70));
  EXPECT_FALSE(SeesRingAt(150));
  // What is read back is what the display shows.
  int rings = 0;
  for (int x = 60; x < 140; ++x) {
    const Colour3 shown = Pixel(x, 70);
    if (shown == kGrey) continue;
    EXPECT_EQ(Screen(x, 70), shown) << x;
    // The renderer rounds colours.
    if (std::abs(shown[0] - kRing[0]) <= 1 && std::abs(shown[1] - kRing[1]) <= 1 && shown[2] <= 1) ++rings;
  }
  EXPECT_GE(rings, 2);
}

TEST_F(LiveViewOfAFrame, ADragOfTheRingIsThatOfAScript) {
  Open();
  Drag(130, 60, 150, 60);
  EXPECT_EQ(Writes().size(), 1u) << "once, when the button comes up";
  EXPECT_NEAR(Now("Blur"), 50.5, 0.01);
  EXPECT_EQ(session->Properties(), Scripted("FullBlurPPG", 130, 60, 150, 60));
  EXPECT_TRUE(SeesRingAt(150));
  EXPECT_FALSE(SeesRingAt(130));
}

TEST_F(LiveViewOfAFrame, ADragOfTheCropBoxIsThatOfAScript) {
  Open("crop");
  Drag(0, 60, 40, 60);
  EXPECT_NEAR(Now("Crop Left"), 20.0, 0.5);
  EXPECT_EQ(session->Properties(), Scripted("crop", 0, 60, 40, 60));
  Settle();
  EXPECT_NE(Screen(40, 30), kGrey);
}

TEST_F(LiveViewOfAFrame, ThePictureFollowsTheMouse) {
  Open();
  Post(WM_MOUSEMOVE, 130, 60);
  Post(WM_LBUTTONDOWN, 130, 60);
  for (const int x : {140, 155, 145}) {
    Post(WM_MOUSEMOVE, x, 60);
    EXPECT_TRUE(SeesRingAt(x)) << x;
    EXPECT_EQ(Now("Blur"), 30.0) << "not before the button comes up";
  }
  Post(WM_LBUTTONUP, 145, 60);
  EXPECT_NEAR(Now("Blur"), 45.5, 0.01);
}

TEST_F(LiveViewOfAFrame, KeepsTheMouseOutsideOfTheWindow) {
  Open();
  Post(WM_MOUSEMOVE, 130, 60);
  Post(WM_LBUTTONDOWN, 130, 60);
  EXPECT_EQ(::GetCapture(), view->Window());
  Post(WM_MOUSEMOVE, 230, 60);
  Post(WM_LBUTTONUP, 230, 60);
  EXPECT_EQ(::GetCapture(), nullptr);
  EXPECT_NEAR(Now("Blur"), 130.5, 0.01);
  Post(WM_MOUSEMOVE, -3, -5);
  Post(WM_LBUTTONUP, -3, -5);
  EXPECT_NEAR(Now("Blur"), 130.5, 0.01);
}

TEST_F(LiveViewOfAFrame, ADragEndsWhereAnotherWindowTakesTheMouse) {
  Open();
  Post(WM_MOUSEMOVE, 130, 60);
  Post(WM_LBUTTONDOWN, 130, 60);
  Post(WM_MOUSEMOVE, 150, 60);
  ::ReleaseCapture();
  view->HandleMessages();
  EXPECT_NEAR(Now("Blur"), 50.5, 0.01);
  Post(WM_MOUSEMOVE, 170, 60);
  Post(WM_LBUTTONUP, 170, 60);
  EXPECT_NEAR(Now("Blur"), 50.5, 0.01);
  EXPECT_EQ(Writes().size(), 1u);
}

TEST_F(LiveViewOfAFrame, TakesTheMouseOfTheDesktop) {
  Open();
  const auto input = [&](int x, DWORD what) {
    POINT place{x, 59};
    ::ClientToScreen(view->Window(), &place);
    ::SetCursorPos(place.x, place.y);
    Settle();
    if (what == 0) return;
    INPUT button{};
    button.type = INPUT_MOUSE;
    button.mi.dwFlags = what;
    ::SendInput(1, &button, sizeof button);
    Settle();
  };
  input(130, 0);
  input(130, MOUSEEVENTF_LEFTDOWN);
  input(140, 0);
  input(150, 0);
  input(150, MOUSEEVENTF_LEFTUP);
  EXPECT_NEAR(Now("Blur"), 50.5, 0.01);
  EXPECT_EQ(Writes().size(), 1u);
}

TEST_F(LiveViewOfAFrame, FollowsTheSizeOfTheWindow) {
  Open();
  RECT outer{0, 0, 400, 300};
  ::AdjustWindowRectEx(&outer, WS_OVERLAPPEDWINDOW, FALSE, 0);
  ::SetWindowPos(view->Window(), nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top,
                 SWP_NOMOVE | SWP_NOZORDER);
  Settle();
  EXPECT_EQ(session->Geometry().SurfaceWidth(), 400);
  EXPECT_EQ(session->Geometry().SurfaceHeight(), 300);
  EXPECT_EQ(Screen(10, 10), (Colour3{153, 153, 153})) << "outside of the frame";
  EXPECT_EQ(Screen(200, 150), kGrey) << "which stays in the middle";
  EXPECT_TRUE(SeesRingAt(230));
  Drag(230, 150, 245, 150);
  EXPECT_NEAR(Now("Blur"), 45.5, 0.01);
}

TEST_F(LiveViewOfAFrame, ComesBackFromTheTaskBarAsItWas) {
  Open();
  ::ShowWindow(view->Window(), SW_MINIMIZE);
  Settle();
  EXPECT_EQ(session->Geometry().SurfaceWidth(), 200);
  session->Apply(ParsePenScript("set Blur 40", "test", "").front());
  ::ShowWindow(view->Window(), SW_RESTORE);
  Settle();
  EXPECT_TRUE(SeesRingAt(140));
  Drag(140, 60, 150, 60);
  EXPECT_NEAR(Now("Blur"), 50.5, 0.01);
}

TEST_F(LiveViewOfAFrame, PaintsOnlyWhenSomethingHasChanged) {
  Open();
  Settle();
  const auto before = Paints();
  Post(WM_MOUSEMOVE, 20, 20);
  Post(WM_MOUSEMOVE, 22, 20);
  Settle();
  EXPECT_EQ(Paints(), before) << "the mouse over nothing";
  ::InvalidateRect(view->Window(), nullptr, FALSE);
  Settle();
  EXPECT_EQ(Paints(), before + 1) << "the window was covered";
  session->Apply(ParsePenScript("set Blur 40", "test", "").front());
  Settle();
  EXPECT_GT(Paints(), before + 1);
  EXPECT_TRUE(SeesRingAt(140));
}

TEST_F(LiveViewOfAFrame, ClosesByItsButtonAndByEscape) {
  Open();
  EXPECT_TRUE(view->IsOpen());
  ::PostMessageW(view->Window(), WM_KEYDOWN, 'A', 0);
  view->HandleMessages();
  EXPECT_TRUE(view->IsOpen());
  ::PostMessageW(view->Window(), WM_KEYDOWN, VK_ESCAPE, 0);
  view->Run();
  EXPECT_FALSE(view->IsOpen());
  const HWND window = view->Window();
  view.reset();
  EXPECT_FALSE(::IsWindowVisible(window));
  // The same session once more, on the same window.
  view.emplace(*session, "a view");
  Settle();
  EXPECT_TRUE(::IsWindowVisible(view->Window()));
  EXPECT_TRUE(SeesRingAt(130));
  Drag(130, 60, 140, 60);
  EXPECT_NEAR(Now("Blur"), 40.5, 0.01);
  ::PostMessageW(view->Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
  view->Run();
  EXPECT_FALSE(view->IsOpen());
}

TEST_F(LiveViewOfAFrame, EndsADragWhenItCloses) {
  Open();
  Post(WM_MOUSEMOVE, 130, 60);
  Post(WM_LBUTTONDOWN, 130, 60);
  Post(WM_MOUSEMOVE, 150, 60);
  ::PostMessageW(view->Window(), WM_KEYDOWN, VK_ESCAPE, 0);
  view->Run();
  view.reset();
  EXPECT_NEAR(Now("Blur"), 50.5, 0.01);
  EXPECT_EQ(::GetCapture(), nullptr);
}

TEST_F(LiveViewOfAFrame, TellsWhatItCouldNotPaint) {
  Open();
  context.Stop();
  session->Apply(ParsePenScript("set Blur 40", "test", "").front());
  ::InvalidateRect(view->Window(), nullptr, FALSE);
  const auto failure = CaughtFailure([&] { Settle(); });
  EXPECT_EQ(failure->Code(), ExitCode::Interrupted);
  EXPECT_FALSE(view->IsOpen());
  view->Run();
}

}  // namespace
}  // namespace vblur::host
