// The filter on pixels of 8 bits: colours, and YUV.
#include "blur/GaussFilter-inl.h"

namespace vblur {

template class GaussFilter<R8, Ri, ChannelMask<1, 1, 1, 1>>;
template class GaussFilter<R8, Ri, ChannelMask<1, 1, 1, 0>>;
template class GaussFilter<R8, Ri, ChannelMask<0, 0, 0, 1>>;
template class GaussFilter<R8, Ri, ChannelMask<1, 0, 0, 0>>;
template class GaussFilter<R8, Ri, ChannelMask<0, 1, 0, 0>>;
template class GaussFilter<R8, Ri, ChannelMask<0, 0, 1, 0>>;
template class GaussFilter<R8, Ri, ChannelMask<0, 1, 1, 0>>;

}  // namespace vblur
