#include "host/files/PictureReport.h"

#include <algorithm>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

namespace {

// The bits of the whole numbers that a type holds exactly.
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

bool Holds(SampleType type, const StoredType& stored) {
  const bool isFloat = type == SampleType::Half || type == SampleType::Float;
  switch (stored.number) {
    case NumberKind::Unsigned: return BitsOf(type) >= stored.bits;
    case NumberKind::Signed: return isFloat && BitsOf(type) >= stored.bits;
    case NumberKind::Float: break;
  }
  return type == SampleType::Float ? stored.bytes <= 4 : type == SampleType::Half && stored.bytes <= 2;
}

// Why samples change between a file and the pixels of a depth, whatever the effect does; empty where they come back as
// they were. Signed 2.14 fixed point has 16384 steps below 1.
std::string ChangeAtDepth(const StoredType& stored, std::int32_t depth) {
  const bool isWhole = stored.number == NumberKind::Unsigned;
  if (depth == 8) return isWhole && stored.bits <= 8 ? "" : "8 bits are rendered";
  if (depth == 16) return isWhole && stored.bits <= 14 ? "" : "steps of 1/16384 are rendered";
  return Holds(SampleType::Float, stored) ? "" : "floats are rendered";
}

void AddSamples(const StoredType& stored, SampleType written, std::int32_t depth, std::vector<Loss>& losses) {
  const std::string change =
      Holds(written, stored) ? ChangeAtDepth(stored, depth) : std::string(NameOf(written)) + " are written";
  if (change.empty()) return;
  // The steps of halves from there on are no smaller.
  const bool isDark =
      depth == 16 && Holds(written, stored) && Holds(SampleType::Half, stored) && stored.number == NumberKind::Float;
  const Loss loss{LossKind::Samples,
                  "last bits of " + NameOf(stored) + " samples" + (isDark ? " below 1/16" : "") + " (" + change + ")"};
  if (std::ranges::find(losses, loss) == losses.end()) losses.push_back(loss);
}

std::vector<int> ChannelsTaken(const PictureInfo& info) {
  std::vector<int> taken;
  for (int channel = 0; channel < static_cast<int>(info.all.size()); ++channel) {
    if (!info.Passes(channel)) taken.push_back(channel);
  }
  return taken;
}

const FileChannel& ChannelAt(const PictureInfo& info, int channel) {
  return info.all[static_cast<std::size_t>(channel)];
}

// The first of them, as in "channels Y, Z and 3 more"; `one` is the word for one.
template <typename NameAt>
std::string Named(const std::string& one, std::size_t count, const NameAt& nameAt) {
  constexpr std::size_t kNamed = 20;
  std::string names;
  for (std::size_t i = 0; i < std::min(count, kNamed); ++i)
    names += (names.empty() ? "" : ", ") + nameAt(i);
  if (count > kNamed) names += " and " + std::to_string(count - kNamed) + " more";
  return one + (count == 1 ? " " : "s ") + names;
}

void AddChannels(const PictureInfo& info, std::vector<Loss>& losses) {
  const auto& passing = info.passing;
  if (passing.empty()) return;
  losses.push_back({LossKind::Channels,
                    Named("channel", passing.size(), [&](std::size_t i) { return ChannelAt(info, passing[i]).name; })});
}

// What no output holds.
void AddBeside(const PictureInfo& info, std::vector<Loss>& losses) {
  const auto add = [&](LossKind kind, std::int32_t count, const char* one, const char* several) {
    if (count > 0) losses.push_back({kind, std::to_string(count) + (count == 1 ? one : several)});
  };
  add(LossKind::Pictures, info.pictures - 1, " further picture", " further pictures");
  add(LossKind::Levels, info.levels - 1, " smaller copy (mip level)", " smaller copies (mip levels)");
  if (info.tileWidth > 0) losses.push_back({LossKind::Tiles, "tiles of " + TilesOf(info)});
  for (const std::string& kind : info.unread)
    losses.push_back({LossKind::Metadata, kind});
  if (info.hasInks) losses.push_back({LossKind::Colours, "four inks (red, green and blue are written)"});
}

void AddMakerNote(std::vector<Loss>& losses) {
  losses.push_back({LossKind::Metadata, "maker note"});
}

void AddLateTexts(const PictureInfo& info, std::vector<Loss>& losses) {
  if (!info.lateTexts.empty()) losses.push_back({LossKind::Metadata, "texts behind the pixels"});
}

const PartsLacking& LackingOf(const PictureReport& report, const OutputFormat& format) {
  static const PartsLacking nothing;
  const auto found = report.lacking.find(format.name);
  return found == report.lacking.end() ? nothing : found->second;
}

// All but those that an output keeps.
void AddOthers(const PictureReport& report, const std::vector<std::string>& kept, std::vector<Loss>& losses) {
  if (report.others.empty()) {
    losses.push_back({LossKind::Metadata, std::string(kMetadataNames.back())});
    return;
  }
  std::vector<std::string> lost = report.others;
  std::erase_if(lost, [&](const std::string& name) { return std::ranges::find(kept, name) != kept.end(); });
  if (!lost.empty())
    losses.push_back({LossKind::Metadata, Named("attribute", lost.size(), [&](std::size_t i) { return lost[i]; })});
}

// `kept`: names of other attributes that the output holds.
void AddMetadata(const PictureReport& report, SetOf<MetadataGroup> present, SetOf<MetadataGroup> held,
                 const std::vector<std::string>& kept, PixelLayout pixels, std::vector<Loss>& losses) {
  for (std::size_t group = 0; group < kMetadataNames.size(); ++group) {
    const auto which = static_cast<MetadataGroup>(group);
    if (!present.Has(which)) continue;
    const std::string name(kMetadataNames[group]);
    if (!held.Has(which) && which == MetadataGroup::Other) {
      AddOthers(report, kept, losses);
    } else if (!held.Has(which)) {
      losses.push_back({LossKind::Metadata, name});
    } else if (which == MetadataGroup::Profile && !report.profileFits.Has(pixels)) {
      losses.push_back({LossKind::Metadata, name + " (damaged, or for other colours)"});
    }
  }
}

// What is asked for, else that of an input of the same format.
std::string CompressionFor(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage) {
  if (storage.compression) return FindCompression(format, *storage.compression);
  return report.info.format == format.name ? report.compression : std::string();
}

// What the system's codec cannot do.
void AddCodec(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage, SampleType written,
              PixelLayout pixels, std::vector<Loss>& losses) {
  const PartsLacking& lacking = LackingOf(report, format);
  if (report.info.IsGrey() && pixels == PixelLayout::Grey && lacking.greys.Has(written)) {
    losses.push_back({LossKind::Colours, "grey (red, green and blue are written)"});
  }
  const auto other = lacking.compressions.find(CompressionFor(report, format, storage));
  if (other != lacking.compressions.end()) {
    losses.push_back({LossKind::Packing, "compression " + other->first + " (" + other->second + " is written)"});
  }
  if (lacking.quality) losses.push_back({LossKind::Packing, "quality (the system's codec has one of its own)"});
}

void AddLacking(const PartsLacking& lacking, std::vector<Loss>& losses) {
  const std::vector<std::string>& fields = lacking.exifFields;
  if (!fields.empty()) {
    losses.push_back(
        {LossKind::Metadata, Named("Exif field", fields.size(), [&](std::size_t i) { return fields[i]; })});
  }
  if (!lacking.furtherTexts.empty()) {
    const auto nameAt = [&](std::size_t i) { return lacking.furtherTexts[i]; };
    losses.push_back(
        {LossKind::Metadata, "further strings of the " + Named("text", lacking.furtherTexts.size(), nameAt)});
  }
  for (const std::string& name : lacking.longTexts)
    losses.push_back({LossKind::Metadata, name + " (longer than files of this format hold)"});
}

}  // namespace

void PictureReport::AddGroupsOfUnreadExif() {
  for (const ExifFieldName& field : info.unreadExif) {
    const auto group = field.isGps ? MetadataGroup::Gps : MetadataGroup::Exif;
    metadata.Add(group);
    beyondText.Add(group);
  }
}

PictureReport ReportPicture(const std::filesystem::path& path, const ReadChoice& choice) {
  RequirePictureFile(path);
  return ThePictureLibrary().Report(path, choice);
}

SampleType OutputTypeOf(const PictureInfo& source, const OutputFormat& format, const OutputStorage& storage) {
  const SampleType stored = TypeFor(source.stored);
  // Few programs read halves in TIFF files: they are written where the source has them or the user asks for them.
  const bool widens = stored == SampleType::Half && format.name == "tiff" && source.format != "tiff";
  return NearestType(format, storage.type.value_or(widens ? SampleType::Float : stored));
}

std::string OutputCompressionOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage) {
  const std::string wanted = CompressionFor(report, format, storage);
  const PartsLacking& lacking = LackingOf(report, format);
  const auto other = lacking.compressions.find(wanted);
  if (other != lacking.compressions.end()) return other->second;
  const std::string kept = FindCompression(format, wanted);
  return kept.empty() && format.name == "openexr" ? "piz" : kept;
}

PixelLayout OutputLayoutOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage) {
  const PixelLayout nearest = NearestLayout(format, report.info.IsGrey(), report.info.HasAlpha());
  const bool hasNoGrey = LackingOf(report, format).greys.Has(OutputTypeOf(report.info, format, storage));
  return nearest == PixelLayout::Grey && hasNoGrey ? PixelLayout::Rgb : nearest;
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

std::string TilesOf(const PictureInfo& info) {
  return std::to_string(info.tileWidth) + " x " + std::to_string(info.tileHeight) + " pixels";
}

std::string ListOf(const std::vector<Loss>& losses) {
  std::string list;
  for (const Loss& loss : losses)
    list += (list.empty() ? "" : ", ") + loss.what;
  return list;
}

std::vector<Loss> LossesOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage,
                           std::int32_t depth) {
  return LossesOf(report, format, storage, depth, NearestLayout(format, report.info.IsGrey(), report.info.HasAlpha()));
}

std::vector<Loss> LossesOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage,
                           std::int32_t depth, PixelLayout pixels) {
  const PictureInfo& info = report.info;
  std::vector<Loss> losses;
  AddBeside(info, losses);
  if (info.hasMakerNote && !info.PassesExifTo(format.name)) AddMakerNote(losses);
  if (format.name != "png") AddLateTexts(info, losses);
  if (!format.hasAnyChannels) AddChannels(info, losses);
  if (info.HasAlpha() && !HasAlpha(pixels)) losses.push_back({LossKind::Alpha, "alpha"});
  for (const int channel : ChannelsTaken(info)) {
    const StoredType& stored = ChannelAt(info, channel).type;
    const bool isOwn = format.hasAnyChannels && !storage.type;
    AddSamples(stored, isOwn ? NearestType(format, TypeFor(stored)) : OutputTypeOf(info, format, storage), depth,
               losses);
  }
  const bool hasNoGrey = LackingOf(report, format).greys.Has(OutputTypeOf(info, format, storage));
  AddMetadata(report, info.format == format.name ? report.beyondText : report.metadata, format.metadata,
              LackingOf(report, format).keptOthers,
              hasNoGrey && pixels == PixelLayout::Grey ? PixelLayout::Rgb : pixels, losses);
  AddLacking(LackingOf(report, format), losses);
  AddCodec(report, format, storage, OutputTypeOf(info, format, storage), pixels, losses);
  if (!format.hasWindows && info.Picture() != info.display) {
    losses.push_back({LossKind::Windows, "pixels beyond the frame"});
  }
  return losses;
}

std::vector<Loss> LossesBesideOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage,
                                 SampleType written, PixelLayout pixels, std::int32_t depth) {
  const PictureInfo& info = report.info;
  std::vector<Loss> losses;
  AddBeside(info, losses);
  if (info.hasMakerNote) AddMakerNote(losses);
  AddLateTexts(info, losses);
  AddChannels(info, losses);
  if (info.HasAlpha() && !HasAlpha(pixels)) losses.push_back({LossKind::Alpha, "alpha"});
  if (!info.IsGrey() && IsGrey(pixels)) losses.push_back({LossKind::Colours, "colours"});
  for (const int channel : ChannelsTaken(info))
    AddSamples(ChannelAt(info, channel).type, written, depth, losses);
  AddMetadata(report, report.metadata, {}, {}, pixels, losses);
  AddCodec(report, format, storage, written, pixels, losses);
  return losses;
}

}  // namespace vblur::host
