// The C side of the header: its structs, calls from C, and what the shared library exports.
#include "tests/vblur/CHeader.h"

#include <cstddef>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
// Both names of one file: including the second declares nothing new.
#include "vblur/Blur.h"
#include "vblur/blur.h"

namespace vblur::test {
namespace {

TEST(CHeader, BothLanguagesSeeOneLayout) {
  EXPECT_EQ(sizeOfPictureInC(), sizeof(vblur_picture));
  EXPECT_EQ(sizeOfSettingsInC(), sizeof(vblur_settings));
}

// Offsets of fields are part of the ABI: compiled programs and bindings depend on them.
TEST(CHeader, FieldsStayWhereTheyAre) {
  if constexpr (sizeof(void*) == 8) {
    EXPECT_EQ(offsetof(vblur_picture, format), 8u);
    EXPECT_EQ(offsetof(vblur_picture, width), 12u);
    EXPECT_EQ(offsetof(vblur_picture, height), 16u);
    EXPECT_EQ(offsetof(vblur_picture, stride), 24u);
    EXPECT_EQ(sizeof(vblur_picture), 32u);
    EXPECT_EQ(offsetof(vblur_settings, channels), 4u);
    EXPECT_EQ(offsetof(vblur_settings, size_x), 8u);
    EXPECT_EQ(offsetof(vblur_settings, size_y), 16u);
    EXPECT_EQ(offsetof(vblur_settings, edge_x), 24u);
    EXPECT_EQ(offsetof(vblur_settings, edge_y), 28u);
    EXPECT_EQ(offsetof(vblur_settings, outside), 32u);
    EXPECT_EQ(offsetof(vblur_settings, has_region), 48u);
    EXPECT_EQ(offsetof(vblur_settings, region_x), 52u);
    EXPECT_EQ(offsetof(vblur_settings, region_height), 64u);
    EXPECT_EQ(offsetof(vblur_settings, on_this_thread), 68u);
    EXPECT_EQ(offsetof(vblur_settings, interrupt), 72u);
    EXPECT_EQ(offsetof(vblur_settings, interrupt_context), 80u);
  }
}

// The defaults of C and of C++ are stated twice.
TEST(CHeader, DefaultsAreThoseOfCpp) {
  vblur_settings settings;
  vblur_settings_init(&settings, sizeof(settings));
  const vblur_settings same = detail::plainSettings(Settings());
  EXPECT_EQ(settings.struct_size, sizeof(settings));
  EXPECT_EQ(settings.channels, same.channels);
  EXPECT_EQ(settings.size_x, same.size_x);
  EXPECT_EQ(settings.size_y, same.size_y);
  EXPECT_EQ(settings.edge_x, same.edge_x);
  EXPECT_EQ(settings.edge_y, same.edge_y);
  EXPECT_EQ(settings.outside[3], same.outside[3]);
  EXPECT_EQ(settings.has_region, 0);
  EXPECT_EQ(settings.on_this_thread, 0);
  EXPECT_EQ(settings.interrupt, nullptr);
}

TEST(CHeader, BlursFromC) {
  std::vector<unsigned char> source(4 * 9 * 9);
  std::vector<unsigned char> result(source.size());
  std::fill_n(source.begin() + 4 * 40, 4, 255);
  ASSERT_EQ(blurFromC(source.data(), result.data(), 9, 9, 1.5), VBLUR_DONE) << vblur_last_error();
  // Three boxes of 1/4, 1/2, 1/4 per axis: the middle keeps 20/64 on each, rounded box by box.
  EXPECT_EQ(result[4 * 40], 25);
  EXPECT_EQ(result[4 * 41], 19);
}

#ifndef _WIN32
// There tools/windows/check_library.py looks at the file.
TEST(CHeader, TheLibraryExportsItsFunctionsAndNothingElse) {
  std::set<std::string> names;
  FILE* list = popen("nm -D --defined-only " VBLUR_LIBRARY, "r");
  ASSERT_NE(list, nullptr);
  char name[256];
  while (std::fscanf(list, "%*s %*s %255s", name) == 1)
    names.insert(name);
  EXPECT_EQ(pclose(list), 0);
  EXPECT_EQ(names, (std::set<std::string>{"vblur_blur", "vblur_last_error", "vblur_set_threads", "vblur_settings_init",
                                          "vblur_sharpen", "vblur_version"}));
}
#endif

}  // namespace
}  // namespace vblur::test
