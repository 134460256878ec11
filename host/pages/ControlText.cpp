#include "host/pages/ControlText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <system_error>

#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

// The whole text as a finite number.
std::optional<double> FiniteNumber(std::string_view text) {
  double number = 0.0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || stop != end || !std::isfinite(number)) return std::nullopt;
  return number;
}

ControlText ReadFields(std::string_view text) {
  const ControlText plain;
  ControlText result{PageWindowKind::Label, text.substr(0, text.find(';'))};
  for (std::size_t from = result.caption.size(); from < text.size();) {
    const std::size_t end = std::min(text.find(';', from + 1), text.size());
    const std::string_view field = text.substr(from + 1, end - from - 1);
    from = end;
    const std::size_t equals = field.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view name = field.substr(0, equals);
    const std::string_view value = field.substr(equals + 1);
    if (EqualIgnoringCase(name, "class")) {
      result.kind = EqualIgnoringCase(value, "dsnewnumberctrl")      ? PageWindowKind::Number
                    : EqualIgnoringCase(value, "dsnewcolorchipctrl") ? PageWindowKind::ColourChip
                                                                     : PageWindowKind::Label;
    } else if (EqualIgnoringCase(name, "min")) {
      result.minimum = FiniteNumber(value).value_or(plain.minimum);
    } else if (EqualIgnoringCase(name, "max")) {
      result.maximum = FiniteNumber(value).value_or(plain.maximum);
    }
  }
  if (result.minimum > result.maximum) {
    result.minimum = plain.minimum;
    result.maximum = plain.maximum;
  }
  return result;
}

}  // namespace

ControlText ReadControlText(std::string_view text) {
  const ControlText read = ReadFields(text);
  return read.kind == PageWindowKind::Label ? ControlText{PageWindowKind::Label, text} : read;
}

ControlText ReadControlText(std::string_view text, PageWindowKind known) {
  ControlText read = ReadFields(text);
  read.kind = known;
  return read;
}

}  // namespace vblur::host
