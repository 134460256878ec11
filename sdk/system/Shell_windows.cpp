#include "platform/Shell.h"

#include <cstdarg>

#include "sdk/system/SystemTypes_windows.h"

namespace vblur {

namespace {

::HKEY SystemsOwn(HKEY key) {
  return reinterpret_cast<::HKEY>(key);
}

}  // namespace

std::int32_t RegOpenKeyExW(HKEY key, const char16_t* name, std::uint32_t options, std::uint32_t access, HKEY* opened) {
  return ::RegOpenKeyExW(SystemsOwn(key), host::SystemText(name), options, access, reinterpret_cast<::HKEY*>(opened));
}

std::int32_t RegQueryValueExW(HKEY key, const char16_t* name, std::uint32_t* reserved, std::uint32_t* type,
                              std::uint8_t* data, std::uint32_t* size) {
  static_assert(sizeof(DWORD) == sizeof(std::uint32_t));
  return ::RegQueryValueExW(SystemsOwn(key), host::SystemText(name), reinterpret_cast<DWORD*>(reserved),
                            reinterpret_cast<DWORD*>(type), data, reinterpret_cast<DWORD*>(size));
}

std::int32_t RegCloseKey(HKEY key) {
  return ::RegCloseKey(SystemsOwn(key));
}

std::int32_t wsprintfW(char16_t* buffer, const char16_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const std::int32_t length = ::wvsprintfW(host::SystemText(buffer), host::SystemText(format), arguments);
  va_end(arguments);
  return length;
}

std::intptr_t ShellExecuteW(HWND window, const char16_t* operation, const char16_t* file, const char16_t* parameters,
                            const char16_t* folder, std::int32_t show) {
  return reinterpret_cast<std::intptr_t>(::ShellExecuteW(window, host::SystemText(operation), host::SystemText(file),
                                                         host::SystemText(parameters), host::SystemText(folder), show));
}

}  // namespace vblur
