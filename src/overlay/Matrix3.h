// Affine transforms of the plane for row vectors, and the overlay's stack of them.
#pragma once

#include <array>

#include "overlay/HvGeometry.h"

namespace vblur {

// Row by row: (x, y) becomes (x*m0 + y*m3 + m6, x*m1 + y*m4 + m7).
struct Matrix3 {
  std::array<float, 9> m{1, 0, 0, 0, 1, 0, 0, 0, 1};

  HvPoint Map(HvPoint p) const { return {p.x * m[0] + p.y * m[3] + m[6], p.x * m[1] + p.y * m[4] + m[7]}; }

  // Each appends a transform: applied after those already in the matrix.
  void Scale(float x, float y);
  // Anticlockwise, in radians.
  void Rotate(double angle);
  void Translate(float x, float y);

  // Adjugate over determinant, in double precision; the identity for a determinant below 8.881784197001252e-16.
  Matrix3 Inverse() const;

  // `a` first, then `b`.
  friend Matrix3 operator*(const Matrix3& a, const Matrix3& b);
  friend bool operator==(const Matrix3&, const Matrix3&) = default;
};

// One per process, for the user-interface thread. 32 levels, the lowest the identity. Push at the limit and Pop at the
// bottom do nothing; after a Push beyond the limit the matching Pop removes one level too many.
class OverlayMatrixStack {
 public:
  static constexpr int kLevels = 32;

  static OverlayMatrixStack& Get();

  void Push();
  void Pop();
  // top = matrix * top: `matrix` is applied first.
  void Multiply(const Matrix3& matrix);

  int Depth() const { return depth_; }
  const Matrix3& Top() const { return levels_[static_cast<std::size_t>(depth_)]; }
  // Kept by Multiply and Pop, which need it; readable for tests.
  const Matrix3& InverseOfTop() const { return inverse_; }

 private:
  std::array<Matrix3, kLevels> levels_{};
  Matrix3 inverse_;
  int depth_ = 0;
};

}  // namespace vblur
