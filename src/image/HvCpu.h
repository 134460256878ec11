// Which code the pixel loops run: the plain twin, or vector code for one of the instruction sets that this
// machine has. All give the same bits; the choice is for tests, benchmarks and debugging.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vblur {

// The levels of this machine: "twin", then its instruction sets from the narrowest to the best under Highway's names
// ("SSE4", "AVX2", "AVX3", ...), then "native", the best of them and the default.
const std::vector<std::string>& HvCpuLevels();

// Takes effect between renders; false for a level that is not in the list.
bool HvSetCpuLevel(std::string_view level);
// The level in use; its instruction set for "native".
std::string HvCpuLevel();

// False at the level "twin".
bool HvUsesVectors();

}  // namespace vblur
