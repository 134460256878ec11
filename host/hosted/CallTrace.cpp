#include "host/hosted/CallTrace.h"

#include <array>
#include <cstdio>

namespace vblur::host {

std::string FormatResult(HRESULT result) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%08x", static_cast<unsigned>(result));
  return text.data();
}

std::string FormatGuid(const GUID& guid) {
  std::array<char, 40> text{};
  const auto& end = guid.data4;
  std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                static_cast<unsigned>(guid.data1), static_cast<unsigned>(guid.data2), static_cast<unsigned>(guid.data3),
                end[0], end[1], end[2], end[3], end[4], end[5], end[6], end[7]);
  return text.data();
}

void CallTrace::Note(const std::string& object, const std::string& call, HRESULT result, double seconds) {
  std::array<char, 48> end{};
  std::snprintf(end.data(), end.size(), " = %s (%.3f ms)", FormatResult(result).c_str(), seconds * 1e3);
  const std::lock_guard hold(lock_);
  put_(object + "." + call + end.data());
}

}  // namespace vblur::host
