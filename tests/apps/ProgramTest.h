// The base of the tests that run the built program in a folder of their own.
#pragma once

#include <algorithm>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "tests/apps/Environment.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/process/Process.h"

namespace vblur::cli {

class ProgramTest : public testing::Test {
 protected:
  std::filesystem::path Path(const std::string& name) const { return folder_.path() / name; }
  bool Exists(const std::string& name) const { return std::filesystem::exists(Path(name)); }

  static std::vector<std::string> Command(std::vector<std::string> arguments) {
    static const std::string program = std::filesystem::absolute(VBLUR_PROGRAM).string();
    arguments.insert(arguments.begin(), program);
    return arguments;
  }

  ProcessResult Run(std::vector<std::string> arguments, const Process::Setup& setup = {}) const {
    const std::vector<std::string> command = Command(std::move(arguments));
    // STATUS_DLL_INIT_FAILED: Wine sometimes cannot start a program on a busy machine, which has done nothing then.
    constexpr auto kNotStarted = static_cast<std::int32_t>(0xC0000142);
    ProcessResult result = Process(folder_.path(), command, setup).Wait();
    if (result.exit == kNotStarted) result = Process(folder_.path(), command, setup).Wait();
    return result;
  }

  // Runs the program and expects the exit code, this one line, and no change to the folder.
  void ExpectRefusal(std::vector<std::string> arguments, int exit, const std::string& line) const {
    const auto before = host::NamesIn(folder_.path());
    const ProcessResult result = Run(std::move(arguments));
    EXPECT_EQ(result.exit, exit);
    EXPECT_EQ(result.err, "vblur: " + line + "\n");
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(host::NamesIn(folder_.path()), before);
  }

  bool HasParts() const {
    const auto names = host::NamesIn(folder_.path());
    return std::ranges::any_of(names, [](const std::string& name) { return name.find(".part.") != std::string::npos; });
  }

  // A picture of any colours, also where it is transparent.
  void MakePicture(const std::string& name, std::int32_t width = 40, std::int32_t height = 30,
                   std::int32_t depth = 8) const {
    host::HostImage image;
    image.Reset(depth, 4, width, height);
    host::FillRandom(image, 0, depth == 8 ? 255 : 16384,
                     static_cast<unsigned>(name.size()) + static_cast<unsigned>(name.back()));
    host::PictureWriter().Write(Path(name), image, nullptr, true);
  }

  void MakeSequence(int frames) const {
    for (int frame = 1; frame <= frames; ++frame)
      MakePicture("in.00" + std::to_string(frame) + ".png");
  }

  std::vector<std::int32_t> Pixels(const std::string& name, std::int32_t depth = 8) const {
    host::HostImage image;
    host::PictureReader().ReadColour(Path(name), depth, image);
    return host::Components(image);
  }

  host::ScratchFolder folder_;
};

}  // namespace vblur::cli
