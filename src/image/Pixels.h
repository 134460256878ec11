// The pixel types of the system: four components or one, in four storage types.
//
// A value keeps the scale of the pixel that it was read from: an Rf of R8 data is in 0..255, one of R16 data in
// -32768..32767. No stage normalises to 0..1.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace vblur {

// Four components in the order red, green, blue, alpha. Min and Max bound a component, One is full intensity, Integral
// is 1 for integer storage.
template <class T, std::int32_t Min, std::int32_t Max, std::int32_t One, int Integral>
struct HvRGBABase {
  using Component = T;
  static constexpr int kComponents = 4;
  static constexpr std::int32_t kMin = Min;
  static constexpr std::int32_t kMax = Max;
  static constexpr std::int32_t kOne = One;
  static constexpr bool kIntegral = Integral != 0;

  T red;
  T green;
  T blue;
  T alpha;
};

// The same for one component.
template <class T, std::int32_t Min, std::int32_t Max, std::int32_t One, int Integral>
struct HvChannelBase {
  using Component = T;
  static constexpr int kComponents = 1;
  static constexpr std::int32_t kMin = Min;
  static constexpr std::int32_t kMax = Max;
  static constexpr std::int32_t kOne = One;
  static constexpr bool kIntegral = Integral != 0;

  T value;
};

// Components are reached by name, and by index 0 to 3 where a loop treats all alike.
template <class Base>
struct HvRGBACol : Base {
  using typename Base::Component;

  constexpr Component operator[](int index) const {
    return index == 0 ? this->red : index == 1 ? this->green : index == 2 ? this->blue : this->alpha;
  }
  constexpr Component& operator[](int index) {
    return index == 0 ? this->red : index == 1 ? this->green : index == 2 ? this->blue : this->alpha;
  }
  friend constexpr bool operator==(const HvRGBACol& a, const HvRGBACol& b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
  }
};

template <class Base>
struct HvChannel : Base {
  using typename Base::Component;

  constexpr Component operator[](int) const { return this->value; }
  constexpr Component& operator[](int) { return this->value; }
  friend constexpr bool operator==(const HvChannel& a, const HvChannel& b) { return a.value == b.value; }
};

inline constexpr std::int32_t kInt32Min = -2147483647 - 1;
inline constexpr std::int32_t kInt32Max = 2147483647;

using R8 = HvRGBACol<HvRGBABase<std::uint8_t, 0, 255, 255, 1>>;
using R16 = HvRGBACol<HvRGBABase<std::int16_t, -32768, 32767, 16384, 1>>;
using Ri = HvRGBACol<HvRGBABase<std::int32_t, kInt32Min, kInt32Max, kInt32Max, 1>>;
using Rf = HvRGBACol<HvRGBABase<float, 0, 1, 1, 0>>;
using C8 = HvChannel<HvChannelBase<std::uint8_t, 0, 255, 255, 1>>;
using C16 = HvChannel<HvChannelBase<std::int16_t, -32768, 32767, 16384, 1>>;
using Ci = HvChannel<HvChannelBase<std::int32_t, kInt32Min, kInt32Max, kInt32Max, 1>>;
using Cf = HvChannel<HvChannelBase<float, 0, 1, 1, 0>>;

// Traits of a pixel; a plain int is a pixel of one component.
template <class Pixel>
struct PixelTraits {
  using Component = typename Pixel::Component;
  static constexpr int kComponents = Pixel::kComponents;
};

template <>
struct PixelTraits<int> {
  using Component = int;
  static constexpr int kComponents = 1;
};

template <class Pixel>
using ComponentOf = typename PixelTraits<Pixel>::Component;

template <class Pixel>
constexpr ComponentOf<Pixel> componentOf(const Pixel& pixel, int index) {
  if constexpr (std::is_same_v<Pixel, int>) {
    return pixel;
  } else {
    return pixel[index];
  }
}

template <class Pixel>
constexpr void setComponent(Pixel& pixel, int index, ComponentOf<Pixel> value) {
  if constexpr (std::is_same_v<Pixel, int>) {
    pixel = value;
  } else {
    pixel[index] = value;
  }
}

// The full amount of a mix: the top of the storage range, not One.
template <class Pixel>
inline constexpr std::int32_t kTopOf = Pixel::kMax;

// The layout of host memory, where pixels are read and written in place.
template <class Pixel>
inline constexpr bool kIsPlainPixel =
    std::is_trivially_copyable_v<Pixel>&& std::is_trivially_default_constructible_v<Pixel>;

static_assert(sizeof(R8) == 4 && sizeof(R16) == 8 && sizeof(Ri) == 16 && sizeof(Rf) == 16);
static_assert(sizeof(C8) == 1 && sizeof(C16) == 2 && sizeof(Ci) == 4 && sizeof(Cf) == 4);
static_assert(kIsPlainPixel<R8> && kIsPlainPixel<R16> && kIsPlainPixel<Ri> && kIsPlainPixel<C16>);

}  // namespace vblur
