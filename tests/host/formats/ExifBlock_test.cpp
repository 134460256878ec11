#include "host/formats/ExifBlock.h"

#include <gtest/gtest.h>

#include "host/formats/TiffDirectory.h"
#include "tests/support/host/ExifBytes.h"

namespace vblur::host {
namespace {

TEST(ExifBlock, TellsWhatItHolds) {
  for (const bool isBig : {false, true}) {
    const ExifFacts rich = FactsOfExif(ExifBytes{isBig, "abc", true}.Build());
    EXPECT_TRUE(rich.isExif);
    EXPECT_TRUE(rich.hasMakerNote);
    EXPECT_EQ(rich.description, "abc");
    const ExifFacts plain = FactsOfExif(ExifBytes{isBig}.Build());
    EXPECT_TRUE(plain.isExif);
    EXPECT_FALSE(plain.hasMakerNote);
    EXPECT_EQ(plain.description, "");
  }
}

TEST(ExifBlock, ALongTextLiesElsewhere) {
  std::string block = ExifBytes{false, "abc"}.Build();
  block[14] = 6;  // its length, and its place
  block.replace(18, 4, std::string{static_cast<char>(block.size()), 0, 0, 0});
  EXPECT_EQ(FactsOfExif(block + "longer").description, "longer");
  EXPECT_EQ(FactsOfExif(block + std::string("sho\0er", 6)).description, "sho");
  EXPECT_EQ(FactsOfExif(block + "longe").description, "");
}

TEST(ExifBlock, AnOutputHasItsOwnSizeAndNoSmallCopyOfTheInput) {
  for (const bool isBig : {false, true}) {
    ExifBytes before{isBig, "abc", true, 40, 70000, "secret"};
    ExifBytes after = before;
    after.width = 12;
    after.height = 34;
    after.thumbnail = std::string(6, '\0');
    std::string expected = after.Build();
    expected.replace(8 + 2 + 2 * 12, 4, std::string(4, '\0'));
    EXPECT_EQ(ExifForOutput(before.Build(), 12, 34), expected);
  }
  EXPECT_EQ(ExifForOutput(ExifBytes{}.Build(), 40, 70000), ExifBytes{}.Build());
}

TEST(ExifBlock, ASizeThatHasNoPlaceIsNotKnown) {
  ExifBytes wide;
  wide.width = 0;
  EXPECT_EQ(ExifForOutput(ExifBytes{}.Build(), 70000, 70000), wide.Build());
}

TEST(ExifBlock, AnOrientationThatIsNoneBecomesTheUsualOne) {
  const auto block = [](bool isBig, std::uint16_t type, std::uint64_t value) {
    std::string empty = isBig ? std::string("MM\0*\0\0\0\x08\0\0\0\0\0\0", 14) : std::string();
    const std::size_t size = type == 3 ? 2 : type == 4 ? 4 : 1;
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i)
      bytes.push_back(static_cast<char>(value >> 8 * (isBig ? size - 1 - i : i) & 0xff));
    return WithTiffTags(empty, {{std::uint16_t{0x0112}, TiffTag{type, 1, bytes}}});
  };
  for (const bool isBig : {false, true}) {
    for (const auto type : {std::uint16_t{1}, std::uint16_t{3}, std::uint16_t{4}}) {
      for (const std::uint64_t number : {1u, 6u, 8u}) {
        EXPECT_EQ(FactsOfExif(block(isBig, type, number)).wrongOrientation, std::nullopt) << number;
        EXPECT_EQ(ExifForOutput(block(isBig, type, number), 2, 1), block(isBig, type, number));
      }
      for (const std::uint64_t number : {0u, 9u, 200u}) {
        EXPECT_EQ(FactsOfExif(block(isBig, type, number)).wrongOrientation, std::optional<std::size_t>(number));
        EXPECT_EQ(ExifForOutput(block(isBig, type, number), 2, 1), block(isBig, 3, 1)) << number;
      }
    }
    EXPECT_EQ(FactsOfExif(block(isBig, 4, 70000)).wrongOrientation, std::optional<std::size_t>(70000));
    EXPECT_TRUE(FactsOfExif(block(isBig, 2, 6)).wrongOrientation) << "a text";
    EXPECT_EQ(ExifForOutput(block(isBig, 2, 6), 2, 1), block(isBig, 3, 1));
  }
  EXPECT_EQ(FactsOfExif(ExifBytes{}.Build()).wrongOrientation, std::nullopt) << "there is none";
}

// What lies elsewhere than behind the directories may be something else.
TEST(ExifBlock, ASmallCopyThatCannotBeTakenOutKeepsTheBlockFromPassing) {
  const std::string whole = ExifBytes{false, "abc", true, 40, 70000, "secret"}.Build();
  EXPECT_TRUE(FactsOfExif(whole).mayPass);
  const std::size_t second = 8 + 2 + 2 * 12 + 4 + 2 + 3 * 12 + 4;
  const auto passes = [&](std::size_t at, char byte) {
    std::string changed = whole;
    changed[at] = byte;
    EXPECT_TRUE(FactsOfExif(changed).isExif);
    return FactsOfExif(changed).mayPass;
  };
  EXPECT_FALSE(passes(second + 2, '\2'));             // a length without a place
  EXPECT_FALSE(passes(second + 2 + 12, '\1'));        // a place without a length
  EXPECT_FALSE(passes(second + 2 + 8, '\0'));         // at the block's begin
  EXPECT_FALSE(passes(second + 2 + 8, '\x40'));       // in a directory
  EXPECT_FALSE(passes(second + 2 + 12 + 8, '\x7f'));  // beyond the end
  std::string strips = whole;
  strips[second + 2] = '\x11';
  strips[second + 3] = '\1';
  EXPECT_FALSE(FactsOfExif(strips).mayPass);
}

// Whatever the bytes say: what they lead to beyond the end is not there.
TEST(ExifBlock, DamagedOnesAreLeftAlone) {
  const std::string whole = ExifBytes{false, "abc", true, 40, 70000, "secret"}.Build();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    FactsOfExif(whole.substr(0, length));
    const std::size_t passed = ExifForOutput(whole.substr(0, length), 12, 34).size();
    EXPECT_TRUE(passed == length || passed == 0);
  }
  for (std::size_t at = 0; at < whole.size(); ++at) {
    std::string damaged = whole;
    damaged[at] = '\xff';
    FactsOfExif(damaged);
    const std::size_t passed = ExifForOutput(damaged, 12, 34).size();
    EXPECT_TRUE(passed == whole.size() || passed == 0);
  }
  EXPECT_FALSE(FactsOfExif("").isExif);
  EXPECT_FALSE(FactsOfExif("II*").isExif);
  EXPECT_FALSE(FactsOfExif(std::string("II*\0\x08\0\0\0\0\0\0\0\0\0", 14)).isExif);
  EXPECT_FALSE(FactsOfExif("XX" + whole.substr(2)).isExif);
}

}  // namespace
}  // namespace vblur::host
