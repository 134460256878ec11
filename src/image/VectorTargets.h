// Which instruction sets vector sources are compiled for: all that Highway knows, but those whose vectors have a
// size that only the machine knows, since such vectors cannot be members. A build may leave out more by defining
// the macro itself. Comes before Highway.
#pragma once

#ifndef HWY_DISABLED_TARGETS
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#endif
