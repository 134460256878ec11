#include "tests/blur/FilterRuns.h"

#include "blur/GaussFilter.h"

namespace vblur::test {

template <class Mask, class Pixel, class Accum>
void runFilter(const Imager& as, const FilterFields& fields, HvTexture<Pixel, Accum>* in,
               HvTexture<Pixel, Accum>* out) {
  GaussFilter<Pixel, Accum> filter(filterChannels<Mask, Pixel, Accum>());
  filter.interrupt = as.interrupt;
  // The window may be unset.
  filter.flags = as.flags;
  filter.x1 = as.x1;
  filter.y1 = as.y1;
  filter.x2 = as.x2;
  filter.y2 = as.y2;
  filter.setFieldMode(as.fieldMode);
  filter.aspect = as.aspect;
  filter.inverseAspect = as.inverseAspect;
  filter.sizeX = fields.sizeX;
  filter.sizeY = fields.sizeY;
  filter.boxes = fields.boxes;
  filter.keepsOthers = fields.keepsOthers;
  filter.keepsIntermediate = fields.keepsIntermediate;
  filter.process(in, out);
}

#define VBLUR_RUN_FILTER(Pixel, Accum, ...)                                                                       \
  template void runFilter<ChannelMask<__VA_ARGS__>>(const Imager&, const FilterFields&, HvTexture<Pixel, Accum>*, \
                                                    HvTexture<Pixel, Accum>*)

VBLUR_RUN_FILTER(R8, Ri, 1, 1, 1, 1);
VBLUR_RUN_FILTER(R8, Ri, 1, 1, 1, 0);
VBLUR_RUN_FILTER(R8, Ri, 0, 1, 1, 0);
VBLUR_RUN_FILTER(R8, Ri, 0, 0, 0, 1);
VBLUR_RUN_FILTER(R16, Ri, 1, 1, 1, 1);
VBLUR_RUN_FILTER(R16, Ri, 0, 1, 0, 0);
VBLUR_RUN_FILTER(Ri, Ri, 1, 0, 0, 0);
VBLUR_RUN_FILTER(Ri, Ri, 0, 1, 1, 0);
VBLUR_RUN_FILTER(C8, Ci, 1, 0, 0, 0);
VBLUR_RUN_FILTER(C16, Ci, 1, 0, 0, 0);
VBLUR_RUN_FILTER(int, int, 1, 0, 0, 0);
VBLUR_RUN_FILTER(Rf, Rf, 1, 1, 1, 1);
VBLUR_RUN_FILTER(Rf, Rf, 1, 1, 1, 0);
VBLUR_RUN_FILTER(Rf, Rf, 0, 1, 1, 0);
VBLUR_RUN_FILTER(Cf, Cf, 1, 0, 0, 0);

}  // namespace vblur::test
