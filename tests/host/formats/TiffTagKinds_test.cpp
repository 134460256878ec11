#include "host/formats/TiffTagKinds.h"

#include <array>

#include <gtest/gtest.h>

#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

constexpr std::array<std::uint16_t, 1> kRead{270};

using Kinds = std::vector<std::string>;

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

}  // namespace
}  // namespace vblur::host
