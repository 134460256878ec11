// A small block of Exif data, for the tests of what holds one.
#pragma once

#include <cstddef>
#include <string>

namespace vblur::host {

struct ExifBytes {
  bool isBig = false;
  std::string description{};  // of up to 3 letters; empty: none
  bool hasMakerNote = false;
  std::size_t width = 40;      // as a number of 16 bits
  std::size_t height = 70000;  // as a number of 32 bits
  std::string thumbnail{};     // empty: no second directory

  std::string Build() const {
    std::string block = isBig ? "MM" : "II";
    Put(block, 42, 2);
    Put(block, 8, 4);
    constexpr std::size_t kFirst = 8;
    constexpr std::size_t kDetails = kFirst + 2 + 2 * 12 + 4;
    constexpr std::size_t kSecond = kDetails + 2 + 3 * 12 + 4;
    constexpr std::size_t kCopy = kSecond + 2 + 2 * 12 + 4;
    Put(block, 2, 2);
    std::string text = description;
    text.resize(4, '\0');
    Entry(block, description.empty() ? 0x010f : 0x010e, 2, 4, text);
    Entry(block, 0x8769, 4, 1, Number(kDetails, 4));
    Put(block, thumbnail.empty() ? 0 : kSecond, 4);
    Put(block, 3, 2);
    Entry(block, hasMakerNote ? 0x927c : 0x9000, 7, 4, "note");
    Entry(block, 0xa002, 3, 1, Number(width, 2) + std::string(2, '\0'));
    Entry(block, 0xa003, 4, 1, Number(height, 4));
    Put(block, 0, 4);
    if (thumbnail.empty()) return block;
    Put(block, 2, 2);
    Entry(block, 0x0201, 4, 1, Number(kCopy, 4));
    Entry(block, 0x0202, 4, 1, Number(thumbnail.size(), 4));
    Put(block, 0, 4);
    return block + thumbnail;
  }

 private:
  std::string Number(std::size_t value, std::size_t bytes) const {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i)
      text.push_back(static_cast<char>(value >> 8 * (isBig ? bytes - 1 - i : i) & 0xff));
    return text;
  }
  void Put(std::string& block, std::size_t value, std::size_t bytes) const { block += Number(value, bytes); }
  void Entry(std::string& block, std::size_t tag, std::size_t type, std::size_t count, const std::string& value) const {
    block += Number(tag, 2) + Number(type, 2) + Number(count, 4) + value;
  }
};

}  // namespace vblur::host
