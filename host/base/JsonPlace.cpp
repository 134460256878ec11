#include "host/base/JsonPlace.h"

#include <cmath>
#include <limits>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

using nlohmann::json;

std::string Found(const json& value) {
  constexpr std::size_t kShort = 4;
  if (value.is_string()) return Quoted(value.get_ref<const std::string&>());
  if (value.is_object()) return "an object";
  if (!value.is_array()) return value.dump();
  const bool isFlat = std::ranges::none_of(value, [](const json& item) { return item.is_structured(); });
  if (!isFlat || value.size() > kShort) return "an array of " + std::to_string(value.size());
  std::string found;
  for (const json& item : value)
    found += (found.empty() ? "" : ", ") + Found(item);
  return "[" + found + "]";
}

std::optional<std::int32_t> ToWhole(const json& value) {
  // Whole numbers beyond 2^53 are inexact here, but far beyond 32 bits.
  const double number = value.is_number() ? value.get<double>() : std::numeric_limits<double>::quiet_NaN();
  using Limits = std::numeric_limits<std::int32_t>;
  if (!(number >= Limits::min() && number <= Limits::max()) || number != std::floor(number)) return std::nullopt;
  return static_cast<std::int32_t>(number);
}

}  // namespace

std::string JoinPath(std::string_view path, std::string_view name) {
  const std::string quoted = Quoted(name);
  const std::string shown = quoted.substr(1, quoted.size() - 2);
  if (path.empty() || shown.empty()) return std::string(path) + shown;
  return std::string(path) + "/" + shown;
}

void JsonPlace::Fail(const std::string& problem) const {
  throw Failure(ExitCode::WrongUsage, path_.empty() ? problem : path_ + ": " + problem);
}

void JsonPlace::FailExpected(std::string_view expected) const {
  Fail("expected " + std::string(expected) + ", found " + Found(*value_));
}

double JsonPlace::Number(std::string_view expected) const {
  if (!value_->is_number()) FailExpected(expected);
  return value_->get<double>();
}

std::int32_t JsonPlace::Whole(std::string_view expected) const {
  const auto whole = ToWhole(*value_);
  if (!whole) FailExpected(expected);
  return *whole;
}

std::string JsonPlace::Text(std::string_view expected) const {
  if (!value_->is_string()) FailExpected(expected);
  return value_->get<std::string>();
}

std::array<double, 2> JsonPlace::NumberPair(std::string_view expected) const {
  RequireArray(2, expected);
  if (!(*value_)[0].is_number() || !(*value_)[1].is_number()) FailExpected(expected);
  return {(*value_)[0].get<double>(), (*value_)[1].get<double>()};
}

std::array<std::int32_t, 2> JsonPlace::WholePair(std::string_view expected) const {
  RequireArray(2, expected);
  const auto first = ToWhole((*value_)[0]);
  const auto second = ToWhole((*value_)[1]);
  if (!first || !second) FailExpected(expected);
  return {*first, *second};
}

void JsonPlace::RequireArray(std::size_t size, std::string_view expected) const {
  if (!value_->is_array() || value_->size() != size) FailExpected(expected);
}

JsonPlace JsonPlace::Item(std::size_t index) const {
  return JsonPlace((*value_)[index], JoinPath(path_, std::to_string(index)));
}

void JsonPlace::RequireFields(std::span<const std::string_view> names, std::string_view expected) const {
  if (!value_->is_object()) FailExpected(expected);
  for (const auto& [name, ignored] : value_->items()) {
    if (std::ranges::find(names, name) == names.end()) Fail(UnknownName("field", name, names));
  }
}

std::optional<JsonPlace> JsonPlace::Field(std::string_view name) const {
  const auto found = value_->find(name);
  if (found == value_->end()) return std::nullopt;
  return JsonPlace(*found, JoinPath(path_, name));
}

}  // namespace vblur::host
