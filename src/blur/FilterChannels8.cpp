// The filter on pixels of 8 bits: colours, and YUV.
#include "blur/FilterChannels-inl.h"

namespace vblur {

template const FilterChannels<R8, Ri>& filterChannels<ChannelMask<1, 1, 1, 1>, R8, Ri>();
template const FilterChannels<R8, Ri>& filterChannels<ChannelMask<1, 1, 1, 0>, R8, Ri>();
template const FilterChannels<R8, Ri>& filterChannels<ChannelMask<0, 0, 0, 1>, R8, Ri>();
template const FilterChannels<R8, Ri>& filterChannels<ChannelMask<1, 0, 0, 0>, R8, Ri>();
template const FilterChannels<R8, Ri>& filterChannels<ChannelMask<0, 1, 0, 0>, R8, Ri>();
template const FilterChannels<R8, Ri>& filterChannels<ChannelMask<0, 0, 1, 0>, R8, Ri>();
template const FilterChannels<R8, Ri>& filterChannels<ChannelMask<0, 1, 1, 0>, R8, Ri>();

}  // namespace vblur
