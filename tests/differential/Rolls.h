// Random choices that are the same on every machine for the same seed.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>

namespace vblur::differential {

class Rolls {
 public:
  explicit Rolls(std::uint64_t seed, std::uint64_t index) : engine_(seed * 0x9E3779B97F4A7C15u + index) {}

  // Both ends included.
  std::int32_t Whole(std::int32_t low, std::int32_t high) {
    const auto span = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low) + 1;
    return static_cast<std::int32_t>(low + static_cast<std::int64_t>(engine_() % span));
  }
  double Real(double low, double high) { return low + (high - low) * (static_cast<double>(engine_() >> 11) * 0x1p-53); }
  bool OneIn(std::int32_t n) { return Whole(1, n) == 1; }
  template <class T>
  T Of(std::initializer_list<T> choices) {
    return choices.begin()[static_cast<std::size_t>(Whole(0, static_cast<std::int32_t>(choices.size()) - 1))];
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace vblur::differential
