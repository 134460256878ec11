// The system's registry and shell, by its functions' names.
#include "platform/Shell.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

namespace vblur {
namespace {

constexpr std::uint32_t kToRead = 0x20019;  // KEY_READ
constexpr const char16_t* kVersion = u"Software\\Microsoft\\Windows NT\\CurrentVersion";

TEST(Shell, ReadsATextOfTheRegistry) {
  HKEY key = 0;
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kVersion, 0, kToRead, &key), ERROR_SUCCESS);
  std::array<char16_t, 256> text{};
  auto* const bytes = reinterpret_cast<std::uint8_t*>(text.data());
  std::uint32_t size = sizeof text;
  EXPECT_EQ(RegQueryValueExW(key, u"ProductName", nullptr, nullptr, bytes, &size), ERROR_SUCCESS);
  const std::u16string name = text.data();
  EXPECT_FALSE(name.empty());
  EXPECT_EQ(size, (name.size() + 1) * sizeof(char16_t));
  size = 2;
  EXPECT_EQ(RegQueryValueExW(key, u"ProductName", nullptr, nullptr, bytes, &size), ERROR_MORE_DATA);
  EXPECT_EQ(RegQueryValueExW(key, u"No such name", nullptr, nullptr, bytes, &size), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"Software\\No such key", 0, kToRead, &key), ERROR_FILE_NOT_FOUND);
}

TEST(Shell, FormatsNumbers) {
  std::array<char16_t, 1024> buffer{};
  EXPECT_EQ(wsprintfW(buffer.data(), u"a%db%%", -10), 6);
  EXPECT_EQ(std::u16string(buffer.data()), u"a-10b%");
}

TEST(Shell, OpensNoDocumentThatIsMissing) {
  EXPECT_LE(ShellExecuteW(nullptr, u"open", u"C:\\no\\such\\document.txt", nullptr, nullptr, SW_SHOWNORMAL), 32);
}

}  // namespace
}  // namespace vblur
