// The kernel registry, shared by tests and benchmarks. A kernel in no list fails the tests of its folder. The lists are
// tests/image/ImageKernels.h, tests/blur/BlurKernels.h and tests/composite/CompositeKernels.h; a case is a few lines
// there:
//
//   cases.push_back(rowCase<R8, C8>("extractRow 8", "extractRow 8", [](const R8* in, std::int32_t n, C8* out) {
//     extractRow<1>(out, forwardRun(in, n), n);
//   }));
//
// The function makes the call that production code makes, so that it runs plain code at level "twin" and the kernel at
// the others. tests/support/KernelCaseTest.h compares the two bit for bit, bench/Kernels_bench.cpp measures them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "image/HvTexture.h"

namespace vblur::test {

// n elements of each row. `out` is initialised, may be read, and does not overlap the others.
struct KernelRow {
  const void* a = nullptr;
  const void* b = nullptr;
  void* out = nullptr;
  std::int32_t n = 0;
};

struct KernelCase {
  std::string name;
  // HvEnterKernel's name of the one kernel that must run.
  std::string kernel;
  // Bytes of an element; bBytes 0: no second row.
  std::size_t aBytes = 0;
  std::size_t bBytes = 0;
  std::size_t outBytes = 0;
  std::function<void(const KernelRow&)> run;
  // n is a multiple of it.
  std::int32_t unit = 1;
};

// run(const A* a, n, Out* out)
template <class A, class Out, class Run>
KernelCase rowCase(std::string name, std::string kernel, Run run) {
  return {std::move(name),
          std::move(kernel),
          sizeof(A),
          0,
          sizeof(Out),
          [run](const KernelRow& row) { run(static_cast<const A*>(row.a), row.n, static_cast<Out*>(row.out)); }};
}

// run(const A* a, const B* b, n, Out* out)
template <class A, class B, class Out, class Run>
KernelCase pairCase(std::string name, std::string kernel, Run run) {
  return {std::move(name), std::move(kernel), sizeof(A), sizeof(B), sizeof(Out), [run](const KernelRow& row) {
            run(static_cast<const A*>(row.a), static_cast<const B*>(row.b), row.n, static_cast<Out*>(row.out));
          }};
}

// Runs over a row of n pixels: forward, in reverse, and its first pixel n times.
template <class Pixel>
HvPixelRun<Pixel> forwardRun(const Pixel* in, std::int32_t n) {
  return {in, 1, n, true};
}
template <class Pixel>
HvPixelRun<Pixel> reverseRun(const Pixel* in, std::int32_t n) {
  return {n > 0 ? in + (n - 1) : in, -1, n, true};
}
template <class Pixel>
HvPixelRun<Pixel> repeatedRun(const Pixel* in, std::int32_t n) {
  return {in, 0, n, true};
}

}  // namespace vblur::test
