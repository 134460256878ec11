#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "host/jobs/FramePattern.h"
#include "host/jobs/FrameRangeText.h"
#include "host/jobs/JobCheck.h"
#include "tests/fuzz/FileChecks.h"
#include "tests/fuzz/FileFuzz.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::test {

namespace {

using host::FrameList;
using host::FramePattern;

constexpr std::array<std::int32_t, 7> kFrames{std::numeric_limits<std::int32_t>::min(), -1000, -5, 0, 7, 123456,
                                              std::numeric_limits<std::int32_t>::max()};

void CheckNames(const FramePattern& pattern) {
  std::set<std::string> names;
  for (const std::int32_t frame : kFrames) {
    const std::string name = pattern.FileName(frame);
    Demand(name.find('\0') == std::string::npos, "a name with a NUL character");
    names.insert(name);
    // Names that are long with a long number are refused as patterns of their own.
    Accepts([&] {
      const FramePattern escaped(FramePattern::Escaped(name));
      Demand(!escaped.HasNumber() && escaped.FileName(1) == name, "an escaped name is another one: " + name);
    });
  }
  Demand(names.size() == (pattern.HasNumber() ? kFrames.size() : 1), "frames share a name: " + pattern.Text());
}

// The frames of files that the pattern itself has named.
void CheckFiles(const FramePattern& pattern) {
  constexpr std::size_t kLongestName = 255;
  static const host::ScratchFolder scratch;
  const auto folder = scratch.path() / "frames";
  std::vector<std::int32_t> made;
  std::filesystem::create_directory(folder);
  for (const std::int32_t frame : kFrames) {
    const std::string name = pattern.FileName(frame);
    if (name.find('/') != std::string::npos || name.size() > kLongestName) break;
    std::ofstream(folder / name) << 'x';
    made.push_back(frame);
  }
  if (made.size() == kFrames.size()) {
    std::ofstream(folder / "x") << 'x';
    Demand(pattern.FramesOnDisk(folder) == made, "other frames are on the disk than were written: " + pattern.Text());
  }
  std::filesystem::remove_all(folder);
}

bool CheckPattern(const std::string& text) {
  return Accepts([&] {
    const FramePattern pattern(text);
    CheckNames(pattern);
    if (pattern.HasNumber()) CheckFiles(pattern);
  });
}

// Each frame once, and all of them within the ends that the list tells.
void CheckList(const FrameList& list) {
  constexpr std::int64_t kFew = 2000;
  const std::int64_t count = list.Count();
  Demand(count >= 1, "a list without a frame");
  std::set<std::int32_t> seen;
  const std::int64_t step = std::max<std::int64_t>(1, count / kFew);
  for (std::int64_t index = 0; index < count; index += step) {
    const std::int32_t frame = list.FrameAt(index);
    Demand(list.Contains(frame), "a list does not hold its own frame");
    Demand(frame >= list.First() && frame <= list.Last(), "a frame beyond the ends of its list");
    Demand(seen.insert(frame).second, "a frame is there twice: " + std::to_string(frame));
  }
}

bool AreSameFrames(const FrameList& a, const FrameList& b) {
  constexpr std::int64_t kFew = 2000;
  if (a.Count() != b.Count()) return false;
  const std::int64_t step = std::max<std::int64_t>(1, a.Count() / kFew);
  for (std::int64_t index = 0; index < a.Count(); index += step) {
    if (a.FrameAt(index) != b.FrameAt(index)) return false;
  }
  return true;
}

void CheckFormatted(const FrameList& list) {
  const std::string text = host::FormatFrames(list);
  const FrameList again = host::ParseFrames(text);
  Demand(AreSameFrames(list, again), "frames are others after their text: " + text);
  Demand(host::FormatFrames(again) == text, "a list's text is another one when it is written again: " + text);
}

bool CheckFrames(std::string_view text) {
  const std::vector<std::int32_t> existing{-12, -3, 0, 1, 2, 3, 7, 8, 1000};
  bool isOpen = false;
  FrameList list;
  const bool isAccepted = Accepts([&] {
    const auto choice = host::FrameChoice::Parse(text);
    isOpen = choice.IsOpen();
    list = choice.Among(existing);
  });
  if (isAccepted) {
    CheckList(list);
    CheckFormatted(list);
  }
  const bool isClosedList = Accepts([&] { list = host::ParseFrames(text); });
  Demand(isClosedList == (isAccepted && !isOpen), "a list of its own is accepted otherwise than a choice");
  host::FrameRange range;
  if (!Accepts([&] { range = host::ParseFrameRange(text); })) return isAccepted;
  Demand(list == FrameList(range), "a range is another one as a list");
  Demand(host::ParseFrameRange(host::FormatFrameRange(range)) == range, "a range is another one after its text");
  return isAccepted;
}

}  // namespace

bool CheckFrameText(std::string_view bytes) {
  const std::size_t end = std::min(bytes.find('\n'), bytes.size());
  const bool isPattern = CheckPattern(std::string(bytes.substr(0, end)));
  const bool isList = CheckFrames(bytes.substr(std::min(end + 1, bytes.size())));
  return isPattern && isList;
}

}  // namespace vblur::test
