// Fans the pixel loop of a processor out over all threads.
#pragma once

#include <cstdint>
#include <type_traits>

#include "image/HvThreads.h"

namespace vblur {

namespace pass_runner {

template <class Processor, class... Textures>
void rowsOfThread(HvWord processor, std::conditional_t<true, HvWord, Textures>... textures) {
  reinterpret_cast<Processor*>(processor)->processRows(reinterpret_cast<Textures*>(textures)...);
}

}  // namespace pass_runner

// Calls processor.processRows(textures...), which is virtual, on every thread of a run.
template <class Processor, class... Textures>
void runRowsOnAllThreads(Processor* processor, Textures*... textures) {
  HvThreadRun(reinterpret_cast<HvThreadFunction>(&pass_runner::rowsOfThread<Processor, Textures...>),
              1 + static_cast<std::int32_t>(sizeof...(Textures)), reinterpret_cast<HvWord>(processor),
              reinterpret_cast<HvWord>(textures)...);
}

}  // namespace vblur
