#include "host/pages/TypedNumber.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "host/base/Failure.h"

namespace vblur::host {
namespace {

// Of a control that shows 40 of -100 to 500.
double Typed(std::string_view text, double current = 40.0) {
  return ReadTypedNumber(text, current, {-100.0, 500.0});
}

std::string TypedFailure(const std::string& text, double current = 40.0, NumberRange range = {-100.0, 500.0}) {
  try {
    return std::to_string(ReadTypedNumber(text, current, range));
  } catch (const Failure& failure) {
    return failure.what();
  }
}

TEST(TypedNumber, IsANumber) {
  EXPECT_EQ(Typed("12.5"), 12.5);
  EXPECT_EQ(Typed("-3"), -3.0);
  EXPECT_EQ(Typed("+4"), 4.0);
  EXPECT_EQ(Typed("  7\t"), 7.0);
  EXPECT_EQ(Typed(".5"), 0.5);
  EXPECT_EQ(Typed("5."), 5.0);
  EXPECT_EQ(Typed("1e3"), 1000.0);
  EXPECT_EQ(Typed("1e-12"), 1e-12) << "a number is taken as it is";
  EXPECT_EQ(Typed("9999"), 9999.0) << "beyond the range too";
  EXPECT_FALSE(std::signbit(Typed("-0")));
}

TEST(TypedNumber, IsAnExpression) {
  EXPECT_EQ(Typed("1 + 2 * 3"), 7.0);
  EXPECT_EQ(Typed("(1 + 2) * 3"), 9.0);
  EXPECT_EQ(Typed("10 - 4 - 3"), 3.0);
  EXPECT_EQ(Typed("24 / 4 / 3"), 2.0);
  EXPECT_EQ(Typed("720/2"), 360.0);
  EXPECT_EQ(Typed("-3 + 5"), 2.0);
  EXPECT_EQ(Typed("3 * -2"), -6.0);
  EXPECT_EQ(Typed("2--3"), 5.0);
  EXPECT_EQ(Typed("-(2 + 3)"), -5.0);
  EXPECT_EQ(Typed("+(((7)))"), 7.0);
  EXPECT_EQ(Typed("0.1 + 0.2"), 0.3);
  EXPECT_EQ(Typed("1 / 3"), 0.333333333);
  std::string sum = "(1)";
  for (int terms = 1; terms < 40; ++terms)
    sum += "+(1)";
  EXPECT_EQ(Typed(sum), 40.0) << "more parentheses than may be nested";
}

TEST(TypedNumber, IsRelativeByAnOperatorInFront) {
  EXPECT_EQ(Typed("+=5"), 45.0);
  EXPECT_EQ(Typed("-= 5"), 35.0);
  EXPECT_EQ(Typed("*=2"), 80.0);
  EXPECT_EQ(Typed(" /=2"), 20.0);
  EXPECT_EQ(Typed("*2"), 80.0);
  EXPECT_EQ(Typed("/2"), 20.0);
  EXPECT_EQ(Typed("+=-5"), 35.0);
  EXPECT_EQ(Typed("*=2+1"), 120.0) << "with the whole expression";
  EXPECT_EQ(Typed("+=0.2", 0.1), 0.3);
}

TEST(TypedNumber, IsAPartOfTheRange) {
  EXPECT_EQ(Typed("50%"), 200.0);
  EXPECT_EQ(Typed("0%"), -100.0);
  EXPECT_EQ(Typed("100 %"), 500.0);
  EXPECT_EQ(Typed("-10%"), -160.0);
  EXPECT_EQ(Typed("+=10%"), 100.0);
  EXPECT_EQ(Typed("-=10%"), -20.0);
  EXPECT_EQ(Typed("*=50%"), 20.0);
  EXPECT_EQ(Typed("/50%"), 80.0);
  constexpr double kMost = std::numeric_limits<double>::max();
  EXPECT_EQ(ReadTypedNumber("50%", 0.0, {-kMost, kMost}), 0.0);
}

TEST(TypedNumber, SaysWhatItExpects) {
  const std::string expected =
      "expected a number such as 12.5, a percentage such as 50%, or an expression such as (3 + 4) * 2 or += 5, found ";
  for (const std::string text : {"",     " ",      "abc",  "1 2", "1 +", "2 *",  "2 /",  "(1",   "1)",
                                 "()",   "2 ** 3", "1..2", "+=",  "5%%", "5%+1", "(5)%", "inf",  "nan",
                                 "-inf", "0x10",   "++5",  "--5", "1e",  "=5",   "%",    "1e999"}) {
    EXPECT_EQ(TypedFailure(text), expected + "\"" + text + "\"");
  }
  EXPECT_EQ(TypedFailure("1,5"), "expected a decimal point and no commas, found \"1,5\"");
  EXPECT_EQ(TypedFailure("1/0"), "expected a finite result, found \"1/0\"");
  EXPECT_EQ(TypedFailure("0/0"), "expected a finite result, found \"0/0\"");
  EXPECT_EQ(TypedFailure("1e300*1e300"), "expected a finite result, found \"1e300*1e300\"");
  EXPECT_EQ(TypedFailure("+=1", std::numeric_limits<double>::quiet_NaN()), "expected a finite result, found \"+=1\"");
}

TEST(TypedNumber, RefusesHostileTexts) {
  EXPECT_EQ(TypedFailure(std::string(257, '1')).substr(0, 38), "expected at most 256 characters, found");
  EXPECT_EQ(TypedFailure(std::string(32, '(') + "1" + std::string(32, ')')), "1.000000");
  EXPECT_EQ(TypedFailure(std::string(33, '(') + "1" + std::string(33, ')')).substr(0, 17), "expected a number");
  EXPECT_EQ(TypedFailure(std::string(256, '(')).substr(0, 17), "expected a number");
  EXPECT_EQ(TypedFailure(std::string(256, '-')).substr(0, 17), "expected a number");
  EXPECT_EQ(TypedFailure(std::string("1\0", 2)).find('\0'), std::string::npos);
  EXPECT_EQ(TypedFailure("1\n\xFF").find('\n'), std::string::npos);
}

TEST(TypedNumber, KeepsEveryBitOfWhatItDoesNotChange) {
  constexpr double kFine = 12.123456789012345;
  for (const char* text : {"+=0", "-= 0", "*1", "/ 1", "*=100%"})
    EXPECT_EQ(ReadTypedNumber(text, kFine, {0.0, 720.0}), kFine) << text;
}

TEST(TypedNumber, LosesTheDustOfSteps) {
  EXPECT_EQ(WithoutDust(0.1 + 0.2), 0.3);
  EXPECT_EQ(WithoutDust(-1e-17), 0.0);
  EXPECT_FALSE(std::signbit(WithoutDust(-1e-17)));
  EXPECT_EQ(WithoutDust(123456.0 + 0.1), 123456.1);
  EXPECT_EQ(WithoutDust(1e300), 1e300);
}

}  // namespace
}  // namespace vblur::host
