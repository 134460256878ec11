// Renders random jobs with extreme numbers on small pictures: whatever a job or another host says, a frame is rendered
// or refused. What goes wrong is found by the sanitizers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "effect/Blur.h"
#include "host/hosted/HostImage.h"
#include "host/jobs/Job.h"

namespace vblur::test {

// How many frames came to which end.
struct JobFuzzCounts {
  std::int64_t rendered = 0;
  std::int64_t refusedByHost = 0;    // the job, or a picture's place, by a line of the host
  std::int64_t refusedByEffect = 0;  // as the effect's facts say
  std::int64_t outOfMemory = 0;
};

class JobFuzz {
 public:
  // Frame `index` of a seed is the same on every machine.
  explicit JobFuzz(std::uint64_t seed) : seed_(seed) {}

  // Renders a frame. Every other one is a job that passes the host's checks, through a job file and back; the rest are
  // calls that the host would not make. Throws std::logic_error for a job that is not what it was after its file.
  void Render(std::uint64_t index);

  const JobFuzzCounts& counts() const { return counts_; }

 private:
  std::uint64_t seed_;
  JobFuzzCounts counts_;
  ComPtr<Blur> effect_;  // serves many frames: what one leaves behind is part of the next
};

}  // namespace vblur::test
