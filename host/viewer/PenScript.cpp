#include "host/viewer/PenScript.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <set>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/base/StandardStream.h"
#include "host/base/TextFile.h"
#include "host/files/OutputFile.h"
#include "host/properties/PropertyText.h"

namespace vblur::host {

namespace {

using Words = std::vector<std::string_view>;

constexpr std::array<std::string_view, 6> kEvents{"move", "down", "up", "time", "set", "snap"};
constexpr std::string_view kSpace = " \t\r";

Words WordsOf(std::string_view line) {
  Words words;
  for (std::size_t at = line.find_first_not_of(kSpace); at != std::string_view::npos;
       at = line.find_first_not_of(kSpace)) {
    line.remove_prefix(at);
    words.push_back(line.substr(0, line.find_first_of(kSpace)));
    line.remove_prefix(words.back().size());
  }
  return words;
}

// From the start of one word to the end of the last.
std::string_view TextFrom(const Words& words, std::size_t first) {
  if (first >= words.size()) return {};
  return {words[first].data(),
          static_cast<std::size_t>(words.back().data() + words.back().size() - words[first].data())};
}

class ScriptReader {
 public:
  ScriptReader(std::string name, std::filesystem::path folder) : name_(std::move(name)), folder_(std::move(folder)) {}

  void Read(std::string_view line) {
    ++line_;
    const Words words = WordsOf(line.substr(0, line.find('#')));
    if (words.empty()) return;
    PenEvent event;
    event.place = Place();
    const auto found = std::ranges::find_if(kEvents, [&](auto name) { return EqualIgnoringCase(name, words[0]); });
    if (IsPageEvent(line) && (found == kEvents.end() || IsTypedIntoAControl(words))) {
      event.kind = PenEvent::Kind::Page;
      event.page = ReadPageEvent(line, Place());
      events_.push_back(std::move(event));
      return;
    }
    if (found == kEvents.end()) {
      Refuse("expected move, down, up, time, set, snap or an event of a property page, found " + Quoted(words[0]));
    }
    event.kind = static_cast<PenEvent::Kind>(found - kEvents.begin());
    switch (event.kind) {
      case PenEvent::Kind::Move:
      case PenEvent::Kind::Down:
      case PenEvent::Kind::Up: ReadPen(words, event); break;
      case PenEvent::Kind::Time: ReadTime(words, event); break;
      case PenEvent::Kind::Set: ReadSet(words, event); break;
      case PenEvent::Kind::Snap: ReadSnap(words, event); break;
      case PenEvent::Kind::Page: break;
    }
    events_.push_back(std::move(event));
  }

  std::vector<PenEvent> Take() {
    if (pressed_ != 0) Refuse("expected an up before the end, the pen is down");
    return std::move(events_);
  }

 private:
  // A name in quotes is that of a control.
  static bool IsTypedIntoAControl(const Words& words) {
    return words.size() > 1 && EqualIgnoringCase(words[0], "set") && words[1].front() == '"';
  }

  std::string Place() const { return name_ + ":" + std::to_string(line_); }

  [[noreturn]] void Refuse(const std::string& problem) const { host::Refuse(Place(), problem); }

  // The message quotes the whole line.
  void RequireWords(const Words& words, std::size_t least, std::size_t most, const std::string& form) const {
    if (words.size() >= least && words.size() <= most) return;
    Refuse("expected \"" + form + "\", found " + Quoted(TextFrom(words, 0)));
  }

  double ReadNumber(std::string_view word) const {
    double value = 0.0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error != std::errc{} || stop != end || !std::isfinite(value))
      Refuse("expected a number, found " + Quoted(word));
    return value;
  }

  void ReadPen(const Words& words, PenEvent& event) {
    const bool isDown = event.kind == PenEvent::Kind::Down;
    const std::string name(kEvents[static_cast<std::size_t>(event.kind)]);
    RequireWords(words, 3, isDown ? 4 : 3, name + " X Y" + (isDown ? " [BUTTON]" : ""));
    event.point = {ReadNumber(words[1]), ReadNumber(words[2])};
    if (isDown && pressed_ != 0) Refuse("expected an up first, the pen is down");
    if (event.kind == PenEvent::Kind::Up && pressed_ == 0) Refuse("expected a down before, the pen is not down");
    if (isDown) pressed_ = words.size() == 4 ? ReadButton(words[3]) : 1;
    event.button = pressed_;
    if (event.kind == PenEvent::Kind::Up) pressed_ = 0;
  }

  std::int32_t ReadButton(std::string_view word) const {
    constexpr std::array<std::string_view, 3> kButtons{"1", "2", "3"};
    const auto found = std::ranges::find(kButtons, word);
    if (found == kButtons.end()) Refuse("expected the button 1, 2 or 3, found " + Quoted(word));
    return static_cast<std::int32_t>(found - kButtons.begin()) + 1;
  }

  void ReadTime(const Words& words, PenEvent& event) const {
    RequireWords(words, 2, 2, "time T");
    event.time = ReadNumber(words[1]);
  }

  // Names contain spaces: takes the longest that matches.
  void ReadSet(const Words& words, PenEvent& event) const {
    constexpr std::size_t kLongestName = 6;
    RequireWords(words, 3, std::numeric_limits<std::size_t>::max(), "set NAME VALUE");
    for (std::size_t value = std::min(words.size() - 1, kLongestName + 1); value >= 2; --value) {
      const std::string_view name(words[1].data(), static_cast<std::size_t>(words[value - 1].data() +
                                                                            words[value - 1].size() - words[1].data()));
      const Property* const property = FindPropertyWritten(name);
      if (property == nullptr) continue;
      event.property = property->guid;
      try {
        event.setting = ParseSetting(*property, TextFrom(words, value));
      } catch (const Failure& failure) {
        Refuse(failure.what());
      }
      return;
    }
    Refuse(UnknownProperty(words[1]));
  }

  void ReadSnap(const Words& words, PenEvent& event) {
    RequireWords(words, 2, std::numeric_limits<std::size_t>::max(), "snap FILE");
    const std::string_view name = TextFrom(words, 1);
    if (name.find('\0') != std::string_view::npos) Refuse(Quoted(name) + ": a file name holds no NUL character");
    const std::filesystem::path file(name);
    event.file = (folder_ / file).lexically_normal();
    try {
      OutputFormatOf(event.file);
    } catch (const Failure& failure) {
      Refuse(failure.what());
    }
    if (!snapped_.insert(event.file).second)
      Refuse("expected another name, " + Quoted(file.string()) + " is snapped above");
  }

  std::string name_;
  std::filesystem::path folder_;
  std::vector<PenEvent> events_;
  std::set<std::filesystem::path> snapped_;
  std::int32_t line_ = 0;
  std::int32_t pressed_ = 0;  // the button that is down; 0 for none
};

}  // namespace

std::vector<PenEvent> ParsePenScript(std::string_view text, const std::string& name,
                                     const std::filesystem::path& folder) {
  ScriptReader reader(name, folder);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    reader.Read(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return reader.Take();
}

std::vector<PenEvent> ReadPenScript(const std::filesystem::path& path) {
  return ParsePenScript(ReadTextFile(path, "pen script"), InputName(path), path.parent_path());
}

}  // namespace vblur::host
