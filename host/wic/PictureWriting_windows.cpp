#include "host/wic/PictureWriting.h"

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/base/PartFiles.h"
#include "host/base/StandardStream.h"
#include "host/base/SystemError_windows.h"
#include "host/files/ColourProfile.h"
#include "host/files/ComponentRows.h"
#include "host/files/OutputPixels.h"
#include "host/formats/ExifBlock.h"
#include "host/formats/JpegSegments.h"
#include "host/formats/PngHead.h"
#include "host/formats/TiffAlpha.h"
#include "host/wic/CodecTraits.h"
#include "host/wic/FileMetadata.h"
#include "host/wic/FrameEncoder.h"

namespace vblur::host {

namespace {

constexpr std::int32_t kGreyColours = 3;

// As many rows as make some megabytes.
std::int32_t RowsAtOnce(std::size_t rowBytes) {
  constexpr std::size_t kBytes = std::size_t{4} << 20;
  const std::size_t fitting = kBytes / std::max<std::size_t>(rowBytes, 1);
  return static_cast<std::int32_t>(std::clamp(fitting, std::size_t{1}, std::size_t{4096}));
}

// Writes one picture into one file.
class Writing {
 public:
  Writing(const PictureToWrite& picture, const StopTest& stop)
      : picture_(picture),
        stop_(stop),
        pixels_(ChooseOutputPixels(
            picture, picture.metadata != nullptr ? std::optional(DescribePicture(*picture.metadata)) : std::nullopt)) {
    const std::int32_t most = picture.format.mostPixels;
    if (std::max(picture.image.Width(), picture.image.Height()) > most)
      Refuse("a picture of this format has at most " + std::to_string(most) + " pixels a side");
  }

  void Write() {
    // Their heads are changed before they are in place.
    const bool changesHead = picture_.format.name == "png" || picture_.format.name == "jpeg";
    if (changesHead) {
      Open(ScratchFileFor(picture_.file), FileStream::Use::Scratch);
    } else {
      Open(picture_.file, FileStream::Use::Write);
    }
    Encode();
    if (changesHead) {
      const ComPtr<FileStream> encoded = stream_;
      Open(picture_.file, FileStream::Use::Write);
      CopyWithHead(*encoded);
    }
    if (!stream_->Close()) Fail("writing failed");
    DeclareAlpha();
    NoteOptions();
  }

  std::vector<std::string> Notes() {
    const std::string held = "0 to 1, which " + std::string(NameOf(pixels_.type)) + " samples hold";
    const std::string clipped = FormatBeyond(beyond_, held);
    if (!clipped.empty()) pixels_.notes.push_back(OutputName(picture_.target) + ": " + clipped);
    return std::move(pixels_.notes);
  }

 private:
  [[noreturn]] void Refuse(const std::string& why) const { RefuseToWrite(picture_.target, why); }

  [[noreturn]] void Fail(const std::string& otherwise) const {
    const DWORD error = stream_->SystemError();
    Refuse(error != 0 ? SystemErrorText(error) : otherwise);
  }

  void StopIfAsked() const {
    if (stop_ && stop_()) throw FileInterrupted{};
  }

  void Open(const std::filesystem::path& file, FileStream::Use use) {
    stream_ = FileStream::Open(file, use, &stop_);
    if (stream_->SystemError() != 0) Fail("the file cannot be made");
  }

  void Encode() {
    FrameEncoder encoder(picture_, pixels_, *stream_);
    Put(encoder);
    const bool closed = encoder.Close();
    StopIfAsked();
    if (!closed || stream_->SystemError() != 0) Fail(encoder.Message());
    if (encoder.LosesProfile()) pixels_.notes.emplace_back("output: lost: colour profile");
  }

  // What codecs do not write everywhere: colour profiles, Exif data, and of PNG files chunks about colours and of
  // texts.
  std::string ChangedHead(const std::string& head) const {
    const PictureInfo* const source = Source();
    const std::string exif = source == nullptr || source->exif.empty()
                                 ? std::string()
                                 : ExifForOutput(source->exif, picture_.image.Width(), picture_.image.Height());
    const bool hasProfile =
        source != nullptr && LayoutsOfProfile(picture_.metadata->extras.profile).Has(pixels_.layout);
    const std::string profile = hasProfile ? picture_.metadata->extras.profile : std::string();
    if (picture_.format.name == "jpeg") return WithProfile(exif.empty() ? head : WithExif(head, exif), profile);
    std::string chunks;
    if (source != nullptr) chunks = source->colourChunks;
    if (hasProfile) chunks += PngProfileChunk(profile);
    if (!exif.empty()) chunks += PngChunk("eXIf", exif);
    if (source != nullptr) chunks += picture_.metadata->extras.pngTexts + source->lateTexts;
    return WithPngChunks(head, chunks);
  }

  void CopyWithHead(FileStream& from) {
    std::string part(kPngHeadBytes, '\0');
    from.Seek({}, STREAM_SEEK_SET, nullptr);
    for (bool isHead = true;; isHead = false) {
      ULONG count = 0;
      if (FAILED(from.Read(part.data(), static_cast<ULONG>(part.size()), &count))) Refuse("writing failed");
      if (count == 0) return;
      const std::string changed = isHead ? ChangedHead(part.substr(0, count)) : std::string();
      stream_->Write(isHead ? changed.data() : part.data(), isHead ? static_cast<ULONG>(changed.size()) : count,
                     nullptr);
      StopIfAsked();
      if (stream_->SystemError() != 0) Fail("writing failed");
    }
  }

  const PictureInfo* Source() const { return picture_.metadata != nullptr ? &picture_.metadata->info : nullptr; }

  // Each channel of the picture at its place in a pixel of the codec's.
  void MakeRow(const ComponentRows& rows, const PixelForm& form, std::int32_t row, std::byte* samples) {
    const bool isGrey = IsGrey(pixels_.layout);
    for (std::size_t place = 0; place < form.places.size(); ++place) {
      if (form.places[place] < 0) continue;
      // A codec without grey gets it as three colours.
      const bool isColour = place < kGreyColours;
      const int component = isColour && isGrey ? 0 : static_cast<int>(place);
      const bool isAgain = isColour && place > 0 && form.places[place] == form.places[0];
      if (isAgain) continue;
      const ComponentChannel channel{component, pixels_.type};
      rows.Put(channel, row, samples + static_cast<std::size_t>(form.places[place]) * form.SampleBytes());
      if (!isColour || !isGrey || place == 0) rows.AddBeyond(channel, row, beyond_);
    }
  }

  void Put(FrameEncoder& encoder) {
    const PixelForm& form = encoder.Form();
    const FileWindow all{0, 0, picture_.image.Width(), picture_.image.Height()};
    const ComponentRows rows(picture_, Source(), all, all, form.PixelBytes());
    const std::int32_t atOnce = std::min(RowsAtOnce(rows.RowBytes()), all.height);
    std::vector<std::byte> samples(rows.RowBytes() * static_cast<std::size_t>(atOnce));
    for (std::int32_t first = 0; first < all.height; first += atOnce) {
      const std::int32_t count = std::min(atOnce, all.height - first);
      for (std::int32_t row = 0; row < count; ++row)
        MakeRow(rows, form, first + row, samples.data() + rows.RowBytes() * static_cast<std::size_t>(row));
      const bool done = encoder.Write(count, rows.RowBytes(), samples.data());
      StopIfAsked();
      if (!done || stream_->SystemError() != 0) Fail(encoder.Message());
    }
  }

  // Codecs of TIFF files declare alpha as they like: the output says what the input did.
  void DeclareAlpha() const {
    const bool isPremultiplied = picture_.metadata != nullptr && picture_.metadata->associatedAlpha;
    if (picture_.format.name != "tiff" || !isPremultiplied) return;
    const std::filesystem::path file = ExtendedPath(picture_.file);
    if (!ReadFileHeader(file).hasAlpha || SetTiffAlphaMeaning(file, TiffAlpha::Premultiplied)) return;
    Refuse("the file cannot declare its colours as premultiplied");
  }

  // Codecs pass over options that they do not have.
  void NoteOptions() {
    if (picture_.format.name == "jpeg" && !HasJpegQuality())
      pixels_.notes.emplace_back("output: the system's codec has no choice of quality, written with its own");
    const bool isLikeInput = picture_.metadata != nullptr && picture_.metadata->header.format == picture_.format.name;
    const std::string kept = isLikeInput && picture_.format.name == "tiff" ? picture_.metadata->header.compression : "";
    if (!picture_.storage.compression && kept.empty()) return;
    const std::string asked =
        picture_.storage.compression ? FindCompression(picture_.format, *picture_.storage.compression) : kept;
    const std::string written = ReadFileHeader(ExtendedPath(picture_.file)).compression;
    if (asked != written)
      pixels_.notes.push_back("output: the system's codec has no compression " + asked + ", written with " + written);
  }

  const PictureToWrite& picture_;
  const StopTest& stop_;
  OutputPixels pixels_;
  BeyondRange beyond_;
  ComPtr<FileStream> stream_;
};

}  // namespace

std::vector<std::string> WritePicture(const PictureToWrite& picture, const StopTest& stop) try {
  Writing writing(picture, stop);
  writing.Write();
  return writing.Notes();
} catch (const Failure&) {
  throw;
} catch (const std::bad_alloc&) {
  throw;
} catch (const std::runtime_error& error) {
  RefuseToWrite(picture.target, error.what());
}

}  // namespace vblur::host
