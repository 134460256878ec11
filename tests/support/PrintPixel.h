// Pixels in the messages of failed tests.
#pragma once

#include <ostream>

#include "image/Pixels.h"

namespace vblur {

template <class Base>
void PrintTo(const HvRGBACol<Base>& pixel, std::ostream* out) {
  *out << '(' << +pixel.red << ' ' << +pixel.green << ' ' << +pixel.blue << ' ' << +pixel.alpha << ')';
}

template <class Base>
void PrintTo(const HvChannel<Base>& pixel, std::ostream* out) {
  *out << '(' << +pixel.value << ')';
}

}  // namespace vblur
