#include "host/sequence/WholeOutput.h"

#include <algorithm>
#include <new>

#include "host/base/Failure.h"
#include "host/hosted/HostImage.h"

namespace vblur::host {

namespace {

std::string SizeText(const std::array<std::int32_t, 2>& size) {
  return std::to_string(size[0]) + " x " + std::to_string(size[1]);
}

}  // namespace

std::string FlawOfOutput(const std::filesystem::path& file, const std::vector<std::array<std::int32_t, 2>>& sizes,
                         const StopTest& stop) {
  HostImage image;
  try {
    PictureReader(stop).ReadColour(file, 8, image);
  } catch (const Failure& failure) {
    return failure.what();
  } catch (const std::bad_alloc&) {
    return file.string() + ": not enough memory to read it";
  }
  const std::array size{image.Width(), image.Height()};
  if (sizes.empty() || std::ranges::find(sizes, size) != sizes.end()) return {};
  return file.string() + ": " + SizeText(size) + " pixels, where the frame has " + SizeText(sizes.front());
}

}  // namespace vblur::host
