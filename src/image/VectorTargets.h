// The instruction sets that vector sources are compiled for: all of Highway's but those whose vector size is known
// at run time only, since such vectors cannot be class members. A build may define the macro to leave out more.
// Include it before Highway.
#pragma once

#ifndef HWY_DISABLED_TARGETS
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#endif
