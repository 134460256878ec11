#include "host/formats/ExrHeader.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "host/formats/FileBytes.h"

namespace vblur::host {

namespace {

// Types whose values are of one length.
constexpr std::array<std::pair<std::string_view, std::int64_t>, 24> kLengths{{{"box2f", 16},
                                                                              {"box2i", 16},
                                                                              {"chromaticities", 32},
                                                                              {"compression", 1},
                                                                              {"deepImageState", 1},
                                                                              {"double", 8},
                                                                              {"envmap", 1},
                                                                              {"float", 4},
                                                                              {"int", 4},
                                                                              {"keycode", 28},
                                                                              {"lineOrder", 1},
                                                                              {"m33d", 72},
                                                                              {"m33f", 36},
                                                                              {"m44d", 128},
                                                                              {"m44f", 64},
                                                                              {"rational", 8},
                                                                              {"tiledesc", 9},
                                                                              {"timecode", 8},
                                                                              {"v2d", 16},
                                                                              {"v2f", 8},
                                                                              {"v2i", 8},
                                                                              {"v3d", 24},
                                                                              {"v3f", 12},
                                                                              {"v3i", 12}}};

// A name with its NUL, which is taken and left out; false at the end of the file and for one that no header has.
bool ReadName(std::istream& file, std::string& name) {
  constexpr std::size_t kLongest = 255;
  name.clear();
  for (int c = file.get(); c > 0; c = file.get()) {
    if (name.size() == kLongest) return false;
    name += static_cast<char>(c);
  }
  return file.good();
}

bool ReadNumber(std::istream& file, std::int64_t& number) {
  std::string bytes(4, '\0');
  if (!file.read(bytes.data(), 4)) return false;
  number = static_cast<std::int32_t>(Little32(bytes, 0));
  return true;
}

// Channels: a name and 16 bytes each, and an empty name.
bool SkipChannels(std::istream& file, std::int64_t end) {
  constexpr std::int64_t kFacts = 16;
  std::string name;
  while (file.tellg() < end && ReadName(file, name)) {
    if (name.empty()) return true;
    file.seekg(kFacts, std::ios::cur);
  }
  return false;
}

// Texts: the length of each and its bytes.
bool SkipTexts(std::istream& file, std::int64_t end) {
  std::int64_t bytes = 0;
  while (file.tellg() < end) {
    if (!ReadNumber(file, bytes) || bytes < 0 || bytes > end - file.tellg()) return false;
    file.seekg(bytes, std::ios::cur);
  }
  return true;
}

// A small picture: width, height and four bytes for each pixel.
bool SkipPreview(std::istream& file, std::int64_t end) {
  std::int64_t width = 0;
  std::int64_t height = 0;
  if (!ReadNumber(file, width) || !ReadNumber(file, height) || width < 0 || height < 0) return false;
  const std::int64_t pixels = (end - file.tellg()) / 4;
  if (height > 0 && width > pixels / height) return false;
  file.seekg(width * height * 4, std::ios::cur);
  return true;
}

// The value, as the library reads it: by its type, whatever length it has.
bool SkipValue(std::istream& file, std::string_view type, std::int64_t end) {
  if (type == "chlist") return SkipChannels(file, end);
  if (type == "stringvector") return SkipTexts(file, end);
  if (type == "preview") return SkipPreview(file, end);
  const auto found = std::ranges::find(kLengths, type, &std::pair<std::string_view, std::int64_t>::first);
  file.seekg(found == kLengths.end() ? end : static_cast<std::int64_t>(file.tellg()) + found->second);
  return true;
}

// The library takes memory for a tile before it looks at the picture.
class TileSize {
 public:
  void Add(std::istream& file, std::string_view name, std::string_view type) {
    std::array<std::int64_t, 4> numbers{};
    const bool isWindow = name == "dataWindow" && type == "box2i";
    const bool isTile = name == "tiles" && type == "tiledesc";
    if (!isWindow && !isTile) return;
    const auto begin = file.tellg();
    for (std::size_t i = 0; i < (isWindow ? 4 : 2); ++i)
      ReadNumber(file, numbers[i]);
    file.clear();
    file.seekg(begin);
    const auto area = [](std::int64_t width, std::int64_t height) {
      return static_cast<double>(width) * static_cast<double>(height);
    };
    if (isTile) tile_ = area(numbers[0], numbers[1]);
    if (isWindow) picture_ = area(numbers[2] - numbers[0] + 1, numbers[3] - numbers[1] + 1);
  }

  // Tiles may be larger than the picture, by as much as nobody does.
  bool IsSound() const {
    constexpr double kSmall = 1 << 20;
    return tile_ >= 0.0 && tile_ <= std::max(kSmall, 4.0 * picture_);
  }

 private:
  double tile_ = 0.0;
  double picture_ = 0.0;
};

}  // namespace

bool IsSoundExrHeader(std::istream& file, std::int64_t length) {
  constexpr std::int64_t kVersionEnd = 8;
  file.seekg(kVersionEnd);
  std::string name;
  std::string type;
  std::int64_t bytes = 0;
  TileSize tiles;
  while (ReadName(file, name)) {
    if (name.empty()) return tiles.IsSound();
    if (!ReadName(file, type) || !ReadNumber(file, bytes)) return false;
    const std::int64_t end = file.tellg() + bytes;
    tiles.Add(file, name, type);
    if (bytes < 0 || end > length || !SkipValue(file, type, end) || file.tellg() != end) return false;
  }
  return false;
}

}  // namespace vblur::host
