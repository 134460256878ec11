// Plain OpenEXR files by the light and by the full picture library.
#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include <ImfFloatAttribute.h>
#include <ImfHeader.h>
#include <ImfIntAttribute.h>
#include <ImfStringAttribute.h>
#include <ImfTimeCodeAttribute.h>
#include <gtest/gtest.h>

#include "tests/host/light/LightExrTest.h"
#include "tests/support/host/PngBytes.h"

namespace vblur::host {
namespace {

constexpr std::array<Imf::Compression, 10> kCompressions = {
    Imf::NO_COMPRESSION,    Imf::RLE_COMPRESSION, Imf::ZIPS_COMPRESSION, Imf::ZIP_COMPRESSION,  Imf::PIZ_COMPRESSION,
    Imf::PXR24_COMPRESSION, Imf::B44_COMPRESSION, Imf::B44A_COMPRESSION, Imf::DWAA_COMPRESSION, Imf::DWAB_COMPRESSION};

TEST_F(LightExr, ReadAndWriteEveryLayoutAndType) {
  for (const char* const letters : {"Y", "YA", "RGB", "RGBA"}) {
    for (const Imf::PixelType type : {Imf::HALF, Imf::FLOAT}) {
      SCOPED_TRACE(std::string(letters) + (type == Imf::HALF ? " of halves" : " of floats"));
      ExpectSame(Make(Of(letters, type), Sized(13, 7)));
    }
  }
  ExpectSame(Make("RGBA", [](Imf::Header& header) { header.lineOrder() = Imf::DECREASING_Y; }));
}

TEST_F(LightExr, ReadAndWriteTiles) {
  const Windows wide{{{-3, 5}, {61, 37}}, {{0, 0}, {63, 47}}};
  for (const auto& [width, height] : {std::pair{1u, 1u}, {64u, 4u}, {5u, 30u}, {100u, 100u}}) {
    SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
    const Imf::TileDescription tiles(width, height);
    const auto tiled = [&](Imf::Header& header) { header.setTileDescription(tiles); };
    ExpectSame(Make(Of("RGBA", Imf::HALF), Sized(33, 27), tiled));
    ExpectSame(Make(Of("Y", Imf::FLOAT), wide, tiled));
  }
  for (const Imf::LineOrder order : {Imf::DECREASING_Y, Imf::RANDOM_Y}) {
    SCOPED_TRACE(order);
    ExpectSame(Make(Of("RGB", Imf::HALF), wide, [&](Imf::Header& header) {
      header.setTileDescription(Imf::TileDescription(16, 16));
      header.lineOrder() = order;
    }));
  }
  for (const Imf::Compression compression : kCompressions) {
    SCOPED_TRACE(compression);
    ExpectSame(Make(Of("RGB", Imf::HALF), Sized(70, 50), [&](Imf::Header& header) {
      header.setTileDescription(Imf::TileDescription(32, 32));
      header.compression() = compression;
    }));
  }
  // By several threads.
  const auto large = Make(Of("RGB", Imf::HALF), Sized(701, 905),
                          [](Imf::Header& header) { header.setTileDescription(Imf::TileDescription(64, 64)); });
  ASSERT_EQ(FailureOf(Light, large), "");
  EXPECT_TRUE(Read(Light, large, 32)->Pixels() == Read(Full, large, 32)->Pixels());
}

TEST_F(LightExr, ReadAndWriteChannelsOfTwoTypes) {
  ExpectSame(Make({{"R", Imf::HALF}, {"G", Imf::FLOAT}, {"B", Imf::HALF}, {"A", Imf::FLOAT}}, Sized(13, 7)));
  ExpectSame(Make({{"R", Imf::FLOAT}, {"G", Imf::FLOAT}, {"B", Imf::FLOAT}, {"A", Imf::HALF}}, Sized(13, 7)));
  ExpectSame(Make({{"Y", Imf::FLOAT}, {"A", Imf::HALF}}, Sized(13, 7)));
}

TEST_F(LightExr, ReadAndWriteEveryCompressionAndSize) {
  for (const Imf::Compression compression : kCompressions) {
    SCOPED_TRACE(compression);
    const auto packed = [&](Imf::Header& header) { header.compression() = compression; };
    ExpectSame(Make("RGBA", packed));
    ExpectSame(Make(Of("RGB", Imf::FLOAT), Sized(1, 1), packed));
    ExpectSameReading(Make(Of("RGB", Imf::HALF), Sized(61, 533), packed));
  }
}

TEST_F(LightExr, ReadAndWriteAnyWindows) {
  const Windows cases[] = {{{{0, 0}, {12, 6}}, {{0, 0}, {20, 20}}},
                           {{{-3, -5}, {9, 1}}, {{0, 0}, {12, 6}}},
                           {{{-3, -5}, {30, 20}}, {{0, 0}, {12, 6}}},
                           {{{100, 50}, {112, 56}}, {{100, 50}, {112, 56}}},
                           {{{40, 40}, {45, 44}}, {{-10, -10}, {5, 5}}}};
  for (const Windows& windows : cases) {
    SCOPED_TRACE(testing::PrintToString(windows.data.min.x));
    ExpectSame(Make(Of("RGBA", Imf::HALF), windows));
    ExpectSame(Make(Of("RGB", Imf::FLOAT), windows));
    ExpectSame(Make(Of("Y", Imf::HALF), windows));
  }
}

TEST_F(LightExr, GrowTheDataWindowByWhatTheEffectMade) {
  const auto path = Make(Of("RGBA", Imf::HALF), {{{5, 4}, {8, 6}}, {{0, 0}, {19, 9}}});
  for (const std::int32_t depth : {8, 16, 32}) {
    const auto light = Read(Light, path, depth);
    const auto full = Read(Full, path, depth);
    for (HostImage* image : {&light->image, &full->image}) {
      image->Row(1)[2 * image->PixelBytes()] = std::byte{0x11};
      image->Row(8)[17 * image->PixelBytes() + 3] = std::byte{0x22};
    }
    EXPECT_EQ(Seen(Light, *light, "out.exr"), Seen(Full, *full, "out.exr")) << depth;
    UsePictures(Light);
    EXPECT_EQ(ReadPictureInfo(folder_.path() / "out.exr").data, (FileWindow{2, 1, 16, 8}));
  }
}

TEST_F(LightExr, ReadAndWriteWhatStandsBesideThePixels) {
  const HeaderChange cases[] = {
      PutPlainAttributes,
      [](Imf::Header& header) { header.pixelAspectRatio() = 2.0f; },
      [](Imf::Header& header) { header.insert("xDensity", Imf::FloatAttribute(300.0f)); },
      [](Imf::Header& header) {
        header.insert("xDensity", Imf::FloatAttribute(72.0f));
        header.pixelAspectRatio() = 0.9f;
        header.insert("ResolutionUnit", Imf::StringAttribute("inch"));
      },
      [](Imf::Header& header) { header.insert("ResolutionUnit", Imf::StringAttribute("none")); },
      [](Imf::Header& header) { header.insert("Orientation", Imf::IntAttribute(1)); },
      [](Imf::Header& header) { header.insert("Exif:ImageHistory", Imf::StringAttribute("made of one")); },
      [](Imf::Header& header) {
        header.insert("timeCode", Imf::TimeCodeAttribute(Imf::TimeCode(0xffffffffu, 0x12345678u)));
      }};
  for (const HeaderChange& change : cases) {
    SCOPED_TRACE(&change - cases);
    ExpectSame(Make("RGB", change));
    ExpectSame(Make("YA", change));
  }
}

// The level of a source is not that of the output.
TEST_F(LightExr, ReadAndWriteTheLevelOfLossyCompression) {
  for (const Imf::Compression compression : {Imf::DWAA_COMPRESSION, Imf::DWAB_COMPRESSION, Imf::ZIP_COMPRESSION}) {
    const auto path = Make("RGBA", [&](Imf::Header& header) {
      header.compression() = compression;
      header.insert("dwaCompressionLevel", Imf::FloatAttribute(100.0f));
    });
    ExpectSame(path);
    for (const char* const asked : {"dwaa", "dwab", "zip", "piz"}) {
      OutputOptions options{.overwrite = true, .sync = false};
      options.storage.compression = asked;
      EXPECT_EQ(SeenWith(Light, *Read(Light, path, 32), options), SeenWith(Full, *Read(Full, path, 32), options))
          << asked;
    }
  }
}

TEST_F(LightExr, WriteTheCompressionAndTypeThatAreAskedFor) {
  const auto exr = Make({{"R", Imf::HALF}, {"G", Imf::HALF}, {"B", Imf::HALF}, {"A", Imf::FLOAT}}, Sized(13, 7));
  const auto png = Write(PngBytes({6, 16}, 13, 7));
  for (const auto& path : {exr, png}) {
    for (const char* const compression :
         {"none", "rle", "zips", "zip", "piz", "pxr24", "b44", "b44a", "dwaa", "dwab"}) {
      for (const SampleType type : {SampleType::Half, SampleType::Float}) {
        OutputOptions options{.overwrite = true, .sync = false};
        options.storage.compression = compression;
        options.storage.type = type;
        EXPECT_EQ(SeenWith(Light, *Read(Light, path, 32), options), SeenWith(Full, *Read(Full, path, 32), options))
            << compression << ' ' << NameOf(type);
      }
    }
  }
}

TEST_F(LightExr, WriteWhatComesFromPngFiles) {
  const std::string scale = PngChunk("pHYs", Big32Of(2835) + Big32Of(5669) + '\1');
  const std::string none = PngChunk("pHYs", Big32Of(3) + Big32Of(2) + std::string(1, '\0'));
  const std::string texts = PngChunk("tEXt", std::string("Author\0Me", 9)) +
                            PngChunk("tEXt", std::string("Description\0What", 16)) +
                            PngChunk("tEXt", std::string("Copyright\0Mine", 14)) +
                            PngChunk("tIME", std::string("\x07\xe4\x01\x02\x03\x04\x05", 7));
  for (const PngKind& kind : {PngKind{0, 8}, PngKind{2, 8}, PngKind{4, 16}, PngKind{6, 16}, PngKind{3, 4, true}}) {
    for (const std::string& chunks : {std::string(), scale, none, texts + scale}) {
      const auto path = Write(PngBytes(kind, 13, 7, "", chunks));
      for (const std::int32_t depth : {8, 16, 32}) {
        const auto light = Read(Light, path, depth);
        EXPECT_EQ(Seen(Light, *light, "out.exr"), Seen(Full, *Read(Full, path, depth), "out.exr")) << depth;
      }
    }
  }
}

TEST_F(LightExr, WriteWhatHasNoSource) {
  for (const std::int32_t depth : {8, 16, 32}) {
    auto read = Read(Full, Make("RGBA"), depth);
    read->facts.metadata = nullptr;
    EXPECT_EQ(Seen(Light, *read, "out.exr"), Seen(Full, *read, "out.exr")) << depth;
  }
}

// A part of the picture was rendered; around it the file has the samples of the source.
TEST_F(LightExr, WriteAPartOfThePicture) {
  for (const Windows& windows : {Sized(31, 23), Windows{{{5, 4}, {28, 26}}, {{0, 0}, {19, 29}}}}) {
    const auto path = Make({{"R", Imf::HALF}, {"G", Imf::HALF}, {"B", Imf::HALF}, {"A", Imf::FLOAT}}, windows);
    std::string seen[2];
    for (const PictureLibraries library : {Light, Full}) {
      const auto read = Read(library, path, 16);
      ASSERT_NE(read->facts.samples, nullptr);
      OutputOptions options{.overwrite = true, .sync = false};
      options.part = RenderedPart{{3, 2, 9, 11}, read->facts.samples};
      seen[library == Light ? 0 : 1] = SeenWith(library, *read, options);
    }
    EXPECT_EQ(seen[0], seen[1]);
  }
}

TEST_F(LightExr, ReadAndWriteLargePicturesByAnyNumberOfThreads) {
  for (const Imf::Compression compression : kCompressions) {
    SCOPED_TRACE(compression);
    const auto path =
        Make(Of("RGBA", Imf::HALF), Sized(701, 1603), [&](Imf::Header& header) { header.compression() = compression; });
    const auto read = Read(Light, path, 32);
    EXPECT_TRUE(read->Pixels() == Read(Full, path, 32)->Pixels());
    std::string first;
    for (const std::int32_t threads : {1, 2, 5}) {
      OutputOptions options{.overwrite = true, .sync = false};
      options.threads = threads;
      const std::string seen = SeenWith(Light, *read, options);
      if (threads == 1) {
        EXPECT_TRUE(seen == SeenWith(Full, *read, options));
        EXPECT_TRUE(seen == SeenWith(Light, *read, options));
        first = BytesOf(folder_.path() / "with.exr");
      }
      EXPECT_TRUE(BytesOf(folder_.path() / "with.exr") == first) << threads;
    }
  }
}

}  // namespace
}  // namespace vblur::host
