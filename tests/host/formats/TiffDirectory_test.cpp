#include "host/formats/TiffDirectory.h"

#include <gtest/gtest.h>

#include "host/formats/FileExtras.h"
#include "tests/support/host/ExifBytes.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

class TiffDirectory : public testing::Test {
 protected:
  static TiffTags TagsOf(const std::string& file) {
    return TiffTags([file](std::int64_t at, std::size_t count) {
      return static_cast<std::size_t>(at) < file.size() ? file.substr(static_cast<std::size_t>(at), count)
                                                        : std::string();
    });
  }

  FileExtras ExtrasOf(const TiffBytes& file) const {
    return ReadFileExtras(folder_.Write("extras.tif", file.File()), "tiff", "");
  }

  ScratchFolder folder_;
  const TiffBytes picture_{3, 1, 8, 1, "abc"};
};

TEST_F(TiffDirectory, TakesTagsInPlaceOfItsOwn) {
  const std::string before = TiffBytes(picture_).Short(274, {6}).Text(315, "Somebody else").File();
  const auto file = folder_.Write("a.tif", before);
  EXPECT_TRUE(AddTiffTags(file, {{315, {2, 3, std::string("Me\0", 3)}}, {270, {2, 6, std::string("Title\0", 6)}}}));
  const std::string after = Bytes(file);
  const TiffTags tags = TagsOf(after);
  EXPECT_EQ(tags.Text(270), "Title");
  EXPECT_EQ(tags.Text(315), "Me");
  EXPECT_EQ(tags.Number(274, 0), 6);
  EXPECT_EQ(tags.All().size(), TagsOf(before).All().size() + 1);
  EXPECT_EQ(after.substr(8, before.size() - 8), before.substr(8));
  // Other tags are where readers that search for them by their numbers expect them.
  const auto place =
      static_cast<std::size_t>(static_cast<unsigned char>(after[4]) | static_cast<unsigned char>(after[5]) << 8);
  EXPECT_EQ(place % 2, 0u);
  std::string numbers;
  for (std::size_t at = place + 2; at + 12 < after.size(); at += 12)
    numbers += {after[at + 1], after[at]};
  for (std::size_t at = 2; at < numbers.size(); at += 2)
    EXPECT_LT(numbers.substr(at - 2, 2), numbers.substr(at, 2));
}

TEST_F(TiffDirectory, LeavesOtherFilesAlone) {
  for (const std::string& content : {TiffBytes(3, 1, 8, 1, "abc", true).File(), std::string("II*\0\xff\xff\xff\x7f", 8),
                                     picture_.File().substr(0, 40), std::string("PNG"), std::string()}) {
    const auto file = folder_.Write("b.tif", content);
    EXPECT_FALSE(AddTiffTags(file, {{270, {2, 2, std::string("a\0", 2)}}}));
    EXPECT_EQ(Bytes(file), content);
  }
  EXPECT_FALSE(AddTiffTags(folder_.path() / "none.tif", {}));
}

// Of either order of bytes.
TEST_F(TiffDirectory, GivesWhatAnotherFileHasAsItIs) {
  for (const bool isBig : {false, true}) {
    TiffBytes source(3, 1, 8, 1, "abc", isBig);
    const FileExtras extras =
        ExtrasOf(source.Text(270, "Title").Text(33432, "(c)").Short(274, {6}).Long(33723, {0x01020304}));
    EXPECT_EQ(extras.texts, (PictureTexts{{270, "Title"}, {33432, "(c)"}}));
    // Bytes in the order of the file, whatever the numbers are.
    EXPECT_EQ(extras.iptc, isBig ? "\x01\x02\x03\x04" : "\x04\x03\x02\x01");
    EXPECT_EQ(extras.unread, std::vector<std::string>());
    const auto file = folder_.Write("c.tif", picture_.File());
    ASSERT_TRUE(AddTiffTags(file, extras.tiffTags));
    const TiffTags tags = TagsOf(Bytes(file));
    EXPECT_EQ(tags.Text(270), "Title");
    EXPECT_EQ(tags.Text(33432), "(c)");
    EXPECT_EQ(tags.Number(274, 0), 6);
  }
}

TEST_F(TiffDirectory, BlocksOfEitherOrderTakeTags) {
  for (const bool isBig : {false, true}) {
    const std::string block = ExifBytes{.isBig = isBig, .description = "fox"}.Build();
    const std::string changed = WithTiffTags(block, {{315, {2, 5, std::string("Some\0", 5)}}});
    const TiffTags tags = TagsOf(changed);
    EXPECT_EQ(tags.Text(270), "fox");
    EXPECT_EQ(tags.Text(315), "Some");
    EXPECT_EQ(tags.All().size(), TagsOf(block).All().size() + 1);
    EXPECT_EQ(changed.substr(8, block.size() - 8), block.substr(8));
    EXPECT_EQ(WithTiffTags(block.substr(0, 20), {}), "");
  }
  const TiffTags alone = TagsOf(WithTiffTags("", {{274, {3, 1, std::string("\x06\0", 2)}}}));
  EXPECT_EQ(alone.Number(274, 0), 6);
  EXPECT_EQ(alone.All().size(), 1u);
}

// The codec of the system writes none.
TEST_F(TiffDirectory, GivesAResolutionWithoutAUnitAsItIs) {
  const auto with = [&](std::uint16_t unit, std::uint16_t turn) {
    return ExtrasOf(TiffBytes(picture_).Short(282, {4}).Short(283, {3}).Short(296, {unit}).Short(274, {turn}));
  };
  const FileExtras ratio = with(1, 6);
  EXPECT_TRUE(ratio.hasPixelAspect);
  EXPECT_EQ(ratio.pixelsPerInchX, 0.0);
  for (const std::uint16_t tag : std::vector<std::uint16_t>{274, 282, 283, 296})
    EXPECT_TRUE(ratio.tiffTags.contains(tag)) << tag;
  const FileExtras inches = with(2, 9);
  EXPECT_FALSE(inches.hasPixelAspect);
  EXPECT_EQ(inches.orientation, 1);
  EXPECT_TRUE(inches.tiffTags.empty());
}

TEST_F(TiffDirectory, KnowsWhatNothingIsDoneFor) {
  using Kinds = std::vector<std::string>;
  EXPECT_EQ(ExtrasOf(picture_).unread, Kinds());
  EXPECT_EQ(ExtrasOf(TiffBytes(picture_).Short(33550, {1, 2, 3})).unread, Kinds{"TIFF tag 33550"});
  EXPECT_EQ(ExtrasOf(TiffBytes(picture_).Text(700, "<x:xmpmeta/>")).unread, Kinds{"XMP data"});
}

}  // namespace
}  // namespace vblur::host
