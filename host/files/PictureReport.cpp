#include "host/files/PictureReport.h"

#include "host/files/PictureLibrary.h"

namespace vblur::host {

namespace {

// The whole numbers that a type tells apart, in bits.
int BitsOf(SampleType type) {
  switch (type) {
    case SampleType::Unsigned8: return 8;
    case SampleType::Unsigned10: return 10;
    case SampleType::Half: return 11;
    case SampleType::Unsigned12: return 12;
    case SampleType::Unsigned16: return 16;
    case SampleType::Float: break;
  }
  return 24;
}

bool IsFloat(SampleType type) {
  return type == SampleType::Half || type == SampleType::Float;
}

bool HoldsLess(SampleType held, SampleType than) {
  return BitsOf(held) < BitsOf(than) || (IsFloat(than) && !IsFloat(held));
}

std::string ChannelList(const PictureInfo& info) {
  std::string names;
  for (const int at : info.passing)
    names += (names.empty() ? "" : ", ") + info.all[static_cast<std::size_t>(at)].name;
  return (info.passing.size() == 1 ? "channel " : "channels ") + names;
}

}  // namespace

PictureReport ReportPicture(const std::filesystem::path& path) {
  RequirePictureFile(path);
  return ThePictureLibrary().Report(path);
}

SampleType OutputTypeOf(const PictureInfo& source, const OutputFormat& format, const OutputStorage& storage) {
  const SampleType stored = TypeFor(source.stored);
  // Few programs read halves in TIFF files: only a file that held them, or one that was asked to, does.
  const bool widens = stored == SampleType::Half && format.name == "tiff" && source.format != "tiff";
  return NearestType(format, storage.type.value_or(widens ? SampleType::Float : stored));
}

std::string OutputCompressionOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage) {
  if (storage.compression) return FindCompression(format, *storage.compression);
  const std::string kept =
      report.info.format == format.name ? FindCompression(format, report.compression) : std::string();
  return kept.empty() && format.name == "openexr" ? "piz" : kept;
}

std::string NameOf(PixelLayout layout) {
  switch (layout) {
    case PixelLayout::Grey: return "grey";
    case PixelLayout::GreyAlpha: return "grey and alpha";
    case PixelLayout::Rgb: return "colour";
    case PixelLayout::Rgba: break;
  }
  return "colour and alpha";
}

std::vector<std::string> LossesOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage,
                                  std::int32_t depth) {
  const PictureInfo& info = report.info;
  std::vector<std::string> losses;
  if (info.pictures > 1) {
    losses.push_back(std::to_string(info.pictures - 1) + " further picture" + (info.pictures == 2 ? "" : "s"));
  }
  if (!info.passing.empty() && !format.hasAnyChannels) losses.push_back(ChannelList(info));
  if (info.HasAlpha() && !HasAlpha(NearestLayout(format, info.IsGrey(), true))) losses.push_back("alpha");
  const SampleType stored = TypeFor(info.stored);
  const SampleType written = OutputTypeOf(info, format, storage);
  if (HoldsLess(written, stored)) {
    losses.push_back(std::string(NameOf(stored)) + " samples (" + std::string(NameOf(written)) + " are written)");
  } else if (depth == 8 && stored != SampleType::Unsigned8) {
    losses.push_back(std::string(NameOf(stored)) + " samples (8 bits are rendered)");
  }
  for (std::size_t group = 0; group < kMetadataNames.size(); ++group) {
    const auto which = static_cast<MetadataGroup>(group);
    if (report.metadata.Has(which) && !format.metadata.Has(which)) losses.emplace_back(kMetadataNames[group]);
  }
  if (info.data != info.display && !format.hasWindows && Union(info.data, info.display) != info.display) {
    losses.push_back("pixels beyond the frame");
  }
  return losses;
}

}  // namespace vblur::host
