#include "apps/vblur/OptionText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"

namespace vblur::cli {

namespace {

[[noreturn]] void RefuseText(std::string_view option, std::string_view text, const std::string& expected) {
  host::Refuse(option, "expected " + expected + ", found " + host::Quoted(text));
}

template <typename Number>
bool Read(std::string_view text, Number& number) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size();
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (std::size_t at = text.find(separator); at != std::string_view::npos; at = text.find(separator)) {
    parts.push_back(text.substr(0, at));
    text.remove_prefix(at + 1);
  }
  parts.push_back(text);
  return parts;
}

template <typename Number, std::size_t kCount>
bool ReadAll(std::string_view text, char separator, std::array<Number, kCount>& numbers) {
  const auto parts = Split(text, separator);
  if (parts.size() != kCount) return false;
  for (std::size_t i = 0; i < kCount; ++i) {
    if (!Read(parts[i], numbers[i])) return false;
  }
  return true;
}

// Of "", "B", "K", "MB", "GiB" and the like; 0 for other texts.
std::int64_t BytesOf(std::string_view unit) {
  constexpr std::string_view kPowers = "KMG";
  std::int64_t bytes = 1;
  if (!unit.empty()) {
    const auto power = kPowers.find(static_cast<char>(std::toupper(static_cast<unsigned char>(unit.front()))));
    if (power != std::string_view::npos) {
      bytes = std::int64_t{1} << (10 * (power + 1));
      unit.remove_prefix(1);
      if (host::EqualIgnoringCase(unit, "iB")) return bytes;
    }
  }
  return unit.empty() || host::EqualIgnoringCase(unit, "B") ? bytes : 0;
}

}  // namespace

double ParseNumber(std::string_view option, std::string_view text) {
  double number = 0.0;
  if (!Read(text, number) || !std::isfinite(number)) RefuseText(option, text, "a finite number");
  return number;
}

std::int32_t ParseWhole(std::string_view option, std::string_view text) {
  std::int32_t number = 0;
  if (!Read(text, number)) RefuseText(option, text, "a whole number");
  return number;
}

std::int64_t ParseBytes(std::string_view option, std::string_view text) {
  constexpr std::int64_t kMost = std::int64_t{1} << 50;
  const std::size_t end = std::min(text.find_first_of("BbKkMmGg"), text.size());
  const std::int64_t unit = BytesOf(text.substr(end));
  double number = 0.0;
  const bool read = Read(text.substr(0, end), number) && std::isfinite(number);
  const double bytes = read ? std::floor(number * static_cast<double>(unit)) : 0.0;
  if (!(bytes >= 1.0 && bytes <= static_cast<double>(kMost))) {
    RefuseText(option, text, "a number of bytes such as 512M or 2.5G");
  }
  return static_cast<std::int64_t>(bytes);
}

std::int64_t ParsePixels(std::string_view option, std::string_view text) {
  constexpr std::string_view kUnits = "KMG";
  constexpr double kMost = 1e12;
  std::string_view digits = text;
  double unit = 1.0;
  if (!digits.empty()) {
    const char last = static_cast<char>(std::toupper(static_cast<unsigned char>(digits.back())));
    if (const auto power = kUnits.find(last); power != std::string_view::npos) {
      unit = std::pow(1000.0, static_cast<double>(power + 1));
      digits.remove_suffix(1);
    }
  }
  double number = 0.0;
  if (!Read(digits, number) || !(number * unit >= 1.0 && number * unit <= kMost)) {
    RefuseText(option, text, "a number of pixels such as 500M or 1G");
  }
  return static_cast<std::int64_t>(number * unit);
}

std::array<double, 2> ParseNumberPair(std::string_view option, std::string_view text) {
  std::array<double, 2> pair{};
  if (!ReadAll(text, ',', pair) || !std::isfinite(pair[0]) || !std::isfinite(pair[1])) {
    RefuseText(option, text, "two finite numbers such as 0.5,0.5");
  }
  return pair;
}

std::array<std::int32_t, 2> ParseWholePair(std::string_view option, std::string_view text, char separator) {
  std::array<std::int32_t, 2> pair{};
  if (!ReadAll(text, separator, pair)) {
    RefuseText(option, text, std::string("two whole numbers such as 640") + separator + "480");
  }
  return pair;
}

std::array<std::int32_t, 4> ParseWholeFour(std::string_view option, std::string_view text) {
  std::array<std::int32_t, 4> four{};
  if (!ReadAll(text, ',', four)) RefuseText(option, text, "four whole numbers such as 0,0,640,480");
  return four;
}

std::string ChoiceForm(std::span<const std::string_view> words) {
  std::string form;
  for (const std::string_view word : words)
    form.append(form.empty() ? "" : "|").append(word);
  return form;
}

std::size_t ParseChoice(std::string_view option, std::string_view text, std::span<const std::string_view> words) {
  std::string expected;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (host::EqualIgnoringCase(text, words[i])) return i;
    if (i > 0) expected += i + 1 == words.size() ? " or " : ", ";
    expected += words[i];
  }
  RefuseText(option, text, expected);
}

CLI::Option* AddTextOption(CLI::App& app, const std::string& name, const std::string& form, const std::string& help,
                           const std::function<void(const std::string&)>& set) {
  CLI::Option* option = app.add_option_function<std::string>(name, set, help);
  option->type_name(form);
  return option;
}

}  // namespace vblur::cli
