#include "overlay/Matrix3.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/Random.h"

namespace vblur {
namespace {

const Matrix3 kMatrixIdentity;

// The stack is shared by the process: each test starts and ends with it at the bottom.
class Matrix3Stack : public ::testing::Test {
 protected:
  void SetUp() override { toBottom(); }
  void TearDown() override { toBottom(); }
  void toBottom() {
    while (stack.Depth() > 0)
      stack.Pop();
  }

  OverlayMatrixStack& stack = OverlayMatrixStack::Get();
};

TEST(Matrix3, IsTheIdentityAtFirst) {
  EXPECT_EQ(Matrix3().m, (std::array<float, 9>{1, 0, 0, 0, 1, 0, 0, 0, 1}));
}

TEST(Matrix3, MapsRowVectors) {
  const Matrix3 matrix{{2, 3, 0, 5, 7, 0, 11, 13, 1}};
  EXPECT_EQ(matrix.Map({1, 0}), (HvPoint{13, 16}));
  EXPECT_EQ(matrix.Map({0, 1}), (HvPoint{16, 20}));
  EXPECT_EQ(matrix.Map({10, 100}), (HvPoint{531, 743}));
}

TEST(Matrix3, ScalesColumns) {
  Matrix3 matrix{{1, 2, 3, 4, 5, 6, 7, 8, 9}};
  matrix.Scale(10, -2);
  EXPECT_EQ(matrix.m, (std::array<float, 9>{10, -4, 3, 40, -10, 6, 70, -16, 9}));
}

TEST(Matrix3, AddsATranslationBehind) {
  Matrix3 matrix;
  matrix.Scale(2, 3);
  matrix.Translate(10, 20);
  EXPECT_EQ(matrix.Map({1, 1}), (HvPoint{12, 23}));
  matrix.Scale(2, 2);
  EXPECT_EQ(matrix.Map({1, 1}), (HvPoint{24, 46}));
}

TEST(Matrix3, RotatesAnticlockwise) {
  Matrix3 matrix;
  matrix.Rotate(0.5);
  const auto sine = static_cast<float>(std::sin(0.5));
  const auto cosine = static_cast<float>(std::cos(0.5));
  EXPECT_EQ(matrix.Map({1, 0}), (HvPoint{cosine, sine}));
  EXPECT_EQ(matrix.Map({0, 1}), (HvPoint{-sine, cosine}));
  Matrix3 moved;
  moved.Translate(1, 0);
  moved.Rotate(0.5);
  EXPECT_EQ(moved.Map({0, 0}), (HvPoint{cosine, sine}));
}

TEST(Matrix3, MultipliesInTheOrderOfActing) {
  Matrix3 scale;
  scale.Scale(2, 4);
  Matrix3 move;
  move.Translate(1, 2);
  EXPECT_EQ((scale * move).Map({3, 3}), (HvPoint{7, 14}));
  EXPECT_EQ((move * scale).Map({3, 3}), (HvPoint{8, 20}));
  const Matrix3 a{{1, 2, 3, 4, 5, 6, 7, 8, 9}};
  const Matrix3 b{{9, 8, 7, 6, 5, 4, 3, 2, 1}};
  EXPECT_EQ((a * b).m, (std::array<float, 9>{30, 24, 18, 84, 69, 54, 138, 114, 90}));
}

TEST(Matrix3, InvertsExactly) {
  const Matrix3 matrix{{2, 0, 0, 0, 4, 0, 6, -8, 1}};
  EXPECT_EQ(matrix.Inverse().m, (std::array<float, 9>{0.5f, -0.0f, 0, 0, 0.25f, 0, -3, 2, 1}));
  // All nine elements matter; the determinant is 1.
  const Matrix3 full{{1, 2, 3, 0, 1, 4, 5, 6, 0}};
  EXPECT_EQ(full.Inverse().m, (std::array<float, 9>{-24, 18, 5, 20, -15, -4, -5, 4, 1}));
}

TEST(Matrix3, InvertsASingularMatrixToTheIdentity) {
  EXPECT_EQ((Matrix3{{0, 0, 0, 0, 0, 0, 0, 0, 0}}).Inverse(), kMatrixIdentity);
  EXPECT_EQ((Matrix3{{1, 2, 0, 2, 4, 0, 5, 6, 1}}).Inverse(), kMatrixIdentity);
  // Determinants 2^-50, exactly the limit, and 2^-51.
  const float tiny = std::ldexp(1.0f, -25);
  EXPECT_EQ((Matrix3{{tiny, 0, 0, 0, tiny, 0, 0, 0, 1}}).Inverse().m[0], 1 / tiny);
  EXPECT_EQ((Matrix3{{-tiny, 0, 0, 0, tiny, 0, 0, 0, 1}}).Inverse().m[0], -1 / tiny);
  EXPECT_EQ((Matrix3{{tiny, 0, 0, 0, tiny / 2, 0, 0, 0, 1}}).Inverse(), kMatrixIdentity);
}

TEST(Matrix3, InverseLeadsBack) {
  test::forRandomCases(200, [](test::Random& random) {
    Matrix3 matrix;
    matrix.Scale(random.between(0.5f, 4), random.between(-4, -0.5f));
    matrix.Rotate(static_cast<double>(random.between(-4, 4)));
    matrix.Translate(random.between(-100, 100), random.between(-100, 100));
    const HvPoint point{random.between(-100, 100), random.between(-100, 100)};
    const HvPoint back = matrix.Inverse().Map(matrix.Map(point));
    EXPECT_NEAR(back.x, point.x, 0.001);
    EXPECT_NEAR(back.y, point.y, 0.001);
  });
}

TEST_F(Matrix3Stack, IsOneForTheProcess) {
  EXPECT_EQ(&OverlayMatrixStack::Get(), &stack);
  EXPECT_EQ(stack.Depth(), 0);
  EXPECT_EQ(stack.Top(), kMatrixIdentity);
  EXPECT_EQ(stack.InverseOfTop(), kMatrixIdentity);
}

TEST_F(Matrix3Stack, PutsAMatrixBeforeTheTop) {
  Matrix3 scale;
  scale.Scale(2, 4);
  Matrix3 move;
  move.Translate(1, 2);
  stack.Push();
  stack.Multiply(scale);
  stack.Push();
  EXPECT_EQ(stack.Top(), scale);
  stack.Multiply(move);
  EXPECT_EQ(stack.Top(), move * scale);
  EXPECT_EQ(stack.InverseOfTop(), stack.Top().Inverse());
  EXPECT_EQ(stack.InverseOfTop().Map({8, 20}), (HvPoint{3, 3}));
  stack.Pop();
  EXPECT_EQ(stack.Top(), scale);
  EXPECT_EQ(stack.InverseOfTop(), scale.Inverse());
  stack.Pop();
  EXPECT_EQ(stack.Top(), kMatrixIdentity);
  EXPECT_EQ(stack.InverseOfTop(), kMatrixIdentity);
}

TEST_F(Matrix3Stack, PopsNothingBelowItsBottom) {
  stack.Pop();
  EXPECT_EQ(stack.Depth(), 0);
  EXPECT_EQ(stack.Top(), kMatrixIdentity);
}

TEST_F(Matrix3Stack, PopsOneLevelTooManyAfterAPushBeyondItsLimit) {
  Matrix3 twice;
  twice.Scale(2, 2);
  for (int i = 0; i < 31; ++i) {
    stack.Push();
    stack.Multiply(twice);
    EXPECT_EQ(stack.Depth(), i + 1);
  }
  const float top = std::ldexp(1.0f, 31);
  EXPECT_EQ(stack.Top().m[0], top);
  for (int i = 0; i < 2; ++i) {
    stack.Push();
    EXPECT_EQ(stack.Depth(), 31);
    EXPECT_EQ(stack.Top().m[0], top);
  }
  stack.Pop();
  EXPECT_EQ(stack.Depth(), 30);
  EXPECT_EQ(stack.Top().m[0], top / 2);
}

TEST_F(Matrix3Stack, TakesTheIdentityForTheInverseOfASingularTop) {
  stack.Push();
  stack.Multiply(Matrix3{{0, 0, 0, 0, 0, 0, 0, 0, 1}});
  EXPECT_EQ(stack.InverseOfTop(), kMatrixIdentity);
}

}  // namespace
}  // namespace vblur
