// The filter on YUV of 32 bits and on single components.
#include "blur/FilterChannels-inl.h"

namespace vblur {

template const FilterChannels<Ri, Ri>& filterChannels<ChannelMask<1, 0, 0, 0>, Ri, Ri>();
template const FilterChannels<Ri, Ri>& filterChannels<ChannelMask<0, 1, 0, 0>, Ri, Ri>();
template const FilterChannels<Ri, Ri>& filterChannels<ChannelMask<0, 0, 1, 0>, Ri, Ri>();
template const FilterChannels<Ri, Ri>& filterChannels<ChannelMask<0, 1, 1, 0>, Ri, Ri>();
template const FilterChannels<C8, Ci>& filterChannels<ChannelMask<1, 0, 0, 0>, C8, Ci>();
template const FilterChannels<C16, Ci>& filterChannels<ChannelMask<1, 0, 0, 0>, C16, Ci>();
template const FilterChannels<int, int>& filterChannels<ChannelMask<1, 0, 0, 0>, int, int>();

}  // namespace vblur
