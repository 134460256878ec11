#include "host/files/OutputPixels.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace vblur::host {

namespace {

template <typename Component>
bool IsGreyRow(const std::byte* row, std::int32_t width) {
  for (std::int32_t x = 0; x < width; ++x, row += 4 * sizeof(Component)) {
    if (std::memcmp(row, row + sizeof(Component), 2 * sizeof(Component)) != 0) return false;
  }
  return true;
}

// Whether red, green and blue are the same everywhere.
bool IsGreyPicture(const HostImage& image) {
  for (std::int32_t y = 0; y < image.Height(); ++y) {
    const bool isGrey = image.Depth() == 8    ? IsGreyRow<std::uint8_t>(image.Row(y), image.Width())
                        : image.Depth() == 16 ? IsGreyRow<std::int16_t>(image.Row(y), image.Width())
                                              : IsGreyRow<float>(image.Row(y), image.Width());
    if (!isGrey) return false;
  }
  return true;
}

template <typename Component>
double LeastAlpha(const HostImage& image, double full) {
  Component least{};
  for (std::size_t at = 3 * sizeof(Component); at < image.ByteCount(); at += 4 * sizeof(Component)) {
    Component alpha;
    std::memcpy(&alpha, image.Row(0) + at, sizeof alpha);
    if (at == 3 * sizeof(Component) || alpha < least) least = alpha;
  }
  return static_cast<double>(least) / full;
}

// As a part of the full one.
double LeastAlpha(const HostImage& image) {
  return image.Depth() == 8    ? LeastAlpha<std::uint8_t>(image, 255.0)
         : image.Depth() == 16 ? LeastAlpha<std::int16_t>(image, 16384.0)
                               : LeastAlpha<float>(image, 1.0);
}

// Further pictures are told when the file is read.
std::vector<Loss> LossesToTell(const PictureReport& source, const PictureToWrite& picture, PixelLayout layout) {
  std::vector<Loss> losses = LossesOf(source, picture.format, picture.storage, picture.image.Depth(), layout);
  std::erase_if(losses, [](const Loss& loss) { return loss.kind == LossKind::Pictures; });
  return losses;
}

void NoteMadeColours(const PictureInfo& source, OutputPixels& chosen) {
  constexpr std::array<const char*, 3> kColours{"red", "green", "blue"};
  if (IsGrey(chosen.layout)) return;
  const std::array<int, 3> channels{source.choice.red, source.choice.green, source.choice.blue};
  for (std::size_t colour = 0; colour < channels.size(); ++colour) {
    if (channels[colour] >= 0) continue;
    chosen.notes.push_back(std::string("output: the input has no ") + kColours[colour] + " channel and the output has");
  }
}

}  // namespace

void NoteLosses(const PictureToWrite& picture, const std::optional<PictureReport>& of, OutputPixels& chosen) {
  if (!of) return;
  picture.WaitForAll();
  const PictureReport& source = *of;
  // The weights of large blurs leave a little less of a full alpha.
  constexpr double kFlat = 0.75;
  const auto note = [&](const std::string& line) { chosen.notes.push_back("output: " + line); };
  std::vector<Loss> losses = LossesToTell(source, picture, chosen.layout);
  // By itself: it comes and goes with the pixels of a sequence.
  const bool losesAlpha = std::erase_if(losses, [](const Loss& loss) { return loss.kind == LossKind::Alpha; }) > 0;
  if (losesAlpha && LeastAlpha(picture.image) < 1.0)
    note("alpha is dropped: " + std::string(picture.format.name) + " files are written without");
  if (!source.info.HasAlpha() && LeastAlpha(picture.image) < kFlat)
    note("the input has no alpha and the result has; written without it");
  if (!losses.empty()) note("lost: " + ListOf(losses));
  NoteMadeColours(source.info, chosen);
}

OutputPixels ChooseOutputPixels(const PictureToWrite& picture, const std::optional<PictureReport>& source) {
  const HostImage& image = picture.image;
  OutputPixels chosen;
  bool isGrey = source && source->info.IsGrey();
  if (isGrey) picture.WaitForAll();
  const bool hasAlpha = !source || source->info.HasAlpha();
  if (isGrey && !IsGreyPicture(image)) {
    isGrey = false;
    chosen.notes.emplace_back("output: the input is grey and the result is not; written as red, green and blue");
  }
  chosen.layout = NearestLayout(picture.format, isGrey, hasAlpha);
  chosen.type = source ? OutputTypeOf(source->info, picture.format, picture.storage)
                       : NearestType(picture.format, picture.storage.type.value_or(TypeForDepth(image.Depth())));
  return chosen;
}

std::optional<FileWindow> PlaceInFile(const PictureInfo& source, std::int32_t width, std::int32_t height) {
  const auto fits = [&](const FileWindow& window) { return window.width == width && window.height == height; };
  const FileWindow both = Union(source.data, source.display);
  if (fits(both)) return both;
  if (fits(source.data)) return source.data;
  return std::nullopt;
}

}  // namespace vblur::host
