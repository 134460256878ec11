// Renders the jobs of a folder and compares each result with its expected picture.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vblur::golden {

struct GoldenResult {
  std::string name;
  bool isNew = false;
  std::size_t componentsThatDiffer = 0;
  // Before, after and difference side by side; empty if equal.
  std::filesystem::path picture;

  bool equal() const { return !isNew && componentsThatDiffer == 0; }
};

// `folder` holds jobs (NAME.json), the pictures that they read, and the expected results
// (expected/NAME.png or .exr). Differences are drawn into `changes`. With `update` a result that differs
// becomes the expected one. Throws host::Failure for a job that cannot be rendered.
std::vector<GoldenResult> CompareGoldenPictures(const std::filesystem::path& folder,
                                                const std::filesystem::path& changes, bool update);

}  // namespace vblur::golden
