// Blurs a picture in memory with the library: black on the left, white on the right.
#include <cstdio>
#include <vector>

#include <vblur/Blur.h>

int main() {
  std::vector<unsigned char> before(64 * 64 * 4);
  std::vector<unsigned char> after(before.size());
  for (std::size_t i = 0; i < before.size(); ++i)
    before[i] = i / 4 % 64 < 32 ? 0 : 255;

  vblur::Settings settings;
  settings.sizeX = settings.sizeY = 12.0;         // pixels
  settings.edgeX = vblur::Edge::Repeat;           // repeat the pixels at the edge
  settings.region = vblur::Region{0, 32, 64, 1};  // one row is enough here
  const vblur::Result done = vblur::blur({before.data(), vblur::Format::RGBA8, 64, 64},
                                         {after.data(), vblur::Format::RGBA8, 64, 64}, settings);
  if (!done) return std::fprintf(stderr, "%s\n", done.message.c_str()), 1;
  for (std::size_t x = 20; x < 44; x += 4)
    std::printf("x = %zu: %d\n", x, after[(32 * 64 + x) * 4]);
  return 0;
}
