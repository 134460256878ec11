#include "host/jobs/FrameRangeText.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <unordered_set>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/jobs/JobCheck.h"

namespace vblur::host {

namespace {

constexpr const char* kRange = "a frame or a range such as 7, 1-48, 1-48x2 or -5-5";
constexpr const char* kList = "frames such as 7, 1-48, 1-48x2, 1,3,5-9, 10- or all";

[[noreturn]] void RefuseRange(std::string_view text, const std::string& expected) {
  Refuse("frames", "expected " + expected + ", found " + Quoted(text));
}

// Reads numbers and separators from the front of a text.
class RangeScanner {
 public:
  RangeScanner(std::string_view text, const char* expected) : text_(text), rest_(text), expected_(expected) {}

  std::int32_t Number() {
    std::int32_t value = 0;
    const auto [stop, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (error == std::errc::result_out_of_range) RefuseRange(text_, "numbers from -2147483648 to 2147483647");
    if (error != std::errc{}) RefuseRange(text_, expected_);
    rest_.remove_prefix(static_cast<std::size_t>(stop - rest_.data()));
    return value;
  }

  bool Take(std::string_view mark) {
    if (!rest_.starts_with(mark)) return false;
    rest_.remove_prefix(mark.size());
    return true;
  }

  bool AtEnd() const { return rest_.empty(); }
  bool AtEndOfPart() const { return rest_.empty() || rest_.starts_with(','); }
  bool AtStep() const { return rest_.starts_with('x'); }

 private:
  std::string_view text_;
  std::string_view rest_;
  const char* expected_;
};

void CheckOrder(std::string_view text, const FrameRange& range) {
  if (range.last < range.first) RefuseRange(text, "a last frame that is not before the first");
}

void ReadStep(RangeScanner& scanner, std::string_view text, FrameRange& range) {
  if (scanner.Take("x")) range.step = scanner.Number();
  if (range.step < 1) RefuseRange(text, "a step of at least 1");
}

bool Overlap(std::vector<FrameRange> ranges) {
  std::ranges::sort(ranges, {}, &FrameRange::first);
  return std::ranges::adjacent_find(
             ranges, [](const FrameRange& a, const FrameRange& b) { return b.first <= a.last; }) != ranges.end();
}

// Each frame where it stands first.
FrameList WithoutRepeats(const FrameList& frames) {
  CheckFrameCount(frames.Count());
  std::unordered_set<std::int32_t> seen;
  std::vector<std::int32_t> kept;
  for (std::int64_t i = 0; i < frames.Count(); ++i) {
    if (seen.insert(frames.FrameAt(i)).second) kept.push_back(frames.FrameAt(i));
  }
  return FrameList::Of(kept);
}

}  // namespace

FrameRange ParseFrameRange(std::string_view text) {
  RangeScanner scanner(text, kRange);
  FrameRange range;
  range.first = range.last = scanner.Number();
  if (scanner.Take("-")) {
    range.last = scanner.Number();
    ReadStep(scanner, text, range);
  }
  if (!scanner.AtEnd()) RefuseRange(text, kRange);
  CheckOrder(text, range);
  return range;
}

std::string FormatFrameRange(const FrameRange& range) {
  std::string text = std::to_string(range.first);
  if (range.last != range.first || range.step != 1) text += "-" + std::to_string(range.last);
  if (range.step != 1) text += "x" + std::to_string(range.step);
  return text;
}

std::string FormatFrames(const FrameList& frames) {
  std::string text;
  for (const FrameRange& range : frames.Ranges())
    text += (text.empty() ? "" : ",") + FormatFrameRange(range);
  return text;
}

FrameChoice FrameChoice::Parse(std::string_view text) {
  FrameChoice choice;
  RangeScanner scanner(text, kList);
  do {
    Part part;
    part.isAll = scanner.Take("all");
    if (!part.isAll) {
      part.range.first = part.range.last = scanner.Number();
      if (scanner.Take("-")) {
        part.isOpen = scanner.AtEndOfPart() || scanner.AtStep();
        if (!part.isOpen) part.range.last = scanner.Number();
        ReadStep(scanner, text, part.range);
      }
      CheckOrder(text, part.range);
    }
    choice.parts_.push_back(part);
  } while (scanner.Take(","));
  if (!scanner.AtEnd()) RefuseRange(text, kList);
  return choice;
}

bool FrameChoice::IsOpen() const {
  return std::ranges::any_of(parts_, [](const Part& part) { return part.isAll || part.isOpen; });
}

FrameList FrameChoice::Among(const std::vector<std::int32_t>& existing) const {
  std::vector<FrameRange> ranges;
  for (const Part& part : parts_) {
    if (part.isAll) {
      if (existing.empty()) Refuse("frames", "no frame exists, expected some for all of them");
      const FrameList all = FrameList::Of(existing);
      ranges.insert(ranges.end(), all.Ranges().begin(), all.Ranges().end());
      continue;
    }
    FrameRange range = part.range;
    if (part.isOpen) {
      if (existing.empty() || existing.back() < range.first) {
        Refuse("frames", "no frame from " + std::to_string(range.first) + " on exists");
      }
      range.last = existing.back();
    }
    ranges.push_back(range);
  }
  const bool repeats = Overlap(ranges);
  FrameList frames(std::move(ranges));
  return repeats ? WithoutRepeats(frames) : frames;
}

FrameList ParseFrames(std::string_view text) {
  const FrameChoice choice = FrameChoice::Parse(text);
  if (choice.IsOpen()) RefuseRange(text, "frames that do not depend on files, such as 7, 1-48, 1-48x2 or 1,3,5-9");
  return choice.Among({});
}

}  // namespace vblur::host
