// Overlay fonts from the system: found by fontconfig, rasterised by FreeType.
#pragma once

#include <memory>

#include "sdk/viewer/FontSource.h"

namespace vblur::host {

class SystemFonts : public FontSource {
 public:
  SystemFonts();

  // A sans-serif font of `height` pixels from ascender to descender; 0 means 12.
  std::unique_ptr<OverlayFont> Open(std::int32_t height, std::int32_t weight) override;

 private:
  struct Library;

  std::shared_ptr<Library> library_;
};

}  // namespace vblur::host
