#include "host/base/JsonText.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "host/base/Failure.h"
#include "host/base/JsonPlace.h"
#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

using nlohmann::json;

// Builds the document from the parser's events.
class DocumentBuilder : public nlohmann::json_sax<json> {
 public:
  explicit DocumentBuilder(std::string_view text) : text_(text) {}

  json TakeDocument() { return std::move(document_); }

  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(number_integer_t value) override { return Add(value); }
  bool number_unsigned(number_unsigned_t value) override { return Add(value); }
  bool number_float(number_float_t value, const string_t& /*text*/) override { return Add(value); }
  bool string(string_t& value) override { return Add(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return Open(json::object()); }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t /*size*/) override { return Open(json::array()); }
  bool end_array() override { return Close(); }

  bool key(string_t& name) override {
    if (open_.back()->contains(name)) Fail(Path(name) + ": this field is there twice, expected it once");
    field_ = std::move(name);
    return true;
  }

  bool parse_error(std::size_t position, const std::string& lastToken, const json::exception& error) override {
    const std::string_view before = text_.substr(0, TokenStart(position));
    const auto line = std::ranges::count(before, '\n') + 1;
    const std::size_t column = before.size() - (before.find_last_of('\n') + 1) + 1;
    const std::string place = "line " + std::to_string(line) + ", column " + std::to_string(column);
    constexpr int kNumberTooLarge = 406;
    if (error.id == kNumberTooLarge) {
      Fail(place + ": expected a number that a 64-bit float holds, found " + Quoted(lastToken));
    }
    const std::string reason = Reason(error.what());
    Fail("not JSON (" + place + ": " + reason + ")" + EscapeHint(reason));
  }

 private:
  [[noreturn]] static void Fail(const std::string& message) { throw Failure(ExitCode::WrongUsage, message); }

  // The start of the token that ends before the position.
  std::size_t TokenStart(std::size_t position) const {
    if (position == 0 || position > text_.size()) return text_.size();
    std::size_t start = position - 1;
    const auto belongs = [&](std::size_t at) { return std::isalnum(static_cast<unsigned char>(text_[at])) != 0; };
    const auto isSign = [&](std::size_t at) { return text_[at] == '+' || text_[at] == '-' || text_[at] == '.'; };
    if (text_[start] == '"') {
      const auto opens = [&](std::size_t at) { return text_[at] == '"' && (at == 0 || text_[at - 1] != '\\'); };
      while (start > 0 && !opens(start - 1))
        --start;
      return start == 0 ? position - 1 : start - 1;
    }
    while (belongs(start) && start > 0 && (belongs(start - 1) || isSign(start - 1)))
      --start;
    return start;
  }

  // Names of files on Windows are the most frequent cause.
  static std::string EscapeHint(const std::string& reason) {
    const bool isEscape =
        reason.find("after backslash") != std::string::npos || reason.find("'\\u'") != std::string::npos;
    return isEscape ? R"(; write / or \\ for each \ in a file name)" : "";
  }

  // The library's message without its position and its quote of the text, which may be any bytes.
  static std::string Reason(std::string reason) {
    const std::size_t lastRead = reason.find("; last read: '");
    if (lastRead != std::string::npos) {
      const std::size_t expected = reason.rfind("'; expected ");
      reason.erase(lastRead, expected == std::string::npos ? expected : expected + 1 - lastRead);
    }
    const std::size_t behindPlace = reason.rfind(" - ");
    return behindPlace == std::string::npos ? reason : reason.substr(behindPlace + 3);
  }

  bool Add(json value) {
    Place(std::move(value));
    return true;
  }

  json* Place(json value) {
    if (open_.empty()) return &(document_ = std::move(value));
    json& parent = *open_.back();
    if (parent.is_object()) return &(parent[field_] = std::move(value));
    parent.push_back(std::move(value));
    return &parent.back();
  }

  bool Open(json value) {
    constexpr std::size_t kDeepest = 32;
    if (open_.size() == kDeepest)
      Fail(Path({}) + ": values nested deeper than any field has, expected at most 32 levels");
    names_.push_back(open_.empty() ? "" : open_.back()->is_object() ? field_ : std::to_string(open_.back()->size()));
    open_.push_back(Place(std::move(value)));
    return true;
  }

  bool Close() {
    open_.pop_back();
    names_.pop_back();
    return true;
  }

  std::string Path(const std::string& last) const {
    std::string path;
    for (const std::string& name : names_)
      path = JoinPath(path, name);
    return JoinPath(path, last);
  }

  std::string_view text_;
  json document_;
  std::vector<json*> open_;         // objects and arrays that are open, outermost first
  std::vector<std::string> names_;  // the name of each in its parent
  std::string field_;
};

}  // namespace

json ParseJson(std::string_view text) {
  DocumentBuilder builder(text);
  json::sax_parse(text, &builder);
  return builder.TakeDocument();
}

}  // namespace vblur::host
