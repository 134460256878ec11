#include "host/light/tiff/TiffWriting.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "host/files/AttributeNames.h"
#include "host/light/InOrder.h"
#include "host/light/LightMetadata.h"
#include "host/light/LightRows.h"
#include "host/light/MeantNames.h"
#include "host/light/WrittenFile.h"
#include "host/light/tiff/PlainTiff.h"
#include "host/light/tiff/TiffHandle.h"

namespace vblur::host {

namespace {

// 0 for one that is not plain.
std::uint16_t UnitOf(const std::string& name) {
  if (name == "none") return RESUNIT_NONE;
  return name == "in" || name == "inch" ? RESUNIT_INCH : name == "cm" ? RESUNIT_CENTIMETER : 0;
}

// What is written here as the full library writes it.
bool IsPlain(const LightAttributes& attributes) {
  // Others may become fractions of other numbers.
  const auto isUsual = [&](const char* name) {
    const float number = attributes.Number(name, 0.0f);
    return number >= 1.0f && number <= 100000.0f;
  };
  const float aspect = attributes.Number("YResolution", 0.0f) / attributes.Number("XResolution", 1.0f);
  const bool hasResolution =
      isUsual("XResolution") && isUsual("YResolution") && attributes.Number("PixelAspectRatio", aspect) == aspect;
  // Square pixels of no known size.
  const bool isSquare = attributes.Find("XResolution") == nullptr && attributes.Find("YResolution") == nullptr &&
                        attributes.Number("PixelAspectRatio", 1.0f) == 1.0f;
  return std::ranges::all_of(attributes.All(), [&](const PictureAttribute& each) {
    if (each.name == "PixelAspectRatio" && isSquare) return true;
    if (each.name == "ICCProfile" || each.name == "Orientation") return true;
    if (each.name == "ResolutionUnit") return hasResolution && UnitOf(each.value) != 0;
    if (each.name == "XResolution" || each.name == "YResolution" || each.name == "PixelAspectRatio")
      return hasResolution && attributes.Find("ResolutionUnit") != nullptr;
    // It has no place for them.
    if (TagOfTiffText(each.name) == 0) return IsNotedName(each.name);
    return each.IsText() && IsPrintableText(each.value);
  });
}

std::uint16_t CompressionFor(const PictureToWrite& picture) {
  std::string name = "zip";
  if (picture.metadata != nullptr && picture.metadata->info.format == "tiff") {
    for (const PictureAttribute& each : *picture.metadata->Light()) {
      if (each.name == "compression") name = each.value;
    }
  }
  if (picture.storage.compression) name = FindCompression(picture.format, *picture.storage.compression);
  return TiffCompressionOf(name);
}

// How all strips of a file are stored.
struct Storage {
  std::int32_t width = 0;
  PixelLayout layout = PixelLayout::Rgba;
  SampleType type = SampleType::Unsigned8;
  std::uint16_t compression = COMPRESSION_NONE;
  bool associatedAlpha = false;

  void Describe(TIFF* tiff, std::int32_t height, std::int32_t stripRows) const {
    const bool isFloat = type == SampleType::Float || type == SampleType::Half;
    const int colours = IsGrey(layout) ? 1 : 3;
    const int channels = colours + (HasAlpha(layout) ? 1 : 0);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(width));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, static_cast<int>(8 * SampleBytes(type)));
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, isFloat ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, colours == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(stripRows));
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
    if (HasAlpha(layout)) {
      const std::uint16_t extra = associatedAlpha ? EXTRASAMPLE_ASSOCALPHA : EXTRASAMPLE_UNASSALPHA;
      TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &extra);
    }
    if (compression != COMPRESSION_LZW && compression != COMPRESSION_ADOBE_DEFLATE) return;
    TIFFSetField(tiff, TIFFTAG_PREDICTOR, isFloat ? PREDICTOR_FLOATINGPOINT : PREDICTOR_HORIZONTAL);
  }
};

// A strip as it stands in a file. Takes the samples, which libtiff changes. Empty for want of memory.
std::string Packed(const Storage& storage, std::vector<std::byte> samples, std::int32_t rows) {
  TiffMemory memory;
  TiffHandle tiff = memory.Open();
  if (!tiff) return {};
  storage.Describe(tiff.get(), rows, rows);
  if (TIFFWriteEncodedStrip(tiff.get(), 0, samples.data(), static_cast<tmsize_t>(samples.size())) < 0) return {};
  const std::uint64_t place = TIFFGetStrileOffset(tiff.get(), 0);
  const std::uint64_t count = TIFFGetStrileByteCount(tiff.get(), 0);
  return memory.Bytes().substr(place, count);
}

// Writes one picture into one file.
class Writing {
 public:
  Writing(const PictureToWrite& picture, const StopTest& stop)
      : picture_(picture),
        rows_(picture),
        attributes_(PassedAttributes(picture.metadata, rows_.Layout(), "tiff")),
        storage_{rows_.Width(), rows_.Layout(), rows_.Type(), CompressionFor(picture),
                 picture.metadata != nullptr && picture.metadata->associatedAlpha},
        file_(picture, stop),
        target_(file_) {
    tiff_ = target_.Open();
    if (!tiff_) throw std::bad_alloc();
  }

  void Write() {
    storage_.Describe(tiff_.get(), rows_.Height(), kStripRows);
    PutMetadata();
    PutStrips();
    const bool isWritten = TIFFFlush(tiff_.get()) != 0;
    tiff_.reset();
    file_.Close();
    Check(isWritten);
  }

  std::vector<std::string> Notes() { return rows_.Notes(); }

 private:
  void Check(bool done) const { file_.Require(done, ""); }

  void PutMetadata() {
    TIFF* const tiff = tiff_.get();
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, static_cast<int>(attributes_.Number("Orientation", 1.0f)));
    for (const PictureAttribute& each : attributes_.All()) {
      if (const std::uint16_t text = TagOfTiffText(each.name); text != 0) TIFFSetField(tiff, text, each.value.c_str());
    }
    if (const float x = attributes_.Number("XResolution", 0.0f); x > 0.0f) {
      TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(x));
      TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(attributes_.Number("YResolution", x)));
      TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, UnitOf(attributes_.Text("ResolutionUnit")));
    }
    if (const std::string profile = attributes_.Profile(); !profile.empty())
      TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(profile.size()), profile.data());
  }

  // Packed by as many threads as are allowed: each strip for itself, so that their number changes no byte.
  void PutStrips() {
    std::uint32_t put = 0;
    InOrder<std::string> packed(picture_.threads, [&](std::string strip) {
      const auto bytes = static_cast<tmsize_t>(strip.size());
      Check(!strip.empty() && TIFFWriteRawStrip(tiff_.get(), put++, strip.data(), bytes) == bytes);
    });
    for (std::int32_t row = 0; row < rows_.Height(); row += kStripRows) {
      const std::int32_t count = std::min(kStripRows, rows_.Height() - row);
      auto samples = std::make_shared<std::vector<std::byte>>(rows_.RowBytes() * static_cast<std::size_t>(count));
      for (std::int32_t i = 0; i < count; ++i)
        rows_.Make(row + i, samples->data() + rows_.RowBytes() * static_cast<std::size_t>(i));
      packed.Add([storage = storage_, samples, count] { return Packed(storage, std::move(*samples), count); });
    }
    packed.Finish();
  }

  static constexpr std::int32_t kStripRows = 32;

  const PictureToWrite& picture_;
  LightRows rows_;
  LightAttributes attributes_;
  Storage storage_;
  WrittenFile file_;
  TiffOnDisk target_;
  TiffHandle tiff_;
};

}  // namespace

bool IsPlainTiff(const PictureToWrite& picture) {
  constexpr std::int64_t kMostBytes = std::int64_t{1} << 30;
  constexpr std::int64_t kMostOfPixel = 16;
  const HostImage& image = picture.image;
  if (std::int64_t{image.Width()} * image.Height() * kMostOfPixel > kMostBytes) return false;
  if (picture.part != nullptr || !IsOfLightRows(picture)) return false;
  return IsPlain(PassedAttributes(picture.metadata, PixelLayout::Rgb, "tiff")) && CompressionFor(picture) != 0;
}

std::vector<std::string> WriteTiff(const PictureToWrite& picture, const StopTest& stop) {
  Writing writing(picture, stop);
  writing.Write();
  return writing.Notes();
}

}  // namespace vblur::host
