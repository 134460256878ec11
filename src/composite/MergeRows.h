// The merge of contiguous pixels by vector code, equal to mergeRun bit for bit.
#pragma once

#include <cstdint>

#include "composite/HvMerge.h"
#include "composite/MergeKernel.h"
#include "image/Pixels.h"

namespace vblur {

// n pixels; out may be a or b.
template <class Pixel>
using MergeRow = void (*)(const Pixel* a, const Pixel* b, Pixel* out, std::int32_t n, const MergeWeights& weights);

// Null where the plain code has to run: at the level "twin", and for weights beyond kMostWeight. Null for a method that
// does not exist, too.
template <class Pixel>
MergeRow<Pixel> mergeRowFor(std::int32_t method, MergeForm form, const MergeWeights& weights);

extern template MergeRow<R8> mergeRowFor<R8>(std::int32_t, MergeForm, const MergeWeights&);
extern template MergeRow<R16> mergeRowFor<R16>(std::int32_t, MergeForm, const MergeWeights&);

// Of floats, with any weights; the plain code is that of MergeKernel.h, too.
template <>
MergeRow<Rf> mergeRowFor<Rf>(std::int32_t method, MergeForm form, const MergeWeights& weights);
MergeRow<Rf> floatRow(std::int32_t method, MergeForm form);

// The same for two families of methods, Darken to Add Under and Luminance to Colour; null for a method of the other.
template <class Pixel>
MergeRow<Pixel> arithmeticRow(std::int32_t method, MergeForm form, const MergeWeights& weights);
template <class Pixel>
MergeRow<Pixel> colourRow(std::int32_t method, MergeForm form, const MergeWeights& weights);

template <>
MergeRow<R8> arithmeticRow<R8>(std::int32_t method, MergeForm form, const MergeWeights& weights);
template <>
MergeRow<R16> arithmeticRow<R16>(std::int32_t method, MergeForm form, const MergeWeights& weights);
template <>
MergeRow<R8> colourRow<R8>(std::int32_t method, MergeForm form, const MergeWeights& weights);
template <>
MergeRow<R16> colourRow<R16>(std::int32_t method, MergeForm form, const MergeWeights& weights);

}  // namespace vblur
