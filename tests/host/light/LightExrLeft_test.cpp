// OpenEXR files that the light picture library leaves to the full one, and damaged ones.
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <ImfChannelList.h>
#include <ImfDoubleAttribute.h>
#include <ImfEnvmapAttribute.h>
#include <ImfFloatAttribute.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIntAttribute.h>
#include <ImfMatrixAttribute.h>
#include <ImfMultiPartOutputFile.h>
#include <ImfOutputPart.h>
#include <ImfPartType.h>
#include <ImfRationalAttribute.h>
#include <ImfStringAttribute.h>
#include <ImfTileDescription.h>
#include <ImfTiledOutputFile.h>
#include <gtest/gtest.h>

#include "tests/host/light/LightExrTest.h"

namespace vblur::host {
namespace {

class LightExrLeft : public LightExr {};

TEST_F(LightExrLeft, LeaveToTheFullLibraryTheChannelsThatTheyDoNotKnow) {
  ExpectLeft(Make("RG"));
  ExpectLeft(Make("R"));
  ExpectLeft(Make("A"));
  ExpectLeft(Make("RGBZ"));
  ExpectLeft(Make("RGBAY"));
  ExpectLeft(Make({{"r"}, {"g"}, {"b"}}, Sized(13, 7)));
  ExpectLeft(Make({{"a.R"}, {"a.G"}, {"a.B"}}, Sized(13, 7)));
  ExpectLeft(Make({{"R"}, {"G"}, {"B"}, {"Z", Imf::FLOAT}}, Sized(13, 7)));
  ExpectLeft(Make({{"R"}, {"G"}, {"B"}, {"A", Imf::UINT}}, Sized(13, 7)));
  ExpectLeft(Make({{"Y", Imf::UINT}}, Sized(13, 7)));
  ExpectLeft(Make({{"Y"}, {"RY", Imf::HALF, 2}, {"BY", Imf::HALF, 2}}, Sized(14, 8)));
}

TEST_F(LightExrLeft, LeaveToTheFullLibraryTheAttributesThatTheyDoNotKnow) {
  const HeaderChange cases[] = {
      [](Imf::Header& header) { header.insert("worldToCamera", Imf::M44fAttribute(Imath::M44f())); },
      [](Imf::Header& header) { header.insert("expTime", Imf::FloatAttribute(0.5f)); },
      [](Imf::Header& header) { header.insert("aperture", Imf::FloatAttribute(2.8f)); },
      [](Imf::Header& header) { header.insert("Make", Imf::StringAttribute("maker")); },
      [](Imf::Header& header) { header.insert("Exif:UserComment", Imf::StringAttribute("made")); },
      [](Imf::Header& header) { header.insert("Keywords", Imf::StringAttribute("a; b")); },
      [](Imf::Header& header) { header.insert("owner", Imf::IntAttribute(1)); },
      [](Imf::Header& header) { header.insert("Owner", Imf::StringAttribute("Me")); },
      [](Imf::Header& header) { header.insert("Copyright", Imf::StringAttribute("Me")); },
      [](Imf::Header& header) { header.insert("Orientation", Imf::IntAttribute(9)); },
      [](Imf::Header& header) { header.insert("ResolutionUnit", Imf::StringAttribute("cm")); },
      [](Imf::Header& header) { header.insert("YResolution", Imf::FloatAttribute(72.0f)); },
      [](Imf::Header& header) { header.insert("envmap", Imf::EnvmapAttribute(Imf::ENVMAP_LATLONG)); },
      [](Imf::Header& header) { header.insert("double", Imf::DoubleAttribute(1.0)); },
      [](Imf::Header& header) { header.insert("gamma", Imf::FloatAttribute(INFINITY)); },
      [](Imf::Header& header) { header.insert("acesImageContainerFlag", Imf::IntAttribute(1)); },
      [](Imf::Header& header) {
        header.insert("wide", Imf::RationalAttribute(Imf::Rational(1, static_cast<int>(1u << 31))));
      },
      [](Imf::Header& header) { header.insert("oiio:ColorSpace", Imf::StringAttribute("sRGB")); },
      [](Imf::Header& header) {
        header.insert("same", Imf::StringAttribute("1")), header.insert("Same", Imf::IntAttribute(2));
      },
      [](Imf::Header& header) { header.insert("long", Imf::StringAttribute(std::string(60001, 'x'))); }};
  for (const HeaderChange& change : cases) {
    SCOPED_TRACE(&change - cases);
    ExpectLeft(Make("RGB", change));
  }
}

TEST_F(LightExrLeft, LeaveToTheFullLibraryTheFilesThatTheyDoNotKnow) {
  const std::string whole = BytesOf(Make("RGB"));
  const auto left = [&](const std::string& bytes, const std::string& name = "left.exr") {
    ExpectLeft(LightPicturesTest::Write(bytes, name));
  };
  left(whole.substr(0, 40));
  left(whole.substr(0, 200));
  left("\x76\x2f\x31\x01");
  left("no picture");
  left(whole, "left.tif");
  std::string changed = whole;
  changed[5] = '\x10';
  left(changed);
  changed = whole;
  changed[4] = '\3';
  left(changed);
}

TEST_F(LightExrLeft, LeaveLevelsAndPartsToTheFullLibrary) {
  const auto path = folder_.path() / "other.exr";
  const std::vector<half> samples(64 * 64, half(0.5f));
  Imf::Header header(64, 64);
  Imf::FrameBuffer frame;
  for (const char* const name : {"R", "G", "B"}) {
    header.channels().insert(name, Imf::Channel(Imf::HALF));
    frame.insert(name, Imf::Slice::Make(Imf::HALF, samples.data(), Imath::V2i(0), 64, 64));
  }
  Imf::Header tiled = header;
  tiled.setTileDescription(Imf::TileDescription(32, 32, Imf::MIPMAP_LEVELS));
  {
    Imf::TiledOutputFile file(path.c_str(), tiled);
    file.setFrameBuffer(frame);
    for (int level = 0; level < file.numLevels(); ++level)
      file.writeTiles(0, file.numXTiles(level) - 1, 0, file.numYTiles(level) - 1, level);
  }
  ExpectLeft(path);
  std::vector<Imf::Header> parts(2, header);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    parts[i].setName("part" + std::to_string(i));
    parts[i].setType(Imf::SCANLINEIMAGE);
  }
  {
    Imf::MultiPartOutputFile file(path.c_str(), parts.data(), 2);
    for (int i = 0; i < 2; ++i) {
      Imf::OutputPart part(file, i);
      part.setFrameBuffer(frame);
      part.writePixels(64);
    }
  }
  ExpectLeft(path);
}

// Of a small picture: damage makes large ones, too.
std::string FailureToOpen(PictureLibraries library, const std::filesystem::path& path) {
  UsePictures(library);
  ReadChoice choice;
  choice.mostPixels = 1 << 20;
  try {
    ReadPictureInfo(path, choice);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

// Whatever is taken of a damaged header, the full library takes.
TEST_F(LightExrLeft, ReadDamagedHeadersAsTheFullLibraryDoes) {
  const auto path = Make("RGBA", PutPlainAttributes);
  const std::string whole = BytesOf(path);
  UsePictures(Full);
  const PictureReport sound = ReportPicture(path);
  // The pixels, unpacked, their place and their length.
  constexpr std::size_t kPixels = 13 * 7 * 4 * 2 + 16;
  const char* const rounds = std::getenv("VBLUR_EXR_ROUNDS");
  std::mt19937 random(7);
  int taken = 0;
  for (int round = 0; round < (rounds != nullptr ? std::atoi(rounds) : 300); ++round) {
    std::string damaged = whole;
    for (unsigned changes = 1 + random() % 2; changes > 0; --changes)
      damaged[8 + random() % (whole.size() - kPixels - 8)] =
          static_cast<char>(random() % (random() % 3 == 0 ? 256 : 4));
    LightPicturesTest::Write(damaged, "in.exr");
    const std::string failure = FailureToOpen(Full, path);
    ASSERT_EQ(FailureToOpen(Automatic, path), failure) << round;
    if (!failure.empty()) continue;
    taken += FailureToOpen(Light, path).empty() ? 1 : 0;
    UsePictures(Automatic);
    const std::string light = Shown(ReportPicture(path));
    UsePictures(Full);
    const PictureReport full = ReportPicture(path);
    ASSERT_EQ(light, Shown(full)) << round;
    // Of less than the header promises the library makes what its memory holds.
    const bool isWhole =
        full.info.data == sound.info.data && full.info.all == sound.info.all && full.compression == sound.compression;
    if (!isWhole) continue;
    ASSERT_EQ(FailureOf(Automatic, path), FailureOf(Full, path)) << round;
    if (!FailureOf(Full, path).empty()) continue;
    ASSERT_TRUE(Read(Automatic, path, 32)->Pixels() == Read(Full, path, 32)->Pixels()) << round;
  }
  EXPECT_GT(taken, 50);
}

TEST_F(LightExrLeft, TellOfDamagedPixelsAsTheFullLibraryDoes) {
  for (const Imf::Compression compression : {Imf::NO_COMPRESSION, Imf::ZIP_COMPRESSION, Imf::PIZ_COMPRESSION}) {
    SCOPED_TRACE(compression);
    const auto path =
        Make(Of("RGBA", Imf::HALF), Sized(300, 500), [&](Imf::Header& header) { header.compression() = compression; });
    const std::string whole = BytesOf(path);
    for (const std::size_t length : {whole.size() / 3, whole.size() - 20}) {
      const auto cut = LightPicturesTest::Write(whole.substr(0, length), "cut.exr");
      EXPECT_EQ(FailureOf(Automatic, cut), FailureOf(Full, cut));
      EXPECT_NE(FailureOf(Full, cut), "") << length;
    }
    for (const std::size_t at : {std::size_t{8000}, whole.size() / 2}) {
      std::string damaged = whole;
      for (std::size_t i = 0; i < 40; ++i)
        damaged[at + i] = static_cast<char>(damaged[at + i] ^ 0x55);
      const auto wrong = LightPicturesTest::Write(damaged, "wrong.exr");
      EXPECT_EQ(FailureOf(Automatic, wrong), FailureOf(Full, wrong));
    }
  }
}

}  // namespace
}  // namespace vblur::host
