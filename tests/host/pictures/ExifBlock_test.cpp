#include "host/pictures/ExifBlock.h"

#include <gtest/gtest.h>

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

// Whatever the bytes say: what they lead to beyond the end is not there.
TEST(ExifBlock, DamagedOnesAreLeftAlone) {
  const std::string whole = ExifBytes{false, "abc", true, 40, 70000, "secret"}.Build();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    FactsOfExif(whole.substr(0, length));
    EXPECT_EQ(ExifForOutput(whole.substr(0, length), 12, 34).size(), length);
  }
  for (std::size_t at = 0; at < whole.size(); ++at) {
    std::string damaged = whole;
    damaged[at] = '\xff';
    FactsOfExif(damaged);
    EXPECT_EQ(ExifForOutput(damaged, 12, 34).size(), whole.size());
  }
  EXPECT_FALSE(FactsOfExif("").isExif);
  EXPECT_FALSE(FactsOfExif("II*").isExif);
  EXPECT_FALSE(FactsOfExif(std::string("II*\0\x08\0\0\0\0\0\0\0\0\0", 14)).isExif);
  EXPECT_FALSE(FactsOfExif("XX" + whole.substr(2)).isExif);
}

}  // namespace
}  // namespace vblur::host
