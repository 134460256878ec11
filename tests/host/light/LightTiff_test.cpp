// Plain TIFF files by the light and by the full picture library.
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <tiffio.h>

#include "tests/host/light/LightPicturesTest.h"
#include "tests/support/host/RawPictures.h"

namespace vblur::host {
namespace {

struct TiffKind {
  int channels = 3;
  int bits = 8;
  bool isFloat = false;
  int compression = COMPRESSION_NONE;
  bool hasPredictor = false;
  int extra = EXTRASAMPLE_UNASSALPHA;
  int stripRows = 5;
  int width = 13;
  int height = 7;
  bool isBig = false;
  bool isTiled = false;
  int tile = 16;  // its side
};

using MoreTags = std::function<void(TIFF*)>;

// `unit` 0: none is said.
void PutResolution(TIFF* tiff, float x, float y, int unit) {
  TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(x));
  TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(y));
  if (unit != 0) TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, unit);
}

class LightTiff : public LightPicturesTest {
 protected:
  std::filesystem::path MakeTiff(const TiffKind& kind, const MoreTags& more = {}, const std::string& name = "in.tif") {
    const auto path = folder_.path() / name;
    TIFF* const tiff = TIFFOpen(path.c_str(), kind.isBig ? "wb" : "wl");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kind.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kind.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, kind.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, kind.channels);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, kind.isFloat ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, kind.channels < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, kind.compression);
    if (kind.hasPredictor)
      TIFFSetField(tiff, TIFFTAG_PREDICTOR, kind.isFloat ? PREDICTOR_FLOATINGPOINT : PREDICTOR_HORIZONTAL);
    const auto extra = static_cast<std::uint16_t>(kind.extra);
    if (kind.channels % 2 == 0) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &extra);
    if (kind.isTiled) {
      TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kind.tile);
      TIFFSetField(tiff, TIFFTAG_TILELENGTH, kind.tile);
    } else {
      TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kind.stripRows);
    }
    if (more) more(tiff);
    WritePixels(tiff, kind);
    TIFFClose(tiff);
    return path;
  }

  static void WritePixels(TIFF* tiff, const TiffKind& kind) {
    std::mt19937 random(7);
    std::vector<unsigned char> bytes(
        static_cast<std::size_t>(kind.isTiled ? TIFFTileSize(tiff) : TIFFScanlineSize(tiff)));
    const auto fill = [&] {
      if (kind.isFloat && kind.bits == 16) {
        // Of any sign, size and kind but the largest exponent.
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
          const auto half = static_cast<std::uint16_t>(random() % 0x7c00 | (random() % 2 != 0 ? 0x8000 : 0));
          std::memcpy(bytes.data() + i, &half, sizeof half);
        }
      } else if (kind.isFloat) {
        for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
          const float value = static_cast<float>(random() % 3000) / 1000.0f - 0.5f;
          std::memcpy(bytes.data() + i, &value, sizeof value);
        }
      } else {
        // Runs, which packers shorten.
        for (std::size_t i = 0; i < bytes.size(); ++i)
          bytes[i] = random() % 3 != 0 && i > 0 ? bytes[i - 1] : static_cast<unsigned char>(random());
      }
    };
    if (kind.isTiled) {
      for (std::uint32_t tile = 0; tile < TIFFNumberOfTiles(tiff); ++tile) {
        fill();
        TIFFWriteEncodedTile(tiff, tile, bytes.data(), static_cast<tmsize_t>(bytes.size()));
      }
      return;
    }
    for (int row = 0; row < kind.height; ++row) {
      fill();
      TIFFWriteScanline(tiff, bytes.data(), static_cast<std::uint32_t>(row));
    }
  }

  using LightPicturesTest::ExpectSame;
  void ExpectSame(const std::filesystem::path& path) const { ExpectSame(path, "out.tif"); }
};

constexpr std::pair<int, bool> kSamples[] = {{8, false}, {16, false}, {16, true}, {32, true}};

std::string NameOf(int bits, bool isFloat) {
  return " of " + std::to_string(bits) + (isFloat ? " bits of floats" : " bits");
}

TEST_F(LightTiff, ReadAndWriteEveryTypeAndLayout) {
  for (const int channels : {1, 2, 3, 4}) {
    for (const auto& [bits, isFloat] : kSamples) {
      for (const bool isBig : {false, true}) {
        SCOPED_TRACE(std::to_string(channels) + NameOf(bits, isFloat) + (isBig ? " MM" : " II"));
        TiffKind kind{.channels = channels, .bits = bits, .isFloat = isFloat};
        kind.isBig = isBig;
        ExpectSame(MakeTiff(kind));
        if (channels % 2 != 0) continue;
        kind.extra = EXTRASAMPLE_ASSOCALPHA;
        ExpectSame(MakeTiff(kind));
      }
    }
  }
}

TEST_F(LightTiff, ReadAndWriteEveryCompression) {
  for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS}) {
    for (const auto& [bits, isFloat] : kSamples) {
      for (const bool hasPredictor : {false, true}) {
        if (hasPredictor && compression != COMPRESSION_LZW && compression != COMPRESSION_ADOBE_DEFLATE) continue;
        for (const int stripRows : {1, 3, 7, 32}) {
          SCOPED_TRACE(std::to_string(compression) + NameOf(bits, isFloat) + ' ' + std::to_string(stripRows));
          TiffKind kind{.channels = 4, .bits = bits, .isFloat = isFloat, .compression = compression};
          kind.hasPredictor = hasPredictor;
          kind.stripRows = stripRows;
          ExpectSame(MakeTiff(kind));
        }
      }
    }
  }
}

TEST_F(LightTiff, ReadAndWriteTiles) {
  for (const auto& [bits, isFloat] : kSamples) {
    for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
      for (const int channels : {1, 4}) {
        SCOPED_TRACE(std::to_string(compression) + NameOf(bits, isFloat) + ' ' + std::to_string(channels));
        TiffKind kind{.channels = channels, .bits = bits, .isFloat = isFloat, .compression = compression};
        kind.hasPredictor = compression != COMPRESSION_NONE;
        kind.isTiled = true;
        // A tile and a part, or several.
        kind.width = channels == 1 ? 17 : 50;
        kind.height = channels == 1 ? 15 : 33;
        ExpectSame(MakeTiff(kind));
      }
    }
  }
  // By several threads.
  TiffKind large{.channels = 4, .bits = 16, .width = 700, .height = 1500, .isTiled = true};
  large.tile = 128;
  const auto path = MakeTiff(large);
  ASSERT_EQ(FailureOf(Light, path), "");
  EXPECT_TRUE(Read(Light, path, 16)->Pixels() == Read(Full, path, 16)->Pixels());
}

TEST_F(LightTiff, ReadAndWriteWhatStandsBesideThePixels) {
  const auto texts = [](TIFF* tiff) {
    TIFFSetField(tiff, TIFFTAG_COPYRIGHT, "Us");
    TIFFSetField(tiff, TIFFTAG_ARTIST, "Me");
    TIFFSetField(tiff, TIFFTAG_SOFTWARE, "A program 1.0");
    TIFFSetField(tiff, TIFFTAG_DATETIME, "2026:11:23 12:00:00");
    TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, "A picture");
    TIFFSetField(tiff, TIFFTAG_DOCUMENTNAME, "A document");
    TIFFSetField(tiff, TIFFTAG_HOSTCOMPUTER, "A machine");
  };
  const auto resolution = [](float x, float y, int unit) {
    return [=](TIFF* tiff) { PutResolution(tiff, x, y, unit); };
  };
  std::vector<MoreTags> cases{texts, resolution(72.0f, 72.0f, RESUNIT_INCH),
                              resolution(28.34f, 28.34f, RESUNIT_CENTIMETER), resolution(300.0f, 150.0f, RESUNIT_INCH),
                              resolution(1.0f, 2.0f, RESUNIT_NONE)};
  for (int orientation = 1; orientation <= 8; ++orientation) {
    cases.emplace_back([=](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ORIENTATION, orientation); });
  }
  cases.emplace_back([&](TIFF* tiff) {
    texts(tiff);
    PutResolution(tiff, 300.0f, 150.0f, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, 6);
    const std::vector<unsigned char> profile = MakeProfile("RGB ");
    TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(profile.size()), profile.data());
  });
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(i);
    ExpectSame(MakeTiff({.channels = 4}, cases[i]));
    ExpectSame(MakeTiff({.channels = 1, .bits = 16}, cases[i]));
  }
}

// A profile for such pixels, and one for others.
TEST_F(LightTiff, ReadAndWriteAColourProfile) {
  for (const char* colours : {"RGB ", "GRAY"}) {
    const std::vector<unsigned char> profile = MakeProfile(colours);
    for (const int channels : {1, 3, 4}) {
      SCOPED_TRACE(colours + std::to_string(channels));
      ExpectSame(MakeTiff({.channels = channels}, [&](TIFF* tiff) {
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(profile.size()), profile.data());
      }));
    }
  }
}

// Several strips for each thread, and a height that is no multiple of them.
TEST_F(LightTiff, ReadAndWriteLargePicturesByAnyNumberOfThreads) {
  for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
    TiffKind kind{.channels = 4, .bits = 16, .compression = compression};
    kind.hasPredictor = compression != COMPRESSION_NONE;
    kind.stripRows = 16;
    kind.width = 701;
    kind.height = 1603;
    const auto path = MakeTiff(kind);
    ExpectSameReading(path);
    const auto read = Read(Light, path, 16);
    std::string first;
    for (const std::int32_t threads : {1, 2, 5}) {
      const auto out = folder_.path() / "large.tif";
      WrittenPicture written = PictureWriter().WriteBeside(out, read->image, read->facts.metadata.get(),
                                                           {.overwrite = true, .sync = false, .threads = threads});
      written.Commit();
      if (first.empty()) first = BytesOf(out);
      EXPECT_TRUE(BytesOf(out) == first) << threads;
    }
    EXPECT_TRUE(Read(Full, folder_.path() / "large.tif", 16)->Pixels() == read->Pixels());
    const std::string full = Written(Full, *read, "full.tif");
    EXPECT_LT(first.size(), full.size() + full.size() / 50);
  }
}

TEST_F(LightTiff, ReadTheFilesOfTheTests) {
  int read = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VBLUR_PICTURES_FOLDER)) {
    if (entry.path().extension() != ".tif") continue;
    SCOPED_TRACE(entry.path().filename());
    if (FailureOf(Light, entry.path()).empty()) {
      ExpectSame(entry.path());
      ++read;
    } else if (FailureOf(Full, entry.path()).empty()) {
      EXPECT_EQ(Read(Automatic, entry.path(), 8)->Pixels(), Read(Full, entry.path(), 8)->Pixels());
    }
  }
  EXPECT_GT(read, 0);
}

TEST_F(LightTiff, WriteWhatHasNoSource) {
  for (const std::int32_t depth : {8, 16, 32}) {
    auto read = Read(Full, MakeTiff({.channels = 4, .bits = 16}), depth);
    read->facts.metadata = nullptr;
    EXPECT_EQ(Seen(Light, *read, "out.tif"), Seen(Full, *read, "out.tif")) << depth;
  }
}

TEST_F(LightTiff, LeaveToTheFullLibraryWhatTheyDoNotKnow) {
  const auto left = [&](const TiffKind& kind, const MoreTags& more = {}) { ExpectLeft(MakeTiff(kind, more)); };
  left({.channels = 4, .extra = EXTRASAMPLE_UNSPECIFIED});
  left({}, [](TIFF* tiff) { PutResolution(tiff, 72.0f, 72.0f, 0); });
  left({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 72.0); });
  left({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ARTIST, "Caf\xe9"); });
  left({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ARTIST, ""); });
  left({}, [](TIFF* tiff) { PutResolution(tiff, 0.0f, 72.0f, RESUNIT_INCH); });
  left({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_FILLORDER, FILLORDER_LSB2MSB); });
  left({.channels = 2, .extra = EXTRASAMPLE_UNSPECIFIED});
  left({.compression = COMPRESSION_LZMA});
  left({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_MAKE, "a maker"); });
  left({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, std::string(7001, 'x').c_str()); });
  left({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_XMLPACKET, 4, "<x/>"); });
  left({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE); });
  left({.channels = 1}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE); });
  left({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE); });
  left({.compression = COMPRESSION_DEFLATE});
  left({.bits = 16}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_INT); });
  // An orientation that is none.
  std::string turned = BytesOf(MakeTiff({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ORIENTATION, 6); }));
  turned[turned.find(std::string("\x12\x01\x03\0\x01\0\0\0\x06", 9)) + 8] = '\x09';
  ExpectLeft(Write(turned, "turned.tif"));
  // A text of two strings.
  std::string bytes = BytesOf(MakeTiff({}, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ARTIST, "One and two"); }));
  bytes[bytes.find("One and two") + 3] = '\0';
  ExpectLeft(Write(bytes, "texts.tif"));
  ExpectLeft(MakeTiff({}, {}, "in.png"));
  const auto path = MakeTiff({});
  ExpectLeft(Write(BytesOf(path).substr(0, 6), "cut.tif"));
  ExpectLeft(Write("no picture", "in.tif"));
}

// Two pictures, of which the second one is not read.
TEST_F(LightTiff, LeaveFilesOfSeveralPictures) {
  const auto path = MakeTiff({});
  TIFF* const tiff = TIFFOpen(path.c_str(), "a");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 1);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  unsigned char grey = 7;
  TIFFWriteScanline(tiff, &grey, 0);
  TIFFClose(tiff);
  ExpectLeft(path);
}

TEST_F(LightTiff, WriteHalvesOfAnySource) {
  OutputOptions options{.overwrite = true, .sync = false};
  options.storage.type = SampleType::Half;
  const auto path = folder_.path() / "half.tif";
  for (const auto& [bits, isFloat] : kSamples) {
    const auto read = Read(Light, MakeTiff({.channels = 4, .bits = bits, .isFloat = isFloat}), 32);
    std::string seen;
    for (const auto library : {Light, Full}) {
      UsePictures(library);
      PictureWriter().WriteBeside(path, read->image, read->facts.metadata.get(), options).Commit();
      UsePictures(Full);
      const std::string now = Shown(ReportPicture(path)) + Read(Full, path, 32)->Pixels();
      if (seen.empty()) seen = now;
      EXPECT_TRUE(seen == now) << NameOf(bits, isFloat);
    }
    EXPECT_NE(seen.find("R:half"), std::string::npos);
  }
}

TEST_F(LightTiff, TellOfDamagedPixelsAsTheFullLibraryDoes) {
  TiffKind kind{.channels = 4, .bits = 16, .compression = COMPRESSION_ADOBE_DEFLATE};
  kind.width = 300;
  kind.height = 400;
  const std::string whole = BytesOf(MakeTiff(kind));
  for (const std::size_t at : {std::size_t{20}, whole.size() / 3, whole.size() / 2}) {
    std::string damaged = whole;
    for (std::size_t i = 0; i < 8; ++i)
      damaged[at + i] = static_cast<char>(damaged[at + i] ^ 0x55);
    const auto path = Write(damaged, "damaged.tif");
    EXPECT_EQ(FailureOf(Automatic, path), FailureOf(Full, path)) << at;
    if (!FailureOf(Full, path).empty()) continue;
    const std::string full = Read(Full, path, 16)->Pixels();
    // It does not always read the same of a damaged file.
    if (Read(Full, path, 16)->Pixels() != full) continue;
    EXPECT_TRUE(Read(Automatic, path, 16)->Pixels() == full);
  }
}

}  // namespace
}  // namespace vblur::host
