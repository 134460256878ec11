// The server loads no OpenGL before it paints, and renders without OpenGL.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

namespace vblur {
namespace {

// The output of the probe, run with `environment` before the command.
std::string Probe(const std::string& arguments, const std::string& environment = "") {
  std::FILE* const output = ::popen((environment + " " VBLUR_LOADING_PROBE " " + arguments + " 2>&1").c_str(), "r");
  if (output == nullptr) return "";
  std::string text;
  char buffer[512];
  while (std::fgets(buffer, sizeof buffer, output) != nullptr)
    text += buffer;
  EXPECT_EQ(::pclose(output), 0) << text;
  return text;
}

TEST(ServerLoading, ARenderLoadsNothingOfOpenGl) {
  EXPECT_EQ(Probe("render"), "rendered\n");
}

TEST(ServerLoading, TheFirstPaintLoadsOpenGl) {
  const std::string text = Probe("paint");
  EXPECT_EQ(text.substr(0, 17), "rendered\npainted\n");
  EXPECT_NE(text.find("libOpenGL.so.0\n"), std::string::npos) << text;
}

TEST(ServerLoading, RendersAndPaintsNothingWithoutOpenGl) {
  // Files that are not libraries shadow the system's.
  const auto folder = std::filesystem::path(testing::TempDir()) / "no_opengl";
  std::filesystem::create_directories(folder);
  for (const char* name : {"libOpenGL.so.0", "libGL.so.1", "libGLU.so.1"})
    std::ofstream(folder / name).flush();
  EXPECT_EQ(Probe("paint", "LD_LIBRARY_PATH=" + folder.string()), "rendered\npainted\n");
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace vblur
