// The window with the pages, as it is on the screen.
#include "host/pages/PageFrame.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>
#include <vector>

#include "resources/Numbers.h"
#include "tests/host/pages/SystemWindows_windows.h"

namespace vblur::host {
namespace {

struct Picture {
  LONG width = 0;
  LONG height = 0;
  std::vector<std::uint32_t> pixels;  // blue, green, red, from the bottom up
};

// What a window shows on the screen, without its frame.
Picture PictureOf(HWND window) {
  RECT area{};
  ::GetClientRect(window, &area);
  Picture picture{area.right, area.bottom, {}};
  picture.pixels.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
  const HDC screen = ::GetDC(nullptr);
  const HDC memory = ::CreateCompatibleDC(screen);
  const HBITMAP bitmap = ::CreateCompatibleBitmap(screen, picture.width, picture.height);
  const HGDIOBJ before = ::SelectObject(memory, bitmap);
  ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  const HDC shown = ::GetDC(window);
  ::BitBlt(memory, 0, 0, picture.width, picture.height, shown, 0, 0, SRCCOPY);
  ::ReleaseDC(window, shown);
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), picture.width, picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  ::SelectObject(memory, before);
  ::GetDIBits(memory, bitmap, 0, static_cast<UINT>(picture.height), picture.pixels.data(), &info, DIB_RGB_COLORS);
  ::DeleteObject(bitmap);
  ::DeleteDC(memory);
  ::ReleaseDC(nullptr, screen);
  return picture;
}

// A BMP file, for docs/.
void Write(const Picture& picture, const std::string& file) {
  const auto size = static_cast<DWORD>(picture.pixels.size() * 4);
  BITMAPFILEHEADER head{0x4D42, 0, 0, 0, sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER)};
  head.bfSize = head.bfOffBits + size;
  const BITMAPINFOHEADER info{sizeof(BITMAPINFOHEADER), picture.width, picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<const char*>(&head), sizeof(head));
  out.write(reinterpret_cast<const char*>(&info), sizeof(info));
  out.write(reinterpret_cast<const char*>(picture.pixels.data()), size);
}

TEST(PageFrame, ShowsEachPage) {
  for (const EffectKind kind : {EffectKind::Filter, EffectKind::Transition}) {
    PagedEffect user(kind);
    for (const std::string_view name : user.session.Pages().Listed()) {
      SCOPED_TRACE(name);
      user.session.Pages().Show(name);
      PageFrame frame(user.session.Pages(), user.History());
      ASSERT_TRUE(frame.IsOpen());
      Pump();
      EXPECT_EQ(user.Front().name, name);
      EXPECT_TRUE(::IsWindowVisible(user.Front().dialog->Handle()));
      const Picture picture = PictureOf(frame.Handle());
      // Texts, edges, bars: more than a background.
      EXPECT_GT(std::set<std::uint32_t>(picture.pixels.begin(), picture.pixels.end()).size(), 8u);
      if (const char* const folder = std::getenv("VBLUR_PAGE_PICTURES"); folder != nullptr) {
        Write(picture, std::string(folder) + "/" + std::string(name) + ".bmp");
      }
    }
  }
}

TEST(PageFrame, KeepsTheDialogsWhenItIsClosed) {
  PagedEffect user;
  user.Do("show crop\nset \"Crop Left\" 20");
  {
    PageFrame frame(user.session.Pages(), user.History());
    EXPECT_EQ(user.Front().name, "crop");
    ::SendMessageW(frame.Handle(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(frame.IsOpen());
    frame.Run();
  }
  EXPECT_EQ(user.Number("Crop Left"), 20.0);
  user.Do("set \"Crop Left\" 30");
  EXPECT_EQ(user.ValueAt("Crop Left"), 30.0);
}

TEST(PageFrame, UndoesAndChangesPagesByKeys) {
  PagedEffect user;
  user.Do("show FullBlurPPG\nset Blur 40");
  PageFrame frame(user.session.Pages(), user.History());
  std::array<BYTE, 256> keys{};
  ::GetKeyboardState(keys.data());
  const auto press = [&](WPARAM key) {
    auto held = keys;
    held[VK_CONTROL] = 0x80;
    ::SetKeyboardState(held.data());
    MSG message{};
    message.hwnd = frame.Handle();
    message.message = WM_KEYDOWN;
    message.wParam = key;
    frame.Dispatch(message);
    ::SetKeyboardState(keys.data());
  };
  press('Z');
  EXPECT_EQ(user.ValueAt("Blur"), 10.0);
  press('Y');
  EXPECT_EQ(user.ValueAt("Blur"), 40.0);
  press(VK_TAB);
  EXPECT_EQ(user.Front().name, user.session.Pages().Listed().at(1));
  EXPECT_EQ(::GetParent(user.Front().dialog->Handle()), frame.Handle());
}

// For use_page_window.sh, whose mouse and keys are those of the screen.
TEST(PageFrame, DISABLED_ShowsWhatAUserDoes) {
  PagedEffect user;
  user.Do("show FullBlurPPG");
  PageFrame(user.session.Pages(), user.History()).Run();
  for (const char* const name : {"Blur", "Aspect", "Mix Back", "Blend"})
    std::printf("%s=%g\n", name, user.ValueAt(name));
  std::printf("steps=%d\n", static_cast<int>(user.History().UndoDepth()));
}

}  // namespace
}  // namespace vblur::host
