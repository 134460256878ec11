// Copies channels that are chosen at run time.
#pragma once

#include <cstdint>
#include <utility>

#include "image/ChannelMask.h"
#include "image/SimpleCopySampler.h"

namespace vblur {

template <class Pixel, class Accum>
class HvRGBCopySampler : public SimpleCopySampler<Pixel, Accum> {
 public:
  using Texture = HvTexture<Pixel, Accum>;

  // Ignores the field mode unless all channels are chosen.
  void processRows(Texture* in, Texture* out) override {
    if (channels == kAllChannels) return SimpleCopySampler<Pixel, Accum>::processRows(in, out);
    if (channels <= 0 || channels > kAllChannels) return;
    [&]<std::int32_t... Choice>(std::integer_sequence<std::int32_t, Choice...>) {
      ((channels == Choice ? copyRows<Choice>(*in, *out) : void()), ...);
    }
    (std::make_integer_sequence<std::int32_t, kAllChannels>{});
  }

  static constexpr std::int32_t kAllChannels = 15;
  // Bit value 1 red, 2 green, 4 blue, 8 alpha.
  std::int32_t channels = kAllChannels;

 private:
  template <std::int32_t Choice>
  void copyRows(const Texture& in, const Texture& out) {
    using Mask = ChannelMask<Choice & 1, (Choice >> 1) & 1, (Choice >> 2) & 1, (Choice >> 3) & 1>;
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(kAllRows), this->interrupt, out,
        [](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& run) { copyChannels<Mask>(to, run, n); }, in);
  }
};

}  // namespace vblur
