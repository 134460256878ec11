// A picture to write, and why it is not written.
#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {

class OutputFile : public testing::Test {
 protected:
  OutputFile() {
    image_.Reset(8, 4, 40, 30);
    FillRandom(image_, 0, 255, 1);
  }

  std::string WriteFailure(const std::filesystem::path& path, bool overwrite) {
    const auto failure = CaughtFailure([&] { PictureWriter().Write(path, image_, nullptr, overwrite); });
    EXPECT_EQ(failure->Code(), ExitCode::CannotWrite);
    return failure->what();
  }

  ScratchFolder folder_;
  HostImage image_;
};

}  // namespace vblur::host
