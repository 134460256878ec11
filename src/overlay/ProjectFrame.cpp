#include "overlay/ProjectFrame.h"

#include <cmath>

#include "platform/Content.h"

namespace vblur {
namespace {

constexpr double kStandardWidth = 1920.0;
constexpr double kStandardHeight = 1080.0;
// Larger sizes are out of range.
constexpr double kMostPixels = 1 << 24;

double ReadSize(const char* key, double otherwise) {
  double value = 0.0;
  const bool usable = DSContentGetProperty(key, value) >= 0 && value > 0.0 && value < kMostPixels;
  return usable ? value : otherwise;
}

}  // namespace

ProjectFrame ReadProjectFrame() {
  const double userX = ReadSize(kProjectUserSizeX, kStandardWidth);
  const double userY = ReadSize(kProjectUserSizeY, kStandardHeight);
  // The host sees all four reads; the scale is that of the heights.
  ReadSize(kProjectWorldSizeX, 0.0);
  const double worldY = ReadSize(kProjectWorldSizeY, userY);
  const double width = userY * userX / worldY;
  ProjectFrame frame;
  frame.height = static_cast<std::int32_t>(userY);
  frame.width = static_cast<std::int32_t>(width < kMostPixels ? width : kStandardWidth);
  frame.viewScale = static_cast<float>(worldY / userY);
  return frame;
}

}  // namespace vblur
