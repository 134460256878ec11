// The classes of the server, in the order in which they are registered.
#pragma once

#include <array>
#include <cstdint>

#include "platform/Com.h"
#include "properties/ClassIds.h"

namespace vblur {

struct ServerClass {
  using MakeFactory = IClassFactory* (*)();

  GUID clsid;
  // String id of the description. The viewer tool's has no string.
  std::int32_t description = 0;
  // Makes a factory with one reference, null when out of memory.
  MakeFactory makeFactory = nullptr;
};

IClassFactory* MakeBlurFactory();
IClassFactory* MakeFullBlurPageFactory();
IClassFactory* MakeTransitionBlurPageFactory();
IClassFactory* MakeTransitionPageFactory();
IClassFactory* MakeViewerToolFactory();
IClassFactory* MakeHelpPageFactory();
IClassFactory* MakeCropPageFactory();

inline constexpr std::array kServerClasses = {
    ServerClass{classes::kBlur, 2, &MakeBlurFactory},
    ServerClass{classes::kFullBlurPPG, 4, &MakeFullBlurPageFactory},
    ServerClass{classes::kTransitionBlurPPG, 6, &MakeTransitionBlurPageFactory},
    ServerClass{classes::kHvTransitionPPG, 5499, &MakeTransitionPageFactory},
    ServerClass{classes::kHvTInteract, 1071, &MakeViewerToolFactory},
    ServerClass{classes::kHelpPPG, 8, &MakeHelpPageFactory},
    ServerClass{classes::kFullCropPPG, 4997, &MakeCropPageFactory},
};

}  // namespace vblur
