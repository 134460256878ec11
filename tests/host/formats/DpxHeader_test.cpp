#include "host/formats/DpxHeader.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST(DpxHeader, PixelAspectsAreFractions) {
  struct Case {
    float aspect;
    std::uint32_t across;
    std::uint32_t down;
  };
  for (const Case& each : {Case{1.0f, 1, 1}, Case{2.0f, 2, 1}, Case{0.5f, 1, 2}, Case{4.0f / 3.0f, 4, 3},
                           Case{0.9f, 9, 10}, Case{59.0f / 54.0f, 59, 54}, Case{0.0f, 1, 1}, Case{-2.0f, 1, 1},
                           Case{4.0e9f, 1, 1}, Case{std::numeric_limits<float>::quiet_NaN(), 1, 1}}) {
    DpxHeader header(8192);
    header.SetPixelAspect(each.aspect);
    EXPECT_EQ(header.Whole(dpx::kPixelAspect), each.across) << each.aspect;
    EXPECT_EQ(header.Whole(dpx::kPixelAspect + 4), each.down) << each.aspect;
  }
}

TEST(DpxHeader, PixelAspectsComeBack) {
  for (float aspect = 0.0001f; aspect < 10000.0f; aspect *= 1.0013f) {
    DpxHeader header(8192);
    header.SetPixelAspect(aspect);
    EXPECT_EQ(
        static_cast<float>(header.Whole(dpx::kPixelAspect)) / static_cast<float>(header.Whole(dpx::kPixelAspect + 4)),
        aspect);
  }
}

TEST(DpxHeader, TextsEndWithAZero) {
  DpxHeader header(8192);
  header.SetText(dpx::kFileName, dpx::kFileNameBytes, std::string(200, 'x'));
  EXPECT_EQ(header.Bytes().substr(dpx::kFileName, dpx::kFileNameBytes), std::string(99, 'x') + '\0');
  EXPECT_EQ(header.Bytes()[dpx::kFileName + dpx::kFileNameBytes], '\0');
  header.SetText(dpx::kFileName, dpx::kFileNameBytes, "y");
  EXPECT_EQ(header.Bytes().substr(dpx::kFileName, dpx::kFileNameBytes), 'y' + std::string(99, '\0'));
}

TEST(DpxHeader, NothingIsDefinedAtFirst) {
  const DpxHeader header(8192);
  EXPECT_EQ(header.Bytes().substr(0, 4), "XPDS");
  EXPECT_EQ(header.Bytes().substr(dpx::kVersion, 5), std::string("V2.0\0", 5));
  for (const DpxField& field : DpxFields()) {
    EXPECT_TRUE(header.Has(field));
    if (field.kind == DpxKind::Float) {
      EXPECT_TRUE(std::isnan(header.Float(field.place))) << field.name;
    }
    if (field.kind == DpxKind::Text && field.name != "dpx:Version") {
      EXPECT_EQ(header.Field(field).front(), '\0') << field.name;
    }
  }
  EXPECT_EQ(header.Whole(dpx::kTimeCode), dpx::kUndefined);
  EXPECT_EQ(header.Whole(dpx::kEncryptKey), dpx::kUndefined);
  EXPECT_EQ(header.Whole(dpx::kDittoKey), 1u);
}

}  // namespace
}  // namespace vblur::host
