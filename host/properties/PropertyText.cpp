#include "host/properties/PropertyText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <system_error>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

// In the order of the enumeration.
constexpr std::array<std::string_view, 3> kInterpolations{"linear", "hold", "smooth"};

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kSpace = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

// The whole text as a finite number.
std::optional<double> ReadNumber(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double value = 0.0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<double> ReadOnOff(std::string_view text) {
  constexpr std::array<std::string_view, 4> kOff{"false", "off", "no", "0"};
  constexpr std::array<std::string_view, 4> kOn{"true", "on", "yes", "1"};
  const auto is = [&](std::string_view word) { return EqualIgnoringCase(text, word); };
  if (std::ranges::any_of(kOff, is)) return 0.0;
  if (std::ranges::any_of(kOn, is)) return 1.0;
  return std::nullopt;
}

std::optional<double> ReadValue(const Property& property, std::string_view text) {
  if (property.control == PropertyControl::OnOff) return ReadOnOff(text);
  if (const auto entry = FindEntry(property, text)) return entry;
  const auto number = ReadNumber(text);
  return number && IsAllowed(property, *number) ? number : std::nullopt;
}

CurveKey ParseKey(const Property& property, std::string_view text, std::size_t number) {
  const std::size_t colon = text.find(':');
  if (colon != std::string_view::npos) {
    const auto time = ReadNumber(Trimmed(text.substr(0, colon)));
    const auto value = ReadNumber(Trimmed(text.substr(colon + 1)));
    if (time && value) return {*time, *value};
  }
  Refuse(property.name, "key " + std::to_string(number) + ": expected time:value with two finite numbers, found " +
                            Quoted(Trimmed(text)));
}

Curve ParseCurve(const Property& property, std::string_view text, Interpolation interpolation) {
  Curve curve{{}, interpolation};
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t comma = std::min(text.find(',', from), text.size());
    const CurveKey key = ParseKey(property, text.substr(from, comma - from), curve.keys.size() + 1);
    if (!curve.keys.empty() && key.time <= curve.keys.back().time) {
      Refuse(property.name, "key " + std::to_string(curve.keys.size() + 1) + ": expected a time after " +
                                FormatNumber(curve.keys.back().time) + ", found " + FormatNumber(key.time));
    }
    curve.keys.push_back(key);
    from = comma + 1;
  }
  return curve;
}

// In lower case, "gray" as "grey" and "color" as "colour".
std::string OneSpelling(std::string_view text) {
  std::string word;
  for (const char c : text)
    word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (const auto& [other, own] : {std::pair<std::string, std::string>{"gray", "grey"}, {"color", "colour"}}) {
    const std::size_t at = word.find(other);
    if (at != std::string::npos) word.replace(at, other.size(), own);
  }
  return word;
}

}  // namespace

const Property* FindPropertyNamed(std::string_view name) {
  const std::string word = OneSpelling(name);
  const auto is = [&](const Property& property) { return OneSpelling(property.name) == word; };
  const auto found = std::ranges::find_if(kProperties, is);
  return found == kProperties.end() ? nullptr : &*found;
}

const Property* FindPropertyWritten(std::string_view name) {
  if (const Property* property = FindPropertyNamed(name)) return property;
  const std::string word = OneSpelling(name);
  const auto is = [&](const Property& property) { return OptionName(property) == word; };
  const auto found = std::ranges::find_if(kProperties, is);
  return found == kProperties.end() ? nullptr : &*found;
}

const Property& PropertyNamed(std::string_view name) {
  if (const Property* property = FindPropertyWritten(name)) return *property;
  throw Failure(ExitCode::WrongUsage, UnknownProperty(name));
}

std::string UnknownProperty(std::string_view name) {
  std::array<std::string_view, kProperties.size()> names;
  std::ranges::transform(kProperties, names.begin(), &Property::name);
  // The text that a page shows is not always the unique name.
  for (const Property& property : kProperties) {
    if (EqualIgnoringCase(property.shownName, name)) {
      return "unknown property " + Quoted(name) + "; did you mean " + Quoted(property.name) + "?";
    }
  }
  return UnknownName("property", name, names);
}

std::string OptionName(const Property& property) {
  std::string option(property.name);
  for (char& c : option) {
    if (c == ' ') c = '-';
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return option;
}

bool IsAllowed(const Property& property, double value) {
  if (property.control == PropertyControl::Number) return std::isfinite(value);
  return value >= property.minimum && value <= property.maximum && value == std::floor(value);
}

std::string ExpectedValue(const Property& property) {
  if (property.control == PropertyControl::Number) return "a finite number";
  if (property.control == PropertyControl::OnOff) return "true, on, yes or 1, or false, off, no or 0";
  std::string words = "one of ";
  for (const std::string_view entry : property.entries)
    words += std::string(entry) + ", ";
  return words + "or a whole number from 0 to " + std::to_string(property.entries.size() - 1);
}

namespace {

// "add-over" is "Add Over", "dont-scale" is "Don't Scale Effect", "gray" is "Grey", "luma" is "Luminance".
std::string PlainSpelling(std::string_view text) {
  constexpr std::pair<std::string_view, std::string_view> kShort[] = {
      {"luma", "luminance"}, {"rampinout", "rampinandout"}, {"dontscale", "dontscaleeffect"}};
  std::string plain = OneSpelling(text);
  std::erase_if(plain, [](char c) { return c == ' ' || c == '-' || c == '_' || c == '\''; });
  for (const auto& [word, entry] : kShort) {
    if (plain == word) return std::string(entry);
  }
  return plain;
}

}  // namespace

std::optional<double> FindEntry(const Property& property, std::string_view text) {
  const std::string plain = PlainSpelling(text);
  const auto is = [&](std::string_view entry) { return PlainSpelling(entry) == plain; };
  const auto found = std::ranges::find_if(property.entries, is);
  if (found == property.entries.end()) return std::nullopt;
  return static_cast<double>(found - property.entries.begin());
}

std::string FormatNumber(double value) {
  std::array<char, 32> text;
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

double ParseValue(const Property& property, std::string_view text) {
  text = Trimmed(text);
  if (const auto value = ReadValue(property, text)) return *value;
  Refuse(property.name, "expected " + ExpectedValue(property) + ", found " + Quoted(text));
}

std::string FormatValue(const Property& property, double value) {
  if (property.control == PropertyControl::Number || !IsAllowed(property, value)) return FormatNumber(value);
  if (property.control == PropertyControl::OnOff) return value == 0.0 ? "off" : "on";
  return std::string(property.entries[static_cast<std::size_t>(value)]);
}

PropertyStore::Setting ParseSetting(const Property& property, std::string_view text) {
  text = Trimmed(text);
  const std::size_t colon = text.find(':');
  if (!property.IsAnimated()) {
    if (colon == std::string_view::npos) return ParseValue(property, text);
    Refuse(property.name, "not an animated property, expected " + ExpectedValue(property) + ", found " + Quoted(text));
  }
  if (colon == std::string_view::npos) {
    if (const auto value = ReadNumber(text)) return *value;
    Refuse(property.name, "expected a finite number or keys such as 0:10,24:50, found " + Quoted(text));
  }
  const auto interpolation = FindInterpolation(Trimmed(text.substr(0, colon)));
  if (interpolation) text.remove_prefix(colon + 1);
  return ParseCurve(property, text, interpolation.value_or(Interpolation::Linear));
}

std::string FormatRange(const Property& property) {
  return FormatNumber(property.minimum) + " to " + FormatNumber(property.maximum);
}

std::optional<double> ValueOutOfRange(const Property& property, const PropertyStore::Setting& setting) {
  const auto isOut = [&](double value) { return value < property.minimum || value > property.maximum; };
  if (const auto* value = std::get_if<double>(&setting)) return isOut(*value) ? std::optional(*value) : std::nullopt;
  const auto& keys = std::get<Curve>(setting).keys;
  const auto found = std::ranges::find_if(keys, isOut, &CurveKey::value);
  return found == keys.end() ? std::nullopt : std::optional(found->value);
}

PropertyStore::Setting ParseSettingInRange(const Property& property, std::string_view text) {
  PropertyStore::Setting setting = ParseSetting(property, text);
  if (const auto value = ValueOutOfRange(property, setting)) {
    Refuse(property.name, "expected " + FormatRange(property) + ", found " + FormatNumber(*value));
  }
  return setting;
}

std::string FormatSetting(const Property& property, const PropertyStore::Setting& setting) {
  if (const auto* value = std::get_if<double>(&setting)) return FormatValue(property, *value);
  const Curve& curve = std::get<Curve>(setting);
  std::string text;
  if (curve.interpolation != Interpolation::Linear) {
    text = std::string(InterpolationName(curve.interpolation)) + ":";
  }
  for (const CurveKey& key : curve.keys) {
    if (&key != &curve.keys.front()) text += ',';
    text += FormatNumber(key.time) + ":" + FormatNumber(key.value);
  }
  return text;
}

std::optional<Interpolation> FindInterpolation(std::string_view name) {
  const auto is = [&](std::string_view word) { return EqualIgnoringCase(word, name); };
  const auto found = std::ranges::find_if(kInterpolations, is);
  if (found == kInterpolations.end()) return std::nullopt;
  return static_cast<Interpolation>(found - kInterpolations.begin());
}

std::string_view InterpolationName(Interpolation interpolation) {
  return kInterpolations[static_cast<std::size_t>(interpolation)];
}

void ApplyAssignment(PropertyStore& store, std::string_view assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string_view::npos) {
    throw Failure(ExitCode::WrongUsage, "expected NAME=VALUE, found " + Quoted(assignment));
  }
  const Property& property = PropertyNamed(Trimmed(assignment.substr(0, equals)));
  store.Set(property.guid, ParseSettingInRange(property, assignment.substr(equals + 1)));
}

}  // namespace vblur::host
