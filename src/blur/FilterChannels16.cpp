// The filter on pixels of 16 bits: colours, and YUV.
#include "blur/FilterChannels-inl.h"

namespace vblur {

template const FilterChannels<R16, Ri>& filterChannels<ChannelMask<1, 1, 1, 1>, R16, Ri>();
template const FilterChannels<R16, Ri>& filterChannels<ChannelMask<1, 1, 1, 0>, R16, Ri>();
template const FilterChannels<R16, Ri>& filterChannels<ChannelMask<0, 0, 0, 1>, R16, Ri>();
template const FilterChannels<R16, Ri>& filterChannels<ChannelMask<1, 0, 0, 0>, R16, Ri>();
template const FilterChannels<R16, Ri>& filterChannels<ChannelMask<0, 1, 0, 0>, R16, Ri>();
template const FilterChannels<R16, Ri>& filterChannels<ChannelMask<0, 0, 1, 0>, R16, Ri>();
template const FilterChannels<R16, Ri>& filterChannels<ChannelMask<0, 1, 1, 0>, R16, Ri>();

}  // namespace vblur
