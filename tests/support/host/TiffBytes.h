// Small TIFF files, made number by number.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vblur::host {

class TiffBytes {
 public:
  // Samples of 8 or 16 bits, which `pixels` holds in the order of the file's bytes.
  TiffBytes(std::uint32_t width, std::uint32_t height, std::uint32_t bits, std::uint32_t channels, std::string pixels,
            bool isBig = false)
      : pixels_(std::move(pixels)), isBig_(isBig) {
    constexpr std::uint32_t kRgb = 2;
    Short(256, {width}).Short(257, {height}).Short(258, std::vector<std::uint32_t>(channels, bits)).Short(259, {1});
    Short(262, {channels < 3 ? 1 : kRgb}).Short(277, {channels}).Short(278, {height});
    Long(273, {kPixels}).Long(279, {static_cast<std::uint32_t>(pixels_.size())});
  }

  TiffBytes& Short(std::uint16_t tag, const std::vector<std::uint32_t>& values) { return Add(tag, 3, 2, values); }
  TiffBytes& Long(std::uint16_t tag, const std::vector<std::uint32_t>& values) { return Add(tag, 4, 4, values); }
  TiffBytes& Text(std::uint16_t tag, std::string_view text) {
    tags_[tag] = {2, static_cast<std::uint32_t>(text.size() + 1), std::string(text) + '\0'};
    return *this;
  }
  // All values of a channel together.
  TiffBytes& Planes(std::uint32_t count) {
    const auto bytes = static_cast<std::uint32_t>(pixels_.size()) / count;
    std::vector<std::uint32_t> places;
    for (std::uint32_t plane = 0; plane < count; ++plane)
      places.push_back(kPixels + plane * bytes);
    return Short(284, {2}).Long(273, places).Long(279, std::vector<std::uint32_t>(count, bytes));
  }

  std::string File() const {
    std::string values = pixels_ + std::string(pixels_.size() % 2, '\0');
    std::string entries = Number(static_cast<std::uint32_t>(tags_.size()), 2);
    for (const auto& [number, tag] : tags_) {
      entries += Number(number, 2) + Number(tag.type, 2) + Number(tag.count, 4);
      if (tag.bytes.size() <= 4) {
        entries += tag.bytes + std::string(4 - tag.bytes.size(), '\0');
        continue;
      }
      entries += Number(kPixels + static_cast<std::uint32_t>(values.size()), 4);
      values += tag.bytes + std::string(tag.bytes.size() % 2, '\0');
    }
    return (isBig_ ? std::string("MM\0*", 4) : std::string("II*\0", 4)) +
           Number(kPixels + static_cast<std::uint32_t>(values.size()), 4) + values + entries + Number(0, 4);
  }

 private:
  struct Tag {
    std::uint32_t type = 0;
    std::uint32_t count = 0;
    std::string bytes;
  };

  static constexpr std::uint32_t kPixels = 8;

  TiffBytes& Add(std::uint16_t tag, std::uint32_t type, std::uint32_t size, const std::vector<std::uint32_t>& values) {
    Tag added{type, static_cast<std::uint32_t>(values.size()), {}};
    for (const std::uint32_t value : values)
      added.bytes += Number(value, size);
    tags_[tag] = added;
    return *this;
  }

  std::string Number(std::uint32_t value, std::uint32_t size) const {
    std::string bytes;
    for (std::uint32_t i = 0; i < size; ++i)
      bytes.push_back(static_cast<char>(value >> 8 * (isBig_ ? size - 1 - i : i) & 0xFF));
    return bytes;
  }

  std::string pixels_;
  bool isBig_;
  std::map<std::uint16_t, Tag> tags_;
};

}  // namespace vblur::host
