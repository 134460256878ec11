#include "blur_size.h"

#include <algorithm>

#include "arithmetic.h"

namespace model {
namespace {

/// A positive aspect narrows y, a negative one x, to 0 at 100; the other axis is unchanged.
double Share(float towardNothing) {
  return 1.0 - std::clamp(static_cast<double>(towardNothing), 0.0, 1.0);
}

}  // namespace

BlurSize BlurSizeOf(const FrameJob& job, float transitionScale, float fieldScale) {
  double userX = 1.0;
  double userY = 1.0;
  double ratio = 1.0;
  double pixelsX = 1.0;
  double pixelsY = 1.0;
  if (job.project) {
    userX = job.project->userSize[0];
    userY = job.project->userSize[1];
    ratio = userY / job.project->worldSize[1];
    pixelsX = static_cast<double>(Truncate(userX));
    pixelsY = static_cast<double>(Truncate(userY));
  }
  const float scaledX = static_cast<float>(job.proxy[0] * pixelsX);
  const float scaledY = static_cast<float>(job.proxy[1] * pixelsY);
  const float factorX = scaledX / static_cast<float>(ratio * userX);
  const float factorY = scaledY / static_cast<float>(userY);

  double amount = job.properties.blur < 0.0 ? 0.0 : job.properties.blur;
  if (job.kind == kTransition) amount *= static_cast<double>(transitionScale);
  const double percent = std::clamp(job.properties.aspect, -100.0, 100.0);
  const float aspect = static_cast<float>(percent / 100.0);

  const double x = static_cast<double>(factorX) * amount * Share(-aspect);
  const double y = static_cast<double>(factorY) * amount * static_cast<double>(fieldScale) * Share(aspect);
  return {static_cast<float>(x) / 3.0f, static_cast<float>(y) / 3.0f};
}

}  // namespace model
