// Picture files of exactly given samples, put together here byte by byte, so that no picture library has a say in them;
// and the samples of a file, by the picture library of the system.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <zlib.h>

#include "host/files/PictureLibrary.h"
#include "host/formats/PngHead.h"

namespace vblur::host {

// Samples of one or two bytes, the top row first.
template <typename Sample>
struct PlainPicture {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t channels = 0;
  std::vector<Sample> samples;
};

// All samples have this value.
template <typename Sample>
PlainPicture<Sample> FlatPicture(std::uint32_t width, std::uint32_t height, std::uint32_t channels, Sample value) {
  return {width, height, channels, std::vector<Sample>(std::size_t{width} * height * channels, value)};
}

namespace plain {

// A number's bytes, the highest first or the lowest first.
inline std::string Number(std::uint32_t value, int bytes, bool highFirst) {
  std::string text;
  for (int byte = 0; byte < bytes; ++byte)
    text += static_cast<char>(value >> 8 * (highFirst ? bytes - 1 - byte : byte) & 0xff);
  return text;
}

template <typename Sample>
std::string Row(const PlainPicture<Sample>& picture, std::uint32_t row, bool highFirst) {
  std::string bytes;
  const std::size_t count = std::size_t{picture.width} * picture.channels;
  for (std::size_t i = row * count; i < (row + 1) * count; ++i)
    bytes += Number(picture.samples.at(i), sizeof(Sample), highFirst);
  return bytes;
}

inline std::filesystem::path Write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

// A page: its list of fields, the bits of each channel, the pixels. The place of the next one stands in the list.
template <typename Sample>
void AddTiffPage(const PlainPicture<Sample>& picture, std::uint32_t inks, bool isLast, std::string& file) {
  constexpr std::uint32_t kShort = 3;
  constexpr std::uint32_t kLong = 4;
  constexpr std::uint32_t kBits = 8 * sizeof(Sample);
  const std::uint32_t channels = picture.channels;
  const bool hasAlpha = channels == 2 || (channels == 4 && inks == 0);
  const std::uint32_t fields = hasAlpha ? 11 : 10;
  const std::uint32_t bitsPlace = static_cast<std::uint32_t>(file.size()) + 2 + 12 * fields + 4;
  const std::uint32_t pixelsPlace = bitsPlace + 2 * channels;
  const auto pixelBytes = static_cast<std::uint32_t>(picture.samples.size() * sizeof(Sample));
  const std::uint32_t end = (pixelsPlace + pixelBytes + 1) / 2 * 2;
  const auto field = [&](std::uint32_t tag, std::uint32_t kind, std::uint32_t count, std::uint32_t value) {
    file += Number(tag, 2, false) + Number(kind, 2, false) + Number(count, 4, false) + Number(value, 4, false);
  };
  file += Number(fields, 2, false);
  field(256, kLong, 1, picture.width);
  field(257, kLong, 1, picture.height);
  // Two of them fit the field itself.
  field(258, kShort, channels, channels == 1 ? kBits : channels == 2 ? kBits << 16 | kBits : bitsPlace);
  field(259, kShort, 1, 1);
  field(262, kShort, 1, inks != 0 ? inks : channels < 3 ? 1 : 2);
  field(273, kLong, 1, pixelsPlace);
  field(277, kShort, 1, channels);
  field(278, kLong, 1, picture.height);
  field(279, kLong, 1, pixelBytes);
  field(284, kShort, 1, 1);
  // Not multiplied into the colours.
  if (hasAlpha) field(338, kShort, 1, 2);
  file += Number(isLast ? 0 : end, 4, false);
  for (std::uint32_t channel = 0; channel < channels; ++channel)
    file += Number(kBits, 2, false);
  for (std::uint32_t row = 0; row < picture.height; ++row)
    file += Row(picture, row, false);
  file.resize(end, '\0');
}

}  // namespace plain

// `chunks` stand behind the header, each with its length and its sum.
template <typename Sample>
std::filesystem::path WritePng(const std::filesystem::path& path, const PlainPicture<Sample>& picture,
                               const std::string& chunks = {}) {
  constexpr char kColourTypes[] = {0, 4, 2, 6};
  std::string head = plain::Number(picture.width, 4, true) + plain::Number(picture.height, 4, true);
  head += static_cast<char>(8 * sizeof(Sample));
  head += kColourTypes[picture.channels - 1];
  head.append(3, '\0');
  std::string rows;
  for (std::uint32_t row = 0; row < picture.height; ++row)
    rows += '\0' + plain::Row(picture, row, true);
  uLongf length = compressBound(static_cast<uLong>(rows.size()));
  std::string packed(length, '\0');
  if (compress(reinterpret_cast<Bytef*>(packed.data()), &length, reinterpret_cast<const Bytef*>(rows.data()),
               static_cast<uLong>(rows.size())) != Z_OK)
    throw std::runtime_error("cannot pack the rows of a picture");
  packed.resize(length);
  return plain::Write(
      path, "\x89PNG\r\n\x1a\n" + PngChunk("IHDR", head) + chunks + PngChunk("IDAT", packed) + PngChunk("IEND", {}));
}

// Unpacked pages. `inks` is the number of the colours' kind; 0 for grey, or red, green and blue.
template <typename Sample>
std::filesystem::path WriteTiff(const std::filesystem::path& path, const std::vector<PlainPicture<Sample>>& pages,
                                std::uint32_t inks = 0) {
  std::string file("II*\0\x08\0\0\0", 8);
  for (std::size_t page = 0; page < pages.size(); ++page)
    plain::AddTiffPage(pages[page], inks, page + 1 == pages.size(), file);
  return plain::Write(path, file);
}

template <typename Sample>
std::filesystem::path WriteTiff(const std::filesystem::path& path, const PlainPicture<Sample>& picture) {
  return WriteTiff(path, std::vector{picture});
}

// Of all channels, the top row first, as the file stores them. Throws Failure (cannot read), and std::runtime_error for
// samples of another kind.
template <typename Sample>
std::vector<Sample> StoredSamples(const std::filesystem::path& path) {
  const auto source = ThePictureLibrary().Open(path, {});
  const PictureInfo& info = source->Info();
  constexpr SampleKind kKind = sizeof(Sample) == 1 ? SampleKind::Unsigned8 : SampleKind::Unsigned16;
  if (info.samples != kKind) throw std::runtime_error(path.string() + ": " + NameOf(info.stored));
  const std::size_t rowSamples = static_cast<std::size_t>(info.width) * static_cast<std::size_t>(info.Taken().count);
  std::vector<Sample> samples(rowSamples * static_cast<std::size_t>(info.height));
  for (std::int32_t row = 0; row < info.height; row += source->RowsAtOnce()) {
    const std::int32_t count = std::min(source->RowsAtOnce(), info.height - row);
    source->ReadRows(row, count, reinterpret_cast<std::byte*>(samples.data() + rowSamples * std::size_t(row)));
  }
  return samples;
}

}  // namespace vblur::host
