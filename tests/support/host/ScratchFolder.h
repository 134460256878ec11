// A temporary folder for a test, removed at its end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vblur::host {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::canonical(std::filesystem::temp_directory_path()) / "vblur-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make a folder for the test");
    path_ = name;
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
