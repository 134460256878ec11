// The blend operations by name, next to the model's.
#pragma once

#include <array>
#include <cstdint>

#include "composite/ColourMerge.h"
#include "composite/HvRGBMerge.h"
#include "tests/composite/Pictures.h"
#include "tests/model/blend_methods.h"

namespace vblur::test {

template <class Pixel>
struct NamedOperation {
  const char* name;
  Pixel (*ofIntegers)(const Pixel&, const Pixel&);
  Pixel (*ofFloats)(const Rf&, const Rf&);
  model::Pixel (*modelOfIntegers)(model::Depth, const model::Pixel&, const model::Pixel&);
  model::Pixel (*modelOfFloats)(model::Depth, const model::blend::FloatPixel&, const model::blend::FloatPixel&);
};

// In the order of the mix-back list, whose third entry is the first of them.
template <class Pixel>
constexpr std::array<NamedOperation<Pixel>, 17> kNamedOperations = {{
    {"Luminance", blend::Luminance<Pixel>::ofIntegers, blend::Luminance<Pixel>::ofFloats, model::blend::Luminance,
     model::blend::Luminance},
    {"Chroma", blend::Chroma<Pixel>::ofIntegers, blend::Chroma<Pixel>::ofFloats, model::blend::Chroma,
     model::blend::Chroma},
    {"Hue", blend::Hue<Pixel>::ofIntegers, blend::Hue<Pixel>::ofFloats, model::blend::Hue, model::blend::Hue},
    {"Saturation", blend::Saturation<Pixel>::ofIntegers, blend::Saturation<Pixel>::ofFloats, model::blend::Saturation,
     model::blend::Saturation},
    {"Value", blend::Value<Pixel>::ofIntegers, blend::Value<Pixel>::ofFloats, model::blend::Value, model::blend::Value},
    {"Colour", blend::Colour<Pixel>::ofIntegers, blend::Colour<Pixel>::ofFloats, model::blend::Colour,
     model::blend::Colour},
    {"Darken", blend::Darken<Pixel>::ofIntegers, blend::Darken<Pixel>::ofFloats, model::blend::Darken,
     model::blend::Darken},
    {"Lighten", blend::Lighten<Pixel>::ofIntegers, blend::Lighten<Pixel>::ofFloats, model::blend::Lighten,
     model::blend::Lighten},
    {"Screen", blend::Screen<Pixel>::ofIntegers, blend::Screen<Pixel>::ofFloats, model::blend::Screen,
     model::blend::Screen},
    {"Multiply", blend::Multiply<Pixel>::ofIntegers, blend::Multiply<Pixel>::ofFloats, model::blend::Multiply,
     model::blend::Multiply},
    {"Add", blend::Add<Pixel>::ofIntegers, blend::Add<Pixel>::ofFloats, model::blend::Add, model::blend::Add},
    {"Add Over", blend::AddOver<Pixel>::ofIntegers, blend::AddOver<Pixel>::ofFloats, model::blend::AddOver,
     model::blend::AddOver},
    {"Add Under", blend::AddUnder<Pixel>::ofIntegers, blend::AddUnder<Pixel>::ofFloats, model::blend::AddUnder,
     model::blend::AddUnder},
    {"Subtract", blend::Subtract<Pixel>::ofIntegers, blend::Subtract<Pixel>::ofFloats, model::blend::Subtract,
     model::blend::Subtract},
    {"Difference", blend::Difference<Pixel>::ofIntegers, blend::Difference<Pixel>::ofFloats, model::blend::Difference,
     model::blend::Difference},
    {"Overlay", blend::Overlay<Pixel>::ofIntegers, blend::Overlay<Pixel>::ofFloats, model::blend::Overlay,
     model::blend::Overlay},
    {"HardLight", blend::HardLight<Pixel>::ofIntegers, blend::HardLight<Pixel>::ofFloats, model::blend::HardLight,
     model::blend::HardLight},
}};

}  // namespace vblur::test
