// Random pictures, windows and radii for comparisons of the filter with the model.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "blur/ExactBox.h"
#include "image/Imager.h"
#include "image/Pixels.h"
#include "tests/model/window.h"
#include "tests/support/Canvas.h"
#include "tests/support/CpuLevel.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {

// Pictures for large radii have to be small: the model sums one pixel at a time.
enum class Radii { Everyday, Large, BelowZero };

inline float randomRadius(Random& random, Radii kind) {
  switch (kind) {
    case Radii::Everyday:
      return random.oneIn(3) ? random.between(0.0f, 12.0f)
                             : random.oneOf({0.0f, 0.00001f, 0.00005f, 0.000061f, 0.25f, 0.5f, 0.99999f, 1.0f, 1.25f,
                                             2.0f, 2.9999f, 5.5f, 8.0f});
    case Radii::Large:
      return random.oneOf({63.0f, 63.5f, 64.0f, 64.00001f, 64.75f, 65.0f, 100.0f, 100.3f, 1000.0f, 20000.0f});
    case Radii::BelowZero:
      return random.oneIn(3) ? random.between(-9.0f, 1.0f)
                             : random.oneOf({-0.00001f, -0.25f, -0.5f, -0.75f, -1.0f, -1.25f, -1.5f, -2.0f, -3.0f,
                                             -3.75f, -20.0f, -100.5f, -3000.0f});
  }
  return 0.0f;
}

inline float randomAspect(Random& random) {
  return random.oneIn(2) ? 1.0f : random.oneOf({0.0f, -2.0f, 0.5f, 0.9f, 1.0667f, 1.422f, 2.0f});
}

// Sometimes 0.
inline int randomSize(Random& random, int most) {
  return random.within(random.oneIn(12) ? 0 : 1, most);
}

// A picture with guards and random settings of its view.
template <class Pixel, class Accum>
struct RandomPicture {
  RandomPicture(Random& random, int width, int height, ComponentRange<Pixel> range = storageRange<Pixel>())
      : canvas(width, height, randomLayout(random)) {
    canvas.fillRandom(random, range);
    canvas.wrapIn(texture);
    setRandomSurroundings(random, texture, range);
    texture.setWriteOrigin(random.within(-8, 8), random.within(-8, 8));
  }

  Canvas<Pixel> canvas;
  HvTexture<Pixel, Accum> texture;
};

// Floats up to kMostInDoubles everywhere, but for larger ones and what is no number in a few places or none.
template <class Texture>
void fillSmall(Random& random, const Texture& texture) {
  using Pixel = typename Texture::Pixel;
  const auto at = [&](std::int32_t x, std::int32_t y) {
    return reinterpret_cast<float*>(texture.at(0, y)) + static_cast<std::ptrdiff_t>(x);
  };
  const std::int32_t lanes = texture.width() * PixelTraits<Pixel>::kComponents;
  const float most = random.oneOf({kMostInDoubles, 1.0f, 1e-9f});
  for (std::int32_t y = 0; y < texture.height(); ++y) {
    for (std::int32_t x = 0; x < lanes; ++x)
      *at(x, y) = random.oneIn(9) ? random.oneOf({most, -most, 0.0f, -0.0f}) : random.between(-most, most);
  }
  const float others[] = {std::nextafter(kMostInDoubles, kMostCarried), -100.0f, 1e30f,
                          std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::infinity()};
  for (int i = random.oneIn(2) ? 0 : random.within(1, 3); i > 0; --i)
    *at(random.within(0, lanes - 1), random.within(0, texture.height() - 1)) = others[random.within(0, 4)];
}

// None, or one inside a picture, across its ends or beside it.
inline std::optional<model::Window> randomWindow(Random& random, const HvTexIndexer& target) {
  if (random.oneIn(3)) return std::nullopt;
  const auto span = [&](const HvTexAxis& axis) {
    const int beyond = random.oneOf({0, 2, 40});
    const int first = random.within(axis.writeOrigin - beyond, axis.writeOrigin + axis.size + beyond);
    return std::pair{first, first + random.within(random.oneIn(10) ? -5 : 0, axis.size + beyond)};
  };
  const auto [x1, x2] = span(target.horizontal);
  const auto [y1, y2] = span(target.vertical);
  return model::Window{x1, y1, x2, y2};
}

inline void setWindow(Imager& processor, const std::optional<model::Window>& window) {
  if (window) processor.setWindow(window->x1, window->y1, window->x2, window->y2);
}

inline std::string nameOf(const std::optional<model::Window>& window) {
  if (!window) return "no window";
  return "window " + std::to_string(window->x1) + "," + std::to_string(window->y1) + " to " +
         std::to_string(window->x2) + "," + std::to_string(window->y2);
}

inline std::int32_t randomThreadCount(Random& random) {
  return kThreadCounts[random.within(0, 4)];
}

// The settings of a texture that a processor has to restore.
struct Settings {
  explicit Settings(const HvTexIndexer& texture) : x(texture.horizontal), y(texture.vertical) {}

  bool areThoseOf(const HvTexIndexer& texture) const {
    return same(x, texture.horizontal) && same(y, texture.vertical);
  }
  static bool same(const HvTexAxis& a, const HvTexAxis& b) {
    return a.size == b.size && a.originF == b.originF && a.originI == b.originI && a.edgeMethod == b.edgeMethod &&
           a.lo == b.lo && a.hi == b.hi && a.count == b.count && a.writeOrigin == b.writeOrigin;
  }

  HvTexAxis x;
  HvTexAxis y;
};

}  // namespace vblur::test
