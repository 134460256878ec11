// Names of temporary files for output, and removal of those that this process or killed ones leave.
#pragma once

#include <atomic>
#include <filesystem>

namespace vblur::host {

// A unique name in the target's folder, across processes and machines that share it: hidden, with the target's
// extension, at most about 250 bytes.
std::filesystem::path PartFileFor(const std::filesystem::path& target);

// What a codec writes first, of which the part file is made: a name beside it, which is removed like it.
std::filesystem::path ScratchFileFor(const std::filesystem::path& part);

// Notes a file of this process while it is a part file.
class PartFileNote {
 public:
  explicit PartFileNote(const std::filesystem::path& file);
  ~PartFileNote();
  PartFileNote(const PartFileNote&) = delete;
  PartFileNote& operator=(const PartFileNote&) = delete;

 private:
  using Letter = std::filesystem::path::value_type;

  Letter* name_ = nullptr;  // owned while `place_` holds it
  std::atomic<Letter*>* place_ = nullptr;
};

// Removes all noted files, for a process that has to end at once. From a signal handler, too.
void RemoveNotedParts() noexcept;

// Removes part files of this machine's processes that no longer run. Those of other machines stay: their writers may
// be running. What cannot be read or removed is skipped.
void RemoveAbandonedParts(const std::filesystem::path& folder);

}  // namespace vblur::host
