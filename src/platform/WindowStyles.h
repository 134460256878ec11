// Style bits of windows and dialogs, with the system's names and numbers.
#pragma once

#include <cstdint>

namespace vblur {

// Any window.
inline constexpr std::uint32_t WS_CHILD = 0x40000000;
inline constexpr std::uint32_t WS_VISIBLE = 0x10000000;
inline constexpr std::uint32_t WS_VSCROLL = 0x00200000;
inline constexpr std::uint32_t WS_TABSTOP = 0x00010000;
// Dialogs: one with a font of its own; one that is part of another, whose tabulator key then visits its controls.
inline constexpr std::uint32_t DS_SETFONT = 0x0040;
inline constexpr std::uint32_t DS_CONTROL = 0x0400;
// Buttons.
inline constexpr std::uint32_t BS_PUSHBUTTON = 0x0000;
inline constexpr std::uint32_t BS_AUTOCHECKBOX = 0x0003;
inline constexpr std::uint32_t BS_GROUPBOX = 0x0007;
// Combo boxes.
inline constexpr std::uint32_t CBS_DROPDOWNLIST = 0x0003;
// Static controls.
inline constexpr std::uint32_t SS_LEFT = 0x0000;
inline constexpr std::uint32_t SS_BITMAP = 0x000E;

}  // namespace vblur
