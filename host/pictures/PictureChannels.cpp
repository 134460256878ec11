#include "host/pictures/PictureChannels.h"

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

// The channels of one layer, in the order of the file.
class Layer {
 public:
  Layer(const OIIO::ImageSpec& spec, std::string_view name) : spec_(spec) {
    for (int channel = 0; channel < spec.nchannels; ++channel) {
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
  ChannelName NameOf(int channel) const { return Split(spec_.channelnames[static_cast<std::size_t>(channel)]); }

  // Formats without names mark it.
  int FindAlpha() const {
    const int named = Find(kAlpha);
    return named < 0 && std::ranges::find(channels_, spec_.alpha_channel) != channels_.end() ? spec_.alpha_channel
                                                                                             : named;
  }

  const OIIO::ImageSpec& spec_;
  std::vector<int> channels_;
};

std::string Listed(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names)
    list += (list.empty() ? "" : ", ") + name;
  return list;
}

[[noreturn]] void RefuseLayer(const std::filesystem::path& path, const OIIO::ImageSpec& spec, const std::string& name) {
  std::vector<std::string> layers;
  for (const std::string& channel : spec.channelnames) {
    const std::string layer(Split(channel).layer);
    if (!layer.empty() && std::ranges::find(layers, layer) == layers.end()) layers.push_back(layer);
  }
  RefuseToRead(path, "it has no layer " + Quoted(name) + ", " +
                         (layers.empty() ? "and no other" : "expected one of these: " + Listed(layers)));
}

ChannelChoice ChooseColours(const std::filesystem::path& path, const OIIO::ImageSpec& spec, const std::string& name) {
  const Layer layer(spec, name);
  if (!layer.IsEmpty()) return layer.Choose();
  if (!name.empty()) RefuseLayer(path, spec, name);
  // All channels are in layers.
  return Layer(spec, Split(spec.channelnames.front()).layer).Choose();
}

int FindMaskChannel(const std::filesystem::path& path, const OIIO::ImageSpec& spec, const std::string& name) {
  for (int channel = 0; channel < spec.nchannels; ++channel) {
    if (EqualIgnoringCase(spec.channelnames[static_cast<std::size_t>(channel)], name)) return channel;
  }
  const Layer plain(spec, "");
  for (const Part& part : {kRed, kGreen, kBlue, kAlpha}) {
    if (const int channel = part.Is(name) ? plain.Find(part) : -1; channel >= 0) return channel;
  }
  RefuseToRead(path, "it has no channel " + Quoted(name) + ", expected one of these: " + Listed(spec.channelnames));
}

}  // namespace

std::string LayerPrefix(const std::string& channel) {
  return channel.substr(0, channel.rfind('.') + 1);
}

ChannelChoice ChooseChannels(const std::filesystem::path& path, const OIIO::ImageSpec& spec, const ReadChoice& choice) {
  if (choice.use == PictureUse::Colour) return ChooseColours(path, spec, choice.layer);
  if (choice.channel.empty()) {
    ChannelChoice channels = ChooseColours(path, spec, "");
    channels.red = 0;
    return channels;
  }
  const int channel = FindMaskChannel(path, spec, choice.channel);
  return {channel, channel, channel, -1};
}

}  // namespace vblur::host
