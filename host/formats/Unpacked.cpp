#include "host/formats/Unpacked.h"

#include <array>

#include <zlib.h>

namespace vblur::host {

std::optional<std::string> Unpacked(std::string_view packed, std::size_t most) {
  z_stream stream{};
  if (::inflateInit(&stream) != Z_OK) return std::nullopt;
  // It does not change them.
  stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(packed.data()));
  stream.avail_in = static_cast<uInt>(packed.size());
  std::string text;
  int state = Z_OK;
  while (state == Z_OK && text.size() <= most) {
    std::array<char, 1 << 14> part;
    stream.next_out = reinterpret_cast<Bytef*>(part.data());
    stream.avail_out = static_cast<uInt>(part.size());
    state = ::inflate(&stream, Z_NO_FLUSH);
    text.append(part.data(), part.size() - stream.avail_out);
  }
  ::inflateEnd(&stream);
  return state == Z_STREAM_END ? std::optional(text) : std::nullopt;
}

}  // namespace vblur::host
