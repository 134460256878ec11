// A value in a JSON document with its path, which begins every failure.
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

// "properties" and "Blur" -> "properties/Blur"; an empty part adds nothing. Control characters are
// escaped.
std::string JoinPath(std::string_view path, std::string_view name);

// Borrows the value. Readers throw Failure (wrong usage) for a value of another type or range; its line begins with
// the path and quotes `expected`.
class JsonPlace {
 public:
  explicit JsonPlace(const nlohmann::json& value, std::string path = {}) : value_(&value), path_(std::move(path)) {}

  const nlohmann::json& Value() const { return *value_; }
  const std::string& Path() const { return path_; }

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

  // Refuses a value that is not an object, and fields with other names.
  void RequireFields(std::span<const std::string_view> names, std::string_view expected) const;
  // A field of the object, if present.
  std::optional<JsonPlace> Field(std::string_view name) const;

 private:
  const nlohmann::json* value_;
  std::string path_;
};

}  // namespace vblur::host
