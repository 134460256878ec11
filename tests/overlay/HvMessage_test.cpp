#include "overlay/HvMessage.h"

#include <csignal>

#include <gtest/gtest.h>

namespace vblur {
namespace {

struct MessageOfKind : HvMessage {
  explicit MessageOfKind(std::uint32_t kind) : HvMessage(kInteractionBegins, kind, "12345678", 8) {}
};

TEST(HvMessage, HoldsNothingAtFirst) {
  const HvMessage message(kInteractionEnds);
  EXPECT_EQ(message.id(), 202u);
  EXPECT_EQ(message.kind(), 0u);
  EXPECT_EQ(message.reserved(), 0u);
  EXPECT_STREQ(message.text(), "");
  EXPECT_EQ(message.asWhole(), 0u);
  EXPECT_EQ(message.asNumber(), 0.0f);
  EXPECT_EQ(message.asPosition(), (HvPoint{0, 0}));
  EXPECT_FALSE(message.isPosition());
}

TEST(HvMessage, CutsTextsTo15Characters) {
  EXPECT_STREQ(HvMessage(1, "").text(), "");
  EXPECT_STREQ(HvMessage(1, "Crop Box").text(), "Crop Box");
  EXPECT_STREQ(HvMessage(1, "123456789012345").text(), "123456789012345");
  const HvMessage cut(1, "1234567890123456789");
  EXPECT_STREQ(cut.text(), "123456789012345");
  EXPECT_EQ(cut.text()[15], '\0');
  EXPECT_STREQ(HvMessage(1, nullptr).text(), "");
}

TEST(HvMessage, NumbersItsIdsAndKinds) {
  EXPECT_EQ(kPenMoved, 101);
  EXPECT_EQ(kPenDown, 102);
  EXPECT_EQ(kPenUp, 103);
  EXPECT_EQ(kInteractionBegins, 200);
  EXPECT_EQ(kInteractionChanged, 201);
  EXPECT_EQ(kInteractionEnds, 202);
  EXPECT_EQ(kInteractionEndsToo, 203);
  EXPECT_EQ(HvMessage::OfWhole(200, 1).kind(), 1u);
  EXPECT_EQ(HvMessage::OfNumber(201, 1).kind(), 3u);
  EXPECT_EQ(HvMessage::OfPosition(101, {}).kind(), 6u);
}

TEST(HvMessage, CarriesAValue) {
  EXPECT_EQ(HvMessage::OfWhole(200, 0xFFFFFFFFu).asWhole(), 0xFFFFFFFFu);
  EXPECT_EQ(HvMessage::OfNumber(201, -0.1f).asNumber(), -0.1f);
  const HvMessage message = HvMessage::OfPosition(kPenMoved, {-1.5f, 1e30f});
  EXPECT_EQ(message.id(), 101u);
  EXPECT_STREQ(message.text(), "");
  EXPECT_EQ(message.asPosition(), (HvPoint{-1.5f, 1e30f}));
}

TEST(HvMessage, TakesTwoKindsForAPosition) {
  for (std::uint32_t kind = 0; kind < 32; ++kind) {
    if (kind == 5 || kind == 26) continue;
    EXPECT_EQ(MessageOfKind(kind).isPosition(), kind == 6 || kind == 7) << kind;
  }
}

TEST(HvMessageDeathTest, AbortsWithAForbiddenKind) {
  EXPECT_EXIT(MessageOfKind(5), ::testing::KilledBySignal(SIGABRT), "");
  EXPECT_EXIT(MessageOfKind(26), ::testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
}  // namespace vblur
