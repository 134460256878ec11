// What the calls refuse, and with which messages.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "vblur/Blur.h"

namespace vblur::test {
namespace {

class CallCheck : public ::testing::Test {
 protected:
  static constexpr std::int32_t kWidth = 4;
  static constexpr std::int32_t kHeight = 3;

  CallCheck() { vblur_settings_init(&settings_, sizeof(settings_)); }

  void refuses(const std::string& message) { refusesOf(vblur_blur, message); }
  void refusesOf(decltype(&vblur_blur) call, const std::string& message) {
    const std::vector<std::int16_t> before = memory_;
    EXPECT_EQ(call(&source_, &result_, &settings_), VBLUR_WRONG_ARGUMENT);
    EXPECT_EQ(vblur_last_error(), message);
    EXPECT_EQ(memory_, before);
  }
  void accepts() {
    EXPECT_EQ(vblur_blur(&source_, &result_, &settings_), VBLUR_DONE);
    EXPECT_STREQ(vblur_last_error(), "");
  }

  std::vector<std::int16_t> memory_ = std::vector<std::int16_t>(4 * 4 * kWidth * kHeight, 7);
  vblur_picture source_{memory_.data(), VBLUR_RGBA_S2_14, kWidth, kHeight, 0};
  vblur_picture result_{memory_.data() + 2 * 4 * kWidth * kHeight, VBLUR_RGBA_S2_14, kWidth, kHeight, 0};
  vblur_settings settings_;
};

TEST_F(CallCheck, TheCaseItselfIsFine) {
  accepts();
}

TEST_F(CallCheck, Pictures) {
  EXPECT_EQ(vblur_blur(nullptr, &result_, &settings_), VBLUR_WRONG_ARGUMENT);
  EXPECT_STREQ(vblur_last_error(), "source: null: expected a vblur_picture");
  EXPECT_EQ(vblur_blur(&source_, nullptr, &settings_), VBLUR_WRONG_ARGUMENT);
  EXPECT_STREQ(vblur_last_error(), "result: null: expected a vblur_picture");
  void* const pixels = source_.pixels;
  source_.pixels = nullptr;
  refuses("source.pixels: null: expected the first pixel of row 0");
  source_.pixels = static_cast<char*>(pixels) + 1;
  refuses("source.pixels: an address between components: expected a multiple of 2, the bytes of a component");
  source_.pixels = pixels;
  source_.format = 3;
  refuses("source.format: 3: expected 0 to 2");
  source_.format = VBLUR_RGBA_8;
  refuses("result.format: 1: expected 0, the format of the source");
  source_.format = VBLUR_RGBA_S2_14;
  source_.width = 0;
  refuses("source.width: 0: expected 1 to 16777216");
  source_.width = kWidth;
  result_.height = 16777217;
  refuses("result.height: 16777217: expected 1 to 16777216");
  result_.height = kHeight - 1;
  refuses("result: 4 x 2 pixels: expected 4 x 3, as the source");
}

TEST_F(CallCheck, Floats) {
  std::vector<float> memory(2 * 4 * kWidth * kHeight, 0.5f);
  source_ = {memory.data(), VBLUR_RGBA_F32, kWidth, kHeight, 0};
  result_ = {memory.data() + 4 * kWidth * kHeight, VBLUR_RGBA_F32, kWidth, kHeight, 0};
  accepts();
  source_.pixels = reinterpret_cast<char*>(memory.data()) + 2;
  refuses("source.pixels: an address between components: expected a multiple of 4, the bytes of a component");
  source_.pixels = memory.data();
  source_.stride = 66;
  refuses("source.stride: 66: expected a multiple of 4, the bytes of a component");
  source_.stride = 60;
  refuses("source.stride: 60: expected 0, or 64 or more forwards or backwards, for rows of 4 pixels of 16 bytes");
  source_.stride = 0;
  settings_.outside[0] = 1 << 20;  // Of the other formats.
  accepts();
  settings_.outside_f32[2] = std::nanf("");
  refuses("settings.outside_f32: nan: expected finite numbers");
}

// A program that was compiled before the last fields were there.
TEST_F(CallCheck, FloatsAreBlackOutsideWithoutTheField) {
  std::vector<float> memory(2 * 4 * kWidth * kHeight, 1.0f);
  source_ = {memory.data(), VBLUR_RGBA_F32, kWidth, kHeight, 0};
  result_ = {memory.data() + 4 * kWidth * kHeight, VBLUR_RGBA_F32, kWidth, kHeight, 0};
  settings_.edge_x = settings_.edge_y = VBLUR_EDGE_COLOUR;
  settings_.outside_f32[0] = 1.0f;
  accepts();
  EXPECT_GT(memory[4 * kWidth * kHeight], 0.99f);
  settings_.struct_size = offsetof(vblur_settings, outside_f32);
  accepts();
  EXPECT_LT(memory[4 * kWidth * kHeight], 0.9f);
}

TEST_F(CallCheck, Strides) {
  source_.stride = 31;
  refuses("source.stride: 31: expected a multiple of 2, the bytes of a component");
  source_.stride = 30;
  refuses("source.stride: 30: expected 0, or 32 or more forwards or backwards, for rows of 4 pixels of 8 bytes");
  source_.stride = -30;
  refuses("source.stride: -30: expected 0, or 32 or more forwards or backwards, for rows of 4 pixels of 8 bytes");
  source_.stride = 32;
  accepts();
  for (const std::int64_t beyond : {std::int64_t{1} << 62, std::numeric_limits<std::int64_t>::min()}) {
    source_.stride = beyond;
    refuses("source.stride: " + std::to_string(beyond) +
            ": expected 549755813887 bytes at most, forwards or backwards");
  }
  // The stride of a single row is irrelevant.
  source_.height = result_.height = 1;
  source_.stride = 2;
  accepts();
}

TEST_F(CallCheck, SharedMemory) {
  result_.pixels = static_cast<char*>(source_.pixels) + 8;
  refuses(
      "result: shares memory with the source: expected none in common, or the same stride and no pixel in common, or "
      "the source itself");
  refusesOf(
      vblur_sharpen,
      "result: shares memory with the source: expected none in common, or the same stride and no pixel in common");
  result_.pixels = source_.pixels;
  accepts();
  const char* const ownResult =
      "result: the source's own pixels: expected a result of its own, to sharpen and for VBLUR_GREY";
  refusesOf(vblur_sharpen, ownResult);
  settings_.channels = VBLUR_GREY;
  refuses(ownResult);
  settings_.channels = VBLUR_RGBA;
  // The same rows, one picture upside down.
  result_.pixels = static_cast<char*>(source_.pixels) + 64;
  result_.stride = -32;
  EXPECT_EQ(vblur_blur(&source_, &result_, &settings_), VBLUR_WRONG_ARGUMENT);
  // Rows between each other, and rows that end where the others begin.
  source_.stride = result_.stride = 64;
  result_.pixels = static_cast<char*>(source_.pixels) + 32;
  accepts();
  result_.pixels = static_cast<char*>(source_.pixels) + 30;
  EXPECT_EQ(vblur_blur(&source_, &result_, &settings_), VBLUR_WRONG_ARGUMENT);
  result_.pixels = static_cast<char*>(source_.pixels) + 34;
  EXPECT_EQ(vblur_blur(&source_, &result_, &settings_), VBLUR_WRONG_ARGUMENT);
}

TEST_F(CallCheck, Settings) {
  EXPECT_EQ(vblur_blur(&source_, &result_, nullptr), VBLUR_WRONG_ARGUMENT);
  EXPECT_STREQ(vblur_last_error(), "settings: null: expected a vblur_settings");
  settings_.channels = 11;
  refuses("settings.channels: 11: expected 0 to 10");
  settings_.channels = VBLUR_V;
  settings_.size_x = -0.5;
  refuses("settings.size_x: -0.5: expected 0 or more, in pixels");
  settings_.size_x = 0.0;
  settings_.size_y = std::numeric_limits<double>::infinity();
  refuses("settings.size_y: inf: expected 0 or more, in pixels");
  settings_.size_y = std::nan("");
  refuses("settings.size_y: nan: expected 0 or more, in pixels");
  settings_.size_y = 1e300;
  settings_.edge_x = -1;
  refuses("settings.edge_x: -1: expected 0 to 3");
  settings_.edge_x = VBLUR_EDGE_COLOUR;
  settings_.edge_y = 4;
  refuses("settings.edge_y: 4: expected 0 to 3");
  settings_.edge_y = VBLUR_EDGE_WRAP;
  settings_.outside[3] = 32768;
  refuses("settings.outside: 32768: expected -32768 to 32767");
  settings_.outside[3] = 32767;
  accepts();
}

TEST_F(CallCheck, Regions) {
  settings_.has_region = 1;
  refuses("settings.region: 0 x 0 pixels from column 0, row 0: expected at least one, within 4 x 3");
  settings_.region_width = 3;
  settings_.region_height = 1;
  settings_.region_x = 2;
  refuses("settings.region: 3 x 1 pixels from column 2, row 0: expected at least one, within 4 x 3");
  settings_.region_x = 2147483647;
  refuses("settings.region: 3 x 1 pixels from column 2147483647, row 0: expected at least one, within 4 x 3");
  settings_.region_x = 1;
  accepts();
}

// A caller compiled against an older header, and one against a newer.
TEST_F(CallCheck, TheStructMayGrow) {
  settings_.struct_size = 8;
  refuses("settings.struct_size: 8: expected 24 or more: call vblur_settings_init first");
  settings_.struct_size = 24;
  settings_.edge_x = 99;  // beyond the caller's end
  accepts();
  struct Newer {
    vblur_settings known;
    std::int64_t unknown;
  } newer{};
  vblur_settings_init(&newer.known, sizeof(newer));
  EXPECT_EQ(newer.known.struct_size, sizeof(vblur_settings));
  newer.known.struct_size = sizeof(newer);
  EXPECT_EQ(vblur_blur(&source_, &result_, &newer.known), VBLUR_DONE);
  newer.unknown = 1;
  EXPECT_EQ(vblur_blur(&source_, &result_, &newer.known), VBLUR_WRONG_ARGUMENT);
  EXPECT_EQ(std::string(vblur_last_error()),
            "settings.struct_size: " + std::to_string(sizeof(newer)) + ": expected " +
                std::to_string(sizeof(vblur_settings)) +
                " or zeros beyond: the program sets fields of a newer vblur/blur.h than this library");
}

TEST_F(CallCheck, Threads) {
  EXPECT_EQ(vblur_set_threads(-1), VBLUR_WRONG_ARGUMENT);
  EXPECT_STREQ(vblur_last_error(), "threads: -1: expected 0 to 1024");
  EXPECT_EQ(vblur_set_threads(1025), VBLUR_WRONG_ARGUMENT);
  EXPECT_EQ(vblur_set_threads(0), VBLUR_DONE);
}

// A request for more memory than an address space has, by a picture that uses little of it.
TEST_F(CallCheck, MoreMemoryThanThereIs) {
  source_.height = result_.height = 1;
  source_.format = result_.format = VBLUR_RGBA_8;
  std::vector<unsigned char> row(std::size_t{4} << 24);
  source_.width = result_.width = 1 << 24;
  source_.pixels = result_.pixels = row.data();
  settings_.size_x = 3.0;
  settings_.size_y = 1e9;
  EXPECT_EQ(vblur_blur(&source_, &result_, &settings_), VBLUR_NO_MEMORY);
  EXPECT_EQ(std::string(vblur_last_error()),
            "no memory for the picture between the passes: expected about the source's size");
}

}  // namespace
}  // namespace vblur::test
