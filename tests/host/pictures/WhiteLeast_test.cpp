#include "host/pictures/WhiteLeast.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/PictureFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

template <typename Sample>
std::vector<Sample> Turned(const OIIO::TypeDesc& type, std::vector<Sample> samples) {
  const OIIO::ImageSpec spec(1, 1, 3, type);
  TurnValues(spec, samples.size() / 3, reinterpret_cast<std::byte*>(samples.data()));
  return samples;
}

TEST(WhiteLeast, OnlyTheFirstChannelIsTurned) {
  EXPECT_EQ(Turned<std::uint16_t>(OIIO::TypeDesc::UINT16, {1, 2, 3, 4, 5, 6}),
            (std::vector<std::uint16_t>{0xfffe, 2, 3, 0xfffb, 5, 6}));
  // The library has turned all three.
  EXPECT_EQ(Turned<std::uint8_t>(OIIO::TypeDesc::UINT8, {1, 2, 3, 4, 5, 6}),
            (std::vector<std::uint8_t>{1, 0xfd, 0xfc, 4, 0xfa, 0xf9}));
}

TiffBytes WideGrey(const std::string& samples, std::uint32_t bits, std::uint32_t numbers) {
  constexpr std::uint16_t kMeaning = 262;
  constexpr std::uint16_t kNumbers = 339;
  TiffBytes file(static_cast<std::uint32_t>(samples.size()) * 8 / bits, 1, bits, 1, samples);
  file.Short(kMeaning, {0}).Short(kNumbers, {numbers});
  return file;
}

TEST(WhiteLeast, ThirtyTwoBitsAreTurned) {
  const ScratchFolder scratch;
  HostImage image;
  const auto path = scratch.Write("wide.tif", WideGrey(std::string("\0\0\0\0\xff\xff\xff\xff", 8), 32, 1).File());
  PictureReader().ReadColour(path, 8, image);
  EXPECT_EQ(Components(image), (std::vector<std::int32_t>{255, 255, 255, 255, 0, 0, 0, 255}));
}

TEST(WhiteLeast, SignedSamplesAreRefused) {
  const ScratchFolder scratch;
  const auto path = scratch.Write("signed.tif", WideGrey(std::string("\0\0\x01\0", 4), 16, 2).File());
  const auto failure = CaughtFailure([&] { ReadPictureInfo(path); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->what(), path.string() +
                                 ": cannot read: grey of int16 samples whose least value is white is not read, "
                                 "expected the least to be black");
}

}  // namespace
}  // namespace vblur::host
