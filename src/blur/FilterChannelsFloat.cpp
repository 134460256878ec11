// The filter on floats: colours, the YUV of a picture, and one channel.
#include "blur/FilterChannels-inl.h"

namespace vblur {

template const FilterChannels<Rf, Rf>& filterChannels<ChannelMask<1, 1, 1, 1>, Rf, Rf>();
template const FilterChannels<Rf, Rf>& filterChannels<ChannelMask<1, 1, 1, 0>, Rf, Rf>();
template const FilterChannels<Rf, Rf>& filterChannels<ChannelMask<0, 0, 0, 1>, Rf, Rf>();
template const FilterChannels<Rf, Rf>& filterChannels<ChannelMask<1, 0, 0, 0>, Rf, Rf>();
template const FilterChannels<Rf, Rf>& filterChannels<ChannelMask<0, 1, 0, 0>, Rf, Rf>();
template const FilterChannels<Rf, Rf>& filterChannels<ChannelMask<0, 0, 1, 0>, Rf, Rf>();
template const FilterChannels<Rf, Rf>& filterChannels<ChannelMask<0, 1, 1, 0>, Rf, Rf>();
template const FilterChannels<Cf, Cf>& filterChannels<ChannelMask<1, 0, 0, 0>, Cf, Cf>();

}  // namespace vblur
