// The overlay's fonts from those of the system: found by fontconfig, drawn by FreeType.
#pragma once

#include <memory>

#include "sdk/viewer/FontSource.h"

namespace vblur::host {

class SystemFonts : public FontSource {
 public:
  SystemFonts();

  // A sans-serif one whose tallest and deepest characters together are `height` pixels high; 0 stands for 12.
  std::unique_ptr<OverlayFont> Open(std::int32_t height, std::int32_t weight) override;

 private:
  struct Library;

  std::shared_ptr<Library> library_;
};

}  // namespace vblur::host
