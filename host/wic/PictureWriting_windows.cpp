#include "host/wic/PictureWriting.h"

#include <algorithm>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/base/PartFiles.h"
#include "host/base/StandardStream.h"
#include "host/base/SystemError_windows.h"
#include "host/files/ComponentRows.h"
#include "host/files/OutputPixels.h"
#include "host/formats/ExifBlock.h"
#include "host/formats/JpegSegments.h"
#include "host/formats/PngHead.h"
#include "host/formats/TiffDirectory.h"
#include "host/wic/CodecTraits.h"
#include "host/wic/FileMetadata.h"
#include "host/wic/FrameEncoder.h"

namespace vblur::host {

namespace {

constexpr std::int32_t kGreyColours = 3;
constexpr std::uint16_t kDescription = 270;

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
        source_(picture.metadata != nullptr ? std::optional(DescribePicture(*picture.metadata)) : std::nullopt),
        pixels_(ChooseOutputPixels(picture, source_)) {
    NoteLosses(picture, source_, pixels_);
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
    AddTags();
    NoteOptions();
  }

  std::vector<std::string> Notes() {
    const std::string clipped = FormatBeyond(beyond_, LimitsOf(pixels_.type));
    if (!clipped.empty()) pixels_.notes.push_back(OutputName(picture_.target) + ": " + clipped);
    return std::move(pixels_.notes);
  }

 private:
  [[noreturn]] void Refuse(const std::string& why) const { RefuseToWrite(picture_.target, why); }

  [[noreturn]] void Fail(const FileStream& stream, const std::string& otherwise) const {
    const DWORD error = stream.SystemError();
    Refuse(error != 0 ? SystemErrorText(error) : otherwise);
  }
  [[noreturn]] void Fail(const std::string& otherwise) const { Fail(*stream_, otherwise); }

  void StopIfAsked() const {
    if (stop_ && stop_()) throw FileInterrupted{};
  }

  void Open(const std::filesystem::path& file, FileStream::Use use) {
    stream_ = FileStream::Open(file, use, &stop_);
    if (stream_->SystemError() != 0) Fail("the file cannot be made");
  }

  void Encode() {
    FrameEncoder encoder(picture_, pixels_, Compression(), *stream_);
    Put(encoder);
    const bool closed = encoder.Close();
    StopIfAsked();
    if (!closed || stream_->SystemError() != 0) Fail(encoder.Message());
  }

  // What codecs do not write everywhere: colour profiles, Exif data, texts, and of PNG files what another one has as it
  // is.
  std::string ChangedHead(const std::string& head) const {
    return picture_.format.name == "jpeg" ? ChangedJpegHead(head) : ChangedPngHead(head);
  }

  std::string ChangedJpegHead(std::string head) const {
    if (!source_) return head;
    const PictureMetadata& metadata = *picture_.metadata;
    const FileExtras& extras = metadata.extras;
    const bool isJpeg = metadata.info.format == "jpeg";
    const auto comment = extras.texts.find(kDescription);
    const bool hasComment = isJpeg && comment != extras.texts.end();
    head = WithTexts(WithProfile(head, Profile()), hasComment ? comment->second : std::string(), extras.iptc);
    const std::string exif = ExifWith(isJpeg || !JpegHoldsTexts(metadata) ? PictureTexts() : extras.texts);
    return exif.empty() ? head : WithExif(head, exif);
  }

  std::string ChangedPngHead(const std::string& head) const {
    const std::string profile = Profile();
    const PictureInfo* const source = Source();
    std::string chunks;
    if (source != nullptr) chunks = source->colourChunks;
    if (!profile.empty()) chunks += PngProfileChunk(profile);
    const std::string exif = ExifWith({});
    if (!exif.empty()) chunks += PngChunk("eXIf", exif);
    if (source != nullptr) {
      const FileExtras& extras = picture_.metadata->extras;
      chunks += source->format == "png" ? extras.pngChunks + source->lateTexts : PngChunksOf(extras.texts);
    }
    return WithPngChunks(head, chunks);
  }

  // The source's Exif data with these texts, and with its orientation and its camera where they are told elsewhere.
  std::string ExifWith(const PictureTexts& texts) const {
    const PictureInfo* const source = Source();
    if (source == nullptr) return {};
    const std::string exif = source->exif.empty()
                                 ? std::string()
                                 : ExifForOutput(source->exif, picture_.image.Width(), picture_.image.Height());
    auto tags = TiffTagsOf(texts);
    if (exif.empty()) {
      AddOrientation(tags);
      AddCamera(tags);
    }
    return tags.empty() ? exif : WithTiffTags(exif, tags);
  }

  // In the order of bytes of "II".
  void AddOrientation(std::map<std::uint16_t, TiffTag>& tags) const {
    constexpr std::uint16_t kOrientation = 274;
    constexpr std::uint16_t kShort = 3;
    const int orientation = picture_.metadata->extras.orientation;
    if (orientation > 1 && orientation <= 8)
      tags[kOrientation] = {kShort, 1, std::string{static_cast<char>(orientation), '\0'}};
  }

  // The maker and the model, of a TIFF file.
  void AddCamera(std::map<std::uint16_t, TiffTag>& tags) const {
    constexpr std::uint16_t kMaker = 271;
    constexpr std::uint16_t kModel = 272;
    const auto& own = picture_.metadata->extras.tiffTags;
    for (const std::uint16_t tag : {kMaker, kModel}) {
      if (const auto found = own.find(tag); found != own.end()) tags.insert(*found);
    }
  }

  void CopyWithHead(FileStream& from) {
    std::string part(kPngHeadBytes, '\0');
    constexpr const char* kUnread = "what the system's codec has written cannot be read again";
    if (FAILED(from.Seek({}, STREAM_SEEK_SET, nullptr))) Fail(from, kUnread);
    for (bool isHead = true;; isHead = false) {
      ULONG count = 0;
      if (FAILED(from.Read(part.data(), static_cast<ULONG>(part.size()), &count))) Fail(from, kUnread);
      if (count == 0) return;
      const std::string changed = isHead ? ChangedHead(part.substr(0, count)) : std::string();
      stream_->Write(isHead ? changed.data() : part.data(), isHead ? static_cast<ULONG>(changed.size()) : count,
                     nullptr);
      StopIfAsked();
      if (stream_->SystemError() != 0) Fail("writing failed");
    }
  }

  const PictureInfo* Source() const { return picture_.metadata != nullptr ? &picture_.metadata->info : nullptr; }

  // Of a TIFF file.
  std::string Compression() const {
    const std::string wanted = source_ ? OutputCompressionOf(*source_, picture_.format, picture_.storage)
                                       : picture_.storage.compression.value_or(std::string());
    const std::string known = FindCompression(picture_.format, wanted);
    return known.empty() ? "zip" : known;
  }

  // The source's, where it is for the colours that are written.
  std::string Profile() const {
    if (!source_) return {};
    const bool hasNoGrey = pixels_.layout == PixelLayout::Grey && LackingOf(picture_.format).greys.Has(pixels_.type);
    const PixelLayout written = hasNoGrey ? PixelLayout::Rgb : pixels_.layout;
    return source_->profileFits.Has(written) ? picture_.metadata->extras.profile : std::string();
  }

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

  // What codecs of TIFF files write of a source in their own ways or not at all: texts and the like, its colour
  // profile, and that its colours are premultiplied.
  void AddTags() const {
    if (picture_.format.name != "tiff" || !source_) return;
    constexpr std::uint16_t kExtraSamples = 338;
    constexpr std::uint16_t kProfile = 34675;
    constexpr std::uint16_t kShort = 3;
    constexpr std::uint16_t kBytes = 7;
    const std::filesystem::path file = ExtendedPath(picture_.file);
    std::map<std::uint16_t, TiffTag> tags = TagsOfSource();
    if (const std::string profile = Profile(); !profile.empty()) tags[kProfile] = {kBytes, profile.size(), profile};
    if (picture_.metadata->associatedAlpha && ReadFileHeader(file).hasAlpha)
      tags[kExtraSamples] = {kShort, 1, std::string("\x01\0", 2)};
    if (!tags.empty() && !AddTiffTags(file, tags)) Refuse("the file does not take its texts and what it declares");
  }

  std::map<std::uint16_t, TiffTag> TagsOfSource() const {
    constexpr std::uint16_t kIptc = 33723;
    constexpr std::uint16_t kLong = 4;
    const FileExtras& extras = picture_.metadata->extras;
    std::map<std::uint16_t, TiffTag> tags = extras.tiffTags;
    if (Source()->format != "tiff") {
      PictureTexts texts = extras.texts;
      texts.insert(extras.exifTexts.begin(), extras.exifTexts.end());
      tags = TiffTagsOf(texts);
      AddOrientation(tags);
    }
    // Readers expect whole numbers, whose bytes are the data.
    std::string iptc = extras.iptc;
    iptc.resize((iptc.size() + 3) / 4 * 4);
    if (!iptc.empty()) tags[kIptc] = {kLong, iptc.size() / 4, iptc};
    return tags;
  }

  // Codecs pass over options that they do not have. With a source that is told among the losses.
  void NoteOptions() {
    if (source_) return;
    const PartsLacking& lacking = LackingOf(picture_.format);
    if (lacking.quality)
      pixels_.notes.emplace_back("output: the system's codec has no choice of quality, written with its own");
    if (!picture_.storage.compression) return;
    const auto other = lacking.compressions.find(FindCompression(picture_.format, *picture_.storage.compression));
    if (other == lacking.compressions.end()) return;
    pixels_.notes.push_back("output: the system's codec has no compression " + other->first + ", written with " +
                            other->second);
  }

  const PictureToWrite& picture_;
  const StopTest& stop_;
  std::optional<PictureReport> source_;
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
