// A temporary folder for a test, removed at its end.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace vblur::host {

// Whether std::filesystem makes symbolic links here.
#ifdef _WIN32
inline constexpr bool kMakesLinks = false;
#else
inline constexpr bool kMakesLinks = true;
#endif

class ScratchFolder {
 public:
  ScratchFolder() {
    const std::filesystem::path parent = std::filesystem::canonical(std::filesystem::temp_directory_path());
    std::random_device random;
    // Nobody else has the one that is made.
    do {
      path_ = parent / ("vblur-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  std::filesystem::path Write(const std::filesystem::path& name, std::string_view text) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << text;
    return path_ / name;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace vblur::host
