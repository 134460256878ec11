// The running sums of one box over one vector of floats, which are carried ones: 64-bit integers, as in the plain code
// (ExactBox.h), or doubles that hold the same numbers. Compiled once for each instruction set; see BoxSums-inl.h for
// the functions that every kind of sums has.
#if defined(VBLUR_BLUR_EXACTSUMS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_BLUR_EXACTSUMS_INL_H
#undef VBLUR_BLUR_EXACTSUMS_INL_H
#else
#define VBLUR_BLUR_EXACTSUMS_INL_H
#endif

#include <cmath>
#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "blur/BoxSums-inl.h"
#include "blur/ExactBox.h"
#include "image/CpuIntrinsics-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Floats are held multiplied by a power of two, which changes neither their bits nor how a result rounds. Where an
// instruction rounds floats to integers, that is their number of steps; elsewhere 2^-32 of it.
#undef HV_ROUNDS_FLOATS
#if HV_X86_VECTORS && HWY_TARGET <= HWY_AVX3
#define HV_ROUNDS_FLOATS 1
#else
#define HV_ROUNDS_FLOATS 0
#endif
inline constexpr std::int32_t kHeldShift = HV_ROUNDS_FLOATS ? 0 : 32;

// The steps of a held float, to the nearest integer, to even on a tie.
template <class D, class VF>
HWY_INLINE hn::Vec<hn::RebindToSigned<D>> NearestSteps(D d, VF held) {
#if HV_ROUNDS_FLOATS
  return hn::Vec<hn::RebindToSigned<D>>{RoundedToInt64(held.raw)};
#else
  // Adding 1.5 * 2^52 rounds a double to an integer, which then stands in its low bits: first that of the upper 32
  // bits, then that of the rest, which may be negative.
  const hn::RebindToSigned<D> di;
  const auto upper = hn::PromoteTo(d, held);
  const auto magic = hn::Set(d, 0x1.8p52);
  const auto high = hn::Add(upper, magic);
  const auto rest = hn::Sub(upper, hn::Sub(high, magic));
  const auto low = hn::Add(hn::Mul(rest, hn::Set(d, 0x1p32)), magic);
  return hn::Sub(hn::Add(hn::ShiftLeft<32>(hn::BitCast(di, high)), hn::BitCast(di, low)), hn::BitCast(di, magic));
#endif
}

// An integer of 64 bits to the nearest double, to even on a tie.
template <class D, class VI>
HWY_INLINE hn::Vec<D> NearestDouble(D d, VI v) {
#if HV_ROUNDS_FLOATS
  return hn::ConvertTo(d, v);
#else
  // The upper and the lower 32 bits as mantissas of 2^84 and 2^52; only the last addition rounds.
  const hn::RebindToUnsigned<D> du;
  const auto bits = hn::BitCast(du, v);
  const auto low = hn::Or(hn::And(bits, hn::Set(du, 0xFFFFFFFFu)), hn::Set(du, 0x4330000000000000u));
  const auto high = hn::Xor(hn::ShiftRight<32>(bits), hn::Set(du, 0x4530000080000000u));
  return hn::Add(hn::Sub(hn::BitCast(d, high), hn::Set(d, 0x1p84 + 0x1p63 + 0x1p52)), hn::BitCast(d, low));
#endif
}

// Floats as the filter carries them (`carried` in ExactBox.h).
template <class D>
HWY_INLINE hn::Vec<D> Carried(D d, hn::Vec<D> v) {
  // What is no number differs from itself.
  const auto number = hn::IfThenElseZero(hn::Eq(v, v), v);
  return hn::Min(hn::Max(number, hn::Set(d, -kMostCarried)), hn::Set(d, kMostCarried));
}

struct FloatLanes {
  using D = hn::ScalableTag<double>;
  using DI = hn::RebindToSigned<D>;
  using DF = hn::Rebind<float, D>;
#if HWY_TARGET == HWY_SCALAR
  using DAll = DF;
#else
  using DAll = hn::Twice<DF>;
#endif
  using V = hn::Vec<D>;
  using VF = hn::Vec<DF>;
  using VAll = hn::Vec<DAll>;
};

// What a running sum holds of its components: their steps as integers. For all that the filter carries.
struct IntegerSteps : FloatLanes {
  using Number = std::int64_t;

  explicit HWY_INLINE IntegerSteps(const ExactBox& box)
      : heldPerUnit(hn::Set(DF(), static_cast<float>(std::ldexp(1.0, scale(box))))),
        unitsPerHeld(hn::Set(DAll(), static_cast<float>(std::ldexp(1.0, -scale(box))))) {}

  // The power of two between the factors of a box, for sums of steps, and those for the means that are held.
  static std::int32_t scale(const ExactBox& box) { return box.step - kHeldShift; }
  HWY_INLINE VF Held(VF v) const { return hn::Mul(v, heldPerUnit); }
  HWY_INLINE VAll Unheld(VAll v) const { return hn::Mul(v, unitsPerHeld); }
  HWY_INLINE hn::Vec<DI> Nearest(VF held) const { return NearestSteps(D(), held); }
  static HWY_INLINE V Double(hn::Vec<DI> sum) { return NearestDouble(D(), sum); }

 private:
  VF heldPerUnit;
  VAll unitsPerHeld;
};

// Doubles that are whole multiples of a step, of components up to kMostInDoubles: sums of them are exact, and the
// results are those of the integers in half the instructions, where none rounds floats to 64-bit integers.
struct DoubleSteps : FloatLanes {
  using Number = double;

  // Adding 1.5 * 2^52 steps leaves no room for less than one.
  explicit HWY_INLINE DoubleSteps(const ExactBox& box) : magic(hn::Set(D(), std::ldexp(1.5, 52 - box.step))) {}

  static std::int32_t scale(const ExactBox& box) { return box.step; }
  static HWY_INLINE VF Held(VF v) { return v; }
  static HWY_INLINE VAll Unheld(VAll v) { return v; }
  HWY_INLINE V Nearest(VF v) const { return hn::Sub(hn::Add(hn::PromoteTo(D(), v), magic), magic); }
  static HWY_INLINE V Double(V sum) { return sum; }

 private:
  V magic;
};

template <class Steps>
struct FloatSums : FloatLanes {
  using Component = float;
  using Number = typename Steps::Number;
  using DN = hn::Rebind<Number, D>;
  using VN = hn::Vec<DN>;
  // A vector of floats widens to this many.
  static constexpr int kParts = 2;
  static constexpr std::size_t kLanes = hn::MaxLanes(D());
  static constexpr std::size_t kBytes = kParts * kLanes * sizeof(float);
  static constexpr std::size_t kSumBytes = kParts * kLanes * sizeof(Number);
  static constexpr std::size_t kRingBytes = kSumBytes;
  static constexpr std::size_t kUnits = kUnitsOfStep;
  static constexpr std::size_t kRings = 3;

  struct Sum {
    VN all[kParts];
    HWY_INLINE void Load(const std::byte* p) {
      for (int i = 0; i < kParts; ++i)
        all[i] = hn::LoadU(DN(), reinterpret_cast<const Number*>(p) + static_cast<std::size_t>(i) * kLanes);
    }
    HWY_INLINE void Store(std::byte* p) const {
      for (int i = 0; i < kParts; ++i)
        hn::StoreU(all[i], DN(), reinterpret_cast<Number*>(p) + static_cast<std::size_t>(i) * kLanes);
    }
  };
  // Held floats, and their steps. Steps from a ring have no floats.
  struct Item {
    VF floats[kParts];
    VN steps[kParts];
  };

  explicit HWY_INLINE FloatSums(const ExactBox& box)
      : of(box),
        whole(hn::Set(D(), std::ldexp(box.whole, Steps::scale(box)))),
        atEnds(hn::Set(D(), std::ldexp(box.atEnds, Steps::scale(box)))) {}

  HWY_INLINE Sum Empty() const { return {{hn::Zero(DN()), hn::Zero(DN())}}; }

  HWY_INLINE Item Read(const float* p) const {
    Item item;
    for (int i = 0; i < kParts; ++i) {
      item.floats[i] = of.Held(hn::LoadU(DF(), p + static_cast<std::size_t>(i) * kLanes));
      item.steps[i] = of.Nearest(item.floats[i]);
    }
    return item;
  }
  HWY_INLINE void Write(const Item& item, const Output<float>& output, float* p) const {
#if HWY_TARGET == HWY_SCALAR
    for (int i = 0; i < kParts; ++i) {
      const auto v = of.Unheld(item.floats[i]);
      hn::StoreU(mergedWith(v, output, static_cast<std::size_t>(i), DF()), DF(), p + i);
    }
#else
    const auto v = of.Unheld(hn::Combine(DAll(), item.floats[1], item.floats[0]));
    PutOut(DAll(), mergedWith(v, output, 0, DAll()), output, p);
#endif
  }
  static HWY_INLINE void Keep(const Item& item, std::byte* p) {
    Sum{{item.steps[0], item.steps[1]}}.Store(p);
  }
  static HWY_INLINE Item Kept(const std::byte* p) {
    Item item;
    for (int i = 0; i < kParts; ++i) {
      item.floats[i] = hn::Zero(DF());
      item.steps[i] = hn::LoadU(DN(), reinterpret_cast<const Number*>(p) + static_cast<std::size_t>(i) * kLanes);
    }
    return item;
  }

  HWY_INLINE void Add(Sum& sum, const Item& in) const {
    for (int i = 0; i < kParts; ++i)
      sum.all[i] = hn::Add(sum.all[i], in.steps[i]);
  }
  template <bool kFraction>
  HWY_INLINE Item Step(Sum& sum, const Item& in, const Item& out) const {
    Item result;
    for (int i = 0; i < kParts; ++i) {
      const VN inner = hn::Sub(sum.all[i], out.steps[i]);
      V mean;
      if constexpr (kFraction) {
        const VN ends = hn::Add(in.steps[i], out.steps[i]);
        mean = hn::Add(hn::Mul(Steps::Double(inner), whole), hn::Mul(Steps::Double(ends), atEnds));
      } else {
        mean = hn::Mul(Steps::Double(sum.all[i]), whole);
      }
      sum.all[i] = hn::Add(inner, in.steps[i]);
      result.floats[i] = hn::DemoteTo(DF(), mean);
      result.steps[i] = of.Nearest(result.floats[i]);
    }
    return result;
  }

 private:
  // The bits of v where the mask is set, those of `others` elsewhere.
  template <class DAny>
  static HWY_INLINE hn::Vec<DAny> mergedWith(hn::Vec<DAny> v, const Output<float>& output, std::size_t at, DAny d) {
    if (output.others == nullptr) return v;
    return Merged(hn::LoadU(d, output.mask + at), v, hn::LoadU(d, output.others + at));
  }

  Steps of;
  V whole;
  V atEnds;
};

using ExactSums = FloatSums<IntegerSteps>;
using DoubleSums = FloatSums<DoubleSteps>;
inline constexpr bool kSumsInDoubles = !HV_ROUNDS_FLOATS;

// Sums or rings of DoubleSums to those of ExactSums, in place. Slots that are not filled yet may hold anything.
HWY_INLINE void IntoIntegers(const ExactBox& box, std::byte* sums, std::size_t bytes) {
  const FloatLanes::D d;
  const FloatLanes::DI di;
  const auto stepsPerUnit = hn::Set(d, std::ldexp(1.0, box.step));
  for (std::size_t at = 0; at < bytes; at += hn::Lanes(d) * sizeof(double)) {
    const auto steps = hn::Mul(hn::LoadU(d, reinterpret_cast<const double*>(sums + at)), stepsPerUnit);
    hn::StoreU(hn::ConvertTo(di, steps), di, reinterpret_cast<std::int64_t*>(sums + at));
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif  // include guard
