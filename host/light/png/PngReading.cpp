#include "host/light/png/PngReading.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "host/files/PictureChannels.h"
#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/formats/PictureFileHeader.h"
#include "host/light/png/PngInput.h"

namespace vblur::host {

namespace {

std::vector<std::string> NamesOf(int channels) {
  if (channels <= 2) return channels == 1 ? std::vector<std::string>{"Y"} : std::vector<std::string>{"Y", "A"};
  std::vector<std::string> names{"R", "G", "B"};
  if (channels == 4) names.emplace_back("A");
  return names;
}

PictureInfo Describe(const std::filesystem::path& path, const PngInput& png, ChunkFacts chunks,
                     const ReadChoice& choice) {
  const std::vector<std::string> names = NamesOf(png.Channels());
  const bool hasAlpha = png.Channels() % 2 == 0;
  PictureInfo info;
  info.format = "png";
  info.choice = ChooseChannels(path, names, hasAlpha ? png.Channels() - 1 : -1, choice);
  info.data = info.display = {0, 0, png.Width(), png.Height()};
  info.width = png.Width();
  info.height = png.Height();
  for (const std::string& name : names)
    info.all.push_back({name, {NumberKind::Unsigned, png.Bits() / 8, png.Bits()}});
  DescribeChannels(info);
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
  PictureInfo info = Describe(path, *file, std::move(chunks), choice);
  // It has a channel that the effect does not take: the full library keeps it.
  if (choice.keepsPassing && !info.passing.empty()) return {};
  return {std::move(file), std::move(info), false};
}

}  // namespace vblur::host
