// The classes of the server, in the order in which they are registered.
#pragma once

#include <array>
#include <cstdint>

#include "platform/Com.h"
#include "properties/ClassIds.h"
#include "resources/Numbers.h"

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
    ServerClass{classes::kBlur, resources::strings::kDescription, &MakeBlurFactory},
    ServerClass{classes::kFullBlurPPG, resources::strings::kFullBlurDescription, &MakeFullBlurPageFactory},
    ServerClass{classes::kTransitionBlurPPG, resources::strings::kTransitionBlurDescription,
                &MakeTransitionBlurPageFactory},
    ServerClass{classes::kHvTransitionPPG, resources::strings::kTransitionDescription, &MakeTransitionPageFactory},
    ServerClass{classes::kHvTInteract, resources::strings::kViewerToolDescription, &MakeViewerToolFactory},
    ServerClass{classes::kHelpPPG, resources::strings::kHelpDescription, &MakeHelpPageFactory},
    ServerClass{classes::kFullCropPPG, resources::strings::kFullCropDescription, &MakeCropPageFactory},
};

}  // namespace vblur
