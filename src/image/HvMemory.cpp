#include "image/HvMemory.h"

#include "image/HvThreadWord.h"

namespace vblur {
namespace {

void Charge(HvMemoryAccount* account) {
  HvSetThreadWord(HvThreadWord::Account, reinterpret_cast<std::intptr_t>(account));
}

}  // namespace

void HvMemoryAccount::take(std::size_t bytes) {
  const auto amount = static_cast<std::int64_t>(bytes);
  const std::int64_t held = held_.fetch_add(amount, std::memory_order_relaxed) + amount;
  std::int64_t known = peak_.load(std::memory_order_relaxed);
  while (held > known && !peak_.compare_exchange_weak(known, held, std::memory_order_relaxed)) {
  }
}

void HvMemoryAccount::give(std::size_t bytes) {
  held_.fetch_sub(static_cast<std::int64_t>(bytes), std::memory_order_relaxed);
}

HvMemoryScope::HvMemoryScope(HvMemoryAccount* account) : outer_(HvChargedAccount()) {
  Charge(account);
}

HvMemoryScope::~HvMemoryScope() {
  Charge(outer_);
}

HvMemoryAccount* HvChargedAccount() {
  return reinterpret_cast<HvMemoryAccount*>(HvGetThreadWord(HvThreadWord::Account));
}

void HvNoteTaken(std::size_t bytes) {
  if (HvMemoryAccount* const charged = HvChargedAccount(); charged != nullptr) charged->take(bytes);
}

void HvNoteGiven(std::size_t bytes) {
  if (HvMemoryAccount* const charged = HvChargedAccount(); charged != nullptr) charged->give(bytes);
}

}  // namespace vblur
