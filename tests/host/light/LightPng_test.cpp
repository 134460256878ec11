// Plain PNG files by the light and by the full picture library.
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/light/LightPicturesTest.h"
#include "tests/support/host/PngBytes.h"
#include "tests/support/host/RawPictures.h"

namespace vblur::host {
namespace {

class LightPng : public LightPicturesTest {
 protected:
  using LightPicturesTest::ExpectSame;
  // To the last byte, too.
  void ExpectSame(const std::filesystem::path& path) const {
    ExpectSame(path, "out.png");
    for (const std::int32_t depth : {8, 16, 32}) {
      const auto light = Read(Light, path, depth);
      const auto full = Read(Full, path, depth);
      EXPECT_EQ(Written(Light, *light, "out.png"), Written(Full, *full, "out.png")) << "at " << depth;
    }
  }

  void ExpectLeft(const std::string& bytes, const std::string& name = "in.png") const {
    LightPicturesTest::ExpectLeft(Write(bytes, name));
  }
};

TEST_F(LightPng, ReadAndWriteEveryTypeAndDepth) {
  for (const int type : {0, 2, 3, 4, 6}) {
    for (const int bits : {1, 2, 4, 8, 16}) {
      const bool isKnown = bits == 8 || (bits == 16 && type != 3) || (bits < 8 && (type == 0 || type == 3));
      if (!isKnown) continue;
      for (const bool hasKey : {false, true}) {
        if (hasKey && type > 3) continue;
        SCOPED_TRACE(std::to_string(type) + " of " + std::to_string(bits) + (hasKey ? " with a key" : ""));
        ExpectSame(Write(PngBytes({type, bits, hasKey}, 13, 7)));
      }
    }
  }
}

// They are packed in stretches: other bytes than those of the full library, for the same samples and chunks.
TEST_F(LightPng, WriteLargePicturesByAnyNumberOfThreads) {
  const std::string texts = PngChunk("tEXt", std::string("Author\0Me", 9));
  for (const PngKind& kind : {PngKind{2, 8}, PngKind{6, 16}, PngKind{0, 16}, PngKind{4, 8}}) {
    SCOPED_TRACE(std::to_string(kind.colourType) + " of " + std::to_string(kind.bits));
    const auto read = Read(Light, Write(PngBytes(kind, 701, 1603, "", texts, "")), 16);
    std::string first;
    for (const std::int32_t threads : {1, 2, 5}) {
      const auto path = folder_.path() / "large.png";
      WrittenPicture written = PictureWriter().WriteBeside(path, read->image, read->facts.metadata.get(),
                                                           {.overwrite = true, .sync = false, .threads = threads});
      written.Commit();
      if (first.empty()) first = BytesOf(path);
      EXPECT_TRUE(BytesOf(path) == first) << threads;
    }
    EXPECT_NE(first.find(texts), std::string::npos);
    const auto back = Read(Full, folder_.path() / "large.png", 16);
    EXPECT_TRUE(back->Pixels() == read->Pixels());
    // As small as those of the full library.
    const std::string full = Written(Full, *read, "full.png");
    EXPECT_LT(first.size(), full.size() + full.size() / 50);
  }
}

TEST_F(LightPng, ReadAndWriteTheFilesOfTheTests) {
  for (const auto& entry : std::filesystem::directory_iterator(VBLUR_PICTURES_FOLDER)) {
    if (entry.path().extension() != ".png" || entry.path().filename() == "interlaced.png") continue;
    SCOPED_TRACE(entry.path().filename());
    ExpectSame(entry.path());
  }
}

std::string Text(const std::string& keyword, const std::string& text) {
  return PngChunk("tEXt", keyword + '\0' + text);
}

std::string Scale(std::uint32_t x, std::uint32_t y, bool isInMetres) {
  return PngChunk("pHYs", Big32Of(x) + Big32Of(y) + static_cast<char>(isInMetres));
}

const std::string kGamma = PngChunk("gAMA", Big32Of(45455));
const std::string kSrgb = PngChunk("sRGB", std::string(1, '\1'));
const std::string kTime = PngChunk("tIME", std::string("\x07\xe4\x01\x02\x03\x04\x05", 7));
const std::string kTexts = Text("Title", "A title") + Text("Author", "Me") + Text("Description", "Caf\xe9") +
                           Text("Software", "S") + Text("Comment", "") + Text("Blank", "  ") +
                           PngChunk("zTXt", "Packed" + std::string(2, '\0') + PackedBytes("text\nof lines")) +
                           PngChunk("iTXt", "Wide" + std::string(5, '\0') + "caf\xc3\xa9 \xe2\x82\xac");

TEST_F(LightPng, ReadAndWriteWhatStandsBesideThePixels) {
  const std::string white = PngChunk("cHRM", Big32Of(31270) + Big32Of(32900) + Big32Of(64000) + Big32Of(33000) +
                                                 Big32Of(30000) + Big32Of(60000) + Big32Of(15000) + Big32Of(6000));
  const std::string place = PngChunk("oFFs", std::string(9, '\0'));
  const std::string late = Text("Late", "behind");
  struct Case {
    std::string first;
    std::string before;
    std::string behind;
  };
  const Case cases[] = {{kGamma, "", ""},
                        {PngChunk("gAMA", Big32Of(100000)), "", ""},
                        {PngChunk("gAMA", Big32Of(55556)) + white, "", ""},
                        {kSrgb, "", ""},
                        {kSrgb + kGamma + white, "", ""},
                        {"", Scale(2835, 2835, true), ""},
                        {"", Scale(2835, 5669, true), ""},
                        {"", Scale(3, 2, false), ""},
                        {"", Scale(1, 1, false), ""},
                        {"", place, ""},
                        {"", kTime, ""},
                        {"", kTexts, ""},
                        {"", "", late},
                        {"", kTexts + kTime, late},
                        {kSrgb + white, place + Scale(11811, 3937, true) + kTime + kTexts, late + Text("Title", "2")}};
  for (const Case& each : cases) {
    for (const PngKind& kind : {PngKind{2, 8}, PngKind{0, 16}, PngKind{3, 4, true}}) {
      SCOPED_TRACE(testing::PrintToString(each.first + each.before + each.behind));
      ExpectSame(Write(PngBytes(kind, 9, 5, each.first, each.before, each.behind)));
    }
  }
}

// Chunks of which both take nothing, of the length that the type has.
TEST_F(LightPng, PassOverTheBackgroundAndTheBitsOfSamples) {
  struct Case {
    PngKind kind;
    std::size_t background;
    std::string bits;
  };
  const Case cases[] = {{{0, 8}, 2, "\5"},     {{0, 16}, 2, "\x0c"}, {{2, 8}, 6, "\5\6\5"},
                        {{3, 4}, 1, "\5\6\5"}, {{4, 8}, 2, "\5\6"},  {{6, 16}, 6, "\x0a\x0a\x0a\x0c"}};
  for (const Case& each : cases) {
    SCOPED_TRACE(std::to_string(each.kind.colourType) + " of " + std::to_string(each.kind.bits));
    const std::string bits = PngChunk("sBIT", each.bits);
    const std::string background = PngChunk("bKGD", std::string(each.background, '\0'));
    ExpectSame(Write(PngBytes(each.kind, 9, 5, bits, background, "")));
  }
}

std::string ProfileChunk(const char* colours) {
  // As long as real ones, which do not pack to a few bytes.
  std::vector<unsigned char> profile = MakeProfile(colours);
  std::mt19937 random(1);
  while (profile.size() < 1024)
    profile.push_back(static_cast<unsigned char>(random()));
  profile[2] = 4;
  profile[3] = 0;
  return PngProfileChunk({profile.begin(), profile.end()});
}

// Where it is for the pixels that are written, and where it is not.
TEST_F(LightPng, ReadAndWriteAColourProfile) {
  for (const PngKind& kind : {PngKind{2, 8}, PngKind{6, 16}, PngKind{3, 8}}) {
    for (const std::string& chunks :
         {ProfileChunk("RGB "), ProfileChunk("RGB ") + kGamma, ProfileChunk("RGB ") + kGamma + kSrgb}) {
      const auto path = Write(PngBytes(kind, 9, 5, chunks, kTexts));
      ExpectSame(path);
      UsePictures(Light);
      EXPECT_TRUE(ReportPicture(path).metadata.Has(MetadataGroup::Profile));
    }
  }
  ExpectSame(Write(PngBytes({0, 8}, 9, 5, ProfileChunk("GRAY"))));
}

TEST_F(LightPng, WriteEveryResolutionAlike) {
  for (std::uint32_t pixels = 1; pixels < 1'000'000; pixels += pixels / 40 + 1) {
    for (const bool isInMetres : {false, true}) {
      const auto path = Write(PngBytes({0, 8}, 1, 1, "", Scale(pixels, 1'000'001 - pixels, isInMetres)));
      const auto light = Read(Light, path, 8);
      const auto full = Read(Full, path, 8);
      ASSERT_EQ(Written(Light, *light, "out.png"), Written(Full, *full, "out.png")) << pixels << ' ' << isInMetres;
      ASSERT_EQ(Seen(Automatic, *light, "out.tif"), Seen(Full, *full, "out.tif")) << pixels << ' ' << isInMetres;
    }
  }
}

TEST_F(LightPng, WriteWhatHasNoSource) {
  for (const std::int32_t depth : {8, 16, 32}) {
    auto read = Read(Full, Write(PngBytes({6, 16}, 40, 30)), depth);
    read->facts.metadata = nullptr;
    EXPECT_EQ(Written(Light, *read, "out.png"), Written(Full, *read, "out.png")) << depth;
  }
}

TEST_F(LightPng, LeaveToTheFullLibraryWhatTheyDoNotKnow) {
  const PngKind colour{2, 8};
  const auto with = [&](const std::string& before, const std::string& first = "") {
    return PngBytes(colour, 5, 3, first, before);
  };
  ExpectLeft(PngBytes({2, 8}, 1, 1, "", "", "", true));
  ExpectLeft(with(PngChunk("oFFs", Big32Of(3) + Big32Of(4) + '\0')));
  ExpectLeft(with(PngChunk("eXIf", "II*\0")));
  ExpectLeft(with(PngChunk("prVt", "data")));
  ExpectLeft(with(Text("Make", "maker")));
  ExpectLeft(with(Text("XML:com.adobe.xmp", "<x/>")));
  ExpectLeft(with(Text("Raw profile type exif", "no")));
  ExpectLeft(with(Text("DateTime", "now")));
  ExpectLeft(with(Text("Same", "1") + Text("same", "2")));
  ExpectLeft(with(Text("Long", std::string(60001, 'x'))));
  ExpectLeft(with(Scale(0, 1, true)));
  ExpectLeft(with(kTime + kTime));
  ExpectLeft(with(PngChunk("tIME", std::string(7, '\0'))));
  ExpectLeft(with("", PngChunk("gAMA", Big32Of(0))));
  ExpectLeft(with("", PngChunk("iCCP", "name" + std::string(2, '\0') + PackedBytes("no profile"))));
  std::string damaged = Text("Title", "damaged");
  damaged.back() ^= 1;
  ExpectLeft(with(damaged));
  ExpectLeft(with("").substr(0, 60));
  ExpectLeft("\x89PNG\r\n\x1a\n");
  ExpectLeft("no picture");
  ExpectLeft(with(""), "in.tif");
  ExpectLeft(PngBytes(colour, 5, 3) + "more", "in.jpg");
}

TEST_F(LightPng, TellOfDamagedPixelsAsTheFullLibraryDoes) {
  const std::string whole = PngBytes({6, 16}, 400, 900);
  for (const std::size_t at : {std::size_t{100}, whole.size() / 2, whole.size() - 20}) {
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
    const auto path = Write(damaged);
    EXPECT_EQ(FailureOf(Automatic, path), FailureOf(Full, path));
    EXPECT_NE(FailureOf(Full, path), "") << at;
  }
}

TEST_F(LightPng, RefuseOtherOutputs) {
  const auto read = Read(Light, Write(PngBytes({2, 8}, 5, 3)), 8);
  try {
    Written(Light, *read, "out.tga");
    FAIL();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.what(),
              (folder_.path() / "out.tga").string() +
                  ": cannot write: the light picture library writes plain PNG, JPEG, TIFF, EXR and DPX files alone");
  }
}

}  // namespace
}  // namespace vblur::host
