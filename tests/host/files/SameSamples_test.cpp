// Files that both systems' picture libraries read: the components that come out of them, with either.
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/PictureFile.h"

namespace vblur::host {
namespace {

struct KnownPicture {
  const char* file;
  const char* channels;
  // Of the components, at 8 and at 16 bits.
  std::uint64_t at8;
  std::uint64_t at16;

  friend void PrintTo(const KnownPicture& known, std::ostream* to) { *to << known.file; }
};

std::uint64_t HashOf(const HostImage& image) {
  std::uint64_t hash = 0xcbf29ce484222325u;
  for (std::size_t at = 0; at < image.ByteCount(); ++at)
    hash = (hash ^ std::to_integer<std::uint64_t>(image.Row(0)[at])) * 0x100000001b3u;
  return hash;
}

class SameSamples : public testing::TestWithParam<KnownPicture> {};

TEST_P(SameSamples, ComeOutOfAFile) {
  const KnownPicture& known = GetParam();
  const auto path = std::filesystem::path(VBLUR_PICTURES_FOLDER) / known.file;
  HostImage image;
  PictureReader reader;
  const ReadPicture read = reader.ReadColour(path, 8, image);
  std::string channels;
  for (const FileChannel& channel : read.info.all)
    channels += (channels.empty() ? "" : " ") + channel.name + ":" + NameOf(channel.type);
  EXPECT_EQ(channels, known.channels);
  EXPECT_EQ(HashOf(image), known.at8) << std::hex << "found 0x" << HashOf(image);
  reader.ReadColour(path, 16, image);
  EXPECT_EQ(HashOf(image), known.at16) << std::hex << "found 0x" << HashOf(image);
  const bool isPremultiplied = std::string_view(known.file).starts_with("premultiplied");
  EXPECT_EQ(read.associatedAlpha, isPremultiplied);
}

constexpr KnownPicture kKnown[] = {
    {"grey.bmp", "Y:uint8", 0x98b599473db8a483u, 0x790c1635ce008a29u},
    {"grey.jpg", "Y:uint8", 0x0925709aecea7663u, 0x8a41e14a39050b43u},
    {"grey1.png", "Y:uint8", 0xd320c24f4f800ef8u, 0xc2932d2759805005u},
    {"grey1.tif", "Y:uint1", 0xe28aeae119c946e8u, 0x5975b362003fcd05u},
    {"grey16-zip.tif", "Y:uint16", 0x98b599473db8a483u, 0x6c4bb594b3732cdfu},
    {"grey16.png", "Y:uint16", 0x98b599473db8a483u, 0x6c4bb594b3732cdfu},
    {"grey2-clear.png", "Y:uint8 A:uint8", 0xb5a71736b3044c19u, 0x76b00cf378c00ddeu},
    {"grey2.png", "Y:uint8", 0x7ca41572948dabf0u, 0x017dab86e85f1409u},
    {"grey4.png", "Y:uint8", 0xff07804f103c6c1cu, 0x027ca93e7cb61a7fu},
    {"grey4.tif", "Y:uint4", 0xff07804f103c6c1cu, 0x027ca93e7cb61a7fu},
    {"grey8-clear.png", "Y:uint8 A:uint8", 0xeba6f3d35d5ce6b8u, 0xe44cc4a6b71994c0u},
    {"grey8-none.tif", "Y:uint8", 0x98b599473db8a483u, 0x790c1635ce008a29u},
    {"grey8.png", "Y:uint8", 0x98b599473db8a483u, 0x790c1635ce008a29u},
    {"greya16.png", "Y:uint16 A:uint16", 0xa68251733e873a78u, 0x16323fce05c8a209u},
    {"greya8.png", "Y:uint8 A:uint8", 0xe01c6a5e116101eau, 0xf193e10d78bca880u},
    {"inks.jpg", "R:uint8 G:uint8 B:uint8", 0x300d1bdc0b22bbcdu, 0x4448f2eaa8c20334u},
    {"inks.tif", "R:uint8 G:uint8 B:uint8", 0x21ee2aa66aa93d20u, 0xabbbaa6776bf47bdu},
    {"interlaced.png", "R:uint8 G:uint8 B:uint8", 0x21ee2aa66aa93d20u, 0xabbbaa6776bf47bdu},
    {"palette-alpha.png", "R:uint8 G:uint8 B:uint8 A:uint8", 0x276957d43318b590u, 0x0adb4c8cea2ec633u},
    {"palette.png", "R:uint8 G:uint8 B:uint8", 0xdcd2a9948346860eu, 0x892958c317103741u},
    {"palette.tif", "R:uint8 G:uint8 B:uint8", 0xdcd2a9948346860eu, 0x892958c317103741u},
    {"palette1.bmp", "R:uint8 G:uint8 B:uint8", 0xe28aeae119c946e8u, 0x5975b362003fcd05u},
    {"palette4.bmp", "R:uint8 G:uint8 B:uint8", 0x2373c9317e2d0e5bu, 0xdcecfbc6e79a8fcfu},
    {"premultiplied8.tif", "R:uint8 G:uint8 B:uint8 A:uint8", 0xf17ddb3469ac809du, 0x94a400509759709au},
    {"progressive.jpg", "R:uint8 G:uint8 B:uint8", 0x59dd6c6113c38c56u, 0x61c5ad54e0147823u},
    {"rgb.bmp", "R:uint8 G:uint8 B:uint8", 0x21ee2aa66aa93d20u, 0xabbbaa6776bf47bdu},
    {"rgb.jpg", "R:uint8 G:uint8 B:uint8", 0x59dd6c6113c38c56u, 0x61c5ad54e0147823u},
    {"rgb16-clear.png", "R:uint16 G:uint16 B:uint16 A:uint16", 0x6df0aec207ed0cf6u, 0x4c29639452bafb71u},
    {"rgb16-lzw.tif", "R:uint16 G:uint16 B:uint16", 0x21ee2aa66aa93d20u, 0x3e5d7e8a31b5b271u},
    {"rgb16.png", "R:uint16 G:uint16 B:uint16", 0x21ee2aa66aa93d20u, 0x3e5d7e8a31b5b271u},
    {"rgb8-clear.png", "R:uint8 G:uint8 B:uint8 A:uint8", 0xb6745615a409e6b5u, 0x116f54a0acd8eec3u},
    {"rgb8-packbits.tif", "R:uint8 G:uint8 B:uint8", 0x21ee2aa66aa93d20u, 0xabbbaa6776bf47bdu},
    {"rgb8.png", "R:uint8 G:uint8 B:uint8", 0x21ee2aa66aa93d20u, 0xabbbaa6776bf47bdu},
    {"rgba-plain.bmp", "R:uint8 G:uint8 B:uint8 A:uint8", 0x3729c728ba6445f6u, 0x95a0238a05d222e6u},
    {"rgba.bmp", "R:uint8 G:uint8 B:uint8 A:uint8", 0xea3c4d1292aed256u, 0x07c018e83f6ea8aau},
    {"rgba16-zip.tif", "R:uint16 G:uint16 B:uint16 A:uint16", 0xadfb72486d052a8fu, 0x0d3fb1db2815ff9du},
    {"rgba16.png", "R:uint16 G:uint16 B:uint16 A:uint16", 0x42920213d32a9415u, 0xee79254d71f7969bu},
    {"rgba8-zip.tif", "R:uint8 G:uint8 B:uint8 A:uint8", 0xf17ddb3469ac809du, 0x94a400509759709au},
    {"rgba8.png", "R:uint8 G:uint8 B:uint8 A:uint8", 0xbb3120cf21d2935au, 0xa073844c5d2a382au},
    {"tiled8.tif", "R:uint8 G:uint8 B:uint8", 0x21ee2aa66aa93d20u, 0xabbbaa6776bf47bdu},
};

INSTANTIATE_TEST_SUITE_P(SameSamples, SameSamples, testing::ValuesIn(kKnown),
                         [](const testing::TestParamInfo<KnownPicture>& known) {
                           std::string name(known.param.file);
                           for (char& c : name) {
                             if (c == '.' || c == '-') c = '_';
                           }
                           return name;
                         });

}  // namespace
}  // namespace vblur::host
