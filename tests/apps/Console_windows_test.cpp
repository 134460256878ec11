// What people see in a console: names of any language, whatever its code page is.
#include <array>
#include <string>

#include <gtest/gtest.h>

#include "host/base/Utf8.h"
#include "tests/apps/ProgramTest.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
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
    SetConsoleOutputCP(kOldCodePage);
  }
  ~OwnConsole() {
    CloseHandle(screen_);
    FreeConsole();
    for (std::size_t i = 0; i < kStreams.size(); ++i)
      SetStdHandle(kStreams[i], before_[i]);
  }
  OwnConsole(const OwnConsole&) = delete;
  OwnConsole& operator=(const OwnConsole&) = delete;

  bool IsMade() const { return isMade_ && screen_ != INVALID_HANDLE_VALUE; }

  // The exit code.
  DWORD Run(std::wstring line) const {
    STARTUPINFOW setup{};
    setup.cb = sizeof setup;
    setup.dwFlags = STARTF_USESTDHANDLES;
    setup.hStdOutput = setup.hStdError = screen_;
    PROCESS_INFORMATION child{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &setup, &child) == FALSE)
      return GetLastError();
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
  static constexpr std::array<DWORD, 3> kStreams{STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  std::array<HANDLE, 3> before_{};
  bool isMade_ = false;
  HANDLE screen_ = INVALID_HANDLE_VALUE;
};

using Console = ProgramTest;

TEST_F(Console, ShowsNamesThatItsCodePageLacks) {
  const OwnConsole console;
  ASSERT_TRUE(console.IsMade());
  const std::wstring name = L"\u043a\u0430\u0434\u0440-\u0142\u00f3d\u017a.png";
  const std::wstring program = L'"' + std::filesystem::absolute(VBLUR_PROGRAM).wstring() + L'"';
  EXPECT_EQ(console.Run(program + L" info " + name), 3u);
  EXPECT_NE(console.Text().find(name + L": cannot read"), std::wstring::npos)
      << host::Utf8Of(std::filesystem::path(console.Text()));
  // As it was for the next program.
  EXPECT_EQ(GetConsoleOutputCP(), kOldCodePage);
}

}  // namespace
}  // namespace vblur::cli
