// The filter on YUV of 32 bits and on single components.
#include "blur/GaussFilter-inl.h"

namespace vblur {

template class GaussFilter<Ri, Ri, ChannelMask<1, 0, 0, 0>>;
template class GaussFilter<Ri, Ri, ChannelMask<0, 1, 0, 0>>;
template class GaussFilter<Ri, Ri, ChannelMask<0, 0, 1, 0>>;
template class GaussFilter<Ri, Ri, ChannelMask<0, 1, 1, 0>>;
template class GaussFilter<C8, Ci, ChannelMask<1, 0, 0, 0>>;
template class GaussFilter<C16, Ci, ChannelMask<1, 0, 0, 0>>;
template class GaussFilter<int, int, ChannelMask<1, 0, 0, 0>>;

}  // namespace vblur
