#include "host/files/PictureSize.h"

#include <algorithm>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
#include "host/hosted/HostImage.h"

namespace vblur::host {

std::string PixelsOf(std::int64_t width, std::int64_t height) {
  return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

void RequirePixels(const std::filesystem::path& path, std::int64_t width, std::int64_t height, int channels,
                   const std::string& of, std::int64_t mostPixels) {
  const std::string size = PixelsOf(width, height) + of;
  if (width > mostPixels / height) {
    // Two sides of up to 32 bits.
    const std::uint64_t pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    throw Failure(ExitCode::CannotRead,
                  InputName(path) + ": cannot read: " + size + ", " + std::to_string(pixels) +
                      " in all, expected at most " + std::to_string(mostPixels),
                  FailureKind::TooManyPixels);
  }
  const std::int64_t components = std::int64_t{std::max(4, channels)} * width;
  if (components > HostImage::kMostComponents / height) {
    RefuseToRead(path, size + " are more than 2^31 components (4 a pixel)");
  }
}

}  // namespace vblur::host
