// Large PNG pictures that are packed in stretches: libpng reads every byte back, and the stream is one for any threads.
#include "host/light/png/PngStretches.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include "tests/support/host/PngBytes.h"

namespace vblur::host {
namespace {

using Bytes = std::vector<std::uint8_t>;

// What rows may hold: from what packs to nothing to what does not pack.
enum class Content { Zeros, Slopes, Stripes, Noise };

Bytes PixelsOf(const PngRows& rows, Content content, std::uint32_t seed) {
  std::mt19937 random(seed);
  Bytes pixels(static_cast<std::size_t>(rows.count) * rows.bytes);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const std::size_t x = i % rows.bytes;
    const std::size_t y = i / rows.bytes;
    switch (content) {
      case Content::Zeros: break;
      case Content::Slopes: pixels[i] = static_cast<std::uint8_t>(x * 3 + y * 5 + (random() & 3)); break;
      case Content::Stripes: pixels[i] = static_cast<std::uint8_t>((y / 7) % 2 == 0 ? 200 : x / 11); break;
      case Content::Noise: pixels[i] = static_cast<std::uint8_t>(random()); break;
    }
  }
  return pixels;
}

std::string PackedOf(const PngRows& rows, const Bytes& pixels, std::int32_t threads, int level = 4) {
  std::string stream;
  std::int32_t next = 0;
  PackPngRows(
      rows, level, threads,
      [&](std::int32_t row, std::byte* samples) {
        EXPECT_EQ(row, next++);
        std::memcpy(samples, pixels.data() + static_cast<std::size_t>(row) * rows.bytes, rows.bytes);
      },
      [&](const std::string& bytes) { stream += bytes; });
  EXPECT_EQ(next, rows.count);
  return stream;
}

std::string File(const PngRows& rows, const std::string& stream) {
  // Of one or two bytes a pixel, grey or grey and alpha; else RGB or RGBA.
  constexpr char kColours[] = {'\0', '\0', '\4', '\2', '\6'};
  const std::string head = Big32Of(static_cast<std::uint32_t>(rows.bytes / rows.pixelBytes)) +
                           Big32Of(static_cast<std::uint32_t>(rows.count)) + '\x08' + kColours[rows.pixelBytes] +
                           std::string(3, '\0');
  return "\x89PNG\r\n\x1a\n" + PngChunk("IHDR", head) + PngChunk("IDAT", stream) + PngChunk("IEND", "");
}

Bytes ReadBack(const PngRows& rows, const std::string& file) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  Bytes pixels(static_cast<std::size_t>(rows.count) * rows.bytes);
  EXPECT_TRUE(png_image_begin_read_from_memory(&image, file.data(), file.size())) << image.message;
  EXPECT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) << image.message;
  EXPECT_EQ(image.warning_or_error, 0u) << image.message;
  return pixels;
}

TEST(PngStretches, AreReadBackToTheLastByte) {
  std::uint32_t seed = 0;
  for (const int pixel : {1, 2, 3, 4}) {
    const auto pixelBytes = static_cast<std::size_t>(pixel);
    // Of one stretch; of some that end in the middle; of wide rows, each as long as a stretch and as what is looked at.
    for (const auto& [width, height] : {std::pair{5, 3}, {301, 4001}, {1, 600'000}, {200'000, 9}, {40'000, 30}}) {
      for (const Content content : {Content::Zeros, Content::Slopes, Content::Stripes, Content::Noise}) {
        const PngRows rows{height, static_cast<std::size_t>(width) * pixelBytes, pixelBytes};
        SCOPED_TRACE(testing::Message() << width << " x " << height << " of " << pixelBytes << " content "
                                        << static_cast<int>(content));
        const Bytes pixels = PixelsOf(rows, content, ++seed);
        const std::string stream = PackedOf(rows, pixels, 2);
        ASSERT_TRUE(ReadBack(rows, File(rows, stream)) == pixels);
      }
    }
  }
}

TEST(PngStretches, AreTheSameBytesForAnyNumberOfThreads) {
  const PngRows rows{1500, 2000, 4};
  const Bytes pixels = PixelsOf(rows, Content::Slopes, 7);
  const std::string alone = PackedOf(rows, pixels, 1);
  for (const std::int32_t threads : {0, 2, 3, 7, 64})
    EXPECT_TRUE(PackedOf(rows, pixels, threads) == alone) << threads;
}

// The stream as a whole, which readers check: its head and the sum at its end.
TEST(PngStretches, AreOneStreamOfZlib) {
  const PngRows rows{700, 3000, 3};
  const Bytes pixels = PixelsOf(rows, Content::Noise, 8);
  for (const int level : {1, 4, 6, 9}) {
    const std::string stream = PackedOf(rows, pixels, 2, level);
    Bytes filtered(static_cast<std::size_t>(rows.count) * (rows.bytes + 1));
    uLongf length = static_cast<uLongf>(filtered.size());
    ASSERT_EQ(uncompress(filtered.data(), &length, reinterpret_cast<const Bytef*>(stream.data()),
                         static_cast<uLong>(stream.size())),
              Z_OK);
    EXPECT_EQ(length, filtered.size());
    // As zlib itself begins at this level.
    Bytes one(64);
    uLongf ofOne = static_cast<uLongf>(one.size());
    compress2(one.data(), &ofOne, filtered.data(), 1, level);
    EXPECT_EQ(stream.substr(0, 2), std::string(one.begin(), one.begin() + 2)) << level;
  }
}

// What repeats beyond the end of a stretch is found: ten stretches of one row that does not pack.
TEST(PngStretches, LookBackAtTheOneBefore) {
  const PngRows rows{512, 10'000, 1};
  Bytes pixels = PixelsOf({1, rows.bytes, 1}, Content::Noise, 9);
  for (std::int32_t row = 1; row < rows.count; ++row)
    pixels.insert(pixels.end(), pixels.begin(), pixels.begin() + static_cast<std::ptrdiff_t>(rows.bytes));
  // The first row, and next to nothing for each of the others, also for the first of a stretch.
  EXPECT_LT(PackedOf(rows, pixels, 2).size(), rows.bytes + 512 * 60);
}

TEST(PngStretches, EndWithAnExceptionOfTheCaller) {
  const PngRows rows{4000, 4000, 4};
  const Bytes pixels = PixelsOf(rows, Content::Slopes, 10);
  for (const std::int32_t threads : {1, 4}) {
    int parts = 0;
    EXPECT_THROW(PackPngRows(
                     rows, 4, threads, [&](std::int32_t, std::byte* samples) { samples[0] = std::byte{1}; },
                     [&](const std::string&) {
                       if (++parts == 3) throw std::runtime_error("full");
                     }),
                 std::runtime_error);
    EXPECT_EQ(parts, 3);
  }
}

TEST(PngStretches, AreTwoAtLeastOfALargePicture) {
  EXPECT_FALSE(IsLargePng({1, 1 << 20, 4}));
  EXPECT_TRUE(IsLargePng({2, 1 << 20, 4}));
  EXPECT_FALSE(IsLargePng({512, 1023, 1}));
  EXPECT_TRUE(IsLargePng({513, 1023, 1}));
  EXPECT_FALSE(IsLargePng({16, 64, 4}));
}

}  // namespace
}  // namespace vblur::host
