#include "host/files/PictureInfo.h"

#include <algorithm>
#include <system_error>

#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/base/StandardStream.h"
#include "host/base/SystemFiles.h"
#include "host/files/PictureLibrary.h"
#include "host/files/StandardInput.h"

namespace vblur::host {

FileWindow Union(const FileWindow& a, const FileWindow& b) {
  FileWindow all;
  all.x = std::min(a.x, b.x);
  all.y = std::min(a.y, b.y);
  all.width = static_cast<std::int32_t>(std::max(a.Right(), b.Right()) - all.x);
  all.height = static_cast<std::int32_t>(std::max(a.Bottom(), b.Bottom()) - all.y);
  return all;
}

std::string NameOf(const StoredType& stored) {
  if (stored.number == NumberKind::Float) return stored.bytes == 2 ? "half" : stored.bytes == 4 ? "float" : "double";
  return (stored.number == NumberKind::Signed ? "int" : "uint") + std::to_string(stored.bits);
}

TakenChannels PictureInfo::Taken() const {
  TakenChannels taken{std::max({choice.red, choice.green, choice.blue}), 0, choice};
  int last = 0;
  for (const int channel : {choice.red, choice.green, choice.blue, choice.alpha}) {
    if (channel < 0) continue;
    taken.first = std::min(taken.first, channel);
    last = std::max(last, channel);
  }
  taken.count = last + 1 - taken.first;
  for (int* channel : {&taken.choice.red, &taken.choice.green, &taken.choice.blue, &taken.choice.alpha}) {
    if (*channel >= 0) *channel -= taken.first;
  }
  return taken;
}

const FileChannel& PictureInfo::FirstColour() const {
  const int first = choice.red >= 0 ? choice.red : choice.green >= 0 ? choice.green : choice.blue;
  return all[static_cast<std::size_t>(first)];
}

bool PictureInfo::Passes(int channel) const {
  return std::ranges::binary_search(passing, channel);
}

std::size_t PictureInfo::PassingBytes() const {
  std::size_t bytes = 0;
  for (const int channel : passing)
    bytes += static_cast<std::size_t>(all[static_cast<std::size_t>(channel)].type.bytes);
  return bytes;
}

void RequirePictureFile(const std::filesystem::path& path) {
  if (IsStandardStream(path)) {
    FileToOpen(path);
    return;
  }
  if (const std::string flaw = FlawOfInputName(path); !flaw.empty()) RefuseToRead(path, flaw);
  const std::filesystem::path file = ExtendedPath(path);
  std::error_code error;
  const auto status = std::filesystem::status(file, error);
  if (!std::filesystem::exists(status)) RefuseToRead(path, "no such file");
  if (std::filesystem::is_directory(status)) RefuseToRead(path, "it is a folder, a picture file was expected");
  if (!std::filesystem::is_regular_file(status))
    RefuseToRead(path, "not a regular file; - reads a picture from a pipe");
  if (std::filesystem::file_size(file, error) == 0 && !error)
    RefuseToRead(path, "the file is empty, a picture was expected");
  if (const std::string why = TryToRead(file); !why.empty()) RefuseToRead(path, why);
}

PictureInfo ReadPictureInfo(const std::filesystem::path& path, const ReadChoice& choice) {
  RequirePictureFile(path);
  return ThePictureLibrary().Open(path, choice)->Info();
}

}  // namespace vblur::host
