// A value in a JSON document together with its path, so that every complaint names the place.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace vblur::host {

// "properties" and "Blur" -> "properties/Blur"; an empty part adds nothing. What would break a line is
// escaped.
std::string JoinPath(std::string_view path, std::string_view name);

// Borrows the value. All readers throw Failure (wrong usage), whose line begins with the path, for a value
// of another type or range; `expected` is put into words there.
class JsonPlace {
 public:
  explicit JsonPlace(const nlohmann::json& value, std::string path = {}) : value_(&value), path_(std::move(path)) {}

  const nlohmann::json& value() const { return *value_; }
  const std::string& path() const { return path_; }

  [[noreturn]] void Fail(const std::string& problem) const;
  [[noreturn]] void FailExpected(std::string_view expected) const;

  double Number(std::string_view expected = "a finite number") const;
  // A whole number of 32 bits; 3.0 is one too.
  std::int32_t Whole(std::string_view expected = "a whole number of 32 bits") const;
  std::string Text(std::string_view expected) const;
  std::array<double, 2> NumberPair(std::string_view expected) const;
  std::array<std::int32_t, 2> WholePair(std::string_view expected) const;

  void RequireArray(std::size_t size, std::string_view expected) const;
  JsonPlace Item(std::size_t index) const;

  // Refuses a value that is not an object and a field that is none of the names.
  void RequireFields(std::span<const std::string_view> names, std::string_view expected) const;
  // The field of an object; nothing when it is absent.
  std::optional<JsonPlace> Field(std::string_view name) const;

 private:
  const nlohmann::json* value_;
  std::string path_;
};

}  // namespace vblur::host
