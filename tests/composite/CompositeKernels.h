// The kernels of src/composite, for tests and benchmarks.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "composite/HvDsMaskFixer.h"
#include "composite/HvDsPaintCombiner.h"
#include "composite/HvMerge.h"
#include "composite/HvQuickMixer.h"
#include "composite/MixCombiner.h"
#include "tests/composite/MergeKernels.h"
#include "tests/support/KernelCase.h"

namespace vblur::test {

// A row of n pixels as a picture.
template <class Pixel, class Accum = Rf>
class RowPicture : public HvTexture<Pixel, Accum> {
 public:
  RowPicture(const Pixel* row, std::int32_t n) { this->wrap(n, 1, const_cast<Pixel*>(row)); }
};

// On the calling thread alone: a row is too little work for more.
template <class Processor, class Pixel, class Second>
void combineRow(Processor& processor, const Pixel* a, const Second* b, std::int32_t n, Pixel* out) {
  RowPicture<Pixel> first(a, n);
  RowPicture<Second, std::conditional_t<std::is_same_v<Second, Pixel>, Rf, Cf>> second(b, n);
  RowPicture<Pixel> result(out, n);
  processor.Imager::flags |= Imager::kOneThread;
  processor.process(&first, &second, &result);
}

// The names of kernels end with it.
template <class Pixel>
std::string depthName() {
  return " " + std::to_string(2 * sizeof(Pixel));
}

template <class Pixel>
void addMerges(std::vector<KernelCase>& cases) {
  using Merge = HvMerge<Pixel, Rf, Pixel::kOne>;
  struct Form {
    const char* name;
    float gain;
    float blend;
  };
  static constexpr Form kForms[] = {
      {"integer", 1.0f, 0.5f}, {"gained", 0.75f, 0.5f}, {"towards a", 1.0f, 0.35f}, {"towards b", 1.0f, 0.8f}};
  for (std::size_t i = 0; i < kMergeMethods.size(); ++i) {
    for (const Form& form : kForms) {
      Merge merge;
      merge.rgbMode = 1;
      merge.method = kMergeMethods[i];
      merge.setGains(form.gain, 1.0f);
      merge.setBlend(form.blend);
      const std::string kernel = mergeKernelName(merge);
      const std::string name = kernel + ", " + kMergeNames[i] + ", " + form.name;
      cases.push_back(pairCase<Pixel, Pixel, Pixel>(
          name, kernel, [merge](const Pixel* a, const Pixel* b, std::int32_t n, Pixel* out) {
            Merge once = merge;
            combineRow(once, a, b, n, out);
          }));
    }
  }
}

template <class Pixel>
void addMixes(std::vector<KernelCase>& cases) {
  using Mask = std::conditional_t<std::is_same_v<Pixel, R8>, C8, std::conditional_t<Pixel::kIntegral, C16, Cf>>;
  const std::string depth = depthName<Pixel>();
  for (const float weightA : {0.3f, 1.4f}) {
    const std::string name = "mixRow" + depth + (weightA < 1.0f ? "" : ", clamped");
    cases.push_back(pairCase<Pixel, Pixel, Pixel>(
        name, "mixRow" + depth, [weightA](const Pixel* a, const Pixel* b, std::int32_t n, Pixel* out) {
          MixCombiner<Pixel, Rf, Pixel::kOne> mix;
          mix.weightA = weightA;
          mix.weightB = 0.7f;
          combineRow(mix, a, b, n, out);
        }));
  }
  cases.push_back(pairCase<Pixel, Pixel, Pixel>("quickMixRow" + depth, "quickMixRow" + depth,
                                                [](const Pixel* a, const Pixel* b, std::int32_t n, Pixel* out) {
                                                  RowPicture<Pixel> first(a, n);
                                                  RowPicture<Pixel> second(b, n);
                                                  RowPicture<Pixel> result(out, n);
                                                  HvQuickMixer<Pixel, Rf, Pixel::kMax> mixer;
                                                  mixer.amount = 0.3f;
                                                  mixer.options &= ~static_cast<std::uint32_t>(HvImgProc::kUseThreads);
                                                  mixer.run(&first, &second, &result);
                                                }));
  cases.push_back(rowCase<Pixel, Pixel>("mixByAlphaRow" + depth, "mixByAlphaRow" + depth,
                                        [](const Pixel* in, std::int32_t n, Pixel* out) {
                                          RowPicture<Pixel> source(in, n);
                                          RowPicture<Pixel> result(out, n);
                                          HvDsMaskFixer<Pixel, Rf, Pixel::kMax> fixer;
                                          fixer.mixByAlpha = 1;
                                          fixer.channels = 2;
                                          fixer.flags |= Imager::kOneThread;
                                          fixer.process(&source, &result);
                                        }));
  cases.push_back(pairCase<Pixel, Mask, Pixel>("paintRow" + depth, "paintRow" + depth,
                                               [](const Pixel* a, const Mask* mask, std::int32_t n, Pixel* out) {
                                                 HvDsPaintCombiner<Pixel, Rf, Mask, Cf> painter;
                                                 combineRow(painter, a, mask, n, out);
                                               }));
}

// The bytes of the cases are random, and the components of pictures are finite: those of all others are 0 here.
inline void addFloats(std::vector<KernelCase>& cases) {
  std::vector<KernelCase> floats;
  addMerges<Rf>(floats);
  addMixes<Rf>(floats);
  for (KernelCase& each : floats) {
    each.run = [run = each.run, aBytes = each.aBytes, bBytes = each.bBytes](const KernelRow& row) {
      const auto finite = [&](const void* from, std::size_t bytes) {
        std::vector<float> numbers(static_cast<std::size_t>(row.n) * bytes / sizeof(float));
        if (!numbers.empty()) std::memcpy(numbers.data(), from, numbers.size() * sizeof(float));
        for (float& number : numbers) {
          if (!std::isfinite(number)) number = 0.0f;
        }
        return numbers;
      };
      const std::vector<float> a = finite(row.a, aBytes);
      const std::vector<float> b = finite(row.b, bBytes);
      const std::vector<float> out = finite(row.out, sizeof(Rf));
      std::memcpy(row.out, out.data(), out.size() * sizeof(float));
      run({a.data(), b.data(), row.out, row.n});
    };
    cases.push_back(std::move(each));
  }
}

inline std::vector<KernelCase> compositeKernels() {
  std::vector<KernelCase> cases;
  addMerges<R8>(cases);
  addMerges<R16>(cases);
  addMixes<R8>(cases);
  addMixes<R16>(cases);
  addFloats(cases);
  return cases;
}

}  // namespace vblur::test
