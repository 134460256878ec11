// Makes the entries of a page's control map from its control rows.
#pragma once

#include <type_traits>

#include "pages/ValueControl.h"

namespace vblur::control_map {

inline constexpr const char* kName = "Vessin4.3";
// Of the transition page alone.
inline constexpr const char* kOldName = "Vessin3.0";

inline constexpr std::int32_t kButtonWithTip = control_flags::kButton | control_flags::kSelection;

template <class Member>
struct MemberOf;
template <class Page, class Type>
struct MemberOf<Type Page::*> {
  using Owner = Page;
  using Value = Type;
};
template <class Page>
struct MemberOf<void (Page::*)()> {
  using Owner = Page;
};

template <class Value>
struct VariableType;
template <>
struct VariableType<double> {
  static constexpr VARTYPE kType = VT_R8;
};
template <>
struct VariableType<std::int32_t> {
  static constexpr VARTYPE kType = VT_I4;
};
template <>
struct VariableType<bool> {
  static constexpr VARTYPE kType = VT_BOOL;
};

// The value of a control of a page.
template <auto control>
void* ValueOf(CDSBasePropertyPage& page) {
  return &(static_cast<typename MemberOf<decltype(control)>::Owner&>(page).*control).value;
}

// The value of a control of a member of a page.
template <auto member, auto control>
void* ValueWithin(CDSBasePropertyPage& page) {
  return &(static_cast<typename MemberOf<decltype(member)>::Owner&>(page).*member.*control).value;
}

template <auto action>
void Run(CDSBasePropertyPage& page) {
  (static_cast<typename MemberOf<decltype(action)>::Owner&>(page).*action)();
}

template <auto control>
using ValueTypeOf = decltype(std::declval<typename MemberOf<decltype(control)>::Value&>().value);

constexpr CDSPPGControlMapEntry Entry(const ControlRow& row, VARTYPE type, CDSPPGControlMapEntry::Variable variable,
                                      CDSPPGControlMapEntry::Action action) {
  return {row.Of().guid, type, variable, row.controlId, action, row.flags, row.Of().hintString, -1};
}

template <auto control>
constexpr CDSPPGControlMapEntry Control(const ControlRow& row, CDSPPGControlMapEntry::Action action = nullptr) {
  return Entry(row, VariableType<ValueTypeOf<control>>::kType, &ValueOf<control>, action);
}

template <auto member, auto control>
constexpr CDSPPGControlMapEntry ControlWithin(const ControlRow& row, CDSPPGControlMapEntry::Action action = nullptr) {
  return Entry(row, VariableType<ValueTypeOf<control>>::kType, &ValueWithin<member, control>, action);
}

constexpr CDSPPGControlMapEntry Button(std::int32_t controlId, std::int32_t flags, std::int32_t toolTip,
                                       CDSPPGControlMapEntry::Action action) {
  return {GUID_NO_PROPERTY, VT_EMPTY, nullptr, controlId, action, flags, toolTip, -1};
}

inline constexpr CDSPPGControlMapEntry kEnd{};

}  // namespace vblur::control_map
