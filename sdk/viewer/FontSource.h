// Source of the overlay's fonts. The host's OpenGL library registers it: only that one links font libraries.
#pragma once

#include <cstdint>
#include <memory>

namespace vblur {

// A font behind a handle of GlFont.h.
struct OverlayFont {
  virtual ~OverlayFont() = default;

  // Fills `count` display lists from `listBase` on in the current OpenGL context; false if a character fails.
  virtual bool FillLists(std::uint32_t first, std::uint32_t count, std::uint32_t listBase) = 0;
};

namespace host {

class FontSource {
 public:
  virtual ~FontSource() = default;

  // A font `height` pixels high, of a weight from 100 to 900 (0: any); null if the system has none.
  virtual std::unique_ptr<OverlayFont> Open(std::int32_t height, std::int32_t weight) = 0;
};

// Borrowed: set null before it is destroyed. Null, the default, means no fonts. Open fonts stay valid. User-interface
// thread only.
void UseFontSource(FontSource* source);

}  // namespace host

}  // namespace vblur
