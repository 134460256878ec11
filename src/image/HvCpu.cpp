#include "image/HvCpu.h"

#include <algorithm>
#include <atomic>

// AVX3_DL, which some kernels are compiled for.
#define HWY_WANT_AVX3_DL
#include <hwy/highway.h>

namespace vblur {
namespace {

constexpr std::string_view kTwin = "twin";
constexpr std::string_view kNative = "native";

std::atomic<bool> usesVectors{true};
// 0: none chosen, the best runs.
std::atomic<std::int64_t> chosenTarget{0};

// Best first: the lower the bit, the better the target. Called once, since SupportedAndGeneratedTargets resets the
// chosen target.
const std::vector<std::int64_t>& Targets() {
  static const std::vector<std::int64_t> targets = [] {
    std::vector<std::int64_t> supported = hwy::SupportedAndGeneratedTargets();
    std::sort(supported.begin(), supported.end());
    return supported;
  }();
  return targets;
}

}  // namespace

const std::vector<std::string>& HvCpuLevels() {
  static const std::vector<std::string> levels = [] {
    std::vector<std::string> names{std::string(kTwin)};
    const auto& targets = Targets();
    for (auto target = targets.rbegin(); target != targets.rend(); ++target)
      names.emplace_back(hwy::TargetName(*target));
    names.emplace_back(kNative);
    return names;
  }();
  return levels;
}

bool HvSetCpuLevel(std::string_view level) {
  if (level == kTwin) {
    usesVectors.store(false, std::memory_order_relaxed);
    return true;
  }
  const auto& targets = Targets();
  const auto chosen =
      level == kNative ? targets.begin() : std::find_if(targets.begin(), targets.end(), [&](std::int64_t target) {
        return level == hwy::TargetName(target);
      });
  if (chosen == targets.end()) return false;
  // A kernel that is not compiled for the chosen set runs for the best below it.
  std::int64_t atMost = 0;
  for (const std::int64_t target : targets)
    atMost |= target >= *chosen ? target : 0;
  hwy::GetChosenTarget().Update(atMost);
  chosenTarget.store(*chosen, std::memory_order_relaxed);
  usesVectors.store(true, std::memory_order_relaxed);
  return true;
}

std::string HvCpuLevel() {
  if (!HvUsesVectors()) return std::string(kTwin);
  const std::int64_t chosen = chosenTarget.load(std::memory_order_relaxed);
  return hwy::TargetName(chosen != 0 ? chosen : Targets().front());
}

bool HvUsesVectors() {
  return usesVectors.load(std::memory_order_relaxed);
}

}  // namespace vblur
