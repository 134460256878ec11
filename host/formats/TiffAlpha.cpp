#include "host/formats/TiffAlpha.h"

#include <cstdint>
#include <fstream>
#include <string_view>

namespace vblur::host {

namespace {

constexpr std::uint16_t kExtraSamples = 338;
constexpr std::uint16_t kShort = 3;

template <class Number>
Number Take(std::fstream& stream) {
  Number number{};
  stream.read(reinterpret_cast<char*>(&number), sizeof number);
  return number;
}

}  // namespace

bool SetTiffAlphaMeaning(const std::filesystem::path& file, TiffAlpha meaning) {
  std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
  char mark[4] = {};
  stream.read(mark, sizeof mark);
  if (!stream || std::string_view(mark, sizeof mark) != std::string_view("II*\0", 4)) return false;
  stream.seekg(Take<std::uint32_t>(stream));
  const auto count = Take<std::uint16_t>(stream);
  for (std::uint16_t i = 0; i < count && stream; ++i) {
    const auto tag = Take<std::uint16_t>(stream);
    const auto type = Take<std::uint16_t>(stream);
    const auto values = Take<std::uint32_t>(stream);
    const std::streampos place = stream.tellg();
    if (tag == kExtraSamples && type == kShort && values == 1) {
      const auto value = static_cast<std::uint16_t>(meaning);
      stream.seekp(place);
      stream.write(reinterpret_cast<const char*>(&value), sizeof value);
      stream.close();
      return !stream.fail();
    }
    stream.seekg(place + std::streamoff{4});
  }
  return false;
}

}  // namespace vblur::host
