// The random choice of a fuzzer's next action.
#pragma once

#include "tests/support/Random.h"

namespace vblur::test {

// One of the actions, each as often as its `weight` says; there is at least one, and no weight is below 0.
template <class Actions>
const auto& ChooseWeighted(const Actions& actions, Random& random) {
  int sum = 0;
  for (const auto& action : actions)
    sum += action.weight;
  int left = random.within(0, sum - 1);
  const auto* chosen = actions.data();
  for (; left >= chosen->weight; ++chosen)
    left -= chosen->weight;
  return *chosen;
}

}  // namespace vblur::test
