#include "host/pictures/OutputLayout.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>

#include "host/files/OutputPixels.h"
#include "host/files/OutputWindows.h"
#include "host/files/PictureChannels.h"
#include "host/pictures/PictureReporting.h"

namespace vblur::host {

namespace {

OIIO::TypeDesc LibraryTypeOf(SampleType type) {
  switch (type) {
    case SampleType::Unsigned8: return OIIO::TypeDesc::UINT8;
    case SampleType::Unsigned10:
    case SampleType::Unsigned12:
    case SampleType::Unsigned16: return OIIO::TypeDesc::UINT16;
    case SampleType::Half: return OIIO::TypeDesc::HALF;
    case SampleType::Float: break;
  }
  return OIIO::TypeDesc::FLOAT;
}

// Decides one output.
class Plan {
 public:
  explicit Plan(const PictureToWrite& picture)
      : picture_(picture), format_(picture.format), metadata_(OwnMetadata(picture.metadata)) {}

  OutputLayout Make() {
    ChoosePixels();
    ChooseChannels();
    ChooseWindows();
    Describe();
    return std::move(layout_);
  }

 private:
  void ChoosePixels() {
    const auto source = metadata_ != nullptr ? std::optional(DescribePicture(*metadata_)) : std::nullopt;
    OutputPixels chosen = ChooseOutputPixels(picture_, source);
    NoteLosses(picture_, source, chosen);
    pixels_ = chosen.layout;
    type_ = chosen.type;
    layout_.notes = std::move(chosen.notes);
  }

  bool KeepsChannels() const { return metadata_ != nullptr && format_.hasAnyChannels; }

  // The place of a component among the source's channels; -1 for none.
  int SourceOf(int component) const {
    const ChannelChoice& choice = metadata_->info.choice;
    return std::array{choice.red, choice.green, choice.blue, choice.alpha}[static_cast<std::size_t>(component)];
  }

  // Those of the source; others get the usual names in the layer of the source's colours.
  std::string NameFor(int component) const {
    std::string usual = component == 0 && IsGrey(pixels_) ? "Y" : std::string(1, "RGBA"[component]);
    if (!KeepsChannels()) return usual;
    const PictureInfo& info = metadata_->info;
    const bool sameColour = component == 3 || IsGrey(pixels_) == info.IsGrey();
    const int at = SourceOf(component);
    const bool isNamed = info.format == format_.name;
    if (isNamed && at >= 0 && sameColour) return info.all[static_cast<std::size_t>(at)].name;
    std::string prefix = LayerPrefix(info.FirstColour().name);
    while (Passes(prefix + usual))
      prefix += "result.";
    return prefix + usual;
  }

  bool Passes(const std::string& name) const {
    const PictureInfo& info = metadata_->info;
    return std::ranges::any_of(info.passing,
                               [&](int channel) { return info.all[static_cast<std::size_t>(channel)].name == name; });
  }

  // The type of the source's channel, or that of all channels where the output says so or has one for all.
  SampleType TypeOfChannel(int at) const {
    if (picture_.storage.type || at < 0 || !KeepsChannels()) return type_;
    return NearestType(format_, TypeFor(metadata_->info.all[static_cast<std::size_t>(at)].type));
  }

  void AddComponent(int component, int at) {
    OutputChannel channel;
    channel.name = NameFor(component);
    channel.component = component;
    channel.type = TypeOfChannel(at);
    layout_.channels.push_back(channel);
  }

  void AddPassing(int at, std::size_t place) {
    OutputChannel channel;
    channel.name = metadata_->info.all[static_cast<std::size_t>(at)].name;
    channel.place = place;
    channel.passedFrom = metadata_->input.channelformat(at);
    channel.passedAs = channel.passedFrom;
    // Whole numbers that the format does not have become fractions of their range; ids of 32 bits stay.
    const bool isHeld = channel.passedFrom == OIIO::TypeDesc::HALF || channel.passedFrom == OIIO::TypeDesc::FLOAT ||
                        channel.passedFrom == OIIO::TypeDesc::UINT32;
    if (!isHeld) channel.passedAs = OIIO::TypeDesc::FLOAT;
    layout_.channels.push_back(channel);
  }

  void ChooseChannels() {
    const bool passes = KeepsChannels() && !metadata_->passing.empty();
    if (!KeepsChannels()) {
      AddComponents();
    } else {
      AddInOrder(passes);
    }
  }

  void AddComponents() {
    AddComponent(0, -1);
    if (!IsGrey(pixels_)) {
      AddComponent(1, -1);
      AddComponent(2, -1);
    }
    if (HasAlpha(pixels_)) AddComponent(3, -1);
  }

  // The source's order, with what the effect made in the places of what it took.
  void AddInOrder(bool passes) {
    const PictureInfo& info = metadata_->info;
    std::size_t place = 0;
    for (int at = 0; at < info.channels; ++at) {
      for (int component = 0; component < 4; ++component) {
        if (at == SourceOf(component) && IsWritten(component)) AddWithMissing(component, at);
      }
      if (!info.Passes(at)) continue;
      if (passes) AddPassing(at, place);
      place += metadata_->input.channelformat(at).size();
    }
  }

  bool IsWritten(int component) const {
    return component == 0 || (component == 3 ? HasAlpha(pixels_) : !IsGrey(pixels_));
  }

  // A colour that the source lacks stands behind the one before it, red before green.
  void AddWithMissing(int component, int at) {
    const auto isMissing = [&](int colour) { return colour < 3 && IsWritten(colour) && SourceOf(colour) < 0; };
    if (component == 1 && isMissing(0)) AddComponent(0, -1);
    AddComponent(component, at);
    if (component < 3 && isMissing(component + 1)) AddComponent(component + 1, -1);
  }

  void ChooseWindows() {
    const OutputWindows windows = ChooseOutputWindows(picture_, metadata_ != nullptr ? &metadata_->info : nullptr);
    layout_.picture = windows.picture;
    OIIO::ImageSpec& spec = layout_.spec;
    spec.x = windows.data.x;
    spec.y = windows.data.y;
    spec.width = windows.data.width;
    spec.height = windows.data.height;
    spec.full_x = windows.display.x;
    spec.full_y = windows.display.y;
    spec.full_width = windows.display.width;
    spec.full_height = windows.display.height;
  }

  void Describe() {
    OIIO::ImageSpec& spec = layout_.spec;
    const std::vector<OutputChannel>& channels = layout_.channels;
    spec.nchannels = static_cast<int>(channels.size());
    spec.channelnames.clear();
    spec.alpha_channel = -1;
    bool isMixed = false;
    for (std::size_t c = 0; c < channels.size(); ++c) {
      spec.channelnames.push_back(channels[c].name);
      if (channels[c].component == 3) spec.alpha_channel = static_cast<int>(c);
      isMixed = isMixed || channels[c].LibraryType() != channels.front().LibraryType();
    }
    spec.set_format(channels.front().LibraryType());
    for (const OutputChannel& channel : channels) {
      if (isMixed) spec.channelformats.push_back(channel.LibraryType());
    }
    const auto bits = type_ == SampleType::Unsigned10 ? 10 : type_ == SampleType::Unsigned12 ? 12 : 0;
    if (bits != 0) spec.attribute("oiio:BitsPerSample", bits);
    if (metadata_ != nullptr) ApplyMetadata(*metadata_, pixels_, spec, format_);
    // ChooseOutputPixels tells them.
    TakeLongTexts(spec, format_);
    // Without this the writer multiplies by alpha or divides by it.
    const bool saysAssociated = metadata_ != nullptr && metadata_->associatedAlpha && format_.name == "tiff";
    if (!saysAssociated) spec.attribute("oiio:UnassociatedAlpha", 1);
    LeaveTimeOut();
    SetCompression();
  }

  // These writers put in the present time where the source has none, and write no time for one that is not a text.
  void LeaveTimeOut() {
    OIIO::ImageSpec& spec = layout_.spec;
    const bool addsTime = format_.name == "tiff" || format_.name == "openexr";
    if (addsTime && spec.find_attribute("DateTime") == nullptr) spec.attribute("DateTime", 0);
  }

  // Lossless where possible. Higher compression levels hardly make files smaller.
  void SetCompression() {
    OIIO::ImageSpec& spec = layout_.spec;
    const OutputStorage& storage = picture_.storage;
    if (format_.name == "jpeg") spec.attribute("jpeg:subsampling", "4:4:4");
    if (format_.name == "png") spec.attribute("png:compressionLevel", 4);
    std::string name = format_.name == "openexr" ? "piz" : "";
    if (metadata_ != nullptr && metadata_->info.format == format_.name) {
      const std::string kept = FindCompression(format_, metadata_->input.get_string_attribute("compression"));
      if (!kept.empty()) name = kept;
    }
    if (storage.compression) name = FindCompression(format_, *storage.compression);
    if (storage.quality) name = std::string(format_.name) + ":" + std::to_string(*storage.quality);
    if (!name.empty()) spec.attribute("compression", name);
  }

  const PictureToWrite& picture_;
  const OutputFormat& format_;
  const LibraryMetadata* const metadata_;
  OutputLayout layout_;
  PixelLayout pixels_ = PixelLayout::Rgba;
  SampleType type_ = SampleType::Unsigned8;
};

}  // namespace

OIIO::TypeDesc OutputChannel::LibraryType() const {
  return component < 0 ? passedAs : LibraryTypeOf(type);
}

std::size_t OutputLayout::PixelBytes() const {
  std::size_t bytes = 0;
  for (const OutputChannel& channel : channels)
    bytes += channel.LibraryType().size();
  return bytes;
}

OutputLayout PlanOutput(const PictureToWrite& picture) {
  return Plan(picture).Make();
}

}  // namespace vblur::host
