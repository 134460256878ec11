#include "host/pictures/PictureWriting.h"

#include <optional>
#include <system_error>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "host/base/Failure.h"
#include "host/pictures/OutputFileStream.h"
#include "host/pictures/PictureFileMetadata.h"
#include "host/pictures/PictureFileOpen.h"

namespace vblur::host {

namespace {

// Lossless where possible. Higher compression levels hardly make files smaller.
void SetCompression(const OutputFormat& format, const PictureMetadata* metadata, OIIO::ImageSpec& spec) {
  if (format.name == "jpeg") spec.attribute("jpeg:subsampling", "4:4:4");
  if (format.name == "png") spec.attribute("png:compressionLevel", 4);
  if (format.name != "openexr") return;
  const bool keeps = metadata && !metadata->losslessExr.empty();
  spec.attribute("compression", keeps ? metadata->losslessExr : "piz");
}

OIIO::ImageSpec Describe(const PictureToWrite& picture, const OIIO::ImageOutput& writer) {
  const OutputFormat& format = picture.format;
  const HostImage& image = picture.image;
  const PictureMetadata* const metadata = picture.metadata;
  const bool half = format.isFloat && image.Depth() == 8 && format.hasAlpha;
  OIIO::ImageSpec spec(image.Width(), image.Height(), format.hasAlpha ? 4 : 3,
                       half ? OIIO::TypeDesc(OIIO::TypeDesc::HALF) : TypeOf(format.SamplesAt(image.Depth())));
  if (metadata) ApplyMetadata(*metadata, writer, spec);
  // Without this the writer multiplies by alpha or divides by it.
  const bool saysAssociated = metadata && metadata->associatedAlpha && format.name == "tiff";
  if (!saysAssociated) spec.attribute("oiio:UnassociatedAlpha", 1);
  SetCompression(format, metadata, spec);
  return spec;
}

bool StopsWriting(void* stop, float /*portion*/) {
  return (*static_cast<const StopTest*>(stop))();
}

// Writes one picture into one file.
class Writing {
 public:
  explicit Writing(const PictureToWrite& picture)
      : picture_(picture), writer_(OIIO::ImageOutput::create(std::string(picture.format.name))) {
    if (!writer_) Refuse("the picture library cannot write " + std::string(picture.format.name));
  }

  void Open() {
    if (writer_->supports("ioproxy")) {
      stream_.emplace(picture_.file);
      if (stream_->SystemError() != 0) Fail("the file cannot be made");
      writer_->set_ioproxy(&*stream_);
    }
    if (!writer_->open(picture_.file.string(), Describe(picture_, *writer_))) Fail("the file cannot be made");
  }

  void Put(const StopTest& stop) {
    StopTest stopOrError = [&] { return (stop && stop()) || (stream_ && stream_->SystemError() != 0); };
    const OIIO::TypeDesc type = TypeOf(picture_.format.SamplesAt(picture_.image.Depth()));
    const bool done = writer_->write_image(type, picture_.samples, OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride,
                                           StopsWriting, &stopOrError);
    if (stop && stop()) {
      writer_->close();
      throw FileInterrupted{};
    }
    if (!done || (stream_ && stream_->SystemError() != 0)) Fail("writing failed");
  }

  void Close() {
    const bool closed = writer_->close();
    if (stream_) stream_->close();
    if (!closed || (stream_ && stream_->SystemError() != 0)) Fail("writing failed");
    if (!stream_) RequireWhole();
  }

 private:
  [[noreturn]] void Refuse(const std::string& why) const { RefuseToWrite(picture_.target, why); }

  [[noreturn]] void Fail(const std::string& otherwise) {
    const std::string message = LibraryMessage(writer_->geterror(), otherwise);
    const int number = stream_ ? stream_->SystemError() : 0;
    Refuse(number != 0 ? std::generic_category().message(number) : message);
  }

  // A format's own file access may lose an error; the last row is then missing.
  void RequireWhole() {
    auto again = OIIO::ImageInput::create(std::string(picture_.format.name));
    OIIO::ImageSpec spec;
    if (again && again->open(picture_.file.string(), spec)) {
      std::vector<float> row(static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.nchannels));
      if (again->read_scanlines(0, 0, spec.height - 1, spec.height, 0, 0, spec.nchannels, OIIO::TypeDesc::FLOAT,
                                row.data())) {
        return;
      }
    }
    Refuse("the file came out incomplete; is the disk full?");
  }

  const PictureToWrite& picture_;
  std::optional<OutputFileStream> stream_;
  std::unique_ptr<OIIO::ImageOutput> writer_;
};

}  // namespace

void WritePicture(const PictureToWrite& picture, const StopTest& stop) {
  const PictureFileChatter chatter;
  Writing writing(picture);
  writing.Open();
  writing.Put(stop);
  writing.Close();
}

}  // namespace vblur::host
