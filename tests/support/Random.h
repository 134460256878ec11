// Repeatable random cases: each has its own seed, which a failure names.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace vblur::test {

// The same numbers with every standard library.
class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed * 0x9E3779B97F4A7C15u + 1) {}

  // low and high inclusive.
  int within(int low, int high) {
    const auto choices = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low + 1);
    return static_cast<int>(low + static_cast<std::int64_t>(engine_() % choices));
  }
  bool oneIn(int n) { return within(1, n) == 1; }
  float between(float low, float high) {
    return low + (high - low) * static_cast<float>(within(0, 1 << 20)) / static_cast<float>(1 << 20);
  }
  template <class T>
  T oneOf(std::initializer_list<T> choices) {
    return choices.begin()[within(0, static_cast<int>(choices.size()) - 1)];
  }

 private:
  std::mt19937_64 engine_;
};

inline std::uint64_t numberFromEnvironment(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

// Sanitizers are slow: they run a share of the cases.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr int kShareOfCases = 8;
#else
inline constexpr int kShareOfCases = 1;
#endif

// Whether VBLUR_TEST_SEED names the one case to run.
inline bool repeatsOneCase() {
  return std::getenv("VBLUR_TEST_SEED") != nullptr;
}

// Whether too few random cases run for each kernel to have its turn.
inline bool runsFewCases() {
  return repeatsOneCase() || kShareOfCases > 1;
}

// Calls body(random) for each case. VBLUR_TEST_CASES multiplies the number of cases;
// VBLUR_TEST_SEED=s runs the one case with that seed.
template <class Body>
void forRandomCases(int usualCount, const Body& body) {
  const auto run = [&](std::uint64_t seed) {
    SCOPED_TRACE("repeat with VBLUR_TEST_SEED=" + std::to_string(seed));
    Random random(seed);
    body(random);
  };
  if (repeatsOneCase()) return run(numberFromEnvironment("VBLUR_TEST_SEED", 0));
  const auto usual = static_cast<std::uint64_t>((usualCount + kShareOfCases - 1) / kShareOfCases);
  const std::uint64_t count = usual * numberFromEnvironment("VBLUR_TEST_CASES", 1);
  for (std::uint64_t seed = 1; seed <= count && !::testing::Test::HasFailure(); ++seed)
    run(seed);
}

}  // namespace vblur::test
