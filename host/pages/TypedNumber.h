// What a user types into a number control:
//
//   12.5, -3, +4, 1e3       the number
//   (3 + 4) * 2 / 7         an expression of + - * / and parentheses
//   += 5, -= 5, *= 2, /= 2  relative to the current value, with a number or an expression; * 2 and / 2 are the same
//   50%                     that part of the way from the range's minimum to its maximum
//   += 10%, *= 50%          by that part of the range's length; by that factor
//
// A sign alone is never relative: "-3" is the number. Spaces may be anywhere but within a number. Results of
// expressions and of relative texts are rounded to 9 decimals, so that 0.1 + 0.2 is 0.3.
#pragma once

#include <cstddef>
#include <string_view>

namespace vblur::host {

struct NumberRange {
  double minimum = 0.0;
  double maximum = 100.0;
};

inline constexpr std::size_t kLongestTypedNumber = 256;
inline constexpr int kDeepestParentheses = 32;

// The finite number that the text says, also beyond the range. Throws Failure (wrong usage) with what was expected.
double ReadTypedNumber(std::string_view text, double current, const NumberRange& range);

// To the nearest of 9 decimals, where a double has that many: below a million. Zero has no sign.
double WithoutDust(double number);

}  // namespace vblur::host
