// Pictures and files for the tests of reading and writing.
#pragma once

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "host/hosted/HostImage.h"

namespace vblur::host {

inline std::int32_t Component(const HostImage& image, std::size_t index) {
  const std::byte* at = image.Row(0);
  if (image.Depth() == 8) return static_cast<std::int32_t>(at[index]);
  std::int16_t value = 0;
  std::memcpy(&value, at + 2 * index, 2);
  return value;
}

inline void SetComponent(HostImage& image, std::size_t index, std::int32_t value) {
  std::byte* at = image.Row(0);
  if (image.Depth() == 8) {
    at[index] = static_cast<std::byte>(value);
  } else {
    const auto narrow = static_cast<std::int16_t>(value);
    std::memcpy(at + 2 * index, &narrow, 2);
  }
}

inline std::size_t ComponentCount(const HostImage& image) {
  return image.ByteCount() / static_cast<std::size_t>(image.Depth() / 8);
}

inline std::vector<std::int32_t> Components(const HostImage& image) {
  std::vector<std::int32_t> all(ComponentCount(image));
  for (std::size_t i = 0; i < all.size(); ++i)
    all[i] = Component(image, i);
  return all;
}

// Those of a picture of floats.
inline std::vector<float> Floats(const HostImage& image) {
  std::vector<float> all(ComponentCount(image));
  std::memcpy(all.data(), image.Row(0), image.ByteCount());
  return all;
}

inline void SetFloats(HostImage& image, const std::vector<float>& components) {
  std::memcpy(image.Row(0), components.data(), components.size() * sizeof(float));
}

// Components are independent: colours may be non-zero where alpha is 0.
inline void FillRandom(HostImage& image, std::int32_t low, std::int32_t high, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_int_distribution<std::int32_t> value(low, high);
  for (std::size_t i = 0; i < ComponentCount(image); ++i)
    SetComponent(image, i, i % 16 == 3 ? 0 : value(random));
}

inline std::string Bytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline std::set<std::string> NamesIn(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.insert(entry.path().filename().string());
  return names;
}

}  // namespace vblur::host
