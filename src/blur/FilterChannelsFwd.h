// The parts of the filter for one ChannelMask, declared only: who uses the filter does not compile them.
#pragma once

namespace vblur {

template <class Pixel, class Accum>
struct FilterChannels;

// FilterChannels8.cpp, FilterChannels16.cpp and FilterChannelsPlanes.cpp list the instances.
template <class Mask, class Pixel, class Accum>
const FilterChannels<Pixel, Accum>& filterChannels();

}  // namespace vblur
