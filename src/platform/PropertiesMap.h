// A class's static table of its properties and their members.
#pragma once

#include <cstdint>
#include <span>

#include "DsTypes.h"
#include "Module.h"

namespace vblur {

class CDSBasePropertyContainer;

inline constexpr std::int32_t kParamDefWord = 32768;
inline constexpr std::uint32_t kNoMoreParameters = 0xFFFFFFFFu;

struct CDSParamDef {
  GUID id;
  HMODULE module = nullptr;
  std::int32_t word = kParamDefWord;
  std::int32_t capability = 0;
  DSValueType type = DSValueType::Float64;
  // String identifiers in the module.
  std::int32_t name = 0;
  std::int32_t shortName = 0;
  std::int32_t hint = 0;
};

struct CDSPropertiesMapEntry {
  // The member that holds the value: a double for a 64-bit float, else a 32-bit integer.
  using Member = void* (*)(CDSBasePropertyContainer& container);

  CDSParamDef param;
  Member member = nullptr;
  std::uint32_t word = kNoMoreParameters;
};

// A class's own properties, chained to its base class's.
struct CDSPropertiesMap {
  const CDSPropertiesMap* parent = nullptr;
  std::span<const CDSPropertiesMapEntry> entries;
};

}  // namespace vblur
