// Random frames as sequences: one start of the program renders all frames of one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/hashes/HashedFrames.h"

namespace vblur::hashes {

// Frames of one job: of one use, depth, region and place, with lists and switches of one choice. Pictures and numbers
// are drawn for each frame.
struct HashedSequence {
  std::string name;                // sequences/INDEX
  host::Job job;                   // of all frames: patterns of file names, a key of each animated property a frame
  std::vector<NamedFrame> frames;  // sequences/INDEX/FRAME: each as a job of its own
};

inline constexpr std::uint64_t kSequences = 20;
inline constexpr std::int32_t kFramesOfSequence = 100;

// The first `count` ones, the same on every machine. Their first frames show the effect.
std::vector<HashedSequence> DrawSequences(std::uint64_t count);

}  // namespace vblur::hashes
