// Writes V_Blur.rc and the pictures that it names into a folder.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "resources/Bitmaps.h"
#include "resources/Dialogs.h"
#include "resources/Strings.h"
#include "tools/resources/ResourceScript.h"

namespace {

using vblur::Module;

constexpr int kWrongUsage = 2;
constexpr int kCannotWrite = 4;

struct OutputFile {
  std::filesystem::path path;
  std::string content;

  std::filesystem::path Part() const { return path.string() + ".part"; }
};

bool WriteParts(const std::vector<OutputFile>& files) {
  for (const OutputFile& file : files) {
    std::ofstream stream(file.Part(), std::ios::binary);
    stream << file.content;
    stream.close();
    if (!stream) {
      std::fprintf(stderr, "%s: cannot be written\n", file.path.string().c_str());
      return false;
    }
  }
  return true;
}

// A file has its name only when all of them are complete.
bool Write(const std::vector<OutputFile>& files) {
  std::error_code error;
  bool done = WriteParts(files);
  for (const OutputFile& file : files) {
    if (!done) break;
    std::filesystem::rename(file.Part(), file.path, error);
    if (error) std::fprintf(stderr, "%s: %s\n", file.path.string().c_str(), error.message().c_str());
    done = !error;
  }
  if (!done) {
    for (const OutputFile& file : files)
      std::filesystem::remove(file.Part(), error);
  }
  return done;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "%s: %d arguments, expected one: the folder to write V_Blur.rc and its pictures into\n",
                 argv[0], argc - 1);
    return kWrongUsage;
  }
  const std::filesystem::path folder = argv[1];
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) {
    std::fprintf(stderr, "%s: %s, expected a folder\n", folder.string().c_str(), error.message().c_str());
    return kCannotWrite;
  }
  const Module module{vblur::resources::Strings(), vblur::resources::Bitmaps(), vblur::resources::Dialogs()};
  std::vector<OutputFile> files = {{folder / "V_Blur.rc", vblur::ResourceScript(module)},
                                   {folder / "Version.rc", vblur::VersionScript(module, VBLUR_VERSION)}};
  for (const vblur::ModuleBitmap& bitmap : module.bitmaps)
    files.push_back({folder / vblur::BitmapFileName(bitmap), vblur::BitmapFile(bitmap)});
  return Write(files) ? 0 : kCannotWrite;
}
