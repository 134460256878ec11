// The picture in a file, compared with a drawn one.
#pragma once

#include <cstdint>
#include <filesystem>

#include <gtest/gtest.h>

#include "host/files/PictureFile.h"
#include "tests/differential/EffectRun.h"

namespace vblur::differential {

inline void ExpectFile(const std::filesystem::path& file, const DrawnPicture& expected, std::int32_t depth) {
  host::HostImage image;
  host::PictureReader reader;
  if (expected.components == 4) {
    reader.ReadColour(file, depth, image);
  } else {
    reader.ReadMask(file, depth, image);
  }
  const DrawnPicture found = FromHostImage(image);
  EXPECT_EQ(found.width, expected.width) << file;
  EXPECT_EQ(found.height, expected.height) << file;
  EXPECT_EQ(found.values, expected.values) << file;
}

}  // namespace vblur::differential
