#include "host/wic/OpenedPicture.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/base/SystemError_windows.h"
#include "host/base/Utf8.h"
#include "host/files/PictureChannels.h"
#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/formats/ExifBlock.h"
#include "host/formats/PictureFileHeader.h"
#include "host/formats/PngHead.h"
#include "host/formats/TiffTagKinds.h"
#include "host/wic/CodecOptions.h"
#include "host/wic/CodecTraits.h"

namespace vblur::host {

namespace {

[[noreturn]] void RefuseDamaged(const std::filesystem::path& path, ::HRESULT error) {
  RefuseToRead(path, "not a picture, or a damaged one (" + ImagingErrorText(error) + ")");
}

void Require(const std::filesystem::path& path, ::HRESULT result) {
  if (FAILED(result)) RefuseDamaged(path, result);
}

// Compressions of TIFF files that all codecs read.
bool IsUsualCompression(const std::string& name) {
  return name == "none" || name == "lzw" || name == "zip" || name == "packbits";
}

// What codecs differ in; empty: nothing of that.
std::string UnusualKind(const FileHeader& header) {
  constexpr std::int32_t kMostChannels = 4;
  constexpr std::int32_t kPacked = 5;
  constexpr std::int32_t kFloats = 3;
  const bool isTiff = header.format == "tiff";
  if (header.isPlanar) return "samples that are stored plane by plane, expected them pixel by pixel";
  if (header.channels > kMostChannels)
    return std::to_string(header.channels) + " channels, expected at most " + std::to_string(kMostChannels);
  if (isTiff && !IsUsualCompression(header.compression))
    return (header.compression.empty() ? "this compression" : "the compression " + header.compression) +
           ", expected none, lzw, zip or packbits";
  if (isTiff && header.isGrey && header.channels == 2)
    return "grey of " + std::to_string(header.bits) + " bits with alpha, expected it without, or colours";
  if (isTiff && header.sampleFormat == kFloats && header.isBig) return "floats in the order of bytes MM, expected II";
  if (isTiff && (header.meaning == 4 || header.meaning > 5))
    return "its colours (photometric interpretation " + std::to_string(header.meaning) + "), expected grey or RGB";
  const bool isUsualBits = header.bits == 1 || header.bits == 4 || header.bits == 8 || header.bits >= 16;
  if (isTiff && !isUsualBits) return "samples of " + std::to_string(header.bits) + " bits, expected 8 or 16";
  if (header.format == "bmp" && header.bits == kPacked)
    return "these 16 bits a pixel, expected 5 bits a channel, or 6 of green";
  return {};
}

// The codec does not read such a file.
[[noreturn]] void RefuseKind(const std::filesystem::path& path, const FileHeader& header, ::HRESULT error) {
  if (const std::string kind = UnusualKind(header); !kind.empty())
    RefuseToRead(path, "the system's codec does not read " + kind);
  if (FAILED(error)) RefuseDamaged(path, error);
  RefuseToRead(path, "pixels of this kind are not read here, expected 8 or 16 bits a channel");
}

// Codecs turn such values at 8 bits; what they make of alpha then nobody knows.
void RequireKnownWhite(const std::filesystem::path& path, const FileHeader& header) {
  constexpr std::int32_t kWide = 16;
  const bool isKnown = header.bits <= 8 || (header.bits == kWide && TiffSamplesOf(header.isBig, true));
  if (isKnown && header.channels == 1) return;
  RefuseToRead(path, "grey of " + std::to_string(header.bits) + " bits " +
                         (header.channels == 1 ? "" : "with further channels ") +
                         "whose least value is white is not read here, expected the least to be black");
}

// The codec takes samples of another format for those that it knows.
void RequireKnownSamples(const std::filesystem::path& path, const FileHeader& header) {
  enum Format { kUnsigned = 1, kSigned = 2, kFloats = 3 };
  const std::string bits = " of " + std::to_string(header.bits) + " bits are not read here, expected ";
  if (header.sampleFormat == kSigned)
    RefuseToRead(path, "signed samples are not read here, expected unsigned ones or floats");
  if (header.sampleFormat == kFloats && header.bits != 32) RefuseToRead(path, "floats" + bits + "32");
  if (header.hasInks && header.bits != 8) RefuseToRead(path, "inks" + bits + "8");
  if (header.sampleFormat == kUnsigned && header.bits > 16) RefuseToRead(path, "whole numbers" + bits + "8 or 16");
  if (header.sampleFormat < kUnsigned || header.sampleFormat > kFloats)
    RefuseToRead(path, "samples of an unknown kind are not read here, expected unsigned ones or floats");
}

// Readers would make other pictures of it, each in its way.
void RequireIntactPng(const std::filesystem::path& path) {
  const std::string chunk = DamagedPngChunk(ExtendedPath(FileToOpen(path)));
  if (!chunk.empty()) RefuseToRead(path, "the picture is damaged (a wrong checksum in its chunk " + chunk + ")");
}

// Before anything is decoded.
void RequireSound(const std::filesystem::path& path, const FileHeader& header, std::int64_t mostPixels) {
  if (header.format.empty())
    RefuseToRead(path, "not a picture, or one of another format, expected one of png, tif, jpg, bmp");
  if (header.width <= 0 || header.height <= 0 || header.channels <= 0)
    RefuseToRead(path, "it has no pixels (" + PixelsOf(header.width, header.height) + ")");
  if (header.format == "tiff") RequireKnownSamples(path, header);
  if (header.hasUnknownChannel)
    RefuseToRead(path, "channel " + std::to_string(header.channels) +
                           " is not said to be alpha and is not read here, expected alpha or one channel less");
  if (header.isWhiteLeast) RequireKnownWhite(path, header);
  RequirePixels(path, header.width, header.height, header.channels, "", mostPixels);
  if (!header.isWhole)
    RefuseToRead(path, "the picture is damaged or cut short (its header says more than the file holds)");
  if (header.format == "png") RequireIntactPng(path);
}

std::vector<std::uint32_t> PaletteOf(IWICBitmapFrameDecode& frame, const std::filesystem::path& path) {
  ComPtr<IWICPalette> palette;
  Require(path, TheImagingFactory().CreatePalette(reinterpret_cast<IWICPalette**>(palette.Receive())));
  Require(path, frame.CopyPalette(palette.get()));
  UINT count = 0;
  Require(path, palette->GetColorCount(&count));
  std::vector<WICColor> colours(count);
  Require(path, palette->GetColors(count, colours.data(), &count));
  return {colours.begin(), colours.begin() + count};
}

bool IsGreyColour(std::uint32_t colour) {
  return (colour & 0xffu) == (colour >> 8 & 0xffu) && (colour & 0xffu) == (colour >> 16 & 0xffu);
}

// The channels that the host knows of such a file.
std::vector<std::string> ChannelsOf(const OpenedPicture& opened) {
  const FileHeader& header = opened.metadata.header;
  const PixelForm& form = opened.form;
  bool isGrey = form.model == ColourModel::Grey || (form.model == ColourModel::Rgb && header.isGrey);
  bool hasAlpha = form.HasAlpha();
  if (form.model == ColourModel::Palette) {
    hasAlpha = header.hasAlpha;
    const bool isGreyBmp =
        header.format == "bmp" && header.bits == 8 && std::ranges::all_of(opened.palette, IsGreyColour);
    // A grey picture with a transparent colour.
    isGrey = isGreyBmp || (header.format == "png" && header.isGrey);
  }
  // Its codec says that the fourth byte means nothing, and other readers take it.
  if (header.format == "bmp" && header.channels == 4 && form.stored == 4) hasAlpha = true;
  if (form.model == ColourModel::Inks) hasAlpha = false;
  std::vector<std::string> names;
  if (isGrey) {
    names = {"Y"};
  } else {
    names = {"R", "G", "B"};
  }
  if (hasAlpha) names.emplace_back("A");
  return names;
}

StoredType TypeOf(const PixelForm& form, const FileHeader& header) {
  constexpr std::int32_t kOfPacked = 5;
  if (form.IsPacked()) return {NumberKind::Unsigned, 1, kOfPacked};
  const bool isPacked = header.format == "tiff" && form.model == ColourModel::Grey && form.bits < 8;
  if (isPacked) return {NumberKind::Unsigned, 1, form.bits};
  if (form.isFloat) return {NumberKind::Float, 4, 32};
  return form.bits == 16 ? StoredType{NumberKind::Unsigned, 2, 16} : StoredType{NumberKind::Unsigned, 1, 8};
}

void AddChunkFacts(const std::filesystem::path& file, PictureInfo& info) {
  ChunkFacts chunks = FactsOfChunks(file);
  info.pictures = std::max(info.pictures, chunks.frames);
  info.unread = std::move(chunks.unread);
  info.colourChunks = std::move(chunks.colourChunks);
  info.lateTexts = std::move(chunks.lateTexts);
  const ExifFacts exif = FactsOfExif(chunks.exif);
  if (!chunks.exif.empty() && exif.isDamaged) info.unread.emplace_back("damaged Exif data");
  if (exif.isExif && !exif.mayPass) info.unread.emplace_back("Exif data");
  if (exif.wrongOrientation)
    info.unread.push_back(NameOfWrongOrientation(static_cast<std::int64_t>(*exif.wrongOrientation)));
  if (exif.mayPass) info.exif = std::move(chunks.exif);
  info.hasMakerNote = exif.hasMakerNote;
}

void Describe(const std::filesystem::path& path, const ReadChoice& choice, OpenedPicture& opened) {
  const FileHeader& header = opened.metadata.header;
  PictureInfo& info = opened.metadata.info;
  info.format = header.format;
  const auto names = ChannelsOf(opened);
  const int alpha = names.back() == "A" ? static_cast<int>(names.size()) - 1 : -1;
  for (const std::string& name : names)
    info.all.push_back({name, TypeOf(opened.form, header)});
  info.choice = ChooseChannels(path, names, alpha, choice);
  DescribeChannels(info);
  info.data = {0, 0, static_cast<std::int32_t>(header.width), static_cast<std::int32_t>(header.height)};
  info.display = info.data;
  info.width = info.data.width;
  info.height = info.data.height;
  info.transfer = opened.form.isFloat ? Transfer::Linear : Transfer::Srgb;
  info.tileWidth = header.tileWidth;
  info.tileHeight = header.tileHeight;
  info.hasInks = opened.form.model == ColourModel::Inks;
  opened.metadata.associatedAlpha = alpha >= 0 && opened.form.isAssociated;
}

// The first picture of the opened stream, and what its pixels are. Returns how many there are.
std::int32_t OpenFrame(const std::filesystem::path& path, OpenedPicture& opened) {
  const FileHeader& header = opened.metadata.header;
  ComPtr<IWICBitmapDecoder> decoder;
  Require(path, TheImagingFactory().CreateDecoder(ContainerOf(header.format), nullptr,
                                                  reinterpret_cast<IWICBitmapDecoder**>(decoder.Receive())));
  const auto require = [&](::HRESULT result) {
    if (FAILED(result)) RefuseKind(path, header, result);
  };
  require(decoder->Initialize(opened.stream.get(), WICDecodeMetadataCacheOnDemand));
  UINT pictures = 0;
  require(decoder->GetFrameCount(&pictures));
  require(decoder->GetFrame(0, reinterpret_cast<IWICBitmapFrameDecode**>(opened.frame.Receive())));
  UINT width = 0;
  UINT height = 0;
  require(opened.frame->GetSize(&width, &height));
  if (width != header.width || height != header.height) RefuseDamaged(path, WINCODEC_ERR_BADHEADER);
  WICPixelFormatGUID id{};
  require(opened.frame->GetPixelFormat(&id));
  const PixelForm* const form = FindPixelForm(id);
  if (form == nullptr) RefuseKind(path, header, S_OK);
  // Codecs tell late that they do not read a compression.
  if (header.format == "tiff" && !IsUsualCompression(header.compression)) {
    std::vector<BYTE> row(form->RowBytes(width));
    const WICRect first{0, 0, static_cast<INT>(width), 1};
    require(opened.frame->CopyPixels(&first, static_cast<UINT>(row.size()), static_cast<UINT>(row.size()), row.data()));
  }
  opened.form = *form;
  return static_cast<std::int32_t>(pictures);
}

}  // namespace

void RefusePixels(const std::filesystem::path& path, const FileHeader& header, ::HRESULT error) {
  if (const std::string kind = UnusualKind(header); !kind.empty())
    RefuseToRead(path, "the system's codec does not read " + kind);
  RefuseToRead(path, "the picture is damaged or cut short (" + ImagingErrorText(error) + ")");
}

OpenedPicture OpenPictureFile(const std::filesystem::path& path, const ReadChoice& choice) try {
  const std::filesystem::path file = ExtendedPath(FileToOpen(path));
  OpenedPicture opened;
  FileHeader& header = opened.metadata.header;
  header = ReadFileHeader(file);
  RequireSound(path, header, choice.mostPixels);
  opened.stream = FileStream::Open(file, FileStream::Use::Read, nullptr);
  if (opened.stream->SystemError() != 0) RefuseToRead(path, SystemErrorText(opened.stream->SystemError()));
  const std::int32_t pictures = OpenFrame(path, opened);
  const PixelForm& form = opened.form;
  const bool isWideTiff = header.format == "tiff" && form.bits == 16;
  const auto samples = isWideTiff ? TiffSamplesOf(header.isBig, header.isWhiteLeast) : std::nullopt;
  opened.turnsValues = samples && header.isWhiteLeast && !samples->areTurned;
  opened.swapsBytes = samples && samples->areSwapped;
  const bool lacksAlpha = header.hasAlpha && !form.HasAlpha() && form.model != ColourModel::Palette;
  if (lacksAlpha && header.format != "bmp") RefuseToRead(path, "its alpha is not read by the system's codec");
  if (form.model == ColourModel::Palette)
    opened.palette = header.palette.empty() ? PaletteOf(*opened.frame, path) : header.palette;
  Describe(path, choice, opened);
  // Codecs follow directories that lead in a circle as often as they may.
  opened.metadata.info.pictures = std::max(1, header.format == "tiff" ? std::min(pictures, header.pictures) : pictures);
  AddChunkFacts(file, opened.metadata.info);
  FileExtras& extras = opened.metadata.extras;
  extras = ReadFileExtras(file, header.format, opened.metadata.info.exif);
  auto& unread = opened.metadata.info.unread;
  unread.insert(unread.end(), extras.unread.begin(), extras.unread.end());
  return opened;
} catch (const Failure&) {
  throw;
} catch (const std::bad_alloc&) {
  RefuseToRead(path, "not enough memory for its pixels");
} catch (const std::exception& error) {
  RefuseToRead(path, error.what());
}

}  // namespace vblur::host
