#include "host/jobs/FramePattern.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <optional>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

constexpr int kWidest = 32;

struct Number {
  int width = 0;
  std::size_t length = 0;  // in characters of the pattern
};

// The %d or %0Nd at the beginning of the text.
std::optional<Number> ReadPercentNumber(std::string_view text) {
  Number number;
  std::size_t at = 1;
  if (at < text.size() && text[at] == '0') {
    for (++at; at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0; ++at) {
      number.width = number.width * 10 + (text[at] - '0');
      if (number.width > kWidest) return std::nullopt;
    }
    if (number.width == 0) return std::nullopt;
  }
  if (at >= text.size() || text[at] != 'd') return std::nullopt;
  number.length = at + 1;
  return number;
}

std::size_t CountHashes(std::string_view text) {
  return std::min(text.find_first_not_of('#'), text.size());
}

}  // namespace

FramePattern::FramePattern(std::string pattern) : pattern_(std::move(pattern)) {
  const std::string_view text = pattern_;
  for (std::size_t at = 0; at < text.size();) {
    std::string& literal = HasNumber() ? tail_ : head_;
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("%%") || rest.starts_with("%#")) {
      literal += rest[1];
      at += 2;
    } else if (rest[0] == '%') {
      const auto number = ReadPercentNumber(rest);
      if (!number) {
        Refuse(Quoted(pattern_), "expected %d, %04d or the like behind a %, or %% for a percent sign");
      }
      SetWidth(number->width);
      at += number->length;
    } else if (const std::size_t hashes = CountHashes(rest); hashes > 1) {
      SetWidth(static_cast<int>(std::min<std::size_t>(hashes, kWidest + 1)));
      at += hashes;
    } else {
      literal += rest[0];
      ++at;
    }
  }
}

void FramePattern::SetWidth(int width) {
  if (HasNumber()) Refuse(Quoted(pattern_), "expected one frame number, found two");
  if (width > kWidest) {
    Refuse(Quoted(pattern_), "expected a frame number of at most 32 digits");
  }
  width_ = width;
}

std::string FramePattern::Escaped(std::string_view fileName) {
  std::string pattern;
  for (std::size_t at = 0; at < fileName.size(); ++at) {
    const bool inRun =
        fileName[at] == '#' && ((at > 0 && fileName[at - 1] == '#') || fileName.substr(at + 1, 1) == "#");
    if (fileName[at] == '%' || inRun) pattern += '%';
    pattern += fileName[at];
  }
  return pattern;
}

std::string FramePattern::FileName(std::int32_t frame) const {
  if (!HasNumber()) return head_;
  const std::int64_t wide = frame;
  std::string number = wide < 0 ? "-" : "";
  const std::string digits = std::to_string(wide < 0 ? -wide : wide);
  const std::size_t length = number.size() + digits.size();
  if (length < static_cast<std::size_t>(width_)) number.append(static_cast<std::size_t>(width_) - length, '0');
  return head_ + number + digits + tail_;
}

}  // namespace vblur::host
