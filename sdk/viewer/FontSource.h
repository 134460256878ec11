// Where the overlay's fonts come from: the part of the host that paints with OpenGL offers them here, so that
// nothing else has to load a font library.
#pragma once

#include <cstdint>
#include <memory>

namespace vblur {

// A font behind a handle of GlFont.h.
struct OverlayFont {
  virtual ~OverlayFont() = default;

  // Fills `count` display lists from `listBase` on in the current OpenGL context; false when one character cannot
  // be drawn.
  virtual bool FillLists(std::uint32_t first, std::uint32_t count, std::uint32_t listBase) = 0;
};

namespace host {

class FontSource {
 public:
  virtual ~FontSource() = default;

  // A font `height` pixels high, of a weight from 100 to 900 (0: any); null when the system has none.
  virtual std::unique_ptr<OverlayFont> Open(std::int32_t height, std::int32_t weight) = 0;
};

// Borrowed: null before it goes, as at the beginning; then there are no fonts. Fonts outlive it. Belongs to the
// user-interface thread.
void UseFontSource(FontSource* source);

}  // namespace host

}  // namespace vblur
