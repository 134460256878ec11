// Random target and inputs for a subject, and the run of its processor on them. The same seed makes the same pictures,
// whatever their memory layout and origins.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/Subject.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {

// All four ends inclusive, in image coordinates.
struct Window {
  int x1, y1, x2, y2;

  bool has(int x, int y) const { return x >= x1 && x <= x2 && y >= y1 && y <= y2; }
};

struct Job {
  std::optional<Window> window;
  std::int32_t fieldMode = kAllRows;
  HvInterruptRecord* interrupt = nullptr;
};

struct SceneOptions {
  Layout outLayout;
  Layout inLayout;
  int moveX = 0;  // added to every origin
  int moveY = 0;
  bool positive = false;      // the target lies at rows from 0 up
  bool sameAsTarget = false;  // the first input equals the target, if it is of its type
  bool shareTarget = false;   // and is in the target's memory
  bool emptyInputs = false;
  bool flatInputs = false;  // pictures filled with their outside colour
};

template <class S>
class Scene {
 public:
  using OutPixel = typename S::OutTexture::Pixel;

  explicit Scene(std::uint64_t seed, const SceneOptions& options = {}) : options_(options), random_(seed) {
    makeTarget();
    std::apply([&](auto&... textures) { makeInputs(textures...); }, inputs_);
    window_ = randomWindow();
  }

  // A window in the target or across its edges, from the seed.
  const Window& window() const { return window_; }
  Window settled(const Window& window) const {
    const Window whole = wholeTarget();
    return {std::clamp(window.x1, whole.x1, whole.x2), std::clamp(window.y1, whole.y1, whole.y2),
            std::clamp(window.x2, whole.x1, whole.x2), std::clamp(window.y2, whole.y1, whole.y2)};
  }
  Window wholeTarget() const {
    const int x = target_.horizontal.writeOrigin;
    const int y = target_.vertical.writeOrigin;
    return {x, y, x + target_.width() - 1, y + target_.height() - 1};
  }

  // The pixels of the target before and after.
  const std::vector<OutPixel>& before() const { return before_; }
  std::vector<OutPixel> run(const Job& job) {
    typename S::Processor processor;
    S::setUp(processor);
    processor.interrupt = job.interrupt;
    processor.setFieldMode(job.fieldMode);
    if (job.window) processor.setWindow(job.window->x1, job.window->y1, job.window->x2, job.window->y2);
    S::process(processor, inputs_, &target_);
    return canvas_->pixels();
  }
  // The index in those pixels of image coordinates.
  std::size_t indexOf(int x, int y) const {
    const Window whole = wholeTarget();
    return static_cast<std::size_t>(y - whole.y1) * static_cast<std::size_t>(target_.width()) +
           static_cast<std::size_t>(x - whole.x1);
  }

  bool guardsAreIntact() const {
    bool intact = canvas_->guardsAreIntact();
    std::apply(
        [&](const auto&... held) { ((intact = intact && (!held.canvas || held.canvas->guardsAreIntact())), ...); },
        canvases_);
    return intact;
  }
  bool inputsAreUnchanged() const {
    bool same = true;
    std::apply(
        [&](const auto&... held) { ((same = same && (!held.canvas || held.canvas->pixels() == held.before)), ...); },
        canvases_);
    return same;
  }

 private:
  template <class Pixel>
  struct Held {
    std::optional<Canvas<Pixel>> canvas;
    std::vector<Pixel> before;
  };
  template <class Tuple>
  struct CanvasesOf;
  template <class... Textures>
  struct CanvasesOf<std::tuple<Textures...>> {
    using type = std::tuple<Held<typename Textures::Pixel>...>;
  };

  void makeTarget() {
    const int width = random_.within(1, 20);
    const int height = random_.within(1, 20);
    canvas_.emplace(width, height, options_.outLayout);
    canvas_->fillRandom(random_, S::template range<OutPixel>());
    before_ = canvas_->pixels();
    canvas_->wrapIn(target_);
    setRandomSurroundings(random_, target_, S::template range<OutPixel>());
    const int x = random_.within(-9, 9);
    const int y = random_.within(-9, 9);
    target_.setWriteOrigin(x + options_.moveX, (options_.positive ? y + 9 : y) + options_.moveY);
    moveOrigin(target_);
  }

  template <class... Textures>
  void makeInputs(Textures&... textures) {
    [&]<std::size_t... I>(std::index_sequence<I...>) {
      (makeInput<static_cast<int>(I)>(textures, std::get<I>(canvases_)), ...);
    }
    (std::index_sequence_for<Textures...>{});
  }

  template <int I, class Texture>
  void makeInput(Texture& texture, Held<typename Texture::Pixel>& held) {
    using Pixel = typename Texture::Pixel;
    const auto range = S::template range<Pixel>();
    if constexpr (std::is_same_v<Pixel, OutPixel> && I == 0) {
      if (options_.sameAsTarget || options_.shareTarget) return makeEqualToTarget(texture, held);
    }
    held.canvas.emplace(random_.within(1, 20), random_.within(1, 20), options_.inLayout);
    held.canvas->fillRandom(random_, range);
    held.canvas->wrapIn(texture);
    setRandomSurroundings(random_, texture, range);
    moveOrigin(texture);
    if (options_.flatInputs) {
      held.canvas->fill(texture.outsideColour);
      texture.wholeBounds();
    } else if (options_.emptyInputs) {
      texture.release();
      held.canvas.reset();
    }
    if (held.canvas) held.before = held.canvas->pixels();
  }

  template <class Texture>
  void makeEqualToTarget(Texture& texture, Held<OutPixel>& held) {
    if (options_.shareTarget) {
      canvas_->wrapIn(texture);
    } else {
      held.canvas.emplace(*canvas_);
      held.canvas->wrapIn(texture);
      held.before = held.canvas->pixels();
    }
    texture.setEdgeMethods(random_.within(0, 3), random_.within(0, 3));
    texture.setOutsideColour(randomPixel(random_, S::template range<OutPixel>()));
    texture.setOrigin(target_.horizontal.writeOrigin, target_.vertical.writeOrigin);
  }

  void moveOrigin(HvTexIndexer& texture) const {
    texture.setOrigin(texture.horizontal.originI + options_.moveX, texture.vertical.originI + options_.moveY);
  }

  Window randomWindow() {
    const Window whole = wholeTarget();
    const int x = random_.within(whole.x1 - 2, whole.x2 + 2);
    const int y = random_.within(whole.y1 - 2, whole.y2 + 2);
    return {x, y, random_.within(x, whole.x2 + 2), random_.within(y, whole.y2 + 2)};
  }

  SceneOptions options_;
  Random random_;
  std::optional<Canvas<OutPixel>> canvas_;
  typename S::OutTexture target_;
  std::vector<OutPixel> before_;
  typename S::Inputs inputs_;
  typename CanvasesOf<typename S::Inputs>::type canvases_;
  Window window_{};
};

}  // namespace vblur::test
