#include "host/OutputFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <limits>
#include <new>
#include <optional>
#include <sstream>
#include <system_error>

#include <OpenImageIO/imageio.h>

#include "host/Failure.h"
#include "host/OutputFileCommit.h"
#include "host/PictureFileMetadata.h"
#include "host/PictureFileOpen.h"

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

[[noreturn]] void Refuse(const std::filesystem::path& path, const std::string& why) {
  throw Failure(ExitCode::CannotWrite, path.string() + ": cannot write: " + why);
}

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

OIIO::TypeDesc BufferType(SampleKind kind) {
  if (kind == k8) return OIIO::TypeDesc::UINT8;
  return kind == k16 ? OIIO::TypeDesc::UINT16 : OIIO::TypeDesc::FLOAT;
}

// Nothing is lost that need not be. The levels are those beyond which files hardly become smaller.
void SetCompression(const OutputFormat& format, const PictureMetadata* metadata, OIIO::ImageSpec& spec) {
  if (format.name == "jpeg") spec.attribute("jpeg:subsampling", "4:4:4");
  if (format.name == "png") spec.attribute("png:compressionLevel", 4);
  if (format.name != "openexr") return;
  const bool keeps = metadata && !metadata->losslessExr.empty();
  spec.attribute("compression", keeps ? metadata->losslessExr : "piz");
}

OIIO::ImageSpec Describe(const OutputFormat& format, const HostImage& image, const PictureMetadata* metadata,
                         const OIIO::ImageOutput& writer) {
  const SampleKind samples = image.depth() == 8 ? format.samples8 : format.samples16;
  const bool half = format.isFloat && image.depth() == 8 && format.hasAlpha;
  OIIO::ImageSpec spec(image.width(), image.height(), format.hasAlpha ? 4 : 3,
                       half ? OIIO::TypeDesc(OIIO::TypeDesc::HALF) : BufferType(samples));
  if (metadata) ApplyMetadata(*metadata, writer, spec);
  // The writer multiplies or divides unless the file is to hold what the memory holds.
  const bool saysAssociated = metadata && metadata->associatedAlpha && format.name == "tiff";
  if (!saysAssociated) spec.attribute("oiio:UnassociatedAlpha", 1);
  SetCompression(format, metadata, spec);
  return spec;
}

bool StopsWriting(void* stop, float /*portion*/) {
  return (*static_cast<const StopTest*>(stop))();
}

// One picture on its way into one file.
class Writing {
 public:
  Writing(const std::filesystem::path& target, const std::filesystem::path& file, const OutputFormat& format)
      : target_(target), file_(file), format_(format), writer_(OIIO::ImageOutput::create(std::string(format.name))) {
    if (!writer_) Refuse(target_, "the picture library cannot write " + std::string(format.name));
  }

  void Open(const HostImage& image, const PictureMetadata* metadata) {
    if (writer_->supports("ioproxy")) {
      stream_.emplace(file_);
      if (stream_->systemError() != 0) Fail("the file cannot be made");
      writer_->set_ioproxy(&*stream_);
    }
    spec_ = Describe(format_, image, metadata, *writer_);
    if (!writer_->open(file_.string(), spec_)) Fail("the file cannot be made");
  }

  void Put(const std::byte* samples, SampleKind kind, const StopTest& stop) {
    StopTest stopOrError = [&] { return (stop && stop()) || (stream_ && stream_->systemError() != 0); };
    const bool done = writer_->write_image(BufferType(kind), samples, OIIO::AutoStride, OIIO::AutoStride,
                                           OIIO::AutoStride, StopsWriting, &stopOrError);
    if (stop && stop()) {
      writer_->close();
      throw FileInterrupted{};
    }
    if (!done || (stream_ && stream_->systemError() != 0)) Fail("writing failed");
  }

  void Close() {
    const bool closed = writer_->close();
    if (stream_) stream_->close();
    if (!closed || (stream_ && stream_->systemError() != 0)) Fail("writing failed");
    if (!stream_) RequireWhole();
  }

 private:
  [[noreturn]] void Fail(const std::string& otherwise) {
    const std::string message = LibraryMessage(writer_->geterror(), otherwise);
    const int number = stream_ ? stream_->systemError() : 0;
    Refuse(target_, number != 0 ? std::generic_category().message(number) : message);
  }

  // A writer that opens the file by itself may lose an error; its last row is then missing.
  void RequireWhole() {
    auto again = OIIO::ImageInput::create(std::string(format_.name));
    OIIO::ImageSpec spec;
    if (again && again->open(file_.string(), spec)) {
      std::vector<float> row(static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.nchannels));
      if (again->read_scanlines(0, 0, spec.height - 1, spec.height, 0, 0, spec.nchannels, OIIO::TypeDesc::FLOAT,
                                row.data())) {
        return;
      }
    }
    Refuse(target_, "the file came out incomplete; is the disk full?");
  }

  const std::filesystem::path& target_;
  const std::filesystem::path& file_;
  const OutputFormat& format_;
  std::optional<OutputFileStream> stream_;
  std::unique_ptr<OIIO::ImageOutput> writer_;
  OIIO::ImageSpec spec_;
};

}  // namespace

const OutputFormat& OutputFormatOf(const std::filesystem::path& path) {
  const std::string extension = Extension(path);
  std::string known;
  for (const OutputFormat& format : kFormats) {
    if (!extension.empty() && Lists(format.extensions, extension)) return format;
    if (!known.empty()) known += ' ';
    known += format.extensions;
  }
  throw Failure(ExitCode::WrongUsage,
                path.string() + ": cannot write: " +
                    (extension.empty() ? "the name has no extension" : "unknown file extension \"" + extension + "\"") +
                    ", one of these was expected: " + known);
}

void RequireWritable(const std::filesystem::path& path, bool overwrite) {
  std::error_code error;
  const auto folder = path.parent_path().empty() ? std::filesystem::path(".") : path.parent_path();
  if (!std::filesystem::is_directory(folder, error)) Refuse(path, "the folder " + folder.string() + " does not exist");
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) return;
  if (std::filesystem::is_directory(status)) Refuse(path, "it is a folder, a file name was expected");
  if (!std::filesystem::is_regular_file(status)) Refuse(path, "not a regular file");
  if (!overwrite) {
    Refuse(path, "the file exists already; give --overwrite to replace it or --skip-existing to leave it");
  }
}

WrittenPicture::WrittenPicture(std::filesystem::path path, bool overwrite)
    : path_(std::move(path)), overwrite_(overwrite), file_(std::make_unique<OutputFileCommit>(path_)) {}
WrittenPicture::~WrittenPicture() = default;
WrittenPicture::WrittenPicture(WrittenPicture&&) noexcept = default;
WrittenPicture& WrittenPicture::operator=(WrittenPicture&&) noexcept = default;

const std::filesystem::path& WrittenPicture::writtenPath() const {
  return file_->writtenPath();
}

void WrittenPicture::Commit() {
  RequireWritable(path_, overwrite_);
  file_->Commit();
}

WrittenPicture PictureWriter::WriteBeside(const std::filesystem::path& path, const HostImage& image,
                                          const PictureMetadata* metadata, bool overwrite) {
  const OutputFormat& format = OutputFormatOf(path);
  RequireWritable(path, overwrite);
  if (std::max(image.width(), image.height()) > format.mostPixels) {
    Refuse(path, "a picture of this format has at most " + std::to_string(format.mostPixels) + " pixels a side");
  }
  const SampleKind kind = image.depth() == 8 ? format.samples8 : format.samples16;
  const int channels = format.hasAlpha ? 4 : 3;
  const auto width = static_cast<std::size_t>(image.width());
  const std::size_t rowBytes = width * static_cast<std::size_t>(channels) * SampleBytes(kind);
  try {
    samples_.resize(rowBytes * static_cast<std::size_t>(image.height()));
  } catch (const std::bad_alloc&) {
    Refuse(path, "not enough memory");
  }
  for (std::int32_t y = 0; y < image.height(); ++y) {
    WriteColourRow(image.Row(image.height() - 1 - y), image.depth(),
                   samples_.data() + rowBytes * static_cast<std::size_t>(y), kind, channels, width);
  }
  const PictureFileChatter chatter;
  WrittenPicture written(path, overwrite);
  Writing writing(path, written.writtenPath(), format);
  writing.Open(image, metadata);
  writing.Put(samples_.data(), kind, stop_);
  writing.Close();
  return written;
}

}  // namespace vblur::host
