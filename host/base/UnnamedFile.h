// A temporary file without a name: nothing is left of it, however the process ends. On Windows, where files have names,
// that of a killed process stays until the next one makes such a file.
#pragma once

#include <filesystem>
#include <memory>

#include "host/base/PartFiles.h"

namespace vblur::host {

class UnnamedFile {
 public:
  // In the usual folder for temporary files. Throws std::system_error whose text says what is wrong with that folder.
  UnnamedFile();
  ~UnnamedFile();
  UnnamedFile(const UnnamedFile&) = delete;
  UnnamedFile& operator=(const UnnamedFile&) = delete;

  int Descriptor() const { return descriptor_; }
  // Opens the file anew, from its beginning, in this process, as often as wanted.
  const std::filesystem::path& Path() const { return path_; }

 private:
  int descriptor_ = -1;
  std::filesystem::path path_;
  std::unique_ptr<PartFileNote> note_;  // of a file that has a name
};

}  // namespace vblur::host
