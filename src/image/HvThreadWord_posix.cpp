#include "image/HvThreadWord.h"

namespace vblur {
namespace {

thread_local std::intptr_t threadWords[kHvThreadWords] = {};

}  // namespace

std::intptr_t HvGetThreadWord(HvThreadWord which) {
  return threadWords[static_cast<int>(which)];
}

void HvSetThreadWord(HvThreadWord which, std::intptr_t value) {
  threadWords[static_cast<int>(which)] = value;
}

std::uintptr_t HvThreadNumber() {
  return reinterpret_cast<std::uintptr_t>(&threadWords);
}

}  // namespace vblur
