#include "host/pictures/PictureFileOpen.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <exception>
#include <fstream>
#include <new>
#include <string_view>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
#include "host/files/PictureChannels.h"
#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/formats/DpxHeader.h"
#include "host/formats/ExifBlock.h"
#include "host/formats/FileBytes.h"
#include "host/formats/PictureFileHeader.h"
#include "host/formats/TiffTagKinds.h"
#include "host/pictures/ExifFields.h"
#include "host/pictures/PictureFileLength.h"
#include "host/pictures/WhiteLeast.h"

namespace vblur::host {

namespace {

std::unique_ptr<OIIO::ImageInput> TryOpen(const std::string& format, const std::filesystem::path& path,
                                          std::string& message) {
  auto file = OIIO::ImageInput::create(format);
  if (!file) {
    message = OIIO::geterror();
    return nullptr;
  }
  // Their readers write beyond the picture's memory, or end the program, where a damaged file says so.
  constexpr std::pair<std::string_view, const char*> kUnsafe[] = {{"iff", "IFF"}, {"softimage", "Softimage"}};
  for (const auto& [unsafe, shown] : kUnsafe) {
    if (std::string_view(file->format_name()) != unsafe) continue;
    message = std::string(shown) + " files are not read: convert them first";
    return nullptr;
  }
  OIIO::ImageSpec config;
  config.attribute("oiio:UnassociatedAlpha", 1);
  OIIO::ImageSpec spec;
  if (file->open(path.string(), spec, config)) return file;
  message = file->geterror();
  return nullptr;
}

// Formats tried when the extension's format fails. Each recognises its files by their first bytes.
constexpr std::array kKnownByContent = {"png", "jpeg", "tiff",     "openexr", "dpx", "webp", "bmp", "sgi",
                                        "hdr", "pnm",  "jpeg2000", "cineon",  "gif", "psd",  "heif"};

std::unique_ptr<OIIO::ImageInput> OpenAnyFormat(const std::filesystem::path& path) {
  const std::filesystem::path toOpen = FileToOpen(path);
  std::string named = path.extension().string();
  if (!named.empty()) named.erase(0, 1);
  std::string message;
  if (!named.empty()) {
    if (auto file = TryOpen(named, toOpen, message)) return file;
  }
  std::string other;
  for (const char* format : kKnownByContent) {
    if (auto file = TryOpen(format, toOpen, other)) return file;
  }
  // The system's own error, such as too many open files, which readers do not tell from damage.
  RequirePictureFile(path);
  RefuseToRead(path, "not a picture, or a damaged one (" + LibraryMessage(message, "unknown format") + ")");
}

StoredType StoredTypeOf(const OIIO::ImageSpec& spec, int channel) {
  const OIIO::TypeDesc type = spec.channelformat(channel);
  StoredType stored;
  stored.number = type.is_floating_point() ? NumberKind::Float
                  : type.is_signed()       ? NumberKind::Signed
                                           : NumberKind::Unsigned;
  stored.bytes = static_cast<std::int32_t>(type.basesize());
  stored.bits = 8 * stored.bytes;
  // Packed samples, which the reader widens.
  const int packed = spec.get_int_attribute("oiio:BitsPerSample");
  if (stored.number != NumberKind::Float && packed > 0 && packed < stored.bits) stored.bits = packed;
  return stored;
}

FileWindow DisplayWindow(const OIIO::ImageSpec& spec) {
  if (spec.full_width <= 0 || spec.full_height <= 0) return {spec.x, spec.y, spec.width, spec.height};
  return {spec.full_x, spec.full_y, spec.full_width, spec.full_height};
}

constexpr int kMostCounted = 1000;

// Pages, frames, parts.
std::int32_t CountPictures(OIIO::ImageInput& file) {
  int count = std::max(1, file.spec().get_int_attribute("oiio:subimages"));
  if (count > 1) return count;
  while (count < kMostCounted && file.seek_subimage(count, 0))
    ++count;
  // Clears the error of the picture after the last.
  file.geterror();
  return count;
}

std::int32_t CountLevels(OIIO::ImageInput& file) {
  int count = 1;
  while (count < kMostCounted && file.seek_subimage(0, count))
    ++count;
  file.geterror();
  return count;
}

bool HasInks(const OIIO::ImageSpec& spec) {
  const std::string_view jpeg = spec.get_string_attribute("jpeg:ColorSpace");
  return jpeg == "CMYK" || jpeg == "YCbCrK" || spec.get_string_attribute("tiff:ColorSpace") == "CMYK";
}

// Some readers name fewer channels than there are.
OIIO::ImageSpec WithAllNames(OIIO::ImageSpec spec) {
  if (spec.channelnames.size() != static_cast<std::size_t>(spec.nchannels)) spec.default_channel_names();
  return spec;
}

// Where the library gives none in place of one that is none, as for TIFF files, the file itself says it.
void AddWrongOrientation(const std::filesystem::path& file, const OIIO::ImageSpec& spec, const ExifFacts& exif,
                         PictureInfo& info) {
  constexpr std::uint16_t kOrientation = 274;
  std::int64_t orientation = spec.get_int_attribute("Orientation", 1);
  if (exif.wrongOrientation) orientation = static_cast<std::int64_t>(*exif.wrongOrientation);
  if (info.format == "tiff") {
    std::ifstream stream(file, std::ios::binary);
    orientation = TiffTags([&](std::int64_t at, std::size_t count) { return ReadAt(stream, at, count); }, 0)
                      .Number(kOrientation, 1);
  }
  if (!IsOrientation(orientation)) info.unread.push_back(NameOfWrongOrientation(orientation));
}

void AddTiffFacts(const std::filesystem::path& file, PictureInfo& info) {
  std::ifstream stream(file, std::ios::binary);
  info.unread = OtherTiffTags(file, kReadTiffTags);
  info.furtherTexts =
      NamesOfFurtherTexts([&](std::int64_t at, std::size_t count) { return ReadAt(stream, at, count); });
}

void AddDpxHeader(const std::filesystem::path& path, PictureInfo& info) {
  const auto header = DpxHeader::Of(FileToOpen(path));
  if (!header) return;
  info.dpxHeader = header->Bytes();
  // The reader takes the header for them.
  if (header->Begin() != header->Whole(dpx::kElementBegin))
    RefuseToRead(path, "its element does not say where its pixels begin");
  // The reader writes beyond the picture's memory.
  constexpr std::int64_t kInWord = 3;
  const bool isFilled = header->Half(dpx::kPacking) != 0 && header->Byte(dpx::kBits) == 10;
  if (isFilled && info.channels == 1 && info.data.width % kInWord != 0)
    RefuseToRead(path, "rows of one channel of 10 bits, three to a word, were expected to fill their last word");
}

Transfer TransferOf(const OIIO::ImageSpec& spec, const StoredType& stored) {
  std::string space = spec.get_string_attribute("oiio:ColorSpace");
  std::ranges::transform(space, space.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  // Densities of film are logarithms, too.
  const bool isDensity = spec.get_string_attribute("dpx:Transfer") == "Printing density";
  if (isDensity || space.find("log") != std::string::npos) return Transfer::Other;
  const bool isLinear = space.starts_with("lin") || space == "scene_linear" || space.starts_with("aces");
  return isLinear || stored.number == NumberKind::Float ? Transfer::Linear : Transfer::Srgb;
}

PictureInfo Describe(const std::filesystem::path& path, const std::string& format, const OIIO::ImageSpec& spec,
                     const ReadChoice& choice) {
  PictureInfo info;
  info.format = format;
  info.choice = ChooseChannels(path, spec.channelnames, spec.alpha_channel, choice);
  info.data = {spec.x, spec.y, spec.width, spec.height};
  info.display = DisplayWindow(spec);
  info.width = info.Picture().width;
  info.height = info.Picture().height;
  for (int channel = 0; channel < spec.nchannels; ++channel) {
    info.all.push_back({spec.channel_name(channel), StoredTypeOf(spec, channel)});
  }
  DescribeChannels(info);
  info.transfer = TransferOf(spec, info.stored);
  info.tileWidth = spec.tile_width;
  info.tileHeight = spec.tile_height;
  info.hasInks = HasInks(spec);
  return info;
}

// The library takes the bytes of such samples in the other order.
void RequireKnownBytes(const std::filesystem::path& path, const OIIO::ImageInput& file) {
  constexpr int kThreeBytes = 24;
  const OIIO::ImageSpec& spec = file.spec();
  if (std::string_view(file.format_name()) != "tiff" || spec.format.is_floating_point()) return;
  if (spec.get_int_attribute("oiio:BitsPerSample") == kThreeBytes)
    RefuseToRead(path, "samples of 24 bits are not read, expected whole numbers of 8, 16 or 32 bits");
}

// Before anything is decoded.
void RequireSize(const std::filesystem::path& path, const OIIO::ImageSpec& spec, std::int64_t mostPixels) {
  if (spec.width <= 0 || spec.height <= 0 || spec.nchannels <= 0) {
    RefuseToRead(path, "it has no pixels (" + PixelsOf(spec.width, spec.height) + ")");
  }
  if (spec.depth > 1) RefuseToRead(path, "it is a volume, a flat picture was expected");
  if (spec.deep) RefuseToRead(path, "it holds deep samples, a flat picture was expected");
  const FileWindow data{spec.x, spec.y, spec.width, spec.height};
  const FileWindow display = DisplayWindow(spec);
  // The sides of both windows together, which may not fit one.
  const std::int64_t width = std::max(data.Right(), display.Right()) - std::min(data.x, display.x);
  const std::int64_t height = std::max(data.Bottom(), display.Bottom()) - std::min(data.y, display.y);
  RequirePixels(path, width, height, spec.nchannels,
                data == display ? "" : " of the data and the display window together", mostPixels);
}

}  // namespace

OIIO::TypeDesc TypeOf(SampleKind kind) {
  switch (kind) {
    case SampleKind::Unsigned8: return OIIO::TypeDesc::UINT8;
    case SampleKind::Unsigned16: return OIIO::TypeDesc::UINT16;
    case SampleKind::Float: break;
  }
  return OIIO::TypeDesc::FLOAT;
}

std::string LibraryMessage(const std::string& message, const std::string& otherwise) {
  const std::string line = message.substr(0, message.find('\n'));
  return line.empty() ? otherwise : line;
}

void RefuseDamaged(const std::filesystem::path& path, const std::exception& error) {
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) RefuseToRead(path, "not enough memory for its pixels");
  RefuseToRead(path, std::string("the picture is damaged (") + error.what() + ")");
}

LibraryMetadata OpenPicture::Metadata() const {
  OIIO::ImageSpec spec = file->spec();
  // The reader takes pixels for the fields that are not there.
  if (!info.dpxHeader.empty()) {
    const DpxHeader header(info.dpxHeader);
    for (const DpxField& field : DpxFields()) {
      if (!header.Has(field)) spec.erase_attribute(std::string(field.name));
      // It takes the bytes of these in the order of little-endian files.
      if (field.name == "dpx:XScannedSize" || field.name == "dpx:YScannedSize") {
        const float size = header.Float(field.place);
        if (std::isnan(size)) spec.erase_attribute(std::string(field.name));
        if (!std::isnan(size)) spec.attribute(std::string(field.name), size);
      }
    }
  }
  return CollectMetadata(spec, info);
}

OpenPicture OpenPictureFile(const std::filesystem::path& path, const ReadChoice& choice) {
  const PictureFileChatter chatter;
  if (const auto size = SizeFromHeader(FileToOpen(path)); size && size->width > 0 && size->height > 0) {
    RequirePixels(path, size->width, size->height, 4, "", choice.mostPixels);
  }
  RequireLength(path, FileToOpen(path));
  try {
    auto file = OpenAnyFormat(path);
    RequireSize(path, file->spec(), choice.mostPixels);
    RequireBlack(path, *file);
    RequireKnownBytes(path, *file);
    PictureInfo info = Describe(path, file->format_name(), WithAllNames(file->spec()), choice);
    ChunkFacts chunks = FactsOfChunks(FileToOpen(path));
    info.pictures = std::max(CountPictures(*file), chunks.frames);
    info.unread = std::move(chunks.unread);
    info.furtherTexts = NamesOfFurtherTexts(TiffTags::SourceIn(chunks.exif));
    if (info.format == "tiff") AddTiffFacts(FileToOpen(path), info);
    if (info.format == "dpx") AddDpxHeader(path, info);
    if (chunks.isPlacedInMicrometres) info.unread.emplace_back("place in micrometres");
    // The reader passes over one that it cannot unpack or that is none.
    if (chunks.hasProfile && file->spec().find_attribute("ICCProfile") == nullptr)
      info.unread.emplace_back("damaged colour profile");
    info.colourChunks = std::move(chunks.colourChunks);
    info.lateTexts = std::move(chunks.lateTexts);
    const ExifFacts exif = FactsOfExif(chunks.exif);
    if (!chunks.exif.empty() && exif.isDamaged) info.unread.emplace_back("damaged Exif data");
    AddWrongOrientation(FileToOpen(path), file->spec(), exif, info);
    info.unreadExif = ExifFieldsUnread(chunks.exif);
    if (exif.mayPass) info.exif = std::move(chunks.exif);
    info.hasMakerNote = exif.hasMakerNote;
    info.levels = CountLevels(*file);
    if (!file->seek_subimage(0, 0)) RefuseToRead(path, "its first picture cannot be found again");
    return {std::move(file), std::move(info)};
  } catch (const Failure&) {
    throw;
  } catch (const std::exception& error) {
    RefuseDamaged(path, error);
  }
}

}  // namespace vblur::host
