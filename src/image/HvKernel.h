// Kernels: functions of vector code, compiled once for each instruction set, one of which is chosen when the program
// runs. A kernel records the instruction sets that it has run for, so that tests fail if a level's code never ran or a
// kernel has no test. In X_simd.cpp, inside HWY_NAMESPACE:
//
//   void Copy32(...) {
//     HvEnterKernel<"copyBits 32", HWY_TARGETS>(HWY_TARGET);
//     ...
//
// The cost in production: per row, one load and a branch that is taken once per process.
// Tests read the list through tests/support/KernelRuns.h.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace vblur {

class HvKernel {
 public:
  // `targets` has a bit for each instruction set that the kernel is compiled for, as Highway counts them. Kernels are
  // static and join the list for the life of the process.
  HvKernel(const char* name, std::int64_t targets) noexcept : name_(name), targets_(targets), next_(first_) {
    first_ = this;
  }
  HvKernel(const HvKernel&) = delete;
  HvKernel& operator=(const HvKernel&) = delete;

  const char* name() const { return name_; }
  std::int64_t targets() const { return targets_; }

  // By the code of one instruction set, on any thread.
  void enter(std::int64_t target) {
    if ((entered_.load(std::memory_order_relaxed) & target) == 0) {
      entered_.fetch_or(target, std::memory_order_relaxed);
    }
  }
  // The instruction sets entered since the last call.
  std::int64_t takeEntered() { return entered_.exchange(0, std::memory_order_relaxed); }

  // All kernels of the process, in no order.
  static HvKernel* first() { return first_; }
  HvKernel* next() const { return next_; }

 private:
  inline static HvKernel* first_ = nullptr;

  const char* name_;
  std::int64_t targets_;
  HvKernel* next_;
  std::atomic<std::int64_t> entered_{0};
};

// A name as a template argument.
template <std::size_t N>
struct HvKernelName {
  // NOLINTNEXTLINE(google-explicit-constructor): a literal is meant to become a name
  constexpr HvKernelName(const char (&literal)[N]) { std::copy_n(literal, N, text); }
  char text[N];
};

template <HvKernelName Name, std::int64_t Targets>
inline HvKernel hvKernel(Name.text, Targets);

template <HvKernelName Name, std::int64_t Targets>
inline void HvEnterKernel(std::int64_t target) {
  hvKernel<Name, Targets>.enter(target);
}

}  // namespace vblur
