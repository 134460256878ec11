#include "pages/OpenManual.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "platform/Shell.h"

namespace vblur {

namespace {

constexpr std::u16string_view kWithoutRegistry = u"C:Program Files";
constexpr const char16_t* kKey = u"Software\\Microsoft\\Windows\\CurrentVersion";
constexpr const char16_t* kValue = u"ProgramFilesDir";
constexpr std::uint32_t kAccess = 0xF003F;  // everything
constexpr std::uint32_t kRoom = 260;        // bytes
constexpr std::int32_t kRelease = 10;
constexpr std::int32_t kShowDefault = 10;
// The longest text that wsprintfW makes, with its end.
constexpr std::size_t kLongestPath = 1024;

void Copy(std::u16string_view text, char16_t* buffer) {
  *std::ranges::copy(text, buffer).out = 0;
}

bool ReadFolder(HKEY key, char16_t* buffer) {
  std::uint32_t size = kRoom;
  return RegQueryValueExW(key, kValue, nullptr, nullptr, reinterpret_cast<std::uint8_t*>(buffer), &size) ==
         ERROR_SUCCESS;
}

}  // namespace

bool ProgramFilesPath(char16_t* buffer) {
  HKEY key = 0;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, kAccess, &key) != ERROR_SUCCESS) {
    Copy(kWithoutRegistry, buffer);
    return false;
  }
  if (!ReadFolder(key, buffer)) {
    buffer[0] = 0;
    if (!ReadFolder(key, buffer)) Copy(kWithoutRegistry, buffer);
  }
  RegCloseKey(key);
  return true;
}

void OpenManual(const char*) {
  std::array<char16_t, kRoom> folder{};
  ProgramFilesPath(folder.data());
  const std::u16string format = std::u16string(folder.data()) +
                                u"\\The Halvern\\"
                                u"Vessin 4.3 for DS"
                                u"%d (64bit)"
                                u"\\Documentation\\Vessin4.3.pdf";
  std::array<char16_t, kLongestPath> path{};
  wsprintfW(path.data(), format.c_str(), kRelease);
  ShellExecuteW(nullptr, u"open", path.data(), nullptr, nullptr, kShowDefault);
}

}  // namespace vblur
