#include "host/formats/TiffTagKinds.h"

#include <array>

#include <gtest/gtest.h>

#include "host/formats/TiffTags.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

constexpr std::array<std::uint16_t, 1> kRead{270};

using Kinds = std::vector<std::string>;

std::string Number(std::uint64_t value, int bytes, bool isBig) {
  std::string text;
  for (int i = 0; i < bytes; ++i)
    text.push_back(static_cast<char>(value >> 8 * (isBig ? bytes - 1 - i : i) & 0xFF));
  return text;
}

TEST(TiffTagKinds, TagsBeyondThePixelsAreNamed) {
  const ScratchFolder scratch;
  const auto kindsOf = [&](const TiffBytes& file, std::span<const std::uint16_t> read = kRead) {
    return OtherTiffTags(scratch.Write("tags.tif", file.File()), read);
  };
  TiffBytes file(2, 1, 8, 1, "xy");
  file.Text(270, "a text").Short(282, {72}).Short(338, {2});
  EXPECT_EQ(kindsOf(file), Kinds());
  EXPECT_EQ(kindsOf(file, {}), Kinds{"TIFF tag 270"});
  file.Text(42112, "<notes/>").Short(65000, {1}).Text(700, "<x/>");
  EXPECT_EQ(kindsOf(file), (Kinds{"XMP data", "TIFF tags 42112, 65000"}));
  for (std::uint16_t tag = 65001; tag <= 65009; ++tag)
    file.Short(tag, {1});
  EXPECT_EQ(kindsOf(file).back(),
            "TIFF tags 42112, 65000, 65001, 65002, 65003, 65004, 65005, 65006, 65007, 65008 and others");
  EXPECT_EQ(OtherTiffTags(scratch.Write("no.tif", "II*"), {}), Kinds());
  EXPECT_EQ(OtherTiffTags(scratch.Write("no.png", "\x89PNG"), {}), Kinds());
}

TEST(TiffTagKinds, TextsOfSeveralStringsAreNamed) {
  using namespace std::string_literals;
  TiffBytes file(2, 1, 8, 1, "xy");
  file.Text(270, "one").Text(271, "padded\0\0 \0"s).Text(65000, "a\0b"s);
  const auto named = [&] {
    const std::string bytes = file.File();
    return NamesOfFurtherTexts(TiffTags::SourceIn(bytes));
  };
  EXPECT_EQ(named(), Kinds());
  file.Text(269, "a document\0its other name"s).Text(316, "a\0b"s).Text(33432, " \0editor"s);
  EXPECT_EQ(named(), (Kinds{"DocumentName", "HostComputer", "Copyright"}));
  // Numbers are no text.
  file.Short(306, {'a', 0, 'b'});
  EXPECT_EQ(named().size(), 3u);
  // A lens (42036) in the camera's directory of Exif data.
  const std::string exif = "II*\0\x08\0\0\0\x01\0\x69\x87\x04\0\x01\0\0\0\x1a\0\0\0\0\0\0\0"s +
                           "\x01\0\x34\xa4\x02\0\x04\0\0\0a\0b\0\0\0\0\0"s;
  EXPECT_EQ(NamesOfFurtherTexts(TiffTags::SourceIn(exif)), Kinds{"LensModel"});
}

// Each may claim as much as a file holds.
TEST(TiffTagKinds, TagsGetNoMoreBytesThanAllOfThemMayHave) {
  TiffBytes file(2, 1, 8, 1, "xy");
  const std::string bytes = file.Text(270, "eight 8").Text(305, "eight 8").Text(315, "eight 8").File();
  const TiffTags tags(TiffTags::SourceIn(bytes), 20);
  EXPECT_EQ(tags.Text(270), "eight 8");
  EXPECT_EQ(tags.Text(305), "eight 8");
  EXPECT_TRUE(tags.Has(315));
  EXPECT_EQ(tags.Text(315), "");
}

TEST(TiffTagKinds, DirectoriesAreCountedToTheirEndOrToOneThatWasThere) {
  using namespace std::string_literals;
  const auto count = [](const std::string& file) { return TiffTags::CountDirectories(TiffTags::SourceIn(file)); };
  for (const bool isBig : {false, true}) {
    const auto number = [&](std::uint64_t value, int bytes) { return Number(value, bytes, isBig); };
    const std::string entry = number(256, 2) + number(3, 2) + number(1, 4) + number(2, 2) + number(0, 2);
    // Three, at 8, 26 and 44; the last one leads to `next`.
    const auto three = [&](std::uint64_t next) {
      std::string file = (isBig ? "MM" : "II") + number(42, 2) + number(8, 4);
      for (const std::uint64_t place : {std::uint64_t{26}, std::uint64_t{44}, next})
        file += number(1, 2) + entry + number(place, 4);
      return file;
    };
    EXPECT_EQ(count(three(0)), 3) << isBig;
    for (const std::uint64_t back : {8u, 26u, 44u})
      EXPECT_EQ(count(three(back)), 3) << "leads back to " << back;
    EXPECT_EQ(count(three(1000)), 3) << "leads beyond the end";
    EXPECT_EQ(count(three(61)), 3) << "leads to half a number";
    const std::string large = (isBig ? "MM" : "II") + number(43, 2) + number(8, 2) + number(0, 2) + number(16, 8);
    const std::string largeEntry = number(256, 2) + number(3, 2) + number(1, 8) + number(2, 2) + std::string(6, '\0');
    EXPECT_EQ(count(large + number(1, 8) + largeEntry + number(16, 8)), 1) << isBig;
    EXPECT_EQ(count(large + number(1, 8) + largeEntry + number(52, 8) + number(0, 8) + number(0, 8)), 2) << isBig;
  }
  EXPECT_EQ(count("no TIFF file"), 0);
  EXPECT_EQ(count("II*\0\0\0\0\0"s), 0);
}

// Its places and counts have 64 bits.
TEST(TiffTagKinds, TagsOfABigTiffAreNamedToo) {
  const ScratchFolder scratch;
  for (const bool isBig : {false, true}) {
    const auto number = [&](std::uint64_t value, int bytes) { return Number(value, bytes, isBig); };
    constexpr std::uint64_t kDirectory = 16;
    std::string file = (isBig ? "MM" : "II") + number(43, 2) + number(8, 2) + number(0, 2) + number(kDirectory, 8);
    file += number(3, 8);
    file += number(256, 2) + number(3, 2) + number(1, 8) + number(2, 2) + std::string(6, '\0');
    file += number(270, 2) + number(2, 2) + number(6, 8) + std::string("words\0\0\0", 8);
    file += number(65000, 2) + number(16, 2) + number(1, 8) + number(7, 8) + number(0, 8);
    const auto path = scratch.Write("big.tif", file);
    EXPECT_EQ(OtherTiffTags(path, kRead), Kinds{"TIFF tag 65000"}) << isBig;
    EXPECT_EQ(OtherTiffTags(path, {}), Kinds{"TIFF tags 270, 65000"}) << isBig;
    const TiffTags tags([&](std::int64_t at, std::size_t count) {
      return at < static_cast<std::int64_t>(file.size()) ? file.substr(static_cast<std::size_t>(at), count) : "";
    });
    EXPECT_EQ(tags.Text(270), "words");
    EXPECT_EQ(tags.Number(65000, 0), 7);
    EXPECT_EQ(tags.Number(256, 0), 2);
    // As long as it claims to be it is not.
    const std::string claims = file.substr(0, kDirectory) + number(std::uint64_t{1} << 60, 8) + file.substr(24);
    EXPECT_EQ(OtherTiffTags(scratch.Write("claims.tif", claims), kRead), Kinds{"TIFF tag 65000"}) << isBig;
  }
}

}  // namespace
}  // namespace vblur::host
