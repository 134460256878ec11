// Which code the pixel loops run: the plain twin, or vector code for one of the instruction sets that this
// machine has. All give the same bits; the choice is for tests, measurements and trouble.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vblur {

// The levels that this machine can run: "twin", then vector code from the narrowest instruction set to the
// best, by the names that Highway gives them ("SSE4", "AVX2", "AVX3", ...), then "native", which stands for
// the best of them and is what a process starts with.
const std::vector<std::string>& HvCpuLevels();

// Takes effect between renders; false for a level that is not in the list.
bool HvSetCpuLevel(std::string_view level);
// The level in use; never "native", but the instruction set that it stands for.
std::string HvCpuLevel();

// False at the level "twin".
bool HvUsesVectors();

// Has grown since the last question if vector code has been entered: a test at a level that never reached its code
// has tested nothing.
std::uint64_t HvVectorCalls();
// Cheap enough for short rows on many threads: most often it reads a flag.
void HvCountVectorCall();

}  // namespace vblur
