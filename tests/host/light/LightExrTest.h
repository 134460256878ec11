// EXR files of given channels and attributes, for both picture libraries.
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <ImfChannelList.h>
#include <ImfChromaticitiesAttribute.h>
#include <ImfFloatAttribute.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIntAttribute.h>
#include <ImfMatrixAttribute.h>
#include <ImfOutputFile.h>
#include <ImfRationalAttribute.h>
#include <ImfStringAttribute.h>
#include <ImfTileDescription.h>
#include <ImfTiledOutputFile.h>
#include <ImfTimeCodeAttribute.h>
#include <ImfVecAttribute.h>
#include <gtest/gtest.h>

#include "tests/host/light/LightPicturesTest.h"

namespace vblur::host {

struct ExrChannelKind {
  std::string name;
  Imf::PixelType type = Imf::HALF;
  int sampling = 1;
};

using Kinds = std::vector<ExrChannelKind>;

inline Kinds Of(const std::string& letters, Imf::PixelType type) {
  Kinds kinds;
  for (const char letter : letters)
    kinds.push_back({std::string(1, letter), type, 1});
  return kinds;
}

using HeaderChange = std::function<void(Imf::Header&)>;

inline const HeaderChange kAsItIs = [](Imf::Header&) {};

// Words of 32 bits a pixel and channel, with which lossy compression has something to do.
inline std::vector<std::uint32_t> SamplesOf(const ExrChannelKind& kind, std::size_t pixels, unsigned seed) {
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

inline Windows Sized(int width, int height) {
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
    if (header.hasTileDescription()) {
      Imf::TiledOutputFile file(path.c_str(), header, 0);
      file.setFrameBuffer(frame);
      file.writeTiles(0, file.numXTiles() - 1, 0, file.numYTiles() - 1);
      return path;
    }
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

inline void PutPlainAttributes(Imf::Header& header) {
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

}  // namespace vblur::host
