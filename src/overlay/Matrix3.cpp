#include "overlay/Matrix3.h"

#include <cmath>
#include <cstddef>

namespace vblur {
namespace {

constexpr double kSingular = 8.881784197001252e-16;

}  // namespace

Matrix3 operator*(const Matrix3& a, const Matrix3& b) {
  Matrix3 product;
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      float sum = 0.0f;
      for (std::size_t k = 0; k < 3; ++k)
        sum += a.m[row * 3 + k] * b.m[k * 3 + column];
      product.m[row * 3 + column] = sum;
    }
  }
  return product;
}

void Matrix3::Scale(float x, float y) {
  for (std::size_t row = 0; row < 3; ++row) {
    m[row * 3] *= x;
    m[row * 3 + 1] *= y;
  }
}

void Matrix3::Rotate(double angle) {
  const auto sine = static_cast<float>(std::sin(angle));
  const auto cosine = static_cast<float>(std::cos(angle));
  *this = *this * Matrix3{{cosine, sine, 0, -sine, cosine, 0, 0, 0, 1}};
}

void Matrix3::Translate(float x, float y) {
  *this = *this * Matrix3{{1, 0, 0, 0, 1, 0, x, y, 1}};
}

Matrix3 Matrix3::Inverse() const {
  const std::array<double, 9> a{m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8]};
  const auto minor = [&](std::size_t p, std::size_t q, std::size_t r, std::size_t s) {
    return a[p] * a[s] - a[q] * a[r];
  };
  const std::array<double, 9> adjugate{
      minor(4, 5, 7, 8),  -minor(1, 2, 7, 8), minor(1, 2, 4, 5),   //
      -minor(3, 5, 6, 8), minor(0, 2, 6, 8),  -minor(0, 2, 3, 5),  //
      minor(3, 4, 6, 7),  -minor(0, 1, 6, 7), minor(0, 1, 3, 4),
  };
  const double determinant = a[0] * adjugate[0] + a[1] * adjugate[3] + a[2] * adjugate[6];
  if (std::abs(determinant) < kSingular) return {};
  Matrix3 inverse;
  for (std::size_t i = 0; i < adjugate.size(); ++i)
    inverse.m[i] = static_cast<float>(adjugate[i] / determinant);
  return inverse;
}

OverlayMatrixStack& OverlayMatrixStack::Get() {
  static OverlayMatrixStack stack;
  return stack;
}

void OverlayMatrixStack::Push() {
  if (depth_ < kLevels - 1) {
    levels_[static_cast<std::size_t>(depth_) + 1] = Top();
    ++depth_;
  }
  inverse_ = Top().Inverse();
}

void OverlayMatrixStack::Pop() {
  if (depth_ > 0) --depth_;
  inverse_ = Top().Inverse();
}

void OverlayMatrixStack::Multiply(const Matrix3& matrix) {
  Matrix3& top = levels_[static_cast<std::size_t>(depth_)];
  top = matrix * top;
  inverse_ = top.Inverse();
}

}  // namespace vblur
