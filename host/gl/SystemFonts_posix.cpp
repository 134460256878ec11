#include "host/gl/SystemFonts.h"

#include <string>
#include <utility>
#include <vector>

#include <GL/gl.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

namespace vblur::host {

namespace {

struct FontFile {
  std::string path;
  int index = 0;
};

// Empty if the system has no scalable font. Uses its own fontconfig configuration, not the process's.
FontFile FindFont(int weight) {
  FontFile found;
  FcConfig* const config = FcInitLoadConfigAndFonts();
  if (config == nullptr) return found;
  FcPattern* const wanted = FcPatternCreate();
  FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>("sans-serif"));
  FcPatternAddBool(wanted, FC_SCALABLE, FcTrue);
  if (weight > 0) FcPatternAddInteger(wanted, FC_WEIGHT, FcWeightFromOpenType(weight));
  FcConfigSubstitute(config, wanted, FcMatchPattern);
  FcDefaultSubstitute(wanted);
  FcResult result = FcResultNoMatch;
  if (FcPattern* const match = FcFontMatch(config, wanted, &result); match != nullptr) {
    FcChar8* file = nullptr;
    if (FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch) found.path = reinterpret_cast<const char*>(file);
    FcPatternGetInteger(match, FC_INDEX, 0, &found.index);
    FcPatternDestroy(match);
  }
  FcPatternDestroy(wanted);
  FcConfigDestroy(config);
  return found;
}

// Rows bottom-up for OpenGL, without padding; a byte of its own for none, since Mesa makes no list of a null picture.
std::vector<GLubyte> BottomUp(const FT_Bitmap& bitmap) {
  const std::size_t rowBytes = (bitmap.width + 7) / 8;
  std::vector<GLubyte> rows;
  rows.reserve(rowBytes * bitmap.rows);
  for (unsigned row = bitmap.rows; row-- > 0;) {
    const auto* const from = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
    rows.insert(rows.end(), from, from + rowBytes);
  }
  if (rows.empty()) rows.push_back(0);
  return rows;
}

}  // namespace

struct SystemFonts::Library {
  Library() {
    if (FT_Init_FreeType(&freeType) != 0) freeType = nullptr;
  }
  ~Library() {
    if (freeType != nullptr) FT_Done_FreeType(freeType);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  FT_Library freeType = nullptr;
};

namespace {

class FaceFont : public OverlayFont {
 public:
  // Owns the face and keeps its library alive.
  FaceFont(std::shared_ptr<void> library, FT_Face face) : library_(std::move(library)), face_(face) {}
  ~FaceFont() override { FT_Done_Face(face_); }
  FaceFont(const FaceFont&) = delete;
  FaceFont& operator=(const FaceFont&) = delete;

  bool FillLists(std::uint32_t first, std::uint32_t count, std::uint32_t listBase) override {
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_FALSE);
    bool all = true;
    for (std::uint32_t i = 0; i < count && all; ++i)
      all = FillList(first + i, listBase + i);
    glPopClientAttrib();
    return all;
  }

 private:
  bool FillList(std::uint32_t character, std::uint32_t list) {
    if (FT_Load_Char(face_, character, FT_LOAD_RENDER | FT_LOAD_TARGET_MONO) != 0) return false;
    const FT_GlyphSlot glyph = face_->glyph;
    const auto rows = BottomUp(glyph->bitmap);
    const auto width = static_cast<GLsizei>(glyph->bitmap.width);
    const auto height = static_cast<GLsizei>(glyph->bitmap.rows);
    const auto advance = static_cast<GLfloat>(glyph->advance.x >> 6);
    glNewList(list, GL_COMPILE);
    glBitmap(width, height, static_cast<GLfloat>(-glyph->bitmap_left), static_cast<GLfloat>(height - glyph->bitmap_top),
             advance, 0.0F, rows.data());
    glEndList();
    return true;
  }

  std::shared_ptr<void> library_;
  FT_Face face_;
};

}  // namespace

SystemFonts::SystemFonts() : library_(std::make_shared<Library>()) {}

std::unique_ptr<OverlayFont> SystemFonts::Open(std::int32_t height, std::int32_t weight) {
  constexpr std::int32_t kOwnChoice = 12;
  const FontFile file = FindFont(weight);
  FT_Face face = nullptr;
  if (library_->freeType == nullptr || file.path.empty()) return nullptr;
  if (FT_New_Face(library_->freeType, file.path.c_str(), file.index, &face) != 0) return nullptr;
  auto font = std::make_unique<FaceFont>(library_, face);
  FT_Size_RequestRec size{};
  size.type = FT_SIZE_REQUEST_TYPE_REAL_DIM;
  size.height = (height > 0 ? height : kOwnChoice) * 64;
  if (FT_Request_Size(face, &size) != 0) return nullptr;
  return font;
}

}  // namespace vblur::host
