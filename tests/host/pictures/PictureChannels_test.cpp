// Which channels of a file become the picture, the mask, or pass unchanged.
#include <cstring>

#include <gtest/gtest.h>

#include "host/files/PictureFile.h"
#include "host/pictures/PictureFileMetadata.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

using Values = std::vector<std::int32_t>;

class PictureChannels : public testing::Test {
 protected:
  // One row of floats.
  std::filesystem::path Make(const std::vector<std::string>& channels, const std::vector<float>& samples) {
    const auto path = folder_.path() / "channels.exr";
    const auto count = channels.size();
    OIIO::ImageSpec spec(static_cast<int>(samples.size() / count), 1, static_cast<int>(count), OIIO::TypeDesc::FLOAT);
    spec.channelnames = channels;
    spec.alpha_channel = -1;
    for (std::size_t c = 0; c < count; ++c) {
      if (channels[c] == "A") spec.alpha_channel = static_cast<int>(c);
    }
    WriteRaw(path, "openexr", spec, samples);
    return path;
  }

  Values Colours(const std::filesystem::path& path, const ReadChoice& choice = {}) {
    PictureReader().ReadColour(path, 8, image_, choice);
    return Components(image_);
  }

  Values Amounts(const std::filesystem::path& path, const std::string& channel = {}) {
    ReadChoice choice;
    choice.channel = channel;
    PictureReader().ReadMask(path, 8, image_, choice);
    return Components(image_);
  }

  static ReadChoice Layer(const std::string& name) {
    ReadChoice choice;
    choice.layer = name;
    return choice;
  }

  ScratchFolder folder_;
  HostImage image_;
};

TEST_F(PictureChannels, ALayerIsTakenByItsName) {
  const auto path = Make({"R", "G", "B", "A", "Z", "diffuse.B", "diffuse.G", "diffuse.R", "spec.direct.Y"},
                         {0.0f, 0.2f, 0.4f, 0.6f, 9.0f, 1.0f, 0.8f, 0.6f, 0.4f});
  EXPECT_EQ(Colours(path), (Values{0, 51, 102, 153}));
  EXPECT_EQ(Colours(path, Layer("diffuse")), (Values{153, 204, 255, 255}));
  EXPECT_EQ(Colours(path, Layer("Spec.Direct")), (Values{102, 102, 102, 255}));
  EXPECT_EQ(CaughtFailure([&] { Colours(path, Layer("specular")); })->what(),
            path.string() + ": cannot read: it has no layer \"specular\", expected one of these: diffuse, spec.direct");
  EXPECT_EQ(ReadPictureInfo(path, Layer("diffuse")).passing.size(), 6u);
}

TEST_F(PictureChannels, AFileWithoutLayersSaysSo) {
  const auto path = Make({"R", "G", "B"}, {0.0f, 0.0f, 0.0f});
  EXPECT_EQ(CaughtFailure([&] { Colours(path, Layer("diffuse")); })->what(),
            path.string() + ": cannot read: it has no layer \"diffuse\", and no other");
}

TEST_F(PictureChannels, AFileOfLayersAloneGivesTheFirst) {
  EXPECT_EQ(Colours(Make({"beauty.A", "beauty.B", "beauty.G", "beauty.R", "other.R"}, {0.2f, 0.4f, 0.6f, 0.8f, 1.0f})),
            (Values{204, 153, 102, 51}));
}

TEST_F(PictureChannels, LuminanceIsGreyWhateverStandsBesideIt) {
  EXPECT_EQ(Colours(Make({"A", "Y", "Z"}, {0.2f, 0.4f, 5.0f})), (Values{102, 102, 102, 51}));
}

TEST_F(PictureChannels, CoordinatesAreThreeColours) {
  EXPECT_EQ(Colours(Make({"X", "Y", "Z"}, {0.2f, 0.4f, 0.6f})), (Values{51, 102, 153, 255}));
  const auto path = Make({"A", "R", "n.x", "n.y", "n.z"}, {1.0f, 1.0f, 0.2f, 0.4f, 0.6f});
  EXPECT_EQ(Colours(path, Layer("n")), (Values{51, 102, 153, 255}));
}

TEST_F(PictureChannels, AColourThatIsMissingIsZeroAndOthersKeepTheirPlaces) {
  EXPECT_EQ(Colours(Make({"R", "B", "A"}, {0.2f, 0.4f, 0.6f})), (Values{51, 0, 102, 153}));
  EXPECT_EQ(Colours(Make({"B", "G", "Z"}, {0.2f, 0.4f, 9.0f})), (Values{0, 102, 51, 255}));
  const auto path = Make({"m.G", "m.Z"}, {0.2f, 9.0f});
  EXPECT_EQ(Colours(path), (Values{51, 51, 51, 255}));
  EXPECT_EQ(ReadPictureInfo(path).passing, std::vector<int>{1});
}

TEST_F(PictureChannels, OthersPassAsTheyAreStored) {
  const auto path = folder_.path() / "mixed.exr";
  OIIO::ImageSpec spec(2, 2, 5, OIIO::TypeDesc::FLOAT);
  spec.channelnames = {"R", "G", "B", "Z", "id"};
  spec.channelformats = {OIIO::TypeDesc::HALF, OIIO::TypeDesc::HALF, OIIO::TypeDesc::HALF, OIIO::TypeDesc::FLOAT,
                         OIIO::TypeDesc::UINT32};
  // As the file stores them, without padding.
  std::vector<std::byte> native;
  std::vector<std::byte> expected;
  for (std::uint32_t i = 0; i < 4; ++i) {
    const std::uint16_t half[3] = {0x3c00, 0x3800, 0};  // 1, 0.5, 0
    const float depth = 1000.1f + static_cast<float>(i);
    const std::uint32_t id = 0xfffffff0u + i;
    const auto add = [](std::vector<std::byte>& to, const void* from, std::size_t bytes) {
      const auto* first = static_cast<const std::byte*>(from);
      to.insert(to.end(), first, first + bytes);
    };
    add(native, half, sizeof half);
    for (auto* to : {&native, &expected}) {
      add(*to, &depth, 4);
      add(*to, &id, 4);
    }
  }
  auto writer = OIIO::ImageOutput::create("openexr");
  ASSERT_TRUE(writer->open(path.string(), spec));
  ASSERT_TRUE(writer->write_image(OIIO::TypeDesc(), native.data()));
  ASSERT_TRUE(writer->close());
  ReadChoice choice;
  choice.keepsPassing = true;
  const auto read = PictureReader().ReadColour(path, 8, image_, choice);
  EXPECT_EQ(OwnMetadata(read.metadata.get())->passing, expected);
  EXPECT_EQ(read.info.samples, SampleKind::Float);
  EXPECT_EQ(read.info.stored, (StoredType{NumberKind::Float, 2, 16}));
  EXPECT_EQ(Component(image_, 0), 255);
  EXPECT_EQ(Component(image_, 1), 128);
}

// On both sides of the layer that is taken.
TEST_F(PictureChannels, ThePlainChannelsPassWhereALayerIsTaken) {
  const std::vector<float> samples{1.0f, 2.0f, 3.0f, 0.2f, 0.4f, 0.6f, 4.0f, 5.0f, 6.0f, 7.0f, 0.2f, 0.4f, 0.6f, 8.0f};
  const auto path = Make({"R", "G", "B", "diffuse.B", "diffuse.G", "diffuse.R", "other.X"}, samples);
  ReadChoice choice = Layer("diffuse");
  choice.keepsPassing = true;
  const auto read = PictureReader().ReadColour(path, 8, image_, choice);
  std::vector<float> passing(OwnMetadata(read.metadata.get())->passing.size() / sizeof(float));
  std::memcpy(passing.data(), OwnMetadata(read.metadata.get())->passing.data(),
              OwnMetadata(read.metadata.get())->passing.size());
  EXPECT_EQ(passing, (std::vector<float>{1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f}));
  EXPECT_EQ(Components(image_), (Values{153, 102, 51, 255, 153, 102, 51, 255}));
}

TEST_F(PictureChannels, AMaskIsAlphaWhereThatAloneVaries) {
  const std::vector<std::string> rgba{"R", "G", "B", "A"};
  EXPECT_EQ(Amounts(Make(rgba, {1.0f, 1.0f, 1.0f, 0.0f, 1.0f, 1.0f, 1.0f, 0.4f})), (Values{0, 102}));
  EXPECT_EQ(Amounts(Make(rgba, {1.0f, 1.0f, 1.0f, 0.0f, 0.2f, 1.0f, 1.0f, 0.4f})), (Values{255, 51}));
  EXPECT_EQ(Amounts(Make(rgba, {0.6f, 1.0f, 1.0f, 0.0f, 0.6f, 1.0f, 0.0f, 0.4f})), (Values{153, 153}));
  EXPECT_EQ(Amounts(Make(rgba, {0.2f, 1.0f, 1.0f, 0.4f, 0.2f, 1.0f, 1.0f, 0.4f})), (Values{51, 51}));
}

// That something else than alpha varies shows in the last row.
TEST_F(PictureChannels, AMaskIsCorrectedLate) {
  const auto path = folder_.path() / "late.png";
  std::vector<std::uint8_t> samples;
  for (int row = 0; row < 300; ++row) {
    const auto grey = static_cast<std::uint8_t>(row == 299 ? 9 : 7);
    samples.insert(samples.end(), {grey, static_cast<std::uint8_t>(row % 256)});
  }
  OIIO::ImageSpec spec(1, 300, 2, OIIO::TypeDesc::UINT8);
  spec.channelnames = {"Y", "A"};
  spec.alpha_channel = 1;
  WriteRaw(path, "png", spec, samples);
  Values expected(300, 7);
  expected.front() = 9;
  EXPECT_EQ(Amounts(path), expected);
}

TEST_F(PictureChannels, AMaskChannelIsTakenByItsName) {
  const auto path = Make({"R", "G", "B", "A", "matte.crypto"}, {0.0f, 0.2f, 0.4f, 0.6f, 0.8f});
  EXPECT_EQ(Amounts(path, "g"), Values{51});
  EXPECT_EQ(Amounts(path, "alpha"), Values{153});
  EXPECT_EQ(Amounts(path, "matte.crypto"), Values{204});
  EXPECT_EQ(CaughtFailure([&] { Amounts(path, "Z"); })->what(),
            path.string() + ": cannot read: it has no channel \"Z\", expected one of these: R, G, B, A, matte.crypto");
}

}  // namespace
}  // namespace vblur::host
