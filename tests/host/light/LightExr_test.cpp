// Plain OpenEXR files by the light and by the full picture library.
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <ImfChannelList.h>
#include <ImfChromaticitiesAttribute.h>
#include <ImfDoubleAttribute.h>
#include <ImfEnvmapAttribute.h>
#include <ImfFloatAttribute.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIntAttribute.h>
#include <ImfMatrixAttribute.h>
#include <ImfMultiPartOutputFile.h>
#include <ImfOutputFile.h>
#include <ImfOutputPart.h>
#include <ImfPartType.h>
#include <ImfRationalAttribute.h>
#include <ImfStringAttribute.h>
#include <ImfTileDescription.h>
#include <ImfTiledOutputFile.h>
#include <ImfTimeCodeAttribute.h>
#include <ImfVecAttribute.h>
#include <gtest/gtest.h>

#include "tests/host/light/LightPicturesTest.h"
#include "tests/support/host/PngBytes.h"

namespace vblur::host {
namespace {

struct ExrChannelKind {
  std::string name;
  Imf::PixelType type = Imf::HALF;
  int sampling = 1;
};

using Kinds = std::vector<ExrChannelKind>;

Kinds Of(const std::string& letters, Imf::PixelType type) {
  Kinds kinds;
  for (const char letter : letters)
    kinds.push_back({std::string(1, letter), type, 1});
  return kinds;
}

using HeaderChange = std::function<void(Imf::Header&)>;

const HeaderChange kAsItIs = [](Imf::Header&) {};

// Words of 32 bits a pixel and channel, with which lossy compression has something to do.
std::vector<std::uint32_t> SamplesOf(const ExrChannelKind& kind, std::size_t pixels, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::uint32_t> words(pixels);
  for (std::size_t i = 0; i < pixels; ++i) {
    const float wave = static_cast<float>(i % 97) / 64.0f - 0.25f;
    const float noise = static_cast<float>(random() % 1024) / 4096.0f;
    const float value = i % 53 == 7 ? 70000.0f * noise : wave + noise;
    if (kind.type == Imf::UINT) words[i] = static_cast<std::uint32_t>(i);
    if (kind.type == Imf::HALF) words[i] = half(value).bits();
    if (kind.type == Imf::FLOAT) std::memcpy(&words[i], &value, sizeof value);
  }
  return words;
}

struct Windows {
  Imath::Box2i data;
  Imath::Box2i display;
};

Windows Sized(int width, int height) {
  const Imath::Box2i box({0, 0}, {width - 1, height - 1});
  return {box, box};
}

class LightExr : public LightPicturesTest {
 protected:
  std::filesystem::path Make(const Kinds& kinds, const Windows& windows, const HeaderChange& change = kAsItIs,
                             const std::string& name = "in.exr") const {
    Imf::Header header(windows.display, windows.data);
    const auto width = static_cast<std::size_t>(windows.data.max.x - windows.data.min.x + 1);
    const auto height = static_cast<std::size_t>(windows.data.max.y - windows.data.min.y + 1);
    std::vector<std::vector<std::uint32_t>> samples;
    Imf::FrameBuffer frame;
    for (const ExrChannelKind& kind : kinds) {
      header.channels().insert(kind.name, Imf::Channel(kind.type, kind.sampling, kind.sampling));
      samples.push_back(SamplesOf(kind, width * height, static_cast<unsigned>(samples.size())));
      frame.insert(kind.name, Imf::Slice::Make(kind.type, samples.back().data(), windows.data, 4, 4 * width,
                                               kind.sampling, kind.sampling));
    }
    change(header);
    const std::filesystem::path path = folder_.path() / name;
    Imf::OutputFile file(path.c_str(), header, 0);
    file.setFrameBuffer(frame);
    file.writePixels(static_cast<int>(height));
    return path;
  }

  std::filesystem::path Make(const std::string& letters, const HeaderChange& change = kAsItIs) const {
    return Make(Of(letters, Imf::HALF), Sized(13, 7), change);
  }

  using LightPicturesTest::ExpectSame;
  // To the last byte, too.
  void ExpectSame(const std::filesystem::path& path) const {
    ExpectSame(path, "out.exr");
    for (const std::int32_t depth : {8, 32})
      EXPECT_TRUE(Written(Light, *Read(Light, path, depth), "out.exr") ==
                  Written(Full, *Read(Full, path, depth), "out.exr"))
          << "at " << depth;
  }

  std::string SeenWith(PictureLibraries library, const ReadFile& read, const OutputOptions& options) const {
    UsePictures(library);
    const std::filesystem::path path = folder_.path() / "with.exr";
    WrittenPicture written = PictureWriter().WriteBeside(path, read.image, read.facts.metadata.get(), options);
    std::string text = testing::PrintToString(written.Notes());
    written.Commit();
    UsePictures(Full);
    text += Shown(ReportPicture(path));
    return text + Read(Full, path, 32)->Pixels() + BytesOf(path);
  }
};

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

void PutPlainAttributes(Imf::Header& header) {
  header.insert("owner", Imf::StringAttribute("Me"));
  header.insert("capDate", Imf::StringAttribute("2026:11:23 12:00:00"));
  header.insert("comments", Imf::StringAttribute("caf\xc3\xa9\nof lines"));
  header.insert("Artist", Imf::StringAttribute("Somebody"));
  header.insert("Software", Imf::StringAttribute("S"));
  header.insert("writer", Imf::StringAttribute("lavc"));
  header.insert("view", Imf::StringAttribute("left"));
  header.insert("name", Imf::StringAttribute("beauty"));
  header.insert("a name of more letters than the format had", Imf::StringAttribute("x"));
  header.insert("blank", Imf::StringAttribute("  "));
  header.insert("empty", Imf::StringAttribute(""));
  header.insert("gamma", Imf::FloatAttribute(2.2f));
  header.insert("isoSpeed", Imf::FloatAttribute(1e-9f));
  header.insert("utcOffset", Imf::FloatAttribute(-3600.0f));
  header.insert("frame", Imf::IntAttribute(-42));
  header.insert("place", Imf::V2fAttribute({1.5f, -2e20f}));
  header.insert("adoptedNeutral", Imf::V2fAttribute({0.3127f, 0.329f}));
  header.insert("direction", Imf::V3fAttribute({1.5f, 2.0f, 123456789.0f}));
  header.insert("turn", Imf::M33fAttribute({1, 2, 3, 4, 5, 6, 7, 8, 9.25f}));
  header.insert("move", Imf::M44fAttribute({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16.5f}));
  header.insert("framesPerSecond", Imf::RationalAttribute(Imf::Rational(24000, 1001)));
  header.insert("ratio", Imf::RationalAttribute(Imf::Rational(-1, 3)));
  header.insert("timeCode", Imf::TimeCodeAttribute(Imf::TimeCode(23, 59, 58, 24, true, true, true, true)));
  header.insert("chromaticities", Imf::ChromaticitiesAttribute(Imf::Chromaticities({0.7f, 0.3f})));
  header.insert("Orientation", Imf::IntAttribute(6));
  header.insert("chunkCount", Imf::IntAttribute(1));
  header.insert("type", Imf::StringAttribute("scanlineimage"));
  header.screenWindowCenter() = {0.5f, -0.25f};
  header.screenWindowWidth() = 2.5f;
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

TEST_F(LightExr, LeaveToTheFullLibraryTheChannelsThatTheyDoNotKnow) {
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

TEST_F(LightExr, LeaveToTheFullLibraryTheAttributesThatTheyDoNotKnow) {
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
      [](Imf::Header& header) { header.insert("wide", Imf::RationalAttribute(Imf::Rational(1, 1u << 31))); },
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

TEST_F(LightExr, LeaveToTheFullLibraryTheFilesThatTheyDoNotKnow) {
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

TEST_F(LightExr, LeaveTilesAndPartsToTheFullLibrary) {
  const auto path = folder_.path() / "other.exr";
  const std::vector<half> samples(64 * 64, half(0.5f));
  Imf::Header header(64, 64);
  Imf::FrameBuffer frame;
  for (const char* const name : {"R", "G", "B"}) {
    header.channels().insert(name, Imf::Channel(Imf::HALF));
    frame.insert(name, Imf::Slice::Make(Imf::HALF, samples.data(), Imath::V2i(0), 64, 64));
  }
  Imf::Header tiled = header;
  tiled.setTileDescription(Imf::TileDescription(32, 32));
  {
    Imf::TiledOutputFile file(path.c_str(), tiled);
    file.setFrameBuffer(frame);
    file.writeTiles(0, 1, 0, 1);
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
TEST_F(LightExr, ReadDamagedHeadersAsTheFullLibraryDoes) {
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

TEST_F(LightExr, TellOfDamagedPixelsAsTheFullLibraryDoes) {
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
