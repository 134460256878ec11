#include "host/pictures/WhiteLeast.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

#include "host/base/Failure.h"

namespace vblur::host {

namespace {

bool IsWhiteLeast(const OIIO::ImageInput& file) {
  return std::string_view(file.format_name()) == "tiff" &&
         file.spec().get_int_attribute("tiff:PhotometricInterpretation", 1) == 0;
}

bool IsTurnedByLibrary(const OIIO::ImageSpec& spec) {
  return spec.format == OIIO::TypeDesc::UINT8;
}

}  // namespace

void RequireBlack(const std::filesystem::path& path, const OIIO::ImageInput& file) {
  const OIIO::TypeDesc type = file.spec().format;
  if (!IsWhiteLeast(file) || (!type.is_floating_point() && !type.is_signed())) return;
  RefuseToRead(path, "grey of " + std::string(type.c_str()) +
                         " samples whose least value is white is not read, expected the least to be black");
}

bool NeedsTurning(const OIIO::ImageInput& file) {
  return IsWhiteLeast(file) && !(IsTurnedByLibrary(file.spec()) && file.spec().nchannels == 1);
}

void TurnValues(const OIIO::ImageSpec& spec, std::size_t pixels, std::byte* samples) {
  const std::size_t sample = spec.format.size();
  const std::size_t pixel = spec.pixel_bytes();
  // The grey, or what the library should have left.
  const std::size_t first = IsTurnedByLibrary(spec) ? sample : 0;
  const std::size_t end = IsTurnedByLibrary(spec) ? pixel : sample;
  for (std::size_t at = 0; at < pixels * pixel; at += pixel)
    std::transform(samples + at + first, samples + at + end, samples + at + first, std::bit_not<>());
}

}  // namespace vblur::host
