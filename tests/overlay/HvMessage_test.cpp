#include "overlay/HvMessage.h"

#include <gtest/gtest.h>

#include "tests/support/Aborted.h"

namespace vblur {
namespace {

struct MessageOfKind : HvMessage {
  explicit MessageOfKind(std::uint32_t kind) : HvMessage(kInteractionBegins, kind, "12345678", 8) {}
};

TEST(HvMessage, HoldsNothingAtFirst) {
  const HvMessage message(kInteractionEnds);
  EXPECT_EQ(message.Id(), 202u);
  EXPECT_EQ(message.Kind(), 0u);
  EXPECT_EQ(message.Reserved(), 0u);
  EXPECT_STREQ(message.Text(), "");
  EXPECT_EQ(message.AsWhole(), 0u);
  EXPECT_EQ(message.AsNumber(), 0.0f);
  EXPECT_EQ(message.AsPosition(), (HvPoint{0, 0}));
  EXPECT_FALSE(message.IsPosition());
}

TEST(HvMessage, CutsTextsTo15Characters) {
  EXPECT_STREQ(HvMessage(1, "").Text(), "");
  EXPECT_STREQ(HvMessage(1, "Crop Box").Text(), "Crop Box");
  EXPECT_STREQ(HvMessage(1, "123456789012345").Text(), "123456789012345");
  const HvMessage cut(1, "1234567890123456789");
  EXPECT_STREQ(cut.Text(), "123456789012345");
  EXPECT_EQ(cut.Text()[15], '\0');
  EXPECT_STREQ(HvMessage(1, nullptr).Text(), "");
}

TEST(HvMessage, NumbersItsIdsAndKinds) {
  EXPECT_EQ(kPenMoved, 101);
  EXPECT_EQ(kPenDown, 102);
  EXPECT_EQ(kPenUp, 103);
  EXPECT_EQ(kInteractionBegins, 200);
  EXPECT_EQ(kInteractionChanged, 201);
  EXPECT_EQ(kInteractionEnds, 202);
  EXPECT_EQ(kInteractionEndsToo, 203);
  EXPECT_EQ(HvMessage::OfWhole(200, 1).Kind(), 1u);
  EXPECT_EQ(HvMessage::OfNumber(201, 1).Kind(), 3u);
  EXPECT_EQ(HvMessage::OfPosition(101, {}).Kind(), 6u);
}

TEST(HvMessage, CarriesAValue) {
  EXPECT_EQ(HvMessage::OfWhole(200, 0xFFFFFFFFu).AsWhole(), 0xFFFFFFFFu);
  EXPECT_EQ(HvMessage::OfNumber(201, -0.1f).AsNumber(), -0.1f);
  const HvMessage message = HvMessage::OfPosition(kPenMoved, {-1.5f, 1e30f});
  EXPECT_EQ(message.Id(), 101u);
  EXPECT_STREQ(message.Text(), "");
  EXPECT_EQ(message.AsPosition(), (HvPoint{-1.5f, 1e30f}));
}

TEST(HvMessage, TakesTwoKindsForAPosition) {
  for (std::uint32_t kind = 0; kind < 32; ++kind) {
    if (kind == 5 || kind == 26) continue;
    EXPECT_EQ(MessageOfKind(kind).IsPosition(), kind == 6 || kind == 7) << kind;
  }
}

TEST(HvMessageDeathTest, AbortsWithAForbiddenKind) {
  EXPECT_EXIT(MessageOfKind(5), test::kAborted, "");
  EXPECT_EXIT(MessageOfKind(26), test::kAborted, "");
}

}  // namespace
}  // namespace vblur
