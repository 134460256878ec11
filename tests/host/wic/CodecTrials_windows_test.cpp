#include "host/wic/CodecTrials.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

// Of a codec that has neither the option nor the pixels: that is no answer.
TEST(CodecTrials, WhatFailsIsNoAnswer) {
  const auto wrongOf = [](const auto& trial) -> std::string {
    try {
      trial();
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return {};
  };
  const std::string begin = "the system's codec of bmp files does not write a picture as it should (";
  EXPECT_EQ(wrongOf([] { TryQuality("bmp"); }).substr(0, begin.size()), begin);
  EXPECT_EQ(wrongOf([] { TrySwap("bmp"); }).substr(0, begin.size()), begin);
  EXPECT_EQ(wrongOf([] { TrySwap("png"); }), "");
  EXPECT_EQ(wrongOf([] { TryQuality("jpeg"); }), "");
}

TEST(CodecTrials, PixelsThatBecomeOthersAreAnAnswer) {
  EXPECT_FALSE(TryForm("bmp", GUID_WICPixelFormat16bppGray));
  EXPECT_TRUE(TryForm("png", GUID_WICPixelFormat16bppGray));
}

}  // namespace
}  // namespace vblur::host
