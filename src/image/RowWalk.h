// Walks a thread's rows by runs, over which the step of each input is constant: the inner loop needs pointers
// and a count only.
#pragma once

#include <algorithm>
#include <cstdint>

#include "image/HvRowProcessor.h"
#include "image/HvTexture.h"

namespace vblur {

// When a row loop polls the interrupt record.
enum class PollAt { AfterRow, BeforeRow };

// For each row of the loop, for each run: body(out, n, run...) with the target's first pixel, the
// number of pixels, and a run of each input. n is the minimum of the
// runs' lengths and the rest of the row. Returns between rows once the record says stop.
template <PollAt When = PollAt::AfterRow, class OutTexture, class Body, class... InTextures>
void walkRuns(const HvRowLoop& loop, HvInterruptRecord* record, const OutTexture& map, Body&& body,
              const InTextures&... inputs) {
  for (std::int32_t y = loop.firstRow; y < loop.lastRow; y += loop.rowStep) {
    if (When == PollAt::BeforeRow && poll(record) != 0) return;
    auto* out = map.target(loop.x1, y);
    for (std::int32_t x = loop.x1; x < loop.x2;) {
      const auto step = [&](const auto&... runs) {
        const std::int32_t n = std::min({loop.x2 - x, runs.length...});
        body(out, n, runs...);
        x += n;
        out += n;
      };
      step(inputs.readRun(x, y)...);
    }
    if (When == PollAt::AfterRow && poll(record) != 0) return;
  }
}

}  // namespace vblur
