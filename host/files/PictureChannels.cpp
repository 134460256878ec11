#include "host/files/PictureChannels.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

// A channel's name in two: "diffuse.direct.R" is R in the layer "diffuse.direct".
struct ChannelName {
  std::string_view layer;
  std::string_view part;
};

ChannelName Split(std::string_view name) {
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos) return {{}, name};
  return {name.substr(0, dot), name.substr(dot + 1)};
}

struct Part {
  std::string_view letter;
  std::string_view word;

  bool Is(std::string_view name) const { return EqualIgnoringCase(name, letter) || EqualIgnoringCase(name, word); }
};

constexpr Part kRed{"R", "red"};
constexpr Part kGreen{"G", "green"};
constexpr Part kBlue{"B", "blue"};
constexpr Part kAlpha{"A", "alpha"};
constexpr Part kLuminance{"Y", "luminance"};
// Beside it Y is the second of three coordinates.
constexpr Part kFirstCoordinate{"X", "x"};

using Names = std::vector<std::string>;

// The channels of one layer, in the order of the file.
class Layer {
 public:
  Layer(const Names& names, int alpha, std::string_view name) : names_(names), alpha_(alpha) {
    for (int channel = 0; channel < static_cast<int>(names.size()); ++channel) {
      if (EqualIgnoringCase(NameOf(channel).layer, name)) channels_.push_back(channel);
    }
  }

  bool IsEmpty() const { return channels_.empty(); }

  int Find(const Part& part) const {
    const auto found = std::ranges::find_if(channels_, [&](int channel) { return part.Is(NameOf(channel).part); });
    return found == channels_.end() ? -1 : *found;
  }

  ChannelChoice Choose() const {
    const ChannelChoice choice{Find(kRed), Find(kGreen), Find(kBlue), FindAlpha()};
    const int named = (choice.red >= 0) + (choice.green >= 0) + (choice.blue >= 0);
    if (named == 3) return choice;
    if (const int grey = Find(kLuminance); grey >= 0 && Find(kFirstCoordinate) < 0)
      return {grey, grey, grey, choice.alpha};
    if (named == 2) return choice;
    if (named == 1) {
      const int grey = std::max({choice.red, choice.green, choice.blue});
      return {grey, grey, grey, choice.alpha};
    }
    std::array<int, 3> colours{-1, -1, -1};
    std::size_t found = 0;
    for (const int channel : channels_) {
      if (channel != choice.alpha && found < colours.size()) colours[found++] = channel;
    }
    if (found == 0) return {choice.alpha, choice.alpha, choice.alpha, -1};
    if (found == 1) return {colours[0], colours[0], colours[0], choice.alpha};
    return {colours[0], colours[1], colours[2], choice.alpha};
  }

 private:
  ChannelName NameOf(int channel) const { return Split(names_[static_cast<std::size_t>(channel)]); }

  // Formats without names mark it.
  int FindAlpha() const {
    const int named = Find(kAlpha);
    return named < 0 && std::ranges::find(channels_, alpha_) != channels_.end() ? alpha_ : named;
  }

  const Names& names_;
  const int alpha_;
  std::vector<int> channels_;
};

std::string Listed(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names)
    list += (list.empty() ? "" : ", ") + name;
  return list;
}

[[noreturn]] void RefuseLayer(const std::filesystem::path& path, const Names& names, const std::string& name) {
  std::vector<std::string> layers;
  for (const std::string& channel : names) {
    const std::string layer(Split(channel).layer);
    if (!layer.empty() && std::ranges::find(layers, layer) == layers.end()) layers.push_back(layer);
  }
  RefuseToRead(path, "it has no layer " + Quoted(name) + ", " +
                         (layers.empty() ? "and no other" : "expected one of these: " + Listed(layers)));
}

ChannelChoice ChooseColours(const std::filesystem::path& path, const Names& names, int alpha, const std::string& name) {
  const Layer layer(names, alpha, name);
  if (!layer.IsEmpty()) return layer.Choose();
  if (!name.empty()) RefuseLayer(path, names, name);
  // All channels are in layers.
  return Layer(names, alpha, Split(names.front()).layer).Choose();
}

int FindMaskChannel(const std::filesystem::path& path, const Names& names, int alpha, const std::string& name) {
  for (int channel = 0; channel < static_cast<int>(names.size()); ++channel) {
    if (EqualIgnoringCase(names[static_cast<std::size_t>(channel)], name)) return channel;
  }
  const Layer plain(names, alpha, "");
  for (const Part& part : {kRed, kGreen, kBlue, kAlpha}) {
    if (const int channel = part.Is(name) ? plain.Find(part) : -1; channel >= 0) return channel;
  }
  RefuseToRead(path, "it has no channel " + Quoted(name) + ", expected one of these: " + Listed(names));
}

}  // namespace

std::string LayerPrefix(const std::string& channel) {
  return channel.substr(0, channel.rfind('.') + 1);
}

ChannelChoice ChooseChannels(const std::filesystem::path& path, const std::vector<std::string>& names, int alpha,
                             const ReadChoice& choice) {
  if (choice.use == PictureUse::Colour) return ChooseColours(path, names, alpha, choice.layer);
  if (choice.channel.empty()) {
    ChannelChoice channels = ChooseColours(path, names, alpha, "");
    channels.red = 0;
    return channels;
  }
  const int channel = FindMaskChannel(path, names, alpha, choice.channel);
  return {channel, channel, channel, -1};
}

bool Takes(const ChannelChoice& choice, int channel) {
  return channel == choice.red || channel == choice.green || channel == choice.blue || channel == choice.alpha;
}

namespace {

// Float unless all that is taken is of one narrower kind.
SampleKind KindOf(const PictureInfo& info) {
  const auto all = [&](const StoredType& type) {
    for (std::size_t channel = 0; channel < info.all.size(); ++channel) {
      const StoredType& stored = info.all[channel].type;
      if (!Takes(info.choice, static_cast<int>(channel))) continue;
      if (stored.number != type.number || stored.bytes != type.bytes) return false;
    }
    return true;
  };
  if (all({NumberKind::Unsigned, 1, 8})) return SampleKind::Unsigned8;
  return all({NumberKind::Unsigned, 2, 16}) ? SampleKind::Unsigned16 : SampleKind::Float;
}

}  // namespace

void DescribeChannels(PictureInfo& info) {
  info.channels = static_cast<std::int32_t>(info.all.size());
  info.passing.clear();
  for (int channel = 0; channel < info.channels; ++channel) {
    if (!Takes(info.choice, channel)) info.passing.push_back(channel);
  }
  info.samples = KindOf(info);
  info.stored = info.FirstColour().type;
}

}  // namespace vblur::host
