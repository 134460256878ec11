#include "vblur/CallCheck.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <locale>
#include <sstream>

namespace vblur {
namespace {

template <class... Parts>
std::string text(const Parts&... parts) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  (stream << ... << parts);
  return stream.str();
}

std::int64_t componentBytes(const vblur_picture& picture) {
  return picture.format == VBLUR_RGBA_F32 ? 4 : picture.format == VBLUR_RGBA_S2_14 ? 2 : 1;
}

std::string checkRange(const char* field, std::int64_t value, std::int64_t low, std::int64_t high) {
  if (value >= low && value <= high) return {};
  return text(field, ": ", value, ": expected ", low, " to ", high);
}

std::string firstOf(std::initializer_list<std::string> texts) {
  const auto found = std::find_if(texts.begin(), texts.end(), [](const std::string& t) { return !t.empty(); });
  return found == texts.end() ? std::string() : *found;
}

std::string checkStride(const char* name, const vblur_picture& picture) {
  const std::int64_t least = rowBytesOf(picture);
  const std::int64_t stride = strideOf(picture);
  const std::int64_t mostStride = std::numeric_limits<std::int64_t>::max() / kMostPixels;
  if (stride < -mostStride || stride > mostStride) {
    return text(name, ".stride: ", stride, ": expected ", mostStride, " bytes at most, forwards or backwards");
  }
  if (stride % componentBytes(picture) != 0) {
    return text(name, ".stride: ", stride, ": expected a multiple of ", componentBytes(picture),
                ", the bytes of a component");
  }
  if (picture.height == 1 || std::abs(stride) >= least) return {};
  return text(name, ".stride: ", stride, ": expected 0, or ", least, " or more forwards or backwards, for rows of ",
              picture.width, " pixels of ", 4 * componentBytes(picture), " bytes");
}

std::string checkPicture(const std::string& name, const vblur_picture* picture) {
  if (picture == nullptr) return name + ": null: expected a vblur_picture";
  if (picture->pixels == nullptr) return name + ".pixels: null: expected the first pixel of row 0";
  std::string wrong = firstOf({checkRange((name + ".format").c_str(), picture->format, VBLUR_RGBA_8, VBLUR_RGBA_F32),
                               checkRange((name + ".width").c_str(), picture->width, 1, kMostPixels),
                               checkRange((name + ".height").c_str(), picture->height, 1, kMostPixels)});
  if (!wrong.empty()) return wrong;
  if (reinterpret_cast<std::uintptr_t>(picture->pixels) % static_cast<std::uintptr_t>(componentBytes(*picture)) != 0) {
    return text(name, ".pixels: an address between components: expected a multiple of ", componentBytes(*picture),
                ", the bytes of a component");
  }
  return checkStride(name.c_str(), *picture);
}

struct Extent {
  std::uintptr_t first;
  std::uintptr_t end;
};

Extent extentOf(const vblur_picture& picture) {
  const auto row0 = reinterpret_cast<std::uintptr_t>(picture.pixels);
  const auto last = row0 + static_cast<std::uintptr_t>(strideOf(picture) * (picture.height - 1));
  return {std::min(row0, last), std::max(row0, last) + static_cast<std::uintptr_t>(rowBytesOf(picture))};
}

// Whether pictures whose extents overlap share no pixel: side by side, with rows of one stride.
bool lieBesideEachOther(const vblur_picture& a, const vblur_picture& b) {
  const std::int64_t step = std::abs(strideOf(a));
  if (step != std::abs(strideOf(b))) return false;
  const auto difference = static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(b.pixels)) -
                          static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(a.pixels));
  const std::int64_t offset = (difference % step + step) % step;
  return offset >= rowBytesOf(a) && offset + rowBytesOf(b) <= step;
}

std::string checkSharing(const vblur_picture& source, const vblur_picture& result, bool mayBeInPlace) {
  const Extent a = extentOf(source);
  const Extent b = extentOf(result);
  if (a.end <= b.first || b.end <= a.first) return {};
  const bool inPlace = source.pixels == result.pixels && (strideOf(source) == strideOf(result) || source.height == 1);
  if (inPlace && !mayBeInPlace)
    return "result: the source's own pixels: expected a result of its own, to sharpen and for VBLUR_GREY";
  if (inPlace || lieBesideEachOther(source, result)) return {};
  return "result: shares memory with the source: expected none in common, or the same stride and no pixel in common" +
         std::string(mayBeInPlace ? ", or the source itself" : "");
}

std::string checkSize(const char* field, double size) {
  if (std::isfinite(size) && size >= 0.0) return {};
  return text(field, ": ", size, ": expected 0 or more, in pixels");
}

std::string checkRegion(const vblur_settings& settings, const vblur_picture& result) {
  if (settings.has_region == 0) return {};
  const auto inside = [](std::int64_t first, std::int64_t length, std::int64_t size) {
    return first >= 0 && length >= 1 && first + length <= size;
  };
  if (inside(settings.region_x, settings.region_width, result.width) &&
      inside(settings.region_y, settings.region_height, result.height)) {
    return {};
  }
  return text("settings.region: ", settings.region_width, " x ", settings.region_height, " pixels from column ",
              settings.region_x, ", row ", settings.region_y, ": expected at least one, within ", result.width, " x ",
              result.height);
}

std::string checkOutside(const vblur_settings& settings, const vblur_picture& result) {
  if (result.format == VBLUR_RGBA_F32) {
    for (const float component : settings.outside_f32) {
      if (!std::isfinite(component)) return text("settings.outside_f32: ", component, ": expected finite numbers");
    }
    return {};
  }
  const bool wide = result.format == VBLUR_RGBA_S2_14;
  for (const std::int32_t component : settings.outside) {
    std::string wrong = checkRange("settings.outside", component, wide ? -32768 : 0, wide ? 32767 : 255);
    if (!wrong.empty()) return wrong;
  }
  return {};
}

}  // namespace

std::int64_t rowBytesOf(const vblur_picture& picture) {
  return 4 * componentBytes(picture) * picture.width;
}

std::int64_t strideOf(const vblur_picture& picture) {
  return picture.stride != 0 ? picture.stride : rowBytesOf(picture);
}

std::string readSettings(const vblur_settings* given, vblur_settings& settings) {
  constexpr std::size_t kLeast = offsetof(vblur_settings, edge_x);
  if (given == nullptr) return "settings: null: expected a vblur_settings";
  const std::size_t size = given->struct_size;
  if (size < kLeast) {
    return text("settings.struct_size: ", size, ": expected ", kLeast, " or more: call vblur_settings_init first");
  }
  const auto* bytes = reinterpret_cast<const unsigned char*>(given);
  if (size > sizeof(settings) &&
      std::any_of(bytes + sizeof(settings), bytes + size, [](unsigned char b) { return b != 0; })) {
    return text("settings.struct_size: ", size, ": expected ", sizeof(settings),
                " or zeros beyond: the program sets fields of a newer vblur/blur.h than this library");
  }
  vblur_settings_init(&settings, sizeof(settings));
  std::memcpy(&settings, given, std::min(size, sizeof(settings)));
  return {};
}

std::string checkPictures(const vblur_picture* source, const vblur_picture* result, bool mayBeInPlace) {
  std::string wrong = firstOf({checkPicture("source", source), checkPicture("result", result)});
  if (!wrong.empty()) return wrong;
  if (source->format != result->format) {
    return text("result.format: ", result->format, ": expected ", source->format, ", the format of the source");
  }
  if (source->width != result->width || source->height != result->height) {
    return text("result: ", result->width, " x ", result->height, " pixels: expected ", source->width, " x ",
                source->height, ", as the source");
  }
  return checkSharing(*source, *result, mayBeInPlace);
}

std::string checkSettings(const vblur_settings& settings, const vblur_picture& result) {
  return firstOf({checkRange("settings.channels", settings.channels, VBLUR_RGB, VBLUR_V),
                  checkSize("settings.size_x", settings.size_x), checkSize("settings.size_y", settings.size_y),
                  checkRange("settings.edge_x", settings.edge_x, VBLUR_EDGE_COLOUR, VBLUR_EDGE_WRAP),
                  checkRange("settings.edge_y", settings.edge_y, VBLUR_EDGE_COLOUR, VBLUR_EDGE_WRAP),
                  checkOutside(settings, result), checkRegion(settings, result)});
}

}  // namespace vblur
