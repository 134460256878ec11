// How outputs are stored, and what is told of files.
#include <regex>
#include <set>
#include <sstream>

#include <nlohmann/json.hpp>

#include "host/files/OutputFormat.h"
#include "tests/apps/PlatformTexts.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class Storage : public ProgramTest {
 protected:
  // A white square on transparent red.
  void MakeLogo(const std::string& name) const {
    host::HostImage image;
    image.Reset(8, 4, 40, 40);
    for (std::int32_t i = 0; i < 1600; ++i) {
      const bool isInside = i % 40 >= 15 && i % 40 < 25 && i / 40 >= 15 && i / 40 < 25;
      for (std::int32_t c = 0; c < 4; ++c)
        host::SetComponent(image, static_cast<std::size_t>(4 * i + c),
                           isInside || c == 0 ? (c == 3 && !isInside ? 0 : 255) : 0);
    }
    host::PictureWriter().Write(Path(name), image, nullptr, true);
  }

  // The least green where alpha is at least this.
  std::int32_t LeastGreen(const std::string& name, std::int32_t alpha) const {
    const auto pixels = Pixels(name);
    std::int32_t least = 255;
    for (std::size_t at = 0; at < pixels.size(); at += 4) {
      if (pixels[at + 3] >= alpha) least = std::min(least, pixels[at + 1]);
    }
    return least;
  }
};

TEST_F(Storage, IsThatOfTheInputUnlessAskedOtherwise) {
  MakePicture("in.png");
  EXPECT_EQ(Run({"render", "in.png", "a.png", "--blur", "3", "--type", "uint16"}).exit, 0);
  EXPECT_EQ(host::ReadPictureInfo(Path("a.png")).stored.bits, 16);
}

// Another system's picture library has others.
TEST_F(Storage, HelpNamesWhatThePictureLibraryWrites) {
  const std::string help = std::regex_replace(Run({"render", "--help"}).out, std::regex("\\s+"), " ");
  std::set<std::string> types;
  std::string formats;
  std::string quality;
  for (const host::OutputFormat& format : host::OutputFormats()) {
    const std::string extension(host::FirstExtension(format));
    formats += (formats.empty() ? "" : ", ") + extension;
    if (format.hasQuality) quality += (quality.empty() ? "" : " or ") + extension;
    for (std::size_t type = 0; type < host::kSampleTypeNames.size(); ++type) {
      if (format.types.Has(static_cast<host::SampleType>(type))) types.emplace(host::kSampleTypeNames[type]);
    }
  }
  EXPECT_NE(help.find("by an extension: " + formats + " ["), std::string::npos) << help;
  EXPECT_NE(help.find("Quality of a file of " + quality + " "), std::string::npos) << help;
  std::smatch form;
  ASSERT_TRUE(std::regex_search(help, form, std::regex("--type ([a-z0-9|]+) ")));
  std::istringstream words(form.str(1));
  std::set<std::string> told;
  for (std::string each; std::getline(words, each, '|');)
    told.insert(each);
  EXPECT_EQ(told, types);
}

TEST_F(Storage, WhatAFormatDoesNotHaveIsRefusedInOneLine) {
  MakePicture("in.png");
  ExpectRefusal({"render", "in.png", "out.png", "--type", "half"}, 2,
                "output: out.png: this format has no type half, expected one of uint8 uint16");
  ExpectRefusal({"render", "in.png", "out.jpg", "--quality", "0"}, 2,
                "output: out.jpg: expected a quality from 1 to 100, found 0");
  ExpectRefusal({"render", "in.png", "out.bmp", "--compression", "zip"}, 2,
                "output: out.bmp: this format has no compression \"zip\", expected none to be given");
  ExpectRefusal({"render", "in.png", "out.png", "--premultiply", "twice"}, 2,
                "--premultiply: expected around, found \"twice\"");
  ExpectRefusal({"render", "in.png", "out.png", "--overwrite=all"}, 2,
                "--overwrite: expected no value or lossy, found all");
}

TEST_F(Storage, StraightColoursDoNotBleedWhenMultipliedAround) {
  MakeLogo("logo.png");
  EXPECT_EQ(Run({"render", "logo.png", "straight.png", "--blur", "8"}).exit, 0);
  EXPECT_LT(LeastGreen("straight.png", 60), 200);
  EXPECT_EQ(Run({"render", "logo.png", "around.png", "--blur", "8", "--premultiply", "around"}).exit, 0);
  EXPECT_GE(LeastGreen("around.png", 60), 250);
  folder_.Write("job.json", R"({"input": {"file": "logo.png"}, "output": {"file": "job.png"},
                                "premultiply": "around", "properties": {"Blur": 8}})");
  EXPECT_EQ(Run({"job", "job.json"}).exit, 0);
  EXPECT_EQ(host::Bytes(Path("job.png")), host::Bytes(Path("around.png")));
}

TEST_F(Storage, AnInputIsNotReplacedByLess) {
  MakePicture("in.png", 20, 10, 16);
  ExpectRefusal({"render", "in.png", "in.png", "--overwrite", "--type", "uint8"}, 4,
                "in.png: cannot write: it is read by this run and would lose last bits of uint16 samples (uint8 are "
                "written); give "
                "--overwrite=lossy to replace it all the same");
  EXPECT_EQ(Run({"render", "in.png", "in.png", "--overwrite=lossy", "--type", "uint8"}).exit, 0);
  EXPECT_EQ(host::ReadPictureInfo(Path("in.png")).stored.bits, 8);
}

TEST_F(Storage, InfoTellsWhatFilesHoldAndOutputsKeep) {
  MakePicture("in.png", 20, 10, 16);
  const auto text = Run({"info", "in.png", "--to", "jpg"});
  EXPECT_EQ(text.exit, 0);
  // Where the system's codec has one quality alone, that is told, too.
  const std::string told = std::regex_replace(text.out, std::regex(", quality \\([^)]*\\)"), "");
  EXPECT_EQ(told,
            "in.png: png, 20 x 10 pixels\n"
            "  channels: R uint16, G uint16, B uint16, A uint16\n"
            "  alpha: as stored\n"
            "  rendered at: 16 bits\n"
            "  as jpg: colour, uint8; lost: alpha, last bits of uint16 samples (uint8 are written)\n");
  const auto json = nlohmann::json::parse(Run({"info", "in.png", "--json"}).out);
  EXPECT_EQ(json["display"], nlohmann::json({0, 0, 20, 10}));
  EXPECT_EQ(json["channels"].size(), 4u);
  EXPECT_EQ(json["outputs"].size(), kFormats.size());
  EXPECT_EQ(json["outputs"]["png"]["lost"],
            nlohmann::json({"last bits of uint16 samples (steps of 1/16384 are rendered)"}));
  const auto chosen = nlohmann::json::parse(Run({"info", "in.png", "--json", "--to", "jpg,TIF"}).out);
  EXPECT_EQ(chosen["outputs"].size(), 2u);
  EXPECT_TRUE(chosen["outputs"].contains("jpg") && chosen["outputs"].contains("tif"));
  ExpectRefusal({"info", "in.png", "--to", "jpg,odd"}, 2, "--to: expected one of " + kExtensions + ", found \"odd\"");
  ExpectRefusal(
      {"info", "in.png", "--max-pixels", "199"}, 3,
      "in.png: cannot read: 20 x 10 pixels, 200 in all, expected at most 199; give --max-pixels to allow more");
  ExpectRefusal({"info", "in.png", "--layer", "diffuse"}, 3,
                "in.png: cannot read: it has no layer \"diffuse\", and no other");
  ExpectRefusal({"info", "none.png"}, 3, "none.png: cannot read: no such file");
  const auto some = Run({"info", "none.png", "in.png", "--to", "png"});
  EXPECT_EQ(some.exit, 3);
  EXPECT_NE(some.out.find("as png: colour and alpha, uint16; lost: last bits of uint16 samples (steps of 1/16384"),
            std::string::npos)
      << some.out;
}

}  // namespace
}  // namespace vblur::cli
