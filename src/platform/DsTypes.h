// The Windows and COM types that effect and host exchange, on every platform: result codes, GUIDs, value types.
#pragma once

#include <array>
#include <cstdint>

namespace vblur {

using HRESULT = std::int32_t;

inline constexpr HRESULT kOk = 0;
inline constexpr HRESULT kFalse = 1;
inline constexpr HRESULT kNullPointer = static_cast<HRESULT>(0x80004003u);
inline constexpr HRESULT kFailed = static_cast<HRESULT>(0x80004005u);
inline constexpr HRESULT kOutOfMemory = static_cast<HRESULT>(0x8007000Eu);
inline constexpr HRESULT kWrongArgument = static_cast<HRESULT>(0x80070057u);

struct GUID {
  std::uint32_t data1 = 0;
  std::uint16_t data2 = 0;
  std::uint16_t data3 = 0;
  std::array<std::uint8_t, 8> data4{};

  friend constexpr bool operator==(const GUID&, const GUID&) = default;
  friend constexpr auto operator<=>(const GUID&, const GUID&) = default;
};

// A GUID from its registry form, "{9D2E3005-AE89-11D5-9414-0800690F2F3F}"; a bad form does not compile.
consteval GUID MakeGuid(const char (&text)[39]) {
  const auto digit = [&](int at) -> std::uint32_t {
    const char c = text[at];
    if (c >= '0' && c <= '9') return static_cast<std::uint32_t>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<std::uint32_t>(c - 'A' + 10);
    throw "a GUID is made of upper-case hexadecimal digits";
  };
  const auto number = [&](int at, int digits) {
    std::uint32_t value = 0;
    for (int i = 0; i < digits; ++i)
      value = value * 16 + digit(at + i);
    return value;
  };
  if (text[0] != '{' || text[9] != '-' || text[14] != '-' || text[19] != '-' || text[24] != '-' || text[37] != '}') {
    throw "a GUID has the form {8-4-4-4-12}";
  }
  GUID guid;
  guid.data1 = number(1, 8);
  guid.data2 = static_cast<std::uint16_t>(number(10, 4));
  guid.data3 = static_cast<std::uint16_t>(number(15, 4));
  int at = 20;
  for (std::uint8_t& byte : guid.data4) {
    byte = static_cast<std::uint8_t>(number(at, 2));
    at += at == 22 ? 3 : 2;  // past the last hyphen
  }
  return guid;
}

// The picture formats that the effect renders, with the ids of the stand-alone host.
inline constexpr GUID MFIF_RGBA_RAW_32 = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A801}");
inline constexpr GUID MFIF_RGBA_S2_14 = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A802}");
// One-component pixel masks, of the frame's depth.
inline constexpr GUID MFIF_MASK_8 = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A803}");
inline constexpr GUID MFIF_MASK_16 = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A804}");

// Value types of properties, numbered as in VARIANT.
enum class DSValueType : std::uint16_t { Integer32 = 3, Float64 = 5, Boolean32 = 11 };

}  // namespace vblur
