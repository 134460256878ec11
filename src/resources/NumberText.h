// The text by which a dialog asks the host for a number control, made from the property that the control shows.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "properties/PropertyTable.h"

namespace vblur::resources {

// A text of at most 96 characters that is put together by the compiler; more do not compile.
class BuiltText {
 public:
  constexpr void Append(std::string_view text) {
    for (const char letter : text)
      letters_[length_++] = letter;
  }
  constexpr void Append(std::int32_t number) {
    if (number < 0) Append("-");
    std::int32_t unit = 1;
    while (number / unit / 10 != 0)
      unit *= 10;
    for (; unit != 0; unit /= 10) {
      const std::int32_t digit = number / unit % 10;
      letters_[length_++] = static_cast<char>('0' + (digit < 0 ? -digit : digit));
    }
  }
  constexpr std::string_view View() const { return {letters_.data(), length_}; }

 private:
  std::array<char, 96> letters_{};
  std::size_t length_ = 0;
};

// "Blur;class=dsnewnumberctrl;min=0;max=720": name, range.
template <PropertyId kProperty>
inline constexpr BuiltText kNumberText = [] {
  constexpr const Property& property = PropertyOf(kProperty);
  constexpr auto minimum = static_cast<std::int32_t>(property.minimum);
  constexpr auto maximum = static_cast<std::int32_t>(property.maximum);
  static_assert(property.control == PropertyControl::Number);
  static_assert(minimum == property.minimum && maximum == property.maximum, "the text holds whole numbers");
  BuiltText text;
  text.Append(property.shownName);
  text.Append(";class=dsnewnumberctrl;min=");
  text.Append(minimum);
  text.Append(";max=");
  text.Append(maximum);
  return text;
}();

}  // namespace vblur::resources
