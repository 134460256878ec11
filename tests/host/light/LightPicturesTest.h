// Pictures by the light and by the full picture library: the two give and write the same.
#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/base/Failure.h"
#include "host/files/OutputFile.h"
#include "host/files/OutputFormat.h"
#include "host/files/PictureFile.h"
#include "host/files/PictureLibrary.h"
#include "host/files/PictureReport.h"
#include "host/formats/DpxHeader.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {

using enum PictureLibraries;

// Whole, as text.
inline std::string Shown(const PictureInfo& info) {
  std::ostringstream text;
  const auto window = [&](const FileWindow& each) {
    text << each.x << ' ' << each.y << ' ' << each.width << ' ' << each.height << '\n';
  };
  text << info.format << ' ' << info.width << ' ' << info.height << ' ' << info.channels << ' '
       << static_cast<int>(info.samples) << '\n';
  text << info.choice.red << info.choice.green << info.choice.blue << info.choice.alpha << '\n';
  window(info.data);
  window(info.display);
  for (const FileChannel& channel : info.all)
    text << channel.name << ':' << NameOf(channel.type) << ' ';
  for (const int channel : info.passing)
    text << "passing " << channel << ' ';
  text << NameOf(info.stored) << ' ' << info.pictures << ' ' << info.levels << ' ' << info.tileWidth << ' '
       << info.tileHeight << ' ' << info.hasInks << '\n';
  for (const std::string& kind : info.unread)
    text << "unread " << kind << '\n';
  if (!info.dpxHeader.empty()) {
    const DpxHeader header(info.dpxHeader);
    for (const DpxField& field : DpxFields())
      text << field.name << ' ' << header.Field(field) << '\n';
  }
  text << info.colourChunks << '\n' << info.lateTexts << '\n' << info.exif << info.hasMakerNote;
  for (const ExifFieldName& field : info.unreadExif)
    text << "unread " << field.name << '\n';
  text << testing::PrintToString(info.furtherTexts) << '\n';
  text << static_cast<int>(info.transfer);
  return text.str();
}

inline std::string Shown(const PictureReport& report) {
  std::ostringstream text;
  text << Shown(report.info) << '\n' << report.compression << report.associatedAlpha << '\n';
  text << report.metadata.bits << ' ' << report.beyondText.bits << ' ' << report.profileFits.bits << '\n';
  for (const auto& [format, parts] : report.lacking)
    text << format << " lacks " << parts.exifFields.size() << ' ' << parts.longTexts.size() << ' '
         << testing::PrintToString(parts.keptOthers) << parts.compressions.size() << '\n';
  text << testing::PrintToString(report.others) << '\n';
  for (const auto& [name, value] : report.attributes)
    text << name << '=' << value << '\n';
  for (const OutputFormat& format : OutputFormats()) {
    for (const std::int32_t depth : {8, 16, 32})
      text << format.name << ": " << ListOf(LossesOf(report, format, {}, depth)) << '\n';
  }
  return text.str();
}

inline std::string BytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct ReadFile {
  ReadPicture facts;
  HostImage image;

  std::string Pixels() const { return {reinterpret_cast<const char*>(image.Row(0)), image.ByteCount()}; }
};

class LightPicturesTest : public testing::Test {
 protected:
  ~LightPicturesTest() override { UsePictures(Automatic); }

  std::filesystem::path Write(const std::string& bytes, const std::string& name = "in.png") const {
    folder_.Write(name, bytes);
    return folder_.path() / name;
  }

  static std::unique_ptr<ReadFile> Read(PictureLibraries library, const std::filesystem::path& path, std::int32_t depth,
                                        PictureUse use = PictureUse::Colour) {
    UsePictures(library);
    auto read = std::make_unique<ReadFile>();
    ReadChoice choice;
    choice.keepsPassing = true;
    choice.keepsSamples = true;
    read->facts = use == PictureUse::Mask ? PictureReader().ReadMask(path, depth, read->image, choice)
                                          : PictureReader().ReadColour(path, depth, read->image, choice);
    return read;
  }

  // The notes, and then the file.
  std::string Written(PictureLibraries library, const ReadFile& read, const std::string& name) const {
    UsePictures(library);
    const std::filesystem::path path = folder_.path() / name;
    WrittenPicture written =
        PictureWriter().WriteBeside(path, read.image, read.facts.metadata.get(), {.overwrite = true, .sync = false});
    std::string text;
    for (const std::string& note : written.Notes())
      text += note + '\n';
    written.Commit();
    return text + BytesOf(path);
  }

  static std::string FailureOf(PictureLibraries library, const std::filesystem::path& path) {
    try {
      Read(library, path, 8);
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "";
  }

  void ExpectSameReading(const std::filesystem::path& path) const {
    for (const std::int32_t depth : {8, 16, 32}) {
      for (const PictureUse use : {PictureUse::Colour, PictureUse::Mask}) {
        const auto light = Read(Light, path, depth, use);
        const auto full = Read(Full, path, depth, use);
        EXPECT_EQ(Shown(light->facts.info), Shown(full->facts.info));
        EXPECT_EQ(light->Pixels(), full->Pixels()) << "at " << depth;
        EXPECT_EQ(light->facts.losses, full->facts.losses);
        EXPECT_EQ(light->facts.associatedAlpha, full->facts.associatedAlpha);
        ASSERT_EQ(light->facts.samples == nullptr, full->facts.samples == nullptr);
        if (!full->facts.samples) continue;
        EXPECT_EQ(*light->facts.samples, *full->facts.samples);
      }
    }
    UsePictures(Light);
    const std::string light = Shown(ReportPicture(path));
    UsePictures(Full);
    EXPECT_EQ(light, Shown(ReportPicture(path)));
  }

  // The notes, and all that the full library reads of the file.
  std::string Seen(PictureLibraries library, const ReadFile& read, const std::string& name) const {
    std::string text = Written(library, read, name);
    const std::filesystem::path path = folder_.path() / name;
    text.resize(text.size() - std::filesystem::file_size(path));
    UsePictures(Full);
    text += Shown(ReportPicture(path));
    return text + Read(Full, path, 32)->Pixels();
  }

  // By the light library into files of this name, whose bytes may be others than the full one's; and what is read by
  // either and written into files of other formats.
  void ExpectSameWriting(const std::filesystem::path& path, const std::string& name) const {
    for (const std::int32_t depth : {8, 16, 32}) {
      const auto light = Read(Light, path, depth);
      const auto full = Read(Full, path, depth);
      EXPECT_EQ(Seen(Light, *light, name), Seen(Full, *full, name)) << "at " << depth;
      for (const char* other : {"out.png", "out.tif", "out.jpg", "out.exr", "out.dpx", "out.tga"})
        EXPECT_EQ(Seen(Automatic, *light, other), Seen(Full, *full, other)) << other << " at " << depth;
      EXPECT_EQ(Written(Full, *light, "out.tga"), Written(Full, *full, "out.tga")) << "at " << depth;
      // No longer what the source was: written as colours.
      for (HostImage* image : {&light->image, &full->image})
        image->Row(0)[0] ^= std::byte{0x15};
      EXPECT_EQ(Seen(Light, *light, name), Seen(Full, *full, name)) << "changed, at " << depth;
    }
  }

  void ExpectSame(const std::filesystem::path& path, const std::string& name) const {
    ASSERT_EQ(FailureOf(Light, path), "");
    ExpectSameReading(path);
    ExpectSameWriting(path, name);
  }

  // The light library leaves a file alone, and nothing of it is other with it than without.
  void ExpectLeft(const std::filesystem::path& path) const {
    const std::string refusal = FailureOf(Light, path);
    EXPECT_TRUE(refusal.starts_with(path.string() + ": cannot read: the light picture library reads plain "))
        << refusal;
    EXPECT_EQ(FailureOf(Automatic, path), FailureOf(Full, path));
    if (!FailureOf(Full, path).empty()) return;
    EXPECT_EQ(Read(Automatic, path, 8)->Pixels(), Read(Full, path, 8)->Pixels());
    for (const char* name : {"out.png", "out.jpg", "out.tif", "out.exr", "out.dpx"})
      EXPECT_EQ(Seen(Automatic, *Read(Automatic, path, 8), name), Seen(Full, *Read(Full, path, 8), name)) << name;
  }

  ScratchFolder folder_;
};

}  // namespace vblur::host
