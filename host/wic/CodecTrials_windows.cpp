#include "host/wic/CodecTrials.h"

#include <array>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string_view>

#include "host/formats/FileHeader.h"
#include "host/formats/TiffTags.h"
#include "host/wic/CodecOptions.h"
#include "host/wic/ImagingFactory.h"
#include "host/wic/PixelForms.h"

namespace vblur::host {

namespace {

constexpr UINT kSide = 16;

void Require(::HRESULT result, std::string_view format, const char* does) {
  if (FAILED(result))
    throw std::runtime_error("the system's codec of " + std::string(format) + " files " + does +
                             " a picture as it should (" + ImagingErrorText(result) + ")");
}

ComPtr<IStream> MakeMemory() {
  ComPtr<IStream> memory;
  const ::HRESULT result = ::CreateStreamOnHGlobal(nullptr, TRUE, reinterpret_cast<IStream**>(memory.Receive()));
  if (FAILED(result)) throw std::runtime_error(ImagingErrorText(result));
  return memory;
}

using SetOptions = std::function<::HRESULT(IPropertyBag2&)>;

// Writes one picture into memory.
class TrialFile {
 public:
  explicit TrialFile(std::string_view format, const SetOptions& setOptions = {}) : format_(format) {
    ComPtr<IPropertyBag2> options;
    Do(TheImagingFactory().CreateEncoder(ContainerOf(format), nullptr,
                                         reinterpret_cast<IWICBitmapEncoder**>(encoder_.Receive())));
    Do(encoder_->Initialize(memory_.get(), WICBitmapEncoderNoCache));
    Do(encoder_->CreateNewFrame(reinterpret_cast<IWICBitmapFrameEncode**>(frame_.Receive()),
                                reinterpret_cast<IPropertyBag2**>(options.Receive())));
    if (setOptions) Do(setOptions(*options));
    Do(frame_->Initialize(options.get()));
    Do(frame_->SetSize(kSide, kSide));
  }

  bool Takes(const ::GUID& form) {
    WICPixelFormatGUID taken = form;
    const ::HRESULT result = frame_->SetPixelFormat(&taken);
    if (result == WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT) return false;
    Do(result);
    return taken == form;
  }

  // With samples of all values.
  ComPtr<IStream> Write(const ::GUID& form) {
    if (!Takes(form)) Do(WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT);
    std::array<BYTE, kSide * kSide * 4> samples{};
    for (std::size_t i = 0; i < samples.size(); ++i)
      samples[i] = static_cast<BYTE>(i * i / 7 + 3 * i);
    const auto rowBytes = static_cast<UINT>(FindPixelForm(form)->RowBytes(kSide));
    Do(frame_->WritePixels(kSide, rowBytes, rowBytes * kSide, samples.data()));
    Do(frame_->Commit());
    Do(encoder_->Commit());
    return memory_;
  }

 private:
  void Do(::HRESULT result) const { Require(result, format_, "does not write"); }

  std::string_view format_;
  ComPtr<IStream> memory_ = MakeMemory();
  ComPtr<IWICBitmapEncoder> encoder_;
  ComPtr<IWICBitmapFrameEncode> frame_;
};

// The first sample of 16 bits of a file; nothing where the codec makes pixels of another kind of it, or says that it
// reads no such files.
std::optional<std::uint16_t> FirstSample(std::string_view format, IStream& file) {
  ComPtr<IWICBitmapDecoder> decoder;
  ComPtr<IWICBitmapFrameDecode> frame;
  std::array<BYTE, 2> sample{};
  const WICRect first{0, 0, 1, 1};
  WICPixelFormatGUID form{};
  ::HRESULT result = file.Seek({}, STREAM_SEEK_SET, nullptr);
  const auto does = [&](::HRESULT next) { return SUCCEEDED(result = next); };
  const bool opens = SUCCEEDED(result) &&
                     does(TheImagingFactory().CreateDecoder(
                         ContainerOf(format), nullptr, reinterpret_cast<IWICBitmapDecoder**>(decoder.Receive()))) &&
                     does(decoder->Initialize(&file, WICDecodeMetadataCacheOnDemand)) &&
                     does(decoder->GetFrame(0, reinterpret_cast<IWICBitmapFrameDecode**>(frame.Receive()))) &&
                     does(frame->GetPixelFormat(&form));
  const bool isOther = opens && form != GUID_WICPixelFormat16bppGray;
  if (isOther || result == WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT || result == WINCODEC_ERR_UNSUPPORTEDOPERATION)
    return std::nullopt;
  if (opens) result = frame->CopyPixels(&first, 2, 2, sample.data());
  Require(result, format, "does not read");
  return static_cast<std::uint16_t>(sample[0] | sample[1] << 8);
}

ULONGLONG LengthOf(std::string_view format, IStream& stream) {
  STATSTG status{};
  Require(stream.Stat(&status, STATFLAG_NONAME), format, "does not write");
  return status.cbSize.QuadPart;
}

std::string BytesOf(IStream& file, std::int64_t at, std::size_t count) {
  LARGE_INTEGER place{};
  place.QuadPart = at;
  std::string bytes(count, '\0');
  ULONG read = 0;
  if (FAILED(file.Seek(place, STREAM_SEEK_SET, nullptr)) ||
      FAILED(file.Read(bytes.data(), static_cast<ULONG>(count), &read)))
    return {};
  bytes.resize(read);
  return bytes;
}

constexpr std::uint16_t kSample = 0x1234;

// A TIFF file of that sample.
std::string FileOfSample(bool isBig, bool isWhiteLeast) {
  std::string file(isBig ? "MM" : "II");
  const auto add = [&](std::uint32_t number, int bytes) {
    for (int i = 0; i < bytes; ++i)
      file.push_back(static_cast<char>(number >> 8 * (isBig ? bytes - 1 - i : i) & 0xFF));
  };
  const auto addTag = [&](std::uint32_t tag, std::uint32_t value) {
    constexpr std::uint32_t kLong = 4;
    add(tag, 2);
    add(kLong, 2);
    add(1, 4);
    add(value, 4);
  };
  constexpr std::uint32_t kPixels = 8;
  add(42, 2);
  add(kPixels + 2, 4);
  add(kSample, 2);
  add(9, 2);
  addTag(256, 1);  // width
  addTag(257, 1);  // height
  addTag(258, 16);
  addTag(259, 1);  // not packed
  addTag(262, isWhiteLeast ? 0 : 1);
  addTag(273, kPixels);
  addTag(277, 1);  // channels
  addTag(278, 1);  // rows of a strip
  addTag(279, 2);  // its bytes
  add(0, 4);
  return file;
}

}  // namespace

bool TrySwap(std::string_view format) {
  const ComPtr<IStream> file = TrialFile(format).Write(GUID_WICPixelFormat16bppGray);
  // The first bytes are 0 and 3.
  return FirstSample(format, *file) == 0x0003;
}

std::optional<TiffSamples> TryTiffSamples(bool isBig, bool isWhiteLeast) {
  const std::string file = FileOfSample(isBig, isWhiteLeast);
  const ComPtr<IStream> memory = MakeMemory();
  Require(memory->Write(file.data(), static_cast<ULONG>(file.size()), nullptr), "tiff", "does not read");
  const std::optional<std::uint16_t> read = FirstSample("tiff", *memory);
  for (const bool isTurned : {false, true}) {
    const auto value = static_cast<std::uint16_t>(isTurned ? ~kSample : kSample);
    const auto swapped = static_cast<std::uint16_t>(value << 8 | value >> 8);
    if (isTurned && !isWhiteLeast) break;
    if (read == value) return TiffSamples{isTurned, false};
    if (read == swapped) return TiffSamples{isTurned, true};
  }
  return std::nullopt;
}

bool TryQuality(std::string_view format) {
  const auto length = [&](float quality) {
    TrialFile file(format, [&](IPropertyBag2& options) { return SetOption(options, L"ImageQuality", quality); });
    return LengthOf(format, *file.Write(GUID_WICPixelFormat24bppBGR));
  };
  return length(0.1f) < length(0.9f);
}

std::string TryTiffCompression(const std::string& asked) {
  constexpr std::uint16_t kCompression = 259;
  TrialFile trial("tiff", [&](IPropertyBag2& options) {
    return SetOption(options, L"TiffCompressionMethod", TiffCompression(asked));
  });
  const ComPtr<IStream> file = trial.Write(GUID_WICPixelFormat24bppBGR);
  const TiffTags tags([&](std::int64_t at, std::size_t count) { return BytesOf(*file, at, count); });
  if (!tags.Has(kCompression)) Require(WINCODEC_ERR_BADHEADER, "tiff", "does not write");
  return NameOfTiffCompression(tags.Number(kCompression, 1));
}

bool TryForm(std::string_view format, const ::GUID& form) {
  return TrialFile(format).Takes(form);
}

}  // namespace vblur::host
