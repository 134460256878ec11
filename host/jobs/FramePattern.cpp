#include "host/jobs/FramePattern.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <optional>
#include <system_error>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/base/NameMatch.h"
#include "host/base/RealPaths.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"

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
  if (!text.starts_with('%')) return std::nullopt;
  std::size_t at = 1;
  if (at < text.size() && text[at] == '0') {
    for (++at; at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0; ++at) {
      number.width = std::min(number.width * 10 + (text[at] - '0'), kWidest + 1);
    }
    if (number.width == 0) return std::nullopt;
  }
  if (at >= text.size() || text[at] != 'd') return std::nullopt;
  number.length = at + 1;
  return number;
}

// How many # or @ at this place stand for a number: a run of two or more, or a single one between dots or the like, as
// in shot.#.exr.
std::size_t CountMarks(std::string_view text, std::size_t at) {
  const char mark = text[at];
  if (mark != '#' && mark != '@') return 0;
  const std::size_t count = std::min(text.find_first_not_of(mark, at), text.size()) - at;
  if (count > 1) return count;
  const bool beginsPart = at > 0 && std::string_view("._-").find(text[at - 1]) != std::string_view::npos;
  return beginsPart && text.substr(at + 1).starts_with('.') ? 1 : 0;
}

bool IsEscape(std::string_view text) {
  return text.starts_with("%%") || text.starts_with("%#") || text.starts_with("%@");
}

}  // namespace

FramePattern::FramePattern(std::string pattern) : pattern_(std::move(pattern)) {
  const std::string_view text = pattern_;
  if (text.find('\0') != std::string_view::npos) Refuse(Quoted(pattern_), "a file name holds no NUL character");
  for (std::size_t at = 0; at < text.size();) {
    std::string& literal = HasNumber() ? tail_ : head_;
    const std::string_view rest = text.substr(at);
    if (IsEscape(rest)) {
      literal += rest[1];
      at += 2;
    } else if (const auto number = ReadPercentNumber(rest)) {
      SetWidth(number->width);
      at += number->length;
    } else if (const std::size_t marks = CountMarks(text, at); marks > 0) {
      SetWidth(static_cast<int>(std::min<std::size_t>(marks, kWidest + 1)));
      at += marks;
    } else {
      literal += rest[0];
      ++at;
    }
  }
  CheckLengths();
}

void FramePattern::CheckLengths() const {
  const std::string name = FileName(0);
  const auto check = [&](std::string_view text, const char* kind, std::size_t most) {
    if (LengthOfName(text) <= most) return;
    Refuse(Quoted(pattern_), "a " + std::string(kind) + " of more than " + std::to_string(most) + " " +
                                 std::string(kNameLimits.unit) + ", which no file can have");
  };
  for (std::size_t at = 0; at < name.size();) {
    const std::size_t end = std::min(name.find_first_of(kSeparators, at), name.size());
    check(std::string_view(name).substr(at, end - at), "name", kNameLimits.mostOfPart);
    at = end + 1;
  }
  check(name, "path", kNameLimits.mostOfPath);
}

void FramePattern::SetWidth(int width) {
  if (HasNumber()) Refuse(Quoted(pattern_), "expected one frame number, found two");
  if (width > kWidest) {
    Refuse(Quoted(pattern_), "expected a frame number of at most 32 digits");
  }
  width_ = width;
}

std::string FramePattern::Advice(std::string_view fileName) {
  for (std::size_t at = fileName.find('%'); at != std::string_view::npos; at = fileName.find('%', at + 1)) {
    const std::size_t end = std::min(fileName.find_first_not_of("0123456789", at + 1), fileName.size());
    const std::string_view digits = fileName.substr(at + 1, end - at - 1);
    if (digits.empty() || digits.front() == '0' || !fileName.substr(end).starts_with('d')) continue;
    std::string advice = "; %";
    advice.append(digits).append("d is no frame number, expected %0").append(digits).append("d");
    return advice;
  }
  return {};
}

std::string FramePattern::Escaped(std::string_view fileName) {
  std::string pattern;
  for (std::size_t at = 0; at < fileName.size();) {
    const std::size_t marks = CountMarks(fileName, at);
    for (std::size_t i = 0; i < std::max<std::size_t>(marks, 1); ++i, ++at) {
      if (marks > 0 || fileName[at] == '%') pattern += '%';
      pattern += fileName[at];
    }
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

std::optional<std::int32_t> FramePattern::FrameOf(const std::string& fileName) const {
  if (fileName.size() <= head_.size() + tail_.size() || !fileName.starts_with(head_)) return std::nullopt;
  const char* const end = fileName.data() + fileName.size() - tail_.size();
  std::int32_t frame = 0;
  const auto [stop, wrong] = std::from_chars(fileName.data() + head_.size(), end, frame);
  if (wrong != std::errc{} || stop != end || FileName(frame) != fileName) return std::nullopt;
  return frame;
}

std::vector<std::int32_t> FramePattern::FramesOnDisk(const std::filesystem::path& folder) const {
  // The number may stand in the name of a folder.
  const std::size_t start = head_.find_last_of(kSeparators) + 1;
  const std::size_t end = std::min(tail_.find_first_of(kSeparators), tail_.size());
  const auto asCompared = [](const std::string& name) { return Utf8Of(InOneCase(PathOf(name))); };
  const std::string head = asCompared(head_.substr(start));
  const std::string tail = asCompared(tail_.substr(0, end));
  const std::filesystem::path inFolder = folder / PathOf(head_.substr(0, start));
  std::vector<std::int32_t> frames;
  for (const std::filesystem::path& entry : EntriesOf(inFolder.empty() ? "." : inFolder)) {
    const std::string name = Utf8Of(InOneCase(entry));
    if (name.size() <= head.size() + tail.size() || !name.starts_with(head) || !name.ends_with(tail)) continue;
    const std::string_view digits(name.data() + head.size(), name.size() - head.size() - tail.size());
    std::int32_t frame = 0;
    const auto [stop, wrong] = std::from_chars(digits.data(), digits.data() + digits.size(), frame);
    if (wrong != std::errc{} || stop != digits.data() + digits.size()) continue;
    // The number has the pattern's width, and the file exists.
    const std::string file = FileName(frame);
    if (asCompared(file.substr(start)).compare(0, name.size(), name) != 0) continue;
    std::error_code ignored;
    if (std::filesystem::is_regular_file(ExtendedPath(folder / PathOf(file)), ignored)) frames.push_back(frame);
  }
  std::ranges::sort(frames);
  return frames;
}

}  // namespace vblur::host
