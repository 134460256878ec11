#include "host/base/ConsoleInput_windows.h"

#include <array>
#include <mutex>
#include <string>

#include "host/base/Utf8.h"

#include <windows.h>

namespace vblur::host {

namespace {

constexpr char16_t kControlZ = 0x1A;

// Where the end is typed; the text's size without one.
std::size_t EndOf(const std::u16string& text, bool beginsLine) {
  if (beginsLine && text.starts_with(kControlZ)) return 0;
  const std::size_t newLine = text.find(std::u16string{u'\n', kControlZ});
  return newLine == std::u16string::npos ? text.size() : newLine + 1;
}

class TypedText {
 public:
  std::int64_t Read(HANDLE console, std::span<char> bytes) {
    const std::lock_guard lock(reading_);
    while (left_.empty() && !isEnd_) {
      if (!Take(console)) return -1;
    }
    if (left_.empty()) {
      isEnd_ = false;
      return 0;
    }
    const std::size_t count = left_.copy(bytes.data(), bytes.size());
    left_.erase(0, count);
    return static_cast<std::int64_t>(count);
  }

 private:
  bool Take(HANDLE console) {
    std::array<wchar_t, 4096> units{};
    DWORD count = 0;
    SetLastError(ERROR_SUCCESS);
    if (ReadConsoleW(console, units.data(), static_cast<DWORD>(units.size()), &count, nullptr) == 0) return false;
    // Ctrl-C.
    if (count == 0 && GetLastError() == ERROR_OPERATION_ABORTED) return false;
    std::u16string text = half_;
    text.append(units.begin(), units.begin() + count);
    const std::size_t end = EndOf(text, beginsLine_);
    isEnd_ = end < text.size() || count == 0;
    text.resize(end);
    beginsLine_ = isEnd_ || text.ends_with(u'\n');
    // The other half of the character is in the next part.
    half_.clear();
    if (!isEnd_ && !text.empty() && (text.back() & 0xFC00) == 0xD800) {
      half_.assign(1, text.back());
      text.pop_back();
    }
    left_ = Utf8Of(text);
    return true;
  }

  std::mutex reading_;
  std::string left_;
  std::u16string half_;
  bool beginsLine_ = true;
  bool isEnd_ = false;
};

}  // namespace

std::int64_t ReadTypedText(void* console, std::span<char> bytes) {
  static TypedText typed;
  return typed.Read(console, bytes);
}

}  // namespace vblur::host
