// What a picture file holds, from its header.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/files/Sample.h"

namespace vblur::host {

// A rectangle of whole pixels in a file's coordinates: x to the right, y down.
struct FileWindow {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  // The first column and the first row beyond it.
  std::int64_t Right() const { return std::int64_t{x} + width; }
  std::int64_t Bottom() const { return std::int64_t{y} + height; }
  friend bool operator==(const FileWindow&, const FileWindow&) = default;
};

// The smallest window that holds both.
FileWindow Union(const FileWindow& a, const FileWindow& b);

enum class NumberKind { Unsigned, Signed, Float };

// How a file stores a sample. Formats that pack samples have fewer bits than their bytes: 10 of 2 bytes.
struct StoredType {
  NumberKind number = NumberKind::Unsigned;
  std::int32_t bytes = 1;
  std::int32_t bits = 8;

  friend bool operator==(const StoredType&, const StoredType&) = default;
};

// As people call it: "uint16", "half", "double".
std::string NameOf(const StoredType& stored);

struct FileChannel {
  std::string name;  // such as "R" or "diffuse.R"
  StoredType type;

  friend bool operator==(const FileChannel&, const FileChannel&) = default;
};

// Channels of a file that stand side by side, and where among them those that the effect takes are.
struct TakenChannels {
  int first = 0;
  int count = 0;
  ChannelChoice choice;
};

// What the numbers of a picture's colours stand for: values of the sRGB transfer function or one like it, amounts of
// light, or something else, such as densities of film.
enum class Transfer : std::uint8_t { Srgb, Linear, Other };

struct ExifFieldName {
  std::string name;  // as in "UserComment" or "GPSAltitude"; "0x9c9b" for one that is not known
  bool isGps = false;

  friend bool operator==(const ExifFieldName&, const ExifFieldName&) = default;
};

struct PictureInfo {
  std::string format;  // the file format's name, such as "png" or "openexr"
  // Of the picture that the effect gets: both windows together.
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t channels = 0;
  SampleKind samples = SampleKind::Unsigned8;
  ChannelChoice choice;
  // Where the file has pixels, and the frame that they belong to. Formats without windows have both alike.
  FileWindow data;
  FileWindow display;
  // Every channel, in the order of the file.
  std::vector<FileChannel> all;
  // Those that the effect does not take: places in `all`, rising.
  std::vector<int> passing;
  // Of the channels that the effect takes.
  StoredType stored;
  // Pictures in the file: pages, frames, parts. Only the first is read.
  std::int32_t pictures = 1;
  // The first picture and its smaller copies (mip levels), which are not read.
  std::int32_t levels = 1;
  // Of the tiles that the file consists of; 0: it has none.
  std::int32_t tileWidth = 0;
  std::int32_t tileHeight = 0;
  // Its colours are stored as cyan, magenta, yellow and black, and read as red, green and blue.
  bool hasInks = false;
  // Kinds of metadata that the file has and its reader does not give, as in "Exif data".
  std::vector<std::string> unread;
  // Of a PNG file: its chunks about colours that are no profile, whole, one after the other.
  std::string colourChunks;
  // Of a PNG file: its chunks of texts behind the pixels, which its reader does not give, whole, one after the other.
  std::string lateTexts;
  // Of a DPX file: its header (DpxHeader::Bytes).
  std::string dpxHeader;
  // Of a PNG or JPEG file: its Exif data as it is stored; empty: none.
  std::string exif;
  // There is more in it than the reader gives: what a camera notes for itself.
  bool hasMakerNote = false;
  // Other fields of it that the reader does not give.
  std::vector<ExifFieldName> unreadExif;
  // Names of texts of a TIFF file or of Exif data that are several strings, of which the reader gives the first.
  std::vector<std::string> furtherTexts;
  // By what the file declares; else floats are linear and whole numbers sRGB.
  Transfer transfer = Transfer::Srgb;

  // One channel spread over red, green and blue.
  bool IsGrey() const { return choice.red == choice.green && choice.red == choice.blue; }
  bool HasAlpha() const { return choice.alpha >= 0; }
  // Whether an output of a format holds the Exif data as it is stored.
  bool PassesExifTo(std::string_view outputFormat) const {
    return !exif.empty() && (outputFormat == "png" || (outputFormat == "jpeg" && format == "jpeg"));
  }
  // What the effect gets. Where no data covers it, it is transparent black.
  FileWindow Picture() const { return Union(data, display); }
  TakenChannels Taken() const;
  // The first of the colours that the file has.
  const FileChannel& FirstColour() const;
  bool Passes(int channel) const;
  // Of one pixel of the passing channels, as they are stored.
  std::size_t PassingBytes() const;

  // The default depth for rendering such a file.
  std::int32_t NaturalDepth() const {
    if (samples == SampleKind::Unsigned8) return 8;
    return stored.number == NumberKind::Float ? 32 : 16;
  }
};

enum class PictureUse { Colour, Mask };

// What is taken of a file, and how large its picture may be.
struct ReadChoice {
  static constexpr std::int64_t kMostPixels = 1'000'000'000;

  PictureUse use = PictureUse::Colour;
  // The layer of colours; empty: the channels that are in none.
  std::string layer;
  // The channel of a mask; empty: the first, or alpha where that is the only one that varies.
  std::string channel;
  // Whether the channels that the effect does not take are read too.
  bool keepsPassing = false;
  // Whether the samples of the channels that it takes are kept beside the picture that is made of them, where that
  // does not give them back.
  bool keepsSamples = false;
  // Whether the picture's pixels become others after the reading.
  bool changesPixels = false;
  std::int64_t mostPixels = kMostPixels;

  bool KeepsSamplesOf(const PictureInfo& info, std::int32_t depth) const {
    return keepsSamples && (changesPixels || depth != 8 || info.samples != SampleKind::Unsigned8);
  }
};

// Throws Failure (cannot read): no such file, not a file, or empty. "-" is the standard input, here and wherever a
// picture is read.
void RequirePictureFile(const std::filesystem::path& path);

// Throws Failure (cannot read): no such file, not a file, empty, not a picture, without the layer or the channel that
// is asked for, a picture without pixels, with more than 2^31 components or more pixels than it may have, its windows
// taken together.
PictureInfo ReadPictureInfo(const std::filesystem::path& path, const ReadChoice& choice = {});

}  // namespace vblur::host
