#include "place.h"

namespace model {
namespace {

/// The row of the picture that is this row of the view.
int RowOf(int row, int field) {
  return field == 0 ? row : 2 * row + (field - 1);
}

}  // namespace

Place PlaceOf(const std::optional<FrameImage>& image, const std::optional<Project>& project) {
  if (!image) return {};
  const double ratio = project ? project->userSize[1] / project->worldSize[1] : 0.0;
  const auto inUserUnits = [&](double worldUnits) {
    return static_cast<float>(static_cast<double>(static_cast<float>(worldUnits)) * ratio);
  };
  return {inUserUnits(image->size[0]), inUserUnits(image->size[1]), image->origin[0], image->origin[1]};
}

Picture View(const Picture& picture, int originX, int originY, int field) {
  const int rows = field == 0 ? picture.y.size : picture.y.size / 2;
  Picture view = Blank(WholeAxis(picture.x.size, originX), WholeAxis(rows, field == 0 ? originY : originY / 2));
  // Also for a field without rows.
  view.hasMemory = true;
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < picture.x.size; ++x)
      Stored(view, x, y) = Stored(picture, x, RowOf(y, field));
  }
  return view;
}

void PutBack(const Picture& view, Picture& picture, int field) {
  for (int y = 0; y < view.y.size; ++y) {
    for (int x = 0; x < view.x.size; ++x)
      Stored(picture, x, RowOf(y, field)) = Stored(view, x, y);
  }
}

}  // namespace model
