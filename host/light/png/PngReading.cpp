#include "host/light/png/PngReading.h"

#include <algorithm>
#include <string>
#include <utility>

#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/formats/PictureFileHeader.h"
#include "host/light/ExifDecoding.h"
#include "host/light/png/PngInput.h"

namespace vblur::host {

namespace {

PictureInfo Describe(const std::filesystem::path& path, const PngInput& png, ChunkFacts chunks,
                     const ReadChoice& choice) {
  const StoredType type{NumberKind::Unsigned, png.Bits() / 8, png.Bits()};
  PictureInfo info = DescribeLight(path, "png", {png.Width(), png.Height(), png.Channels(), type}, choice);
  if (png.IsLinear()) info.transfer = Transfer::Linear;
  info.pictures = std::max(1, chunks.frames);
  info.unread = std::move(chunks.unread);
  info.colourChunks = std::move(chunks.colourChunks);
  info.lateTexts = std::move(chunks.lateTexts);
  return info;
}

}  // namespace

OpenedLight OpenPng(const std::filesystem::path& path, const ReadChoice& choice) {
  const std::filesystem::path toOpen = FileToOpen(path);
  auto file = PngInput::Open(toOpen);
  if (!file) return {};
  RequirePixels(path, file->Width(), file->Height(), file->Channels(), "", choice.mostPixels);
  ChunkFacts chunks = FactsOfChunks(toOpen);
  // It is damaged, which is told.
  if (chunks.hasProfile && file->Attributes().Profile().empty()) return {};
  const std::string exif = chunks.exif;
  auto decoded = DecodeExif(exif);
  if (!decoded || !file->TakeExif(decoded->attributes)) return {};
  PictureInfo info = Describe(path, *file, std::move(chunks), choice);
  DescribeExif(exif, std::move(decoded->unread), info);
  return {std::move(file), std::move(info), false};
}

}  // namespace vblur::host
