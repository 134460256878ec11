// The records by which an effect describes itself to its host, and the families of effects.
#pragma once

#include <array>
#include <cstdint>

#include "DsTypes.h"

namespace vblur {

// The host sets `record`, the effect fills in the rest.
struct tagDSFxInfo {
  GUID record;
  GUID category;
  GUID type;
  GUID effect;
  std::int32_t reserved1 = 0;
  std::int32_t reserved2 = 0;
};

inline constexpr GUID kDSFxInfoRecord = MakeGuid("{5E3D73B1-D900-11CF-828E-00A0243F1013}");

// The host sets `record` and `family`, the effect fills in `words`.
struct tagDSImgFxInfo {
  GUID record;
  GUID family;
  std::array<std::int32_t, 10> words{};
};

inline constexpr GUID kDSImgFxInfoRecord = MakeGuid("{6024B980-B7F4-11D0-82D3-00A0243F1013}");

// Three families mean a plain filter.
namespace families {

inline constexpr GUID kFilter = MakeGuid("{AE0D7C31-95AA-11D0-B685-00A024191AE0}");
inline constexpr GUID kFilterSecond = MakeGuid("{28610EB3-AECA-11D1-BFAD-0800368E7203}");
inline constexpr GUID kFilterThird = MakeGuid("{95F7E8A0-8B84-11D1-94A3-00A0C911C625}");
inline constexpr GUID kSource = MakeGuid("{AE0D7C33-95AA-11D0-B685-00A024191AE0}");
inline constexpr GUID kGenerator = MakeGuid("{61054A81-9662-11D0-B685-00A024191AE0}");
inline constexpr GUID kPaint = MakeGuid("{AE0D7C40-95AA-11D0-B685-00A024191AE0}");
inline constexpr GUID kTransition = MakeGuid("{61054A80-9662-11D0-B685-00A024191AE0}");
inline constexpr GUID kOther = MakeGuid("{AE0D7C34-95AA-11D0-B685-00A024191AE0}");
// Only registered, never passed as a family of use.
inline constexpr GUID kRegisteredOnly = MakeGuid("{183E3834-D79D-11D0-A7AE-00A0C9068107}");

}  // namespace families

}  // namespace vblur
