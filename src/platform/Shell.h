// The registry, formatted texts and the opening of documents, under the system's names. Off Windows sdk/system answers.
#pragma once

#include <cstdint>

#include "Window.h"

namespace vblur {

// Results of registry calls; others are failures too.
inline constexpr std::int32_t ERROR_SUCCESS = 0;
inline constexpr std::int32_t ERROR_FILE_NOT_FOUND = 2;
inline constexpr std::int32_t ERROR_MORE_DATA = 234;

using HKEY = std::uintptr_t;
inline constexpr HKEY HKEY_LOCAL_MACHINE = 0x80000002;

// Opens a key below another; `access` is a mask of rights, `options` is 0.
std::int32_t RegOpenKeyExW(HKEY key, const char16_t* name, std::uint32_t options, std::uint32_t access, HKEY* opened);
// Reads a text with its end; `size` is the buffer's in bytes, and then the text's. `reserved` and `type` may be null.
std::int32_t RegQueryValueExW(HKEY key, const char16_t* name, std::uint32_t* reserved, std::uint32_t* type,
                              std::uint8_t* data, std::uint32_t* size);
std::int32_t RegCloseKey(HKEY key);

// Formats a text of at most 1024 characters with its end; %d and %% are known. Returns its length.
std::int32_t wsprintfW(char16_t* buffer, const char16_t* format, ...);

// Opens a document with the program that shows such. Above 32: done.
std::intptr_t ShellExecuteW(HWND window, const char16_t* operation, const char16_t* file, const char16_t* parameters,
                            const char16_t* folder, std::int32_t show);

}  // namespace vblur
