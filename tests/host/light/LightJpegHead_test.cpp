// What JPEG files by the light library have before their pixels: the full library's, byte by byte.
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/light/ExifEncoding.h"
#include "host/light/LightMetadata.h"
#include "tests/host/light/LightPicturesTest.h"

namespace vblur::host {
namespace {

class LightJpegHead : public LightPicturesTest {
 protected:
  // A picture with such attributes, of a file of the format.
  static std::unique_ptr<ReadFile> PictureOf(const LightAttributes& attributes, const std::string& format = "tiff") {
    auto picture = std::make_unique<ReadFile>();
    picture->image.Reset(8, 4, 16, 8);
    picture->image.Clear();
    PictureInfo info;
    info.format = format;
    info.width = 16;
    info.height = 8;
    info.channels = 3;
    info.data = info.display = {0, 0, 16, 8};
    info.stored = {NumberKind::Unsigned, 1, 8};
    for (const char* name : {"R", "G", "B"})
      info.all.push_back({name, info.stored});
    info.choice = {0, 1, 2, -1};
    picture->facts.info = info;
    picture->facts.metadata = std::make_shared<LightMetadata>(info, attributes);
    return picture;
  }

  void ExpectSame(const LightAttributes& attributes, const std::string& format = "tiff") const {
    const auto picture = PictureOf(attributes, format);
    EXPECT_EQ(Written(Light, *picture, "light.jpg"), Written(Full, *picture, "full.jpg"));
  }

  void ExpectLeft(const LightAttributes& attributes) const {
    EXPECT_THROW(Written(Light, *PictureOf(attributes), "light.jpg"), Failure);
  }
};

TEST_F(LightJpegHead, HaveNothing) {
  ExpectSame({});
}

TEST_F(LightJpegHead, HaveTexts) {
  for (const char* name : {"Software", "Artist", "Copyright", "ImageDescription", "DateTime", "Make", "Model",
                           "DocumentName", "HostComputer", "Comment", "Exif:LensModel", "Exif:DateTimeOriginal"}) {
    for (const std::size_t length : {1u, 2u, 3u, 4u, 32u, 33u, 128u, 129u, 2000u, 2001u}) {
      SCOPED_TRACE(name + (' ' + std::to_string(length)));
      LightAttributes attributes;
      attributes.AddText(name, std::string(length, 'x'));
      ExpectSame(attributes);
    }
  }
}

TEST_F(LightJpegHead, HaveAScale) {
  for (const float x : {0.0f, 1.0f, 72.0f, 72.009f, 300.0f, 4000.5f, 65535.0f, 70000.0f, 1e6f}) {
    for (const float y : {0.0f, 1.0f, 72.0f, 150.0f, 299.9999f}) {
      for (const float aspect : {-1.0f, 0.002f, 0.5f, 0.7f, 1.0f, 1.2f, 2.0f, 1e6f}) {
        for (const char* unit : {"", "none", "in", "cm", "inch"}) {
          SCOPED_TRACE(std::to_string(x) + ' ' + std::to_string(y) + ' ' + std::to_string(aspect) + unit);
          LightAttributes attributes;
          if (x > 0.0f) attributes.AddFloat("XResolution", x);
          if (y > 0.0f) attributes.AddFloat("YResolution", y);
          if (aspect > 0.0f) attributes.AddFloat("PixelAspectRatio", aspect);
          if (*unit != '\0') attributes.AddText("ResolutionUnit", unit);
          ExpectSame(attributes);
        }
      }
    }
  }
}

TEST_F(LightJpegHead, HaveFieldsOfExifData) {
  std::mt19937 random(7);
  const char* const kFractions[] = {"ExposureTime", "FNumber", "Exif:ApertureValue", "Exif:FocalLength",
                                    "GPS:Altitude"};
  const char* const kWhole[] = {"Orientation",          "Exif:ISOSpeedRatings", "Exif:PhotographicSensitivity",
                                "Exif:PixelXDimension", "GPS:Differential",     "GPS:AltitudeRef",
                                "Exif:ExposureProgram", "Exif:ColorSpace",      "Exif:ImageWidth",
                                "Exif:FileSource",      "fieldsPerSecond"};
  const char* const kTexts[] = {"GPS:LatitudeRef",  "GPS:MapDatum", "Exif:LensMake",  "Exif:ExifVersion",
                                "Exif:UserComment", "software",     "Software",       "DateTime",
                                "Exif:ownername",   "owner",        "smpte:TimeCode", "FNumber"};
  constexpr float kValues[] = {0.0f, 1.0f, 1.5f, 2.8f, 0.01f, 0.3f, 0.016667f, 50.0f, 1234.5678f, 0.00001f};
  for (int round = 0; round < 400; ++round) {
    LightAttributes attributes;
    std::string tried;
    for (auto i = random() % 6; i > 0; --i) {
      const auto kind = random() % 3;
      const std::string name = kind == 0   ? kFractions[random() % std::size(kFractions)]
                               : kind == 1 ? kWhole[random() % std::size(kWhole)]
                                           : kTexts[random() % std::size(kTexts)];
      // Files have one of each.
      if (attributes.Find(name) != nullptr) continue;
      tried += name + ' ';
      if (random() % 8 == 0) {
        attributes.AddText(name, "text");
      } else if (kind == 0) {
        attributes.AddFloat(name, kValues[random() % std::size(kValues)]);
      } else if (kind == 1) {
        attributes.AddWhole(name, static_cast<std::int32_t>(random() % 9));
      } else {
        attributes.AddText(name, std::string(random() % 7 + 1, 'x'));
      }
    }
    SCOPED_TRACE(tried);
    if (!EncodedExif(attributes)) continue;
    ExpectSame(attributes);
    ExpectSame(attributes, "openexr");
  }
}

TEST_F(LightJpegHead, LeaveToTheFullLibraryWhatTheyDoNotKnow) {
  const auto left = [&](const auto& add) {
    LightAttributes attributes;
    add(attributes);
    ExpectLeft(attributes);
  };
  left([](LightAttributes& to) { to.AddText("Keywords", "one; two"); });
  left([](LightAttributes& to) { to.AddText("IPTC:City", "Berlin"); });
  left([](LightAttributes& to) { to.AddText("crs:Version", "1"); });
  left([](LightAttributes& to) { to.AddText("Make", "CANON"); });
  left([](LightAttributes& to) { to.AddText("Software", std::string(7001, 'x')); });
  left([](LightAttributes& to) { to.AddFloat("XResolution", 0.5f); });
  left([](LightAttributes& to) { to.AddFloat("YResolution", -1.0f); });
  left([](LightAttributes& to) { to.AddFloat("PixelAspectRatio", 0.0f); });
  left([](LightAttributes& to) {
    to.AddFloat("XResolution", 1e6f);
    to.AddFloat("PixelAspectRatio", 1e-6f);
  });
  left([](LightAttributes& to) { to.AddFloat("Exif:ExposureBiasValue", -0.5f); });
  left([](LightAttributes& to) { to.AddFloat("FNumber", 2e9f); });
  left([](LightAttributes& to) { to.AddFloat("Exif:Gamma", 2.2f); });
  left([](LightAttributes& to) { to.Add("GPS:Latitude", "float[3]", std::string(12, '\0')); });
  left([](LightAttributes& to) { to.Add("Exif:SubjectLocation", "int[2]", std::string(8, '\0')); });
}

}  // namespace
}  // namespace vblur::host
