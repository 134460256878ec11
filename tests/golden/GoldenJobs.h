// The jobs of a folder of golden pictures.
#pragma once

#include <algorithm>
#include <filesystem>
#include <vector>

namespace vblur::golden {

// Their files, by name.
inline std::vector<std::filesystem::path> GoldenJobs(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> jobs;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".json") jobs.push_back(entry.path());
  }
  std::sort(jobs.begin(), jobs.end());
  return jobs;
}

}  // namespace vblur::golden
