// The files that a run of the program reads and writes, so that none takes the place of another.
#pragma once

#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/base/RealPaths.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/Job.h"

namespace vblur::cli {

// The picture that a command writes which writes none to the standard output. Throws host::Failure for "-" and for a
// name without the extension of a format.
void CheckPictureName(const std::filesystem::path& output);

// Throws host::Failure when the job and another file are both the standard input. `place` is the option of the other.
void RequireOtherInput(const std::string& place, const std::filesystem::path& job, const std::filesystem::path& other);

class RunFiles {
 public:
  explicit RunFiles(bool overwrite) : overwrite_(overwrite) {}

  void AddRead(const std::filesystem::path& file);
  // The pictures that these frames of a job read; other frames of these sequences are not replaced either.
  void AddReadByJob(const host::Job& job, const host::FrameList& frames);
  // The outputs of these frames, which the renderer itself checks.
  void AddWrittenByJob(const host::Job& job, const host::FrameList& frames);

  // Adds a file that the run will write. Throws host::Failure when it cannot be written, exists while files must not
  // be replaced, or is read or written by this run already, whatever its name. `place` is the option or the line of a
  // script that names the file.
  void AddWritten(const std::string& place, const std::filesystem::path& file);

 private:
  enum class Use { Read, Written };

  void RequireNoFrame(const std::string& place, const std::filesystem::path& file);

  const bool overwrite_;
  host::RealPaths paths_;
  std::unordered_map<std::string, Use> uses_;  // by real path
  std::vector<host::FramePattern> sequences_;  // of real paths
};

}  // namespace vblur::cli
