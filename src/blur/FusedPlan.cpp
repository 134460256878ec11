#include "blur/FusedPlan.h"

#include <algorithm>

#include "blur/FuseBand.h"

namespace vblur {
namespace {

std::int64_t shareOf(std::int64_t whole, std::int64_t parts) {
  return (whole + parts - 1) / parts;
}

// Costs in pixels through the boxes of one axis. Steps that only fill sums cost about half.
constexpr double kFillingCost = 0.5;

double costOf(const FusedSize& size, std::int64_t columns, std::int64_t rows) {
  const auto width = static_cast<double>(shareOf(size.width, columns) * size.groupColumns);
  const auto height = static_cast<double>(shareOf(size.height, rows));
  const auto leadX = static_cast<double>(size.leadX);
  const auto leadY = static_cast<double>(size.leadY);
  // Rows beyond the picture are mostly images of rows within.
  const double again = leadY * static_cast<double>(rows - 1) / static_cast<double>(rows);
  const double alongX = (width + kFillingCost * leadX) * (height + again);
  const double alongY = width * (height + kFillingCost * leadY);
  return (alongX + alongY) * static_cast<double>(shareOf(columns * rows, size.threads));
}

}  // namespace

FusedPlan planFused(const FusedSize& size) {
  const auto most = std::max<std::int64_t>(1, static_cast<std::int64_t>(size.budget / size.groupBytes));
  const std::int64_t fewest = shareOf(size.width, most);
  FusedPlan best;
  double least = 0.0;
  // Not fewer rows than a block of them.
  const std::int64_t mostRows = std::max<std::int64_t>(1, size.height / kFusedRows);
  for (std::int64_t columns = fewest; columns <= std::min(size.width, fewest + size.threads); ++columns) {
    for (std::int64_t rows = 1; rows <= std::min<std::int64_t>(mostRows, size.threads); ++rows) {
      const double cost = costOf(size, columns, rows);
      if (least > 0.0 && cost >= least) continue;
      least = cost;
      best.columns = static_cast<std::int32_t>(columns);
      best.rows = static_cast<std::int32_t>(rows);
    }
  }
  const auto pixels = static_cast<double>(size.width * size.groupColumns * size.height);
  best.pays = least < size.costOfTwoPasses * pixels / static_cast<double>(size.threads);
  return best;
}

}  // namespace vblur
