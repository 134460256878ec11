#include "host/jobs/FrameRangeText.h"

#include <charconv>
#include <cstdint>
#include <system_error>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

[[noreturn]] void RefuseRange(std::string_view text, const std::string& expected) {
  Refuse("frames", "expected " + expected + ", found " + Quoted(text));
}

// Reads numbers and separators from the front of a text.
class RangeScanner {
 public:
  explicit RangeScanner(std::string_view text) : text_(text), rest_(text) {}

  std::int32_t Number() {
    std::int32_t value = 0;
    const auto [stop, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (error == std::errc::result_out_of_range) RefuseRange(text_, "numbers from -2147483648 to 2147483647");
    if (error != std::errc{}) RefuseRange(text_, "a frame or a range such as 7, 1-48, 1-48x2 or -5-5");
    rest_.remove_prefix(static_cast<std::size_t>(stop - rest_.data()));
    return value;
  }

  bool Take(char mark) {
    if (!rest_.starts_with(mark)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool AtEnd() const { return rest_.empty(); }

 private:
  std::string_view text_;
  std::string_view rest_;
};

}  // namespace

FrameRange ParseFrameRange(std::string_view text) {
  RangeScanner scanner(text);
  FrameRange range;
  range.first = range.last = scanner.Number();
  if (scanner.Take('-')) {
    range.last = scanner.Number();
    if (scanner.Take('x')) range.step = scanner.Number();
  }
  if (!scanner.AtEnd()) RefuseRange(text, "a frame or a range such as 7, 1-48, 1-48x2 or -5-5");
  if (range.last < range.first) RefuseRange(text, "a last frame that is not before the first");
  if (range.step < 1) RefuseRange(text, "a step of at least 1");
  return range;
}

std::string FormatFrameRange(const FrameRange& range) {
  std::string text = std::to_string(range.first);
  if (range.last != range.first || range.step != 1) text += "-" + std::to_string(range.last);
  if (range.step != 1) text += "x" + std::to_string(range.step);
  return text;
}

}  // namespace vblur::host
