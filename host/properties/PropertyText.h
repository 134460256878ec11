// Properties as text: parsing and formatting of values and keys.
//
// A setting is written in one of three ways:
//
//   24                       one value
//   0:0,47:80                keys as time:value, straight lines between them
//   smooth:0:0,24:80,47:0    the same with an interpolation in front: linear, hold or smooth
//
// Times must rise strictly, and only animated properties take keys. A value is a finite number; for a list an entry's
// text or its number; for an on-or-off property true, on, yes, 1 or false, off, no, 0. Case is ignored, and so are
// spaces around a value, a time or a name. Numbers outside a property's control range are accepted, except by
// ParseSettingInRange and ApplyAssignment.
//
// Every failure is a Failure (wrong usage) whose line names the property, what was found and what was
// expected.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/properties/PropertyStore.h"
#include "properties/PropertyTable.h"

namespace vblur::host {

// The property of this unique name (Property::name; case does not matter, and "color" is "colour"); null for any other
// text.
const Property* FindPropertyNamed(std::string_view name);
// The property of this unique name or option name, as users write it; null for any other text.
const Property* FindPropertyWritten(std::string_view name);
// Likewise. Throws Failure, with the nearest name.
const Property& PropertyNamed(std::string_view name);
// The message for an unknown name, with the nearest name if one is close.
std::string UnknownProperty(std::string_view name);
// The name of a property's command line option, without the dashes: "Effect Gain" -> "effect-gain".
std::string OptionName(const Property& property);

// Whether a property can hold the number: finite; a whole number within the list; 0 or 1.
bool IsAllowed(const Property& property, double value);
// The allowed values in words, to follow "expected".
std::string ExpectedValue(const Property& property);
// The number of a list's entry from its text; nothing when the property has no such entry.
std::optional<double> FindEntry(const Property& property, std::string_view text);
// A number's shortest text that reads back as the same 64-bit float.
std::string FormatNumber(double value);

double ParseValue(const Property& property, std::string_view text);
std::string FormatValue(const Property& property, double value);
PropertyStore::Setting ParseSetting(const Property& property, std::string_view text);
std::string FormatSetting(const Property& property, const PropertyStore::Setting& setting);

// The control range in words: "0 to 720".
std::string FormatRange(const Property& property);
// The first value of a setting beyond the control range.
std::optional<double> ValueOutOfRange(const Property& property, const PropertyStore::Setting& setting);
// ParseSetting, and refuses values beyond the control range.
PropertyStore::Setting ParseSettingInRange(const Property& property, std::string_view text);

// The interpolation of this name, case does not matter; nothing for any other text.
std::optional<Interpolation> FindInterpolation(std::string_view name);
std::string_view InterpolationName(Interpolation interpolation);

// Applies "NAME=SETTING", such as "Blur=24" or "Effect Gain=0:100,24:50", within the control range; NAME may be an
// option name.
void ApplyAssignment(PropertyStore& store, std::string_view assignment);

}  // namespace vblur::host
