// The manual by the system's own registry and shell.
#include "pages/OpenManual.h"

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/pages/OpenedManuals.h"

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

TEST(OpenManual, TheShellOpensTheFileBelowIt) {
  {
    const OpenedManuals manuals;
    EXPECT_EQ(manuals.Place(),
              std::filesystem::path(ReadFolder() +
                                    L"\\The Halvern\\Vessin 4.3 for DS10 (64bit)\\Documentation\\Vessin4.3.pdf")
                  .u16string());
    OpenManual("any text");
    EXPECT_EQ(manuals.After(1), std::vector{manuals.Place()});
  }
  // Without the file nothing happens, and nobody is told.
  OpenManual(nullptr);
}

}  // namespace
}  // namespace vblur
