// Affine transforms of the plane for row vectors, and the overlay's stack of them.
#pragma once

#include <array>

#include "overlay/HvGeometry.h"

namespace vblur {

// Row by row: (x, y) becomes (x*m0 + y*m3 + m6, x*m1 + y*m4 + m7).
struct Matrix3 {
  std::array<float, 9> m{1, 0, 0, 0, 1, 0, 0, 0, 1};

  HvPoint Map(HvPoint p) const { return {p.x * m[0] + p.y * m[3] + m[6], p.x * m[1] + p.y * m[4] + m[7]}; }

  // Each adds its transform behind what the matrix does already.
  void Scale(float x, float y);
  // Anticlockwise, in radians.
  void Rotate(double angle);
  void Translate(float x, float y);

  // By the adjugate and the determinant in double precision; the identity where that is smaller than
  // 8.881784197001252e-16.
  Matrix3 Inverse() const;

  // What `a` does and then `b`.
  friend Matrix3 operator*(const Matrix3& a, const Matrix3& b);
  friend bool operator==(const Matrix3&, const Matrix3&) = default;
};

// One for the process, used on the user-interface thread alone. 32 levels, of which the lowest is the
// identity; pushing at the limit and popping at the bottom do nothing, so that a push beyond the limit is
// followed by a pop too many.
class OverlayMatrixStack {
 public:
  static constexpr int kLevels = 32;

  static OverlayMatrixStack& Get();

  void Push();
  void Pop();
  // Replaces the top by `matrix` times the top: points go through `matrix` first.
  void Multiply(const Matrix3& matrix);

  int depth() const { return depth_; }
  const Matrix3& top() const { return levels_[static_cast<std::size_t>(depth_)]; }
  const Matrix3& inverseOfTop() const { return inverse_; }

 private:
  std::array<Matrix3, kLevels> levels_{};
  Matrix3 inverse_;
  int depth_ = 0;
};

}  // namespace vblur
