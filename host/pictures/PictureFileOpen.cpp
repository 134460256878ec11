#include "host/pictures/PictureFileOpen.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "host/base/Failure.h"
#include "host/hosted/HostImage.h"

namespace vblur::host {

namespace {

std::unique_ptr<OIIO::ImageInput> TryOpen(const std::string& format, const std::filesystem::path& path,
                                          std::string& message) {
  auto file = OIIO::ImageInput::create(format);
  if (!file) {
    message = OIIO::geterror();
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
                                        "hdr", "pnm",  "jpeg2000", "cineon",  "gif", "psd",  "iff", "heif"};

std::unique_ptr<OIIO::ImageInput> OpenAnyFormat(const std::filesystem::path& path) {
  std::string named = path.extension().string();
  if (!named.empty()) named.erase(0, 1);
  std::string message;
  if (!named.empty()) {
    if (auto file = TryOpen(named, path, message)) return file;
  }
  std::string other;
  for (const char* format : kKnownByContent) {
    if (auto file = TryOpen(format, path, other)) return file;
  }
  RefuseToRead(path, "not a picture, or a damaged one (" + LibraryMessage(message, "unknown format") + ")");
}

bool IsNamed(const OIIO::ImageSpec& spec, std::size_t channel, std::string_view name) {
  return OIIO::Strutil::iequals(spec.channelnames[channel], OIIO::string_view(name.data(), name.size()));
}

int FindChannel(const OIIO::ImageSpec& spec, std::string_view name) {
  for (std::size_t c = 0; c < spec.channelnames.size(); ++c) {
    if (IsNamed(spec, c, name)) return static_cast<int>(c);
  }
  return -1;
}

// Red, green, blue and alpha by name; without these names the first channels that are not alpha, and
// one alone is grey.
ChannelChoice ChooseChannels(const OIIO::ImageSpec& spec) {
  ChannelChoice choice{FindChannel(spec, "R"), FindChannel(spec, "G"), FindChannel(spec, "B"), FindChannel(spec, "A")};
  if (choice.alpha < 0) choice.alpha = spec.alpha_channel;
  if (choice.red >= 0 && choice.green >= 0 && choice.blue >= 0) return choice;
  std::array<int, 3> colours{-1, -1, -1};
  std::size_t found = 0;
  for (int c = 0; c < spec.nchannels && found < colours.size(); ++c) {
    if (c != choice.alpha) colours[found++] = c;
  }
  if (found == 0) return {choice.alpha, choice.alpha, choice.alpha, -1};
  if (found == 1) return {colours[0], colours[0], colours[0], choice.alpha};
  return {colours[0], colours[1], colours[2], choice.alpha};
}

SampleKind KindOf(const OIIO::TypeDesc& type) {
  if (type.basetype == OIIO::TypeDesc::UINT8) return SampleKind::Unsigned8;
  if (type.basetype == OIIO::TypeDesc::UINT16) return SampleKind::Unsigned16;
  return SampleKind::Float;
}

StoredType StoredTypeOf(const OIIO::ImageSpec& spec, int channel) {
  const OIIO::TypeDesc type = spec.channelformat(channel);
  StoredType stored;
  stored.number = type.is_floating_point() ? NumberKind::Float
                  : type.is_signed()       ? NumberKind::Signed
                                           : NumberKind::Unsigned;
  stored.bytes = static_cast<std::int32_t>(type.basesize());
  stored.bits = 8 * stored.bytes;
  // What the format packs, which its reader widens.
  const int packed = spec.get_int_attribute("oiio:BitsPerSample");
  if (stored.number != NumberKind::Float && packed > 0 && packed < stored.bits) stored.bits = packed;
  return stored;
}

bool Takes(const ChannelChoice& choice, int channel) {
  return channel == choice.red || channel == choice.green || channel == choice.blue || channel == choice.alpha;
}

PictureInfo Describe(const std::string& format, const OIIO::ImageSpec& spec) {
  PictureInfo info;
  info.format = format;
  info.width = spec.width;
  info.height = spec.height;
  info.channels = spec.nchannels;
  info.samples = KindOf(spec.format);
  info.choice = ChooseChannels(spec);
  info.data = {spec.x, spec.y, spec.width, spec.height};
  info.display = {spec.full_x, spec.full_y, spec.full_width, spec.full_height};
  if (info.display.width <= 0 || info.display.height <= 0) info.display = info.data;
  for (int channel = 0; channel < spec.nchannels; ++channel) {
    info.all.push_back({spec.channel_name(channel), StoredTypeOf(spec, channel)});
    if (!Takes(info.choice, channel)) info.passing.push_back(channel);
  }
  info.stored = info.all[static_cast<std::size_t>(info.choice.red)].type;
  info.pictures = std::max(1, spec.get_int_attribute("oiio:subimages"));
  return info;
}

void RequireSize(const std::filesystem::path& path, const OIIO::ImageSpec& spec) {
  const std::string size = std::to_string(spec.width) + " x " + std::to_string(spec.height) + " pixels";
  if (spec.width <= 0 || spec.height <= 0 || spec.nchannels <= 0) RefuseToRead(path, "it has no pixels (" + size + ")");
  if (spec.depth > 1) RefuseToRead(path, "it is a volume, a flat picture was expected");
  if (spec.deep) RefuseToRead(path, "it holds deep samples, a flat picture was expected");
  const std::int64_t components = std::int64_t{std::max(4, spec.nchannels)} * spec.width;
  if (components > HostImage::kMostComponents / spec.height) {
    RefuseToRead(path, size + " are more than 2^31 components (4 a pixel)");
  }
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

OpenPicture OpenPictureFile(const std::filesystem::path& path) {
  const PictureFileChatter chatter;
  auto file = OpenAnyFormat(path);
  const OIIO::ImageSpec& spec = file->spec();
  RequireSize(path, spec);
  PictureInfo info = Describe(file->format_name(), spec);
  return {std::move(file), std::move(info)};
}

}  // namespace vblur::host
