#include "host/pictures/PictureWriting.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
#include "host/formats/DpxHeader.h"
#include "host/formats/ExifBlock.h"
#include "host/formats/JpegSegments.h"
#include "host/pictures/OutputFileStream.h"
#include "host/pictures/OutputLayout.h"
#include "host/pictures/OutputRows.h"
#include "host/pictures/PictureFileOpen.h"
#include "host/pictures/PngChunks.h"

namespace vblur::host {

namespace {

// The writer of TIFF files makes an unreadable file when it writes metadata through a custom stream.
bool TakesStream(const OIIO::ImageOutput& writer) {
  return writer.supports("ioproxy") && std::string_view(writer.format_name()) != "tiff";
}

// As many rows as make some megabytes, in multiples of what formats pack together.
std::int32_t RowsAtOnce(std::size_t rowBytes) {
  constexpr std::size_t kBytes = std::size_t{4} << 20;
  constexpr std::size_t kPacked = 64;
  const std::size_t fitting = kBytes / std::max<std::size_t>(rowBytes, 1);
  return static_cast<std::int32_t>(std::clamp(fitting / kPacked * kPacked, kPacked, std::size_t{4096}));
}

// What the system says to more bytes in a file that a writer has opened by itself and failed to write: a full disk. 0:
// it takes them.
int ErrorAtEnd(const std::filesystem::path& file) {
  constexpr std::size_t kBytes = std::size_t{1} << 20;
  const std::vector<char> bytes(kBytes);
  errno = 0;
  std::FILE* const end = std::fopen(file.c_str(), "ab");
  if (end == nullptr) return errno;
  const bool isWritten = std::fwrite(bytes.data(), 1, kBytes, end) == kBytes && std::fflush(end) == 0;
  const int error = isWritten ? 0 : errno;
  std::fclose(end);
  return error;
}

// Writes one picture into one file.
class Writing {
 public:
  Writing(const PictureToWrite& picture, const StopTest& stop)
      : picture_(picture), stop_(stop), writer_(OIIO::ImageOutput::create(std::string(picture.format.name))) {
    if (!writer_) Refuse("the picture library cannot write " + std::string(picture.format.name));
    layout_ = PlanOutput(picture);
    RequireSize();
    rows_.emplace(picture_, layout_);
    chunk_ = RowsAtOnce(rows_->RowBytes());
  }

  void Open() {
    if (TakesStream(*writer_)) {
      stream_.emplace(picture_.file, stop_);
      if (stream_->SystemError() != 0) Fail("the file cannot be made");
      if (picture_.format.name == "png") InsertPngChunks();
      if (picture_.format.name == "jpeg") InsertJpegExif();
      writer_->set_ioproxy(&*stream_);
    }
    if (!writer_->open(picture_.file.string(), layout_.spec)) Fail("the file cannot be made");
  }

  void Put() {
    const OIIO::ImageSpec& spec = layout_.spec;
    std::vector<std::byte> samples = Buffer();
    for (std::int32_t row = 0; row < spec.height; row += chunk_) {
      const std::int32_t count = std::min(chunk_, spec.height - row);
      rows_->Make(row, count, samples.data());
      rows_->AddBeyond(row, count, beyond_);
      const bool done =
          writer_->write_scanlines(spec.y + row, spec.y + row + count, 0, OIIO::TypeDesc::UNKNOWN, samples.data());
      StopIfAsked();
      if (!done || HasSystemError()) Fail("writing failed");
    }
  }

  void Close() {
    const bool closed = writer_->close();
    if (stream_) stream_->close();
    StopIfAsked();
    if (!closed || HasSystemError()) Fail("writing failed");
    if (picture_.format.name == "sgi") ClearHeader();
    if (picture_.format.name == "dpx") CompleteDpxHeader();
    // A writer that opens the file by itself may lose an error.
    if (!stream_) RequireWhole();
  }

  std::vector<std::string> Notes() {
    const SampleType type = layout_.channels.front().type;
    const std::string held = type == SampleType::Float
                                 ? "0 and above, which " + std::string(picture_.format.name) + " files hold"
                                 : LimitsOf(type);
    const std::string clipped = FormatBeyond(beyond_, held);
    if (!clipped.empty()) layout_.notes.push_back(OutputName(picture_.target) + ": " + clipped);
    return std::move(layout_.notes);
  }

 private:
  [[noreturn]] void Refuse(const std::string& why) const { RefuseToWrite(picture_.target, why); }
  bool HasSystemError() const { return stream_ && stream_->SystemError() != 0; }

  [[noreturn]] void Fail(const std::string& otherwise) {
    const std::string message = LibraryMessage(writer_->geterror(), otherwise);
    const int error = stream_ ? stream_->SystemError() : ErrorAtEnd(picture_.file);
    Refuse(error != 0 ? std::generic_category().message(error) : message);
  }

  void StopIfAsked() {
    if (!stop_ || !stop_()) return;
    writer_->close();
    throw FileInterrupted{};
  }

  void RequireSize() const {
    const std::int32_t most = picture_.format.mostPixels;
    if (std::max(layout_.spec.width, layout_.spec.height) <= most) return;
    Refuse("a picture of this format has at most " + std::to_string(most) + " pixels a side");
  }

  std::vector<std::byte> Buffer() const {
    return std::vector<std::byte>(rows_->RowBytes() * static_cast<std::size_t>(std::min(chunk_, layout_.spec.height)));
  }

  void InsertPngChunks() {
    std::string chunks;
    if (picture_.metadata != nullptr) {
      const PictureInfo& source = picture_.metadata->info;
      chunks = TakePngChunks(layout_.spec, source.colourChunks, PassedExif()) + source.lateTexts;
    } else {
      chunks = TakePngChunks(layout_.spec, "", "");
    }
    stream_->ChangeHead(kPngHead, [chunks](const std::string& head) { return head + chunks; });
  }

  void InsertJpegExif() {
    const std::string exif = PassedExif();
    if (exif.empty()) return;
    stream_->ChangeHead(kJpegHead, [exif](std::string head) { return WithExif(std::move(head), exif); });
  }

  // The source's Exif data where the format holds it as it is stored, for these pixels.
  std::string PassedExif() const {
    if (picture_.metadata == nullptr) return {};
    const PictureInfo& source = picture_.metadata->info;
    if (!source.PassesExifTo(picture_.format.name)) return {};
    return ExifForOutput(source.exif, layout_.spec.width, layout_.spec.height);
  }

  // Clears the unused part of the header, which the writer leaves uninitialised.
  void ClearHeader() const {
    constexpr std::size_t kUnused = 20;
    Replace(kUnused, std::string(512 - kUnused, '\0'));
  }

  // The file's name, where the writer puts that of the temporary file, and what it leaves out of a source's header. It
  // names itself where the source has no program.
  void CompleteDpxHeader() const {
    auto header = DpxHeader::Of(picture_.file);
    if (!header) Refuse("writing failed");
    const std::string name = IsStandardStream(picture_.target) ? "" : picture_.target.filename().string();
    header->SetText(dpx::kFileName, dpx::kFileNameBytes, name);
    if (picture_.metadata != nullptr && !picture_.metadata->info.dpxHeader.empty()) {
      header->TakeFieldsOf(DpxHeader(picture_.metadata->info.dpxHeader));
    } else {
      if (layout_.spec.find_attribute("Software") == nullptr) header->SetText(dpx::kCreator, dpx::kCreatorBytes, "");
      // Of one below 1 it writes a fraction by 0.
      header->SetPixelAspect(layout_.spec.get_float_attribute("PixelAspectRatio", 1.0f));
    }
    Replace(0, header->Bytes());
  }

  void Replace(std::size_t at, const std::string& bytes) const {
    std::FILE* const file = std::fopen(picture_.file.c_str(), "r+b");
    const bool isDone = file != nullptr && std::fseek(file, static_cast<long>(at), SEEK_SET) == 0 &&
                        std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    if (file == nullptr || std::fclose(file) != 0 || !isDone) Refuse("writing failed");
  }

  void RequireWhole() {
    auto again = OIIO::ImageInput::create(std::string(picture_.format.name));
    OIIO::ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    OIIO::ImageSpec spec;
    if (!again || !again->open(picture_.file.string(), spec, config) || !IsSame(*again)) {
      Fail("the file came out incomplete");
    }
  }

  bool IsSame(OIIO::ImageInput& again) {
    const OIIO::ImageSpec& spec = layout_.spec;
    const OIIO::ImageSpec& found = again.spec();
    if (found.width != spec.width || found.height != spec.height || found.nchannels != spec.nchannels ||
        found.format != spec.format) {
      return false;
    }
    std::vector<std::byte> written = Buffer();
    std::vector<std::byte> read = Buffer();
    for (std::int32_t row = 0; row < spec.height; row += chunk_) {
      const std::int32_t count = std::min(chunk_, spec.height - row);
      if (!again.read_scanlines(0, 0, found.y + row, found.y + row + count, 0, 0, spec.nchannels,
                                OIIO::TypeDesc::UNKNOWN, read.data())) {
        return false;
      }
      rows_->Make(row, count, written.data());
      if (std::memcmp(written.data(), read.data(), rows_->RowBytes() * static_cast<std::size_t>(count)) != 0)
        return false;
      StopIfAsked();
    }
    return true;
  }

  const PictureToWrite& picture_;
  const StopTest& stop_;
  OutputLayout layout_;
  BeyondRange beyond_;
  std::optional<OutputRows> rows_;
  std::int32_t chunk_ = 1;
  std::optional<OutputFileStream> stream_;
  std::unique_ptr<OIIO::ImageOutput> writer_;
};

}  // namespace

std::vector<std::string> WritePicture(const PictureToWrite& picture, const StopTest& stop) {
  static const bool takesHalves = OIIO::attribute("tiff:half", 1);
  static_cast<void>(takesHalves);
  const PictureFileChatter chatter;
  if (picture.metadata != nullptr && picture.metadata->Light() != nullptr) {
    const LibraryMetadata metadata = MetadataOf(*picture.metadata);
    return WritePicture(
        {picture.target, picture.file, picture.format, picture.image, &metadata, picture.storage, picture.part}, stop);
  }
  Writing writing(picture, stop);
  writing.Open();
  writing.Put();
  writing.Close();
  return writing.Notes();
}

}  // namespace vblur::host
