// What people see in a console and type into it: names of any language, whatever its code page is.
#include <array>
#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "host/base/Utf8.h"
#include "tests/apps/ProgramTest.h"

#include <windows.h>

namespace vblur::cli {
namespace {

constexpr UINT kOldCodePage = 437;

// A console of this process, which its children write to.
class OwnConsole {
 public:
  OwnConsole() {
    for (std::size_t i = 0; i < kStreams.size(); ++i)
      before_[i] = GetStdHandle(kStreams[i]);
    FreeConsole();
    isMade_ = AllocConsole() != FALSE;
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    screen_ = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                          OPEN_EXISTING, 0, nullptr);
    input_ = CreateFileW(L"CONIN$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                         OPEN_EXISTING, 0, nullptr);
    SetConsoleOutputCP(kOldCodePage);
    SetConsoleCP(kOldCodePage);
    SetConsoleCtrlHandler(StayAlive, TRUE);
  }
  ~OwnConsole() {
    SetConsoleCtrlHandler(StayAlive, FALSE);
    CloseHandle(input_);
    CloseHandle(screen_);
    FreeConsole();
    for (std::size_t i = 0; i < kStreams.size(); ++i)
      SetStdHandle(kStreams[i], before_[i]);
  }
  OwnConsole(const OwnConsole&) = delete;
  OwnConsole& operator=(const OwnConsole&) = delete;

  bool IsMade() const { return isMade_ && screen_ != INVALID_HANDLE_VALUE && input_ != INVALID_HANDLE_VALUE; }

  // As keys that are pressed.
  void Type(const std::wstring& text) const {
    for (const wchar_t unit : text) {
      INPUT_RECORD key{};
      key.EventType = KEY_EVENT;
      key.Event.KeyEvent.bKeyDown = TRUE;
      key.Event.KeyEvent.wRepeatCount = 1;
      key.Event.KeyEvent.uChar.UnicodeChar = unit;
      if (unit == L'\r') key.Event.KeyEvent.wVirtualKeyCode = VK_RETURN;
      DWORD written = 0;
      EXPECT_TRUE(WriteConsoleInputW(input_, &key, 1, &written));
    }
  }

  // The exit code.
  DWORD Run(std::wstring line, const std::function<void()>& meanwhile = {},
            const std::filesystem::path& folder = ".") const {
    STARTUPINFOW setup{};
    setup.cb = sizeof setup;
    setup.dwFlags = STARTF_USESTDHANDLES;
    setup.hStdInput = input_;
    setup.hStdOutput = setup.hStdError = screen_;
    PROCESS_INFORMATION child{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(), &setup, &child) ==
        FALSE)
      return GetLastError();
    if (meanwhile) meanwhile();
    WaitForSingleObject(child.hProcess, 60'000);
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(child.hProcess, &code);
    CloseHandle(child.hThread);
    CloseHandle(child.hProcess);
    return code;
  }

  // All that it shows, its lines one after the other.
  std::wstring Text() const {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    GetConsoleScreenBufferInfo(screen_, &info);
    const auto count = static_cast<DWORD>(info.dwSize.X) * static_cast<DWORD>(info.dwCursorPosition.Y + 1);
    std::wstring text(count, L' ');
    DWORD read = 0;
    ReadConsoleOutputCharacterW(screen_, text.data(), count, {0, 0}, &read);
    text.resize(read);
    return text;
  }

 private:
  static BOOL CALLBACK StayAlive(DWORD event) { return event == CTRL_C_EVENT ? TRUE : FALSE; }

  static constexpr std::array<DWORD, 3> kStreams{STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  std::array<HANDLE, 3> before_{};
  bool isMade_ = false;
  HANDLE screen_ = INVALID_HANDLE_VALUE;
  HANDLE input_ = INVALID_HANDLE_VALUE;
};

class Console : public ProgramTest {
 protected:
  const std::wstring program_ = L'"' + std::filesystem::absolute(VBLUR_PROGRAM).wstring() + L'"';
};

TEST_F(Console, ShowsNamesThatItsCodePageLacks) {
  const OwnConsole console;
  ASSERT_TRUE(console.IsMade());
  const std::wstring name = L"\u043a\u0430\u0434\u0440-\u0142\u00f3d\u017a.png";
  EXPECT_EQ(console.Run(program_ + L" info " + name), 3u);
  EXPECT_NE(console.Text().find(name + L": cannot read"), std::wstring::npos)
      << host::Utf8Of(std::filesystem::path(console.Text()));
  // As it was for the next program.
  EXPECT_EQ(GetConsoleOutputCP(), kOldCodePage);
}

TEST_F(Console, ReadsWhatIsTypedInAnyLanguage) {
  const OwnConsole console;
  ASSERT_TRUE(console.IsMade());
  MakePicture("in.png");
  // The last character is a pair.
  const std::wstring name = L"\u043a\u0430\u0434\u0440-\u0142-\U0001f600.png";
  console.Type(L"{\"version\": 1, \"input\": {\"file\": \"in.png\"},\r");
  console.Type(L" \"output\": {\"file\": \"" + name + L"\"}}\r\u001a\r");
  EXPECT_EQ(console.Run(program_ + L" job -", {}, folder_.path()), 0u)
      << host::Utf8Of(std::filesystem::path(console.Text()));
  EXPECT_TRUE(std::filesystem::exists(folder_.path() / name));
}

TEST_F(Console, IsAsItWasWhenAProgramIsInterruptedThatHasNoWork) {
  const OwnConsole console;
  ASSERT_TRUE(console.IsMade());
  const auto interrupt = [] {
    // It has begun, and waits for what is typed.
    EXPECT_TRUE(WaitUntil([] { return GetConsoleOutputCP() == CP_UTF8; }));
    Sleep(200);
    EXPECT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0));
  };
  // With the system's own code.
  console.Run(program_ + L" job -", interrupt);
  EXPECT_EQ(GetConsoleOutputCP(), kOldCodePage);
}

}  // namespace
}  // namespace vblur::cli
