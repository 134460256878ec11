#include "platform/Shell.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <map>
#include <string>

#include "sdk/system/ShellAnswers.h"

namespace vblur {

namespace {

constexpr std::intptr_t kNoSuchFile = 2;

host::ShellAnswers* shellAnswers = nullptr;

std::map<HKEY, std::u16string>& OpenKeys() {
  static std::map<HKEY, std::u16string> keys;
  return keys;
}

std::u16string DecimalOf(std::int32_t number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

}  // namespace

namespace host {

void UseShellAnswers(ShellAnswers* answers) {
  shellAnswers = answers;
}

}  // namespace host

std::int32_t RegOpenKeyExW(HKEY key, const char16_t* name, std::uint32_t, std::uint32_t access, HKEY* opened) {
  static HKEY last = 0;
  if (key != HKEY_LOCAL_MACHINE || name == nullptr || opened == nullptr) return ERROR_FILE_NOT_FOUND;
  if (shellAnswers == nullptr || !shellAnswers->HasKey(name, access)) return ERROR_FILE_NOT_FOUND;
  OpenKeys().emplace(++last, name);
  *opened = last;
  return ERROR_SUCCESS;
}

std::int32_t RegQueryValueExW(HKEY key, const char16_t* name, std::uint32_t*, std::uint32_t*, std::uint8_t* data,
                              std::uint32_t* size) {
  const auto found = OpenKeys().find(key);
  if (found == OpenKeys().end() || shellAnswers == nullptr || name == nullptr || size == nullptr) {
    return ERROR_FILE_NOT_FOUND;
  }
  const auto text = shellAnswers->Text(found->second, name);
  if (!text) return ERROR_FILE_NOT_FOUND;
  const auto needed = static_cast<std::uint32_t>((text->size() + 1) * sizeof(char16_t));
  const std::uint32_t room = *size;
  *size = needed;
  if (data == nullptr) return ERROR_SUCCESS;
  if (room < needed) return ERROR_MORE_DATA;
  std::memcpy(data, text->c_str(), needed);
  return ERROR_SUCCESS;
}

std::int32_t RegCloseKey(HKEY key) {
  return OpenKeys().erase(key) != 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

std::int32_t wsprintfW(char16_t* buffer, const char16_t* format, ...) {
  constexpr std::size_t kMost = 1023;
  std::u16string text;
  std::va_list arguments;
  va_start(arguments, format);
  for (const char16_t* at = format; *at != 0; ++at) {
    if (*at != u'%') {
      text += *at;
    } else if (at[1] == u'd') {
      text += DecimalOf(va_arg(arguments, std::int32_t));
      ++at;
    } else if (at[1] != 0) {
      // As the system does: what it does not know is copied without the sign.
      text += *++at;
    }
  }
  va_end(arguments);
  text.resize(std::min(text.size(), kMost));
  std::copy_n(text.c_str(), text.size() + 1, buffer);
  return static_cast<std::int32_t>(text.size());
}

std::intptr_t ShellExecuteW(HWND, const char16_t* operation, const char16_t* file, const char16_t*, const char16_t*,
                            std::int32_t show) {
  if (shellAnswers == nullptr || file == nullptr) return kNoSuchFile;
  return shellAnswers->Open(operation == nullptr ? u"" : operation, file, show);
}

}  // namespace vblur
