// Matching of names that users type: case-insensitive, with a suggestion for a misspelled one.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vblur::host {

// Only the letters A to Z have a case.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

// The name with the smallest edit distance (changed, missing, extra or swapped letters), the first of several; empty
// when none is close.
std::string_view NearestName(std::string_view text, std::span<const std::string_view> names);

// `unknown property "Blurr"; did you mean "Blur"?`, without the question when no name is near.
std::string UnknownName(std::string_view what, std::string_view text, std::span<const std::string_view> names);

// The text in double quotes on one line, as it was typed: only quotes, control characters and bytes that are not UTF-8
// are escaped or replaced, and a long text is cut.
std::string Quoted(std::string_view text);

}  // namespace vblur::host
