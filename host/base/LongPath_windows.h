// The forms of a name on Windows.
#pragma once

#include <filesystem>
#include <string>

namespace vblur::host {

// Without \\?\ in front.
std::wstring WithoutLongPrefix(const std::wstring& path);

// From the drive on, without that and without `.` and `..`; \\.\NAME for a device. Links stay.
std::wstring FullPathOf(const std::filesystem::path& path);

}  // namespace vblur::host
