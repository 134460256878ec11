// Plain JPEG files by the light and by the full picture library.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <jpeglib.h>

#include "tests/host/light/LightPicturesTest.h"
#include "tests/support/host/RawPictures.h"

namespace vblur::host {
namespace {

struct JpegKind {
  int channels = 3;
  int quality = 80;
  int across = 1;  // pixels that share a colour
  int down = 1;
  bool isProgressive = false;
  int width = 37;
  int height = 29;
  int unit = 0;
  int x = 1;
  int y = 1;
  bool hasHead = true;  // JFIF
  int restarts = 0;     // blocks between them; 0: none
  J_COLOR_SPACE stored = JCS_UNKNOWN;
};

// Markers and their data, behind the head.
using Segments = std::vector<std::pair<int, std::string>>;

std::string JpegBytes(const JpegKind& kind, const Segments& segments = {}, const std::string& profile = {}) {
  jpeg_compress_struct jpeg{};
  jpeg_error_mgr errors{};
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_compress(&jpeg);
  unsigned char* bytes = nullptr;
  unsigned long length = 0;
  jpeg_mem_dest(&jpeg, &bytes, &length);
  jpeg.image_width = static_cast<JDIMENSION>(kind.width);
  jpeg.image_height = static_cast<JDIMENSION>(kind.height);
  jpeg.input_components = kind.channels;
  jpeg.in_color_space = kind.channels == 1 ? JCS_GRAYSCALE : kind.channels == 3 ? JCS_RGB : JCS_CMYK;
  jpeg_set_defaults(&jpeg);
  if (kind.stored != JCS_UNKNOWN) jpeg_set_colorspace(&jpeg, kind.stored);
  jpeg_set_quality(&jpeg, kind.quality, TRUE);
  jpeg.comp_info[0].h_samp_factor = kind.across;
  jpeg.comp_info[0].v_samp_factor = kind.down;
  jpeg.density_unit = static_cast<UINT8>(kind.unit);
  jpeg.X_density = static_cast<UINT16>(kind.x);
  jpeg.Y_density = static_cast<UINT16>(kind.y);
  jpeg.restart_interval = static_cast<unsigned>(kind.restarts);
  if (!kind.hasHead) jpeg.write_JFIF_header = FALSE;
  if (kind.isProgressive) jpeg_simple_progression(&jpeg);
  jpeg_start_compress(&jpeg, TRUE);
  for (const auto& [marker, data] : segments)
    jpeg_write_marker(&jpeg, marker, reinterpret_cast<const JOCTET*>(data.data()), static_cast<unsigned>(data.size()));
  if (!profile.empty())
    jpeg_write_icc_profile(&jpeg, reinterpret_cast<const JOCTET*>(profile.data()),
                           static_cast<unsigned>(profile.size()));
  std::mt19937 random(5);
  std::vector<unsigned char> row(static_cast<std::size_t>(kind.width * kind.channels), 128);
  for (int y = 0; y < kind.height; ++y) {
    for (unsigned char& sample : row)
      sample = static_cast<unsigned char>(sample + random() % 41 - 20);
    JSAMPROW from = row.data();
    jpeg_write_scanlines(&jpeg, &from, 1);
  }
  jpeg_finish_compress(&jpeg);
  jpeg_destroy_compress(&jpeg);
  std::string all(reinterpret_cast<char*>(bytes), length);
  std::free(bytes);
  return all;
}

class LightJpeg : public LightPicturesTest {
 protected:
  std::filesystem::path Make(const JpegKind& kind, const Segments& segments = {}, const std::string& profile = {}) {
    return Write(JpegBytes(kind, segments, profile), "in.jpg");
  }

  using LightPicturesTest::ExpectSame;
  // To the last byte, too, where the light library writes it.
  void ExpectSame(const std::filesystem::path& path, bool isWritten = true) const {
    ASSERT_EQ(FailureOf(Light, path), "");
    ExpectSameReading(path);
    if (!isWritten) return;
    ExpectSameWriting(path, "out.jpg");
    for (const std::int32_t depth : {8, 16, 32}) {
      const auto light = Read(Light, path, depth);
      EXPECT_EQ(Written(Light, *light, "out.jpg"), Written(Full, *light, "full.jpg")) << "at " << depth;
    }
  }
};

TEST_F(LightJpeg, ReadAndWriteEveryKind) {
  for (const int channels : {1, 3}) {
    for (const bool isProgressive : {false, true}) {
      for (const int across : {1, 2}) {
        for (const int down : {1, 2}) {
          SCOPED_TRACE(std::to_string(channels) + ' ' + std::to_string(across) + ' ' + std::to_string(down) +
                       (isProgressive ? " progressive" : ""));
          JpegKind kind{.channels = channels, .across = across, .down = down, .isProgressive = isProgressive};
          ExpectSame(Make(kind));
          kind.restarts = 2;
          kind.quality = 30;
          ExpectSame(Make(kind));
        }
      }
    }
  }
}

TEST_F(LightJpeg, ReadEverySize) {
  for (const auto& [width, height] : {std::pair{1, 1}, {1, 40}, {40, 1}, {16, 16}, {17, 9}, {701, 303}})
    ExpectSame(Make({.across = 2, .down = 2, .width = width, .height = height}));
}

TEST_F(LightJpeg, ReadResolutions) {
  for (const int unit : {0, 1, 2}) {
    for (const auto& [x, y] : {std::pair{72, 72}, {300, 150}, {96, 288}, {10, 10}, {10, 20}}) {
      SCOPED_TRACE(std::to_string(unit) + ": " + std::to_string(x) + ' ' + std::to_string(y));
      JpegKind kind;
      kind.unit = unit;
      kind.x = x;
      kind.y = y;
      ExpectSame(Make(kind), false);
      // Its Exif data are the full library's.
      EXPECT_EQ(Seen(Automatic, *Read(Light, Make(kind), 8), "out.jpg"),
                Seen(Full, *Read(Full, Make(kind), 8), "out.jpg"));
    }
  }
  ExpectSame(Make({.hasHead = false}));
}

TEST_F(LightJpeg, ReadAComment) {
  const auto path = Make({}, {{JPEG_COM, "A comment"}});
  ExpectSame(path, false);
  for (const char* other : {"out.jpg", "out.png", "out.tif"})
    EXPECT_EQ(Seen(Automatic, *Read(Light, path, 8), other), Seen(Full, *Read(Full, path, 8), other)) << other;
}

TEST_F(LightJpeg, ReadAndWriteAColourProfile) {
  for (const char* colours : {"RGB ", "GRAY"}) {
    const std::vector<unsigned char> profile = MakeProfile(colours);
    for (const int channels : {1, 3})
      ExpectSame(Make({.channels = channels}, {}, {profile.begin(), profile.end()}));
  }
}

// Of those that either library has written, again and again.
TEST_F(LightJpeg, ReadAndWriteWhatTheyHaveWritten) {
  auto from = Make({});
  for (const char* name : {"first.jpg", "second.jpg", "third.jpg"}) {
    Written(Light, *Read(Light, from, 8), name);
    from = folder_.path() / name;
    ExpectSame(from);
  }
  auto picture = Read(Full, Make({}), 16);
  picture->facts.metadata = nullptr;
  EXPECT_EQ(Written(Light, *picture, "light.jpg"), Written(Full, *picture, "full.jpg"));
  ExpectSame(folder_.path() / "full.jpg");
}

TEST_F(LightJpeg, WriteEveryQuality) {
  const auto read = Read(Light, Make({.width = 100, .height = 80}), 8);
  for (const int quality : {1, 50, 92, 98, 100}) {
    OutputOptions options{.overwrite = true, .sync = false};
    options.storage.quality = quality;
    std::string bytes;
    for (const auto library : {Light, Full}) {
      UsePictures(library);
      const auto path = folder_.path() / "quality.jpg";
      PictureWriter().WriteBeside(path, read->image, read->facts.metadata.get(), options).Commit();
      if (bytes.empty()) bytes = BytesOf(path);
      EXPECT_TRUE(bytes == BytesOf(path)) << quality;
    }
  }
}

TEST_F(LightJpeg, LeaveToTheFullLibraryWhatTheyDoNotKnow) {
  const auto left = [&](const JpegKind& kind, const Segments& segments = {}) { ExpectLeft(Make(kind, segments)); };
  left({.channels = 4});
  left({.stored = JCS_RGB});
  left({.unit = 1});
  left({.unit = 1, .x = 9, .y = 10});
  left({.unit = 1, .x = 10, .y = 9});
  left({.x = 2});
  left({}, {{JPEG_COM, "one"}, {JPEG_COM, "two"}});
  left({}, {{JPEG_COM, "Caf\xe9"}});
  left({}, {{JPEG_COM, ""}});
  left({}, {{JPEG_APP0 + 1, std::string("Exif\0\0II*\0\x08\0\0\0\2\0\0\0\0\0", 20)}});
  left({}, {{JPEG_APP0 + 1, std::string("http://ns.adobe.com/xap/1.0/\0<x/>", 33)}});
  left({}, {{JPEG_APP0 + 2, "MPF"}});
  left({}, {{JPEG_APP0 + 13, "Photoshop 3.0"}});
  left({}, {{JPEG_APP0 + 5, "something"}});
  const std::string plain = JpegBytes({});
  LightPicturesTest::ExpectLeft(Write(plain + plain, "in.jpg"));
  LightPicturesTest::ExpectLeft(Write(plain + "behind", "in.jpg"));
  LightPicturesTest::ExpectLeft(Write(plain.substr(0, 100), "in.jpg"));
  LightPicturesTest::ExpectLeft(Write(plain, "in.png"));
  LightPicturesTest::ExpectLeft(Write("no picture", "in.jpg"));
}

TEST_F(LightJpeg, TellOfDamagedPixelsAsTheFullLibraryDoes) {
  const std::string whole = JpegBytes({.width = 400, .height = 300});
  for (const std::size_t at : {whole.size() / 3, whole.size() / 2, whole.size() - 40}) {
    for (const bool isCut : {false, true}) {
      std::string damaged = whole;
      if (isCut) {
        damaged.resize(at);
      } else {
        damaged[at] = '\xff';
        damaged[at + 1] = '\x05';
      }
      const auto path = Write(damaged, "damaged.jpg");
      const std::string failure = FailureOf(Full, path);
      EXPECT_EQ(FailureOf(Automatic, path), failure) << at << isCut;
      EXPECT_NE(FailureOf(Light, path), "") << at << isCut;
      if (failure.empty()) {
        EXPECT_EQ(Read(Automatic, path, 8)->Pixels(), Read(Full, path, 8)->Pixels()) << at << isCut;
      }
    }
  }
}

}  // namespace
}  // namespace vblur::host
