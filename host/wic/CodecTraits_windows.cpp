#include "host/wic/CodecTraits.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string_view>

#include "host/formats/FileHeader.h"
#include "host/formats/TiffTags.h"
#include "host/wic/CodecOptions.h"
#include "host/wic/ImagingFactory.h"
#include "host/wic/PixelForms.h"

namespace vblur::host {

namespace {

constexpr UINT kSide = 16;

ComPtr<IStream> MakeMemory() {
  ComPtr<IStream> memory;
  ::CreateStreamOnHGlobal(nullptr, TRUE, reinterpret_cast<IStream**>(memory.Receive()));
  return memory;
}

using SetOptions = std::function<::HRESULT(IPropertyBag2&)>;

// A frame to be written in `form`; null where the codec does not take it.
ComPtr<IWICBitmapFrameEncode> Begin(const ::GUID& form, const SetOptions& setOptions, IWICBitmapEncoder& encoder,
                                    IStream& into) {
  ComPtr<IWICBitmapFrameEncode> frame;
  ComPtr<IPropertyBag2> options;
  WICPixelFormatGUID taken = form;
  const auto does = [](::HRESULT result) { return SUCCEEDED(result); };
  const bool begins = does(encoder.Initialize(&into, WICBitmapEncoderNoCache)) &&
                      does(encoder.CreateNewFrame(reinterpret_cast<IWICBitmapFrameEncode**>(frame.Receive()),
                                                  reinterpret_cast<IPropertyBag2**>(options.Receive()))) &&
                      (!setOptions || does(setOptions(*options))) && does(frame->Initialize(options.get())) &&
                      does(frame->SetSize(kSide, kSide)) && does(frame->SetPixelFormat(&taken)) && taken == form;
  return begins ? frame : ComPtr<IWICBitmapFrameEncode>();
}

ComPtr<IWICBitmapEncoder> MakeEncoder(std::string_view format) {
  ComPtr<IWICBitmapEncoder> encoder;
  TheImagingFactory().CreateEncoder(ContainerOf(format), nullptr,
                                    reinterpret_cast<IWICBitmapEncoder**>(encoder.Receive()));
  return encoder;
}

// A picture of all kinds of samples as a file in memory; null where the codec does not write it.
ComPtr<IStream> Encode(std::string_view format, const ::GUID& form, const SetOptions& setOptions) {
  ComPtr<IStream> memory = MakeMemory();
  const ComPtr<IWICBitmapEncoder> encoder = MakeEncoder(format);
  if (!memory || !encoder) return {};
  const ComPtr<IWICBitmapFrameEncode> frame = Begin(form, setOptions, *encoder, *memory);
  std::array<BYTE, kSide * kSide * 4> samples{};
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = static_cast<BYTE>(i * i / 7 + 3 * i);
  const auto rowBytes = static_cast<UINT>(FindPixelForm(form)->RowBytes(kSide));
  const bool isWritten = frame && SUCCEEDED(frame->WritePixels(kSide, rowBytes, rowBytes * kSide, samples.data())) &&
                         SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit());
  return isWritten ? memory : ComPtr<IStream>();
}

bool TakesForm(std::string_view format, const ::GUID& form) {
  const ComPtr<IStream> memory = MakeMemory();
  const ComPtr<IWICBitmapEncoder> encoder = MakeEncoder(format);
  return memory && encoder && Begin(form, {}, *encoder, *memory);
}

// The first sample of 16 bits of a file.
std::optional<std::uint16_t> FirstSample(std::string_view format, IStream& file) {
  file.Seek({}, STREAM_SEEK_SET, nullptr);
  ComPtr<IWICBitmapDecoder> decoder;
  ComPtr<IWICBitmapFrameDecode> frame;
  std::array<BYTE, 2> sample{};
  const WICRect first{0, 0, 1, 1};
  WICPixelFormatGUID form{};
  const bool isRead = SUCCEEDED(TheImagingFactory().CreateDecoder(
                          ContainerOf(format), nullptr, reinterpret_cast<IWICBitmapDecoder**>(decoder.Receive()))) &&
                      SUCCEEDED(decoder->Initialize(&file, WICDecodeMetadataCacheOnDemand)) &&
                      SUCCEEDED(decoder->GetFrame(0, reinterpret_cast<IWICBitmapFrameDecode**>(frame.Receive()))) &&
                      SUCCEEDED(frame->GetPixelFormat(&form)) && form == GUID_WICPixelFormat16bppGray &&
                      SUCCEEDED(frame->CopyPixels(&first, 2, 2, sample.data()));
  if (!isRead) return std::nullopt;
  return static_cast<std::uint16_t>(sample[0] | sample[1] << 8);
}

ULONGLONG LengthOf(IStream& stream) {
  STATSTG status{};
  return SUCCEEDED(stream.Stat(&status, STATFLAG_NONAME)) ? status.cbSize.QuadPart : 0;
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

bool FindSwap() {
  const ComPtr<IStream> file = Encode("png", GUID_WICPixelFormat16bppGray, {});
  // The first bytes are 0 and 3.
  return file && FirstSample("png", *file) == 0x0003;
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

std::optional<TiffSamples> FindTiffSamples(bool isBig, bool isWhiteLeast) {
  const std::string file = FileOfSample(isBig, isWhiteLeast);
  const ComPtr<IStream> memory = MakeMemory();
  if (!memory || FAILED(memory->Write(file.data(), static_cast<ULONG>(file.size()), nullptr))) return std::nullopt;
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

bool FindQuality() {
  const auto length = [](float quality) -> ULONGLONG {
    const ComPtr<IStream> file = Encode("jpeg", GUID_WICPixelFormat24bppBGR, [&](IPropertyBag2& options) {
      return SetOption(options, L"ImageQuality", quality);
    });
    return file ? LengthOf(*file) : 0;
  };
  return length(0.1f) < length(0.9f);
}

std::string FindTiffCompression(const std::string& asked) {
  const ComPtr<IStream> file = Encode("tiff", GUID_WICPixelFormat24bppBGR, [&](IPropertyBag2& options) {
    return SetOption(options, L"TiffCompressionMethod", TiffCompression(asked));
  });
  constexpr std::uint16_t kCompression = 259;
  if (!file) return asked;
  const TiffTags tags([&](std::int64_t at, std::size_t count) { return BytesOf(*file, at, count); });
  return NameOfTiffCompression(tags.Number(kCompression, 1));
}

std::map<std::string, std::string, std::less<>> FindTiffCompressions() {
  std::map<std::string, std::string, std::less<>> found;
  for (const char* asked : {"none", "lzw", "zip"})
    found.emplace(asked, FindTiffCompression(asked));
  return found;
}

PartsLacking FindLacking(const OutputFormat& format) {
  PartsLacking lacking;
  for (const SampleType type : {SampleType::Unsigned8, SampleType::Unsigned16}) {
    const ::GUID& grey = *FormsFor(format.name, PixelLayout::Grey, type).front();
    if (format.types.Has(type) && !TakesForm(format.name, grey)) lacking.greys.Add(type);
  }
  if (format.hasQuality) lacking.quality = !FindQuality();
  if (format.name != "tiff") return lacking;
  // Of those that the format does not have here, too.
  for (const std::string_view compression : kTiffCompressions) {
    const std::string written = WrittenTiffCompression(std::string(compression));
    if (written != compression) lacking.compressions.emplace(compression, written);
  }
  return lacking;
}

std::map<std::string_view, PartsLacking> FindAllLacking() {
  std::map<std::string_view, PartsLacking> all;
  for (const OutputFormat& format : OutputFormats())
    all.emplace(format.name, FindLacking(format));
  return all;
}

}  // namespace

bool SwapsPngSamples() {
  static const bool swaps = FindSwap();
  return swaps;
}

std::optional<TiffSamples> TiffSamplesOf(bool isBig, bool isWhiteLeast) {
  static const std::array<std::optional<TiffSamples>, 4> found{
      FindTiffSamples(false, false), FindTiffSamples(false, true), FindTiffSamples(true, false),
      FindTiffSamples(true, true)};
  return found[(isBig ? 2u : 0u) + (isWhiteLeast ? 1u : 0u)];
}

std::string WrittenTiffCompression(const std::string& asked) {
  static const auto written = FindTiffCompressions();
  const auto found = written.find(asked);
  return found == written.end() ? written.at("zip") : found->second;
}

const PartsLacking& LackingOf(const OutputFormat& format) {
  static const auto all = FindAllLacking();
  return all.at(format.name);
}

}  // namespace vblur::host
