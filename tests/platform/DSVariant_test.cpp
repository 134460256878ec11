#include "platform/DSVariant.h"

#include <limits>

#include <gtest/gtest.h>

namespace vblur {
namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

// At compile time, where a conversion that the language does not define is an error.
TEST(DSVariant, HasAWholeNumberForEveryValue) {
  static_assert(DSVariant::Of(2.9).AsWhole() == 2);
  static_assert(DSVariant::Of(-2.9).AsWhole() == -2);
  static_assert(DSVariant::Of(7).AsWhole() == 7);
  static_assert(DSVariant{DSValueType::Boolean32, 0.0, 1}.AsWhole() == 1);
  static_assert(DSVariant::Of(2147483647.5).AsWhole() == 2147483647);
  static_assert(DSVariant::Of(-2147483648.5).AsWhole() == kLeast);
  static_assert(DSVariant::Of(2147483648.0).AsWhole() == kLeast);
  static_assert(DSVariant::Of(1e300).AsWhole() == kLeast);
  static_assert(DSVariant::Of(-std::numeric_limits<double>::infinity()).AsWhole() == kLeast);
  EXPECT_EQ(DSVariant::Of(std::numeric_limits<double>::quiet_NaN()).AsWhole(), kLeast);
}

}  // namespace
}  // namespace vblur
