#include "host/pictures/PictureReading.h"

#include "host/base/Failure.h"
#include "host/pictures/PictureFileMetadata.h"
#include "host/pictures/PictureFileOpen.h"

namespace vblur::host {

namespace {

bool StopsReading(void* stop, float /*portion*/) {
  const auto& test = *static_cast<const StopTest*>(stop);
  return test && test();
}

// Some readers fill in a truncated file and succeed, with an error message.
bool WasCutShort(const std::string& message) {
  return message.find("Premature end") != std::string::npos;
}

class OpenedPicture final : public PictureSource {
 public:
  explicit OpenedPicture(const std::filesystem::path& path) : path_(path), picture_(OpenPictureFile(path)) {}

  const PictureInfo& Info() const override { return picture_.info; }
  void ReadSamples(std::byte* samples, const StopTest& stop) override;
  ReadPicture Facts() const override;

 private:
  std::filesystem::path path_;
  OpenPicture picture_;
};

void OpenedPicture::ReadSamples(std::byte* samples, const StopTest& stop) {
  const PictureFileChatter chatter;
  const bool done = picture_.file->read_image(0, 0, 0, picture_.info.channels, TypeOf(picture_.info.samples), samples,
                                              OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride, StopsReading,
                                              const_cast<StopTest*>(&stop));
  if (stop && stop()) throw FileInterrupted{};
  const std::string message = picture_.file->geterror();
  if (done && !WasCutShort(message)) return;
  RefuseToRead(path_, "the picture is damaged or cut short (" + LibraryMessage(message, "its pixels end early") + ")");
}

ReadPicture OpenedPicture::Facts() const {
  auto metadata = std::make_shared<PictureMetadata>(CollectMetadata(picture_.file->spec(), picture_.info));
  const bool associated = metadata->associatedAlpha;
  return {picture_.info, std::move(metadata), associated};
}

}  // namespace

std::unique_ptr<PictureSource> OpenForReading(const std::filesystem::path& path) {
  return std::make_unique<OpenedPicture>(path);
}

}  // namespace vblur::host
