// Renders the jobs of a folder and holds each result against the picture that is kept for it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vblur::golden {

struct GoldenResult {
  std::string name;
  bool isNew = false;
  std::size_t componentsThatDiffer = 0;
  // Before, after and the difference side by side, when there is one.
  std::filesystem::path picture;

  bool equal() const { return !isNew && componentsThatDiffer == 0; }
};

// `folder` holds jobs (NAME.json), the pictures that they read, and the expected results
// (expected/NAME.png or .exr). Differences are drawn into `changes`. With `update` a result that differs
// becomes the expected one. Throws host::Failure for a job that cannot be rendered.
std::vector<GoldenResult> CompareGoldenPictures(const std::filesystem::path& folder,
                                                const std::filesystem::path& changes, bool update);

}  // namespace vblur::golden
