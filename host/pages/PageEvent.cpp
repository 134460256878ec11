#include "host/pages/PageEvent.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/base/StandardStream.h"
#include "host/base/TextFile.h"
#include "host/properties/PropertyText.h"

namespace vblur::host {

namespace {

constexpr std::array<std::string_view, 12> kVerbs{"show", "set",   "scrub", "choose", "tick", "untick",
                                                  "pick", "press", "time",  "undo",   "redo", "print"};
constexpr std::string_view kSpace = " \t\r";

struct Word {
  std::string_view text;
  bool isQuoted = false;
};
using Words = std::vector<Word>;

class LineReader {
 public:
  LineReader(std::string_view line, const std::string& place) : place_(place) { Split(line); }

  PageEvent Read() const {
    PageEvent event;
    event.place = place_;
    const auto found = std::ranges::find_if(
        kVerbs, [&](auto verb) { return !words_.empty() && EqualIgnoringCase(verb, words_[0].text); });
    if (found == kVerbs.end()) {
      Refuse("expected show, set, scrub, choose, tick, untick, pick, press, time, undo, redo or print, found " +
             Quoted(words_.empty() ? "" : words_[0].text));
    }
    event.kind = static_cast<PageEvent::Kind>(found - kVerbs.begin());
    switch (event.kind) {
      case PageEvent::Kind::Show: event.name = OnlyName("show PAGE"); break;
      case PageEvent::Kind::Tick: event.name = OnlyName("tick BOX"); break;
      case PageEvent::Kind::Untick: event.name = OnlyName("untick BOX"); break;
      case PageEvent::Kind::Press: event.name = OnlyName("press BUTTON"); break;
      case PageEvent::Kind::Set: ReadNameAndText(event, "set CONTROL NUMBER"); break;
      case PageEvent::Kind::Choose: ReadNameAndText(event, "choose LIST ENTRY"); break;
      case PageEvent::Kind::Scrub: ReadScrub(event); break;
      case PageEvent::Kind::Pick: ReadPick(event); break;
      case PageEvent::Kind::Time: ReadTime(event); break;
      case PageEvent::Kind::Undo:
      case PageEvent::Kind::Redo:
      case PageEvent::Kind::Print: RequireCount(1, 1, std::string(*found)); break;
    }
    return event;
  }

 private:
  [[noreturn]] void Refuse(const std::string& problem) const { host::Refuse(place_, problem); }

  void Split(std::string_view line) {
    for (std::size_t at = line.find_first_not_of(kSpace); at != std::string_view::npos;
         at = line.find_first_not_of(kSpace)) {
      line.remove_prefix(at);
      if (line[0] == '#') return;
      if (line[0] == '"') {
        const std::size_t end = line.find('"', 1);
        if (end == std::string_view::npos) Refuse("expected a closing quote, found " + Quoted(line));
        words_.push_back({line.substr(1, end - 1), true});
        line.remove_prefix(end + 1);
      } else {
        const std::size_t end = std::min(line.find_first_of(" \t\r#\""), line.size());
        words_.push_back({line.substr(0, end), false});
        line.remove_prefix(end);
      }
    }
  }

  std::string Joined(std::size_t from, std::size_t to) const {
    std::string text;
    for (std::size_t i = from; i < to; ++i)
      text.append(i == from ? "" : " ").append(words_[i].text);
    return text;
  }

  void RequireCount(std::size_t least, std::size_t most, const std::string& form) const {
    if (words_.size() >= least && words_.size() <= most) return;
    Refuse("expected \"" + form + "\", found " + Quoted(Joined(0, words_.size())));
  }

  std::string OnlyName(const std::string& form) const {
    RequireCount(2, words_.size(), form);
    return Joined(1, words_.size());
  }

  // The index of the first word behind the name: quoted, or the longest that is a property's.
  std::size_t EndOfName() const {
    if (words_[1].isQuoted) return 2;
    constexpr std::size_t kLongestName = 6;  // words
    for (std::size_t end = std::min(words_.size() - 1, kLongestName + 1); end > 2; --end) {
      if (FindPropertyWritten(Joined(1, end)) != nullptr) return end;
    }
    return 2;
  }

  void ReadNameAndText(PageEvent& event, const std::string& form) const {
    RequireCount(3, words_.size(), form);
    const std::size_t end = EndOfName();
    event.name = Joined(1, end);
    event.text = Joined(end, words_.size());
  }

  template <class Number>
  Number ReadNumber(std::string_view word, const char* what) const {
    std::string_view digits = word;
    if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-') digits.remove_prefix(1);
    Number value{};
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc{} || stop != end || !std::isfinite(static_cast<double>(value))) {
      Refuse(std::string("expected ") + what + ", found " + Quoted(word));
    }
    return value;
  }

  void ReadScrub(PageEvent& event) const {
    RequireCount(3, words_.size(), "scrub CONTROL [fine|coarse] STEPS...");
    std::size_t at = EndOfName();
    event.name = Joined(1, at);
    if (at < words_.size() && EqualIgnoringCase(words_[at].text, "fine")) event.step = NumberStep::Fine;
    if (at < words_.size() && EqualIgnoringCase(words_[at].text, "coarse")) event.step = NumberStep::Coarse;
    if (event.step != NumberStep::Normal) ++at;
    if (at == words_.size()) Refuse("expected a number of steps behind " + Quoted(words_.back().text));
    for (; at < words_.size(); ++at)
      event.steps.push_back(ReadNumber<std::int32_t>(words_[at].text, "a whole number of steps"));
  }

  void ReadPick(PageEvent& event) const {
    RequireCount(2, words_.size(), "pick R,G,B");
    std::string text = Joined(1, words_.size());
    std::ranges::replace(text, ',', ' ');
    const Words parts = LineReader(text, place_).words_;
    if (parts.size() != event.colour.size()) {
      Refuse("expected three numbers R,G,B, found " + Quoted(Joined(1, words_.size())));
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
      event.colour[i] = ReadNumber<std::int32_t>(parts[i].text, "a whole number from 0 to 255");
      if (event.colour[i] < 0 || event.colour[i] > 255) {
        Refuse("expected a whole number from 0 to 255, found " + Quoted(parts[i].text));
      }
    }
  }

  void ReadTime(PageEvent& event) const {
    RequireCount(2, 2, "time T");
    event.time = ReadNumber<double>(words_[1].text, "a number");
  }

  std::string place_;
  Words words_;
};

std::string_view FirstWord(std::string_view line) {
  const std::size_t at = line.find_first_not_of(kSpace);
  if (at == std::string_view::npos) return {};
  line.remove_prefix(at);
  return line.substr(0, line.find_first_of(" \t\r#\""));
}

}  // namespace

bool IsPageEvent(std::string_view line) {
  return std::ranges::any_of(kVerbs, [word = FirstWord(line)](auto verb) { return EqualIgnoringCase(verb, word); });
}

PageEvent ReadPageEvent(std::string_view line, const std::string& place) {
  return LineReader(line, place).Read();
}

std::vector<PageEvent> ParsePageScript(std::string_view text, const std::string& name) {
  std::vector<PageEvent> events;
  for (std::int32_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    const std::size_t first = line.find_first_not_of(kSpace);
    if (first != std::string_view::npos && line[first] != '#')
      events.push_back(ReadPageEvent(line, name + ":" + std::to_string(number)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return events;
}

std::vector<PageEvent> ReadPageScript(const std::filesystem::path& path) {
  return ParsePageScript(ReadTextFile(path, "page script"), InputName(path));
}

}  // namespace vblur::host
