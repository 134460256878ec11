#include "tests/hashes/PictureHash.h"

#include <iomanip>
#include <sstream>

namespace vblur::hashes {
namespace {

class Fnv1a {
 public:
  void Add(std::uint32_t byte) { hash_ = (hash_ ^ (byte & 0xffu)) * 0x100000001b3u; }
  std::uint64_t Hash() const { return hash_; }

 private:
  std::uint64_t hash_ = 0xcbf29ce484222325u;
};

}  // namespace

std::uint64_t HashPicture(const differential::DrawnPicture& picture, std::int32_t depth) {
  Fnv1a hash;
  const auto row = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.components);
  for (auto y = static_cast<std::size_t>(picture.height); y-- > 0;) {
    for (std::size_t i = 0; i < row; ++i) {
      const auto value = static_cast<std::uint32_t>(picture.values[y * row + i]);
      hash.Add(value);
      if (depth >= 16) hash.Add(value >> 8);
      if (depth == 32) {
        hash.Add(value >> 16);
        hash.Add(value >> 24);
      }
    }
  }
  return hash.Hash();
}

std::string HashLine(const std::string& name, const differential::DrawnPicture& picture, std::int32_t depth) {
  std::ostringstream line;
  line << name << ' ' << picture.width << 'x' << picture.height << " R" << depth << ' ' << std::hex << std::setw(16)
       << std::setfill('0') << HashPicture(picture, depth);
  return line.str();
}

}  // namespace vblur::hashes
