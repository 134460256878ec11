#include "tests/hashes/NumberFile.h"

#include <fstream>

#include "host/base/Failure.h"

namespace vblur::hashes {

std::filesystem::path NumbersOf(const std::filesystem::path& folder, const std::string& file, std::int32_t depth,
                                std::int32_t components) {
  return folder / "pictures" / (file + "." + std::to_string(depth) + "." + std::to_string(components) + ".txt");
}

void WriteNumbers(const differential::DrawnPicture& picture, const std::filesystem::path& file) {
  std::ofstream to(file);
  to << picture.width << ' ' << picture.height << ' ' << picture.components;
  const auto row = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.components);
  for (std::size_t i = 0; i < picture.values.size(); ++i)
    to << (i % row == 0 ? '\n' : ' ') << picture.values[i];
  to << '\n';
  if (!to.flush()) host::Refuse(host::ExitCode::CannotWrite, file.string(), "the numbers cannot be written");
}

differential::DrawnPicture ReadNumbers(const std::filesystem::path& file) {
  std::ifstream from(file);
  differential::DrawnPicture picture;
  if (!(from >> picture.width >> picture.height >> picture.components)) {
    host::Refuse(host::ExitCode::CannotRead, file.string(), "expected width, height and components, found none");
  }
  const auto count = std::size_t{1} * static_cast<std::size_t>(picture.width) *
                     static_cast<std::size_t>(picture.height) * static_cast<std::size_t>(picture.components);
  for (std::int32_t value = 0; picture.values.size() < count && from >> value;)
    picture.values.push_back(value);
  if (picture.values.size() < count) {
    host::Refuse(host::ExitCode::CannotRead, file.string(),
                 "expected " + std::to_string(count) + " values, found " + std::to_string(picture.values.size()));
  }
  return picture;
}

}  // namespace vblur::hashes
