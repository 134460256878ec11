// Reads a resource script back, by the rules of the resource compiler for what scripts of this project hold.
#pragma once

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vblur::resources {

struct ScriptControl {
  std::string text;
  std::int32_t bitmap = 0;  // of a control whose text is a number
  std::int32_t id = 0;
  std::string windowClass;
  std::uint32_t style = 0;
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

struct ScriptDialog {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::uint32_t style = 0;
  std::int32_t fontPoints = 0;
  std::string font;
  std::vector<ScriptControl> controls;
};

struct Script {
  std::map<std::int32_t, std::string> strings;
  std::map<std::int32_t, ScriptDialog> dialogs;
  std::map<std::int32_t, std::string> bitmaps;  // names of files
};

class ScriptReader {
 public:
  explicit ScriptReader(std::string_view text) : text_(text) {}

  // Throws at what it does not expect.
  Script Read() {
    Script script;
    while (!AtEnd()) {
      if (std::isalpha(static_cast<unsigned char>(text_[at_])) != 0) {
        ReadStatement(script);
        continue;
      }
      const std::int32_t id = Number();
      const std::string kind = Word();
      if (kind == "BITMAP")
        Add(script.bitmaps, id, Text());
      else if (kind == "DIALOGEX")
        Add(script.dialogs, id, Dialog());
      else
        Refuse(kind);
    }
    return script;
  }

 private:
  [[noreturn]] void Refuse(const std::string& what) const {
    throw std::runtime_error("at " + std::to_string(at_) + ": " + what);
  }

  template <class Value>
  void Add(std::map<std::int32_t, Value>& map, std::int32_t id, Value value) const {
    if (!map.emplace(id, std::move(value)).second) Refuse("a second " + std::to_string(id));
  }

  // Skips blanks and comments.
  bool AtEnd() {
    while (at_ < text_.size()) {
      if (text_.substr(at_, 2) == "//")
        at_ = std::min(text_.find('\n', at_), text_.size());
      else if (std::isspace(static_cast<unsigned char>(text_[at_])) != 0)
        ++at_;
      else
        return false;
    }
    return true;
  }

  char Next() {
    if (AtEnd()) Refuse("the end");
    return text_[at_];
  }

  std::string Word() {
    Next();
    const std::size_t begin = at_;
    while (at_ < text_.size() && std::isalnum(static_cast<unsigned char>(text_[at_])) != 0)
      ++at_;
    return std::string(text_.substr(begin, at_ - begin));
  }

  void Expect(std::string_view word) {
    if (Word() != word) Refuse("not " + std::string(word));
  }

  void Comma() {
    if (Next() != ',') Refuse("no comma");
    ++at_;
  }

  std::int32_t Number() {
    const bool negative = Next() == '-';
    if (negative) ++at_;
    std::size_t length = 0;
    const std::string word = Word();
    const unsigned long number = std::stoul(word, &length, 0);
    if (length != word.size()) Refuse(word);
    return static_cast<std::int32_t>(negative ? -number : number);
  }

  std::int32_t NumberAfterComma() {
    Comma();
    return Number();
  }

  std::string Text() {
    if (Next() != '"') Refuse("no text");
    std::string text;
    while (++at_ < text_.size()) {
      const char letter = text_[at_];
      if (letter == '\n') break;
      if (letter == '"') {
        if (text_.substr(at_ + 1, 1) != "\"") {
          ++at_;
          return text;
        }
        ++at_;
        text += '"';
      } else if (letter == '\\') {
        ++at_;
        if (text_.substr(at_, 1) == "n")
          text += '\n';
        else if (text_.substr(at_, 1) == "\\")
          text += '\\';
        else
          Refuse("an unknown escape");
      } else {
        text += letter;
      }
    }
    Refuse("a text without an end");
  }

  void ReadStatement(Script& script) {
    const std::string word = Word();
    if (word == "LANGUAGE") {
      Number();
      NumberAfterComma();
      return;
    }
    if (word != "STRINGTABLE") Refuse(word);
    Expect("BEGIN");
    while (std::isdigit(static_cast<unsigned char>(Next())) != 0) {
      const std::int32_t id = Number();
      Comma();
      Add(script.strings, id, Text());
    }
    Expect("END");
  }

  ScriptDialog Dialog() {
    ScriptDialog dialog;
    if (Number() != 0 || NumberAfterComma() != 0) Refuse("a dialog away from its place");
    dialog.width = NumberAfterComma();
    dialog.height = NumberAfterComma();
    Expect("STYLE");
    dialog.style = static_cast<std::uint32_t>(Number());
    Expect("FONT");
    dialog.fontPoints = Number();
    Comma();
    dialog.font = Text();
    Expect("BEGIN");
    for (std::string word = Word(); word != "END"; word = Word()) {
      if (word != "CONTROL") Refuse(word);
      dialog.controls.push_back(Control());
    }
    return dialog;
  }

  ScriptControl Control() {
    ScriptControl control;
    if (Next() == '"')
      control.text = Text();
    else
      control.bitmap = Number();
    control.id = NumberAfterComma();
    Comma();
    control.windowClass = Text();
    control.style = static_cast<std::uint32_t>(NumberAfterComma());
    control.x = NumberAfterComma();
    control.y = NumberAfterComma();
    control.width = NumberAfterComma();
    control.height = NumberAfterComma();
    return control;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace vblur::resources
