// The blend operations by name, beside those of the model.
#pragma once

#include <array>
#include <cstdint>

#include "composite/HvMerge.h"
#include "tests/composite/Pictures.h"
#include "tests/model/blend_methods.h"

namespace vblur::test {

// The class that has the operations.
template <class Pixel>
using Blend = HvMerge<Pixel, Rf, Pixel::kOne>;

template <class Pixel>
struct NamedOperation {
  const char* name;
  Pixel (*ofIntegers)(const Pixel&, const Pixel&);
  Pixel (*ofFloats)(const Rf&, const Rf&);
  model::Pixel (*modelOfIntegers)(model::Depth, const model::Pixel&, const model::Pixel&);
  model::Pixel (*modelOfFloats)(model::Depth, const model::blend::FloatPixel&, const model::blend::FloatPixel&);
};

// In the order of the mix-back list, from its third entry on.
template <class Pixel>
constexpr std::array<NamedOperation<Pixel>, 17> kNamedOperations = {{
    {"Luminance", Blend<Pixel>::Luminance::ofIntegers, Blend<Pixel>::Luminance::ofFloats, model::blend::Luminance,
     model::blend::Luminance},
    {"Chroma", Blend<Pixel>::Chroma::ofIntegers, Blend<Pixel>::Chroma::ofFloats, model::blend::Chroma,
     model::blend::Chroma},
    {"Hue", Blend<Pixel>::Hue::ofIntegers, Blend<Pixel>::Hue::ofFloats, model::blend::Hue, model::blend::Hue},
    {"Saturation", Blend<Pixel>::Saturation::ofIntegers, Blend<Pixel>::Saturation::ofFloats, model::blend::Saturation,
     model::blend::Saturation},
    {"Value", Blend<Pixel>::Value::ofIntegers, Blend<Pixel>::Value::ofFloats, model::blend::Value, model::blend::Value},
    {"Colour", Blend<Pixel>::Colour::ofIntegers, Blend<Pixel>::Colour::ofFloats, model::blend::Colour,
     model::blend::Colour},
    {"Darken", Blend<Pixel>::Darken::ofIntegers, Blend<Pixel>::Darken::ofFloats, model::blend::Darken,
     model::blend::Darken},
    {"Lighten", Blend<Pixel>::Lighten::ofIntegers, Blend<Pixel>::Lighten::ofFloats, model::blend::Lighten,
     model::blend::Lighten},
    {"Screen", Blend<Pixel>::Screen::ofIntegers, Blend<Pixel>::Screen::ofFloats, model::blend::Screen,
     model::blend::Screen},
    {"Multiply", Blend<Pixel>::Multiply::ofIntegers, Blend<Pixel>::Multiply::ofFloats, model::blend::Multiply,
     model::blend::Multiply},
    {"Add", Blend<Pixel>::Add::ofIntegers, Blend<Pixel>::Add::ofFloats, model::blend::Add, model::blend::Add},
    {"Add Over", Blend<Pixel>::AddOver::ofIntegers, Blend<Pixel>::AddOver::ofFloats, model::blend::AddOver,
     model::blend::AddOver},
    {"Add Under", Blend<Pixel>::AddUnder::ofIntegers, Blend<Pixel>::AddUnder::ofFloats, model::blend::AddUnder,
     model::blend::AddUnder},
    {"Subtract", Blend<Pixel>::Subtract::ofIntegers, Blend<Pixel>::Subtract::ofFloats, model::blend::Subtract,
     model::blend::Subtract},
    {"Difference", Blend<Pixel>::Difference::ofIntegers, Blend<Pixel>::Difference::ofFloats, model::blend::Difference,
     model::blend::Difference},
    {"Overlay", Blend<Pixel>::Overlay::ofIntegers, Blend<Pixel>::Overlay::ofFloats, model::blend::Overlay,
     model::blend::Overlay},
    {"HardLight", Blend<Pixel>::HardLight::ofIntegers, Blend<Pixel>::HardLight::ofFloats, model::blend::HardLight,
     model::blend::HardLight},
}};

}  // namespace vblur::test
