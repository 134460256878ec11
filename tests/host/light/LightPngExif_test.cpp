// PNG files with Exif data by the light and by the full picture library.
#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "host/light/ExifEncoding.h"
#include "tests/host/light/ExifFieldsTest.h"
#include "tests/host/light/LightPicturesTest.h"
#include "tests/support/host/PngBytes.h"

namespace vblur::host {
namespace {

class LightPngExif : public LightPicturesTest {
 protected:
  // Before its texts and its resolution, or behind them.
  std::filesystem::path Make(const std::string& block, const std::string& others = "", bool isFirst = true) const {
    const std::string chunk = PngChunk("eXIf", block);
    return Write(PngBytes({2, 8}, 13, 7, "", isFirst ? chunk + others : others + chunk, ""));
  }

  using LightPicturesTest::ExpectSame;
  // To the last byte.
  void ExpectSame(const std::filesystem::path& path) const {
    LightPicturesTest::ExpectSame(path, "out.png");
    for (const char* name : {"out.png", "out.jpg"}) {
      const auto light = Read(Light, path, 8);
      EXPECT_EQ(Written(Automatic, *light, name), Written(Full, *light, name)) << name;
    }
  }
};

std::string PngText(const std::string& keyword, const std::string& text) {
  return PngChunk("tEXt", keyword + '\0' + text);
}

const std::string kScale = PngChunk("pHYs", Big32Of(2835) + Big32Of(2835) + '\1');
const std::string kShape = PngChunk("pHYs", Big32Of(300) + Big32Of(150) + '\0');

TEST_F(LightPngExif, ReadAndWriteACamerasFields) {
  for (const bool isBig : {false, true}) {
    for (const bool isFirst : {false, true}) {
      SCOPED_TRACE(std::to_string(isBig) + std::to_string(isFirst));
      const std::string block = ExifTestBlock(isBig).Build(kPicture, kCamera, kPlace);
      ExpectSame(Make(block));
      ExpectSame(Make(block, kScale, isFirst));
      ExpectSame(Make(block, kShape, isFirst));
      ExpectSame(Make(block, PngText("Author", "Another") + PngText("Software", "Another"), isFirst));
    }
  }
  ExpectSame(Make(ExifTestBlock(false).Build({}, kCamera, {}), kScale));
  ExpectSame(Make(ExifTestBlock(false).Build({}, {}, kPlace)));
}

TEST_F(LightPngExif, NameTheUnitOfTheirResolution) {
  for (const std::uint64_t unit : {0u, 1u, 2u, 3u, 4u}) {
    for (const std::uint64_t x : {72u, 300u}) {
      for (const bool hasShape : {false, true}) {
        SCOPED_TRACE(std::to_string(unit) + ' ' + std::to_string(x) + (hasShape ? " with a shape" : ""));
        Fields fields = {Text(0x010f, "A maker"), Fraction(0x011a, x, 1), Fraction(0x011b, x, 1)};
        if (unit > 0) fields.push_back(Short(0x0128, unit));
        const auto path = Make(ExifTestBlock(false).Build(fields, {}, {}), hasShape ? kShape : "");
        if (FailureOf(Light, path).empty()) {
          ExpectSame(path);
        } else {
          EXPECT_TRUE(unit == 4 && !hasShape);
          ExpectLeft(path);
        }
      }
    }
  }
}

TEST_F(LightPngExif, ReadFieldsOfAnyType) {
  std::mt19937 random(3);
  int read = 0;
  constexpr int kRounds = 100;
  for (int round = 0; round < kRounds; ++round) {
    SCOPED_TRACE(round);
    const auto path = Make(ExifTestBlock(random() % 2 == 0)
                               .Build(SomeOf(kPicture, random), SomeOf(kCamera, random), SomeOf(kPlace, random)));
    if (!FailureOf(Light, path).empty()) continue;
    ++read;
    ExpectSameReading(path);
    const auto light = Read(Light, path, 8);
    EXPECT_EQ(Written(Automatic, *light, "light.png"), Written(Full, *light, "full.png"));
  }
  EXPECT_GT(read, kRounds / 4);
}

// Of sources that have no block of their own.
TEST_F(LightPngExif, MakeABlockOfFields) {
  const auto read = Read(Light, Write(PngBytes({2, 8}, 13, 7)), 8);
  const auto written = [&](PictureLibraries library, const LightAttributes& attributes) {
    PictureInfo info = read->facts.info;
    info.format = "openexr";
    read->facts.metadata = std::make_shared<LightMetadata>(info, attributes);
    return Written(library, *read, "out.png");
  };
  LightAttributes attributes;
  attributes.AddText("Make", "A maker");
  attributes.AddText("Model", "M-1");
  attributes.AddFloat("ExposureTime", 0.01f);
  attributes.AddFloat("FNumber", 2.8f);
  attributes.AddWhole("Orientation", 6);
  attributes.AddText("Software", "A program");
  EXPECT_EQ(written(Light, attributes), written(Full, attributes));
  LightAttributes turned;
  turned.AddWhole("Orientation", 3);
  EXPECT_EQ(written(Light, turned), written(Full, turned));
  EXPECT_NE(written(Light, turned).find("eXIf"), std::string::npos);
  LightAttributes upright;
  upright.AddWhole("Orientation", 1);
  EXPECT_EQ(written(Light, upright), written(Full, upright));
  EXPECT_EQ(written(Light, upright).find("eXIf"), std::string::npos);
  LightAttributes unknown;
  unknown.AddFloat("FNumber", -1.0f);
  EXPECT_THROW(written(Light, unknown), Failure);
  // No field: a text under its name is none of a plain file.
  LightAttributes unheld;
  unheld.AddText("Exif:UserComment", "text");
  EXPECT_THROW(written(Light, unheld), Failure);
}

TEST_F(LightPngExif, LeaveToTheFullLibraryWhatTheyDoNotKnow) {
  const std::string block = ExifTestBlock(false).Build(kPicture, kCamera, kPlace);
  ExpectLeft(Make("II*"));
  ExpectLeft(Make(block.substr(0, 30)));
  ExpectLeft(Make(std::string("Exif\0\0", 6) + block));
  ExpectLeft(Make(block + std::string(0x10000, '\0')));
  ExpectLeft(Make(block, PngChunk("eXIf", block)));
  ExpectLeft(Make(ExifTestBlock(false).Build({Text(0x010f, "Canon")}, {}, {})));
  ExpectLeft(Write(PngBytes({2, 8}, 13, 7, "", "", PngChunk("eXIf", block))));
}

}  // namespace
}  // namespace vblur::host
