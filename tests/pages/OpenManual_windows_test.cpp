// The manual by the system's own registry and shell.
#include "pages/OpenManual.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace vblur {
namespace {

std::wstring ReadFolder() {
  std::array<char16_t, 260> folder{};
  EXPECT_TRUE(ProgramFilesPath(folder.data()));
  return reinterpret_cast<const wchar_t*>(folder.data());
}

TEST(OpenManual, TheFolderIsTheRegistrys) {
  std::array<wchar_t, 260> expected{};
  DWORD size = sizeof expected;
  ASSERT_EQ(::RegGetValueW(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion", L"ProgramFilesDir",
                           RRF_RT_REG_SZ, nullptr, expected.data(), &size),
            ERROR_SUCCESS);
  EXPECT_EQ(ReadFolder(), expected.data());
  EXPECT_EQ(ReadFolder(), L"C:\\Program Files");
}

// A document type with a program that copies what it is asked to open.
class Handler {
 public:
  explicit Handler(const std::wstring& command) {
    // Its own handler comes back afterwards.
    DWORD size = sizeof before_;
    had_ = ::RegGetValueW(HKEY_LOCAL_MACHINE, kExtension, nullptr, RRF_RT_REG_SZ, nullptr, before_.data(), &size) ==
           ERROR_SUCCESS;
    Write(kExtension, L"VBlurTest.Document");
    Write(kCommand, command);
  }
  ~Handler() {
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, kType);
    if (had_) {
      Write(kExtension, before_.data());
    } else {
      ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, kExtension);
    }
  }

 private:
  static constexpr const wchar_t* kExtension = L"Software\\Classes\\.pdf";
  static constexpr const wchar_t* kType = L"Software\\Classes\\VBlurTest.Document";
  static constexpr const wchar_t* kCommand = L"Software\\Classes\\VBlurTest.Document\\shell\\open\\command";

  static void Write(const wchar_t* key, const std::wstring& text) {
    EXPECT_EQ(::RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, nullptr, REG_SZ, text.c_str(),
                                static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
  }

  std::array<wchar_t, 260> before_{};
  bool had_ = false;
};

TEST(OpenManual, TheShellOpensTheFileBelowIt) {
  const std::filesystem::path folder = ReadFolder() + L"\\The Halvern\\Vessin 4.3 for DS10 (64bit)\\Documentation";
  const std::filesystem::path opened = std::filesystem::temp_directory_path() / "vblur-opened.txt";
  std::filesystem::remove(opened);
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "Vessin4.3.pdf") << "the manual";
  {
    const Handler handler(L"cmd.exe /c copy \"%1\" \"" + opened.wstring() + L"\"");
    OpenManual("any text");
    for (int i = 0; i < 200 && !std::filesystem::exists(opened); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  std::string text;
  std::getline(std::ifstream(opened) >> std::ws, text);
  EXPECT_EQ(text, "the manual");
  std::filesystem::remove_all(std::filesystem::path(ReadFolder()) / "The Halvern");
  std::filesystem::remove(opened);
  // Without the file nothing happens, and nobody is told.
  OpenManual(nullptr);
}

}  // namespace
}  // namespace vblur
