#include "host/files/OutputFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <limits>
#include <new>
#include <sstream>
#include <system_error>

#include "host/base/Failure.h"
#include "host/base/OutputFileCommit.h"
#include "host/files/PictureLibrary.h"

namespace vblur::host {

namespace {

constexpr auto k8 = SampleKind::Unsigned8;
constexpr auto k16 = SampleKind::Unsigned16;
constexpr auto kFloat = SampleKind::Float;

constexpr std::int32_t kAnySide = std::numeric_limits<std::int32_t>::max();

constexpr std::array<OutputFormat, 11> kFormats = {{
    {"png", "png", true, k8, k16, false, kAnySide},
    {"jpeg", "jpg jpeg jpe", false, k8, k8, false, 65500},
    {"tiff", "tif tiff", true, k8, k16, false, kAnySide},
    {"openexr", "exr", true, kFloat, kFloat, true, kAnySide},
    {"dpx", "dpx", true, k8, k16, false, kAnySide},
    {"webp", "webp", true, k8, k8, false, 16383},
    {"targa", "tga", true, k8, k8, false, 65535},
    {"bmp", "bmp", true, k8, k8, false, kAnySide},
    {"pnm", "ppm", false, k8, k8, false, kAnySide},
    {"sgi", "sgi rgba rgb", true, k8, k16, false, 65535},
    {"hdr", "hdr", false, kFloat, kFloat, true, kAnySide},
}};

std::string Extension(const std::filesystem::path& path) {
  std::string extension = path.extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

bool Lists(std::string_view extensions, const std::string& extension) {
  std::istringstream words{std::string(extensions)};
  for (std::string word; words >> word;) {
    if (word == extension) return true;
  }
  return false;
}

}  // namespace

const OutputFormat& OutputFormatOf(const std::filesystem::path& path) {
  const std::string extension = Extension(path);
  std::string known;
  for (const OutputFormat& format : kFormats) {
    if (!extension.empty() && Lists(format.extensions, extension)) return format;
    if (!known.empty()) known += ' ';
    known += format.extensions;
  }
  Refuse(path.string(),
         "cannot write: " +
             (extension.empty() ? "the name has no extension" : "unknown file extension \"" + extension + "\"") +
             ", one of these was expected: " + known);
}

void RequireWritable(const std::filesystem::path& path, bool overwrite) {
  std::error_code error;
  const auto folder = path.parent_path().empty() ? std::filesystem::path(".") : path.parent_path();
  if (!std::filesystem::is_directory(folder, error))
    RefuseToWrite(path, "the folder " + folder.string() + " does not exist");
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) return;
  if (std::filesystem::is_directory(status)) RefuseToWrite(path, "it is a folder, a file name was expected");
  if (!std::filesystem::is_regular_file(status)) RefuseToWrite(path, "not a regular file");
  if (!overwrite) {
    throw Failure(ExitCode::CannotWrite, path.string() + ": cannot write: the file exists already",
                  FailureKind::FileExists);
  }
}

WrittenPicture::WrittenPicture(std::filesystem::path path, bool overwrite)
    : path_(std::move(path)), overwrite_(overwrite), file_(std::make_unique<OutputFileCommit>(path_)) {}
WrittenPicture::~WrittenPicture() = default;
WrittenPicture::WrittenPicture(WrittenPicture&&) noexcept = default;
WrittenPicture& WrittenPicture::operator=(WrittenPicture&&) noexcept = default;

const std::filesystem::path& WrittenPicture::WrittenPath() const {
  return file_->WrittenPath();
}

void WrittenPicture::Commit() {
  RequireWritable(path_, overwrite_);
  file_->Commit();
}

WrittenPicture PictureWriter::WriteBeside(const std::filesystem::path& path, const HostImage& image,
                                          const PictureMetadata* metadata, bool overwrite) {
  const OutputFormat& format = OutputFormatOf(path);
  RequireWritable(path, overwrite);
  if (std::max(image.Width(), image.Height()) > format.mostPixels) {
    RefuseToWrite(path, "a picture of this format has at most " + std::to_string(format.mostPixels) + " pixels a side");
  }
  const SampleKind kind = format.SamplesAt(image.Depth());
  const int channels = format.hasAlpha ? 4 : 3;
  const auto width = static_cast<std::size_t>(image.Width());
  const std::size_t rowBytes = width * static_cast<std::size_t>(channels) * SampleBytes(kind);
  try {
    samples_.resize(rowBytes * static_cast<std::size_t>(image.Height()));
  } catch (const std::bad_alloc&) {
    RefuseToWrite(path, "not enough memory");
  }
  for (std::int32_t y = 0; y < image.Height(); ++y) {
    WriteColourRow(image.Row(image.Height() - 1 - y), image.Depth(),
                   samples_.data() + rowBytes * static_cast<std::size_t>(y), kind, channels, width);
  }
  WrittenPicture written(path, overwrite);
  ThePictureLibrary().Write({path, written.WrittenPath(), format, image, samples_.data(), metadata}, stop_);
  return written;
}

}  // namespace vblur::host
