#include "host/wic/CodecTraits.h"

#include <array>
#include <cstdint>

#include "host/wic/CodecOptions.h"
#include "host/wic/ImagingFactory.h"

namespace vblur::host {

namespace {

constexpr UINT kSide = 16;

ComPtr<IStream> MakeMemory() {
  ComPtr<IStream> memory;
  ::CreateStreamOnHGlobal(nullptr, TRUE, reinterpret_cast<IStream**>(memory.Receive()));
  return memory;
}

// A picture of all kinds of samples. `quality` below 0: without the option.
bool Encode(const ::GUID& container, const ::GUID& form, UINT pixelBytes, float quality, IStream& into) {
  ComPtr<IWICBitmapEncoder> encoder;
  ComPtr<IWICBitmapFrameEncode> frame;
  ComPtr<IPropertyBag2> options;
  WICPixelFormatGUID taken = form;
  std::array<BYTE, kSide * kSide * 4> samples{};
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = static_cast<BYTE>(i * i / 7 + 3 * i);
  const UINT rowBytes = kSide * pixelBytes;
  const auto does = [](::HRESULT result) { return SUCCEEDED(result); };
  return does(TheImagingFactory().CreateEncoder(container, nullptr,
                                                reinterpret_cast<IWICBitmapEncoder**>(encoder.Receive()))) &&
         does(encoder->Initialize(&into, WICBitmapEncoderNoCache)) &&
         does(encoder->CreateNewFrame(reinterpret_cast<IWICBitmapFrameEncode**>(frame.Receive()),
                                      reinterpret_cast<IPropertyBag2**>(options.Receive()))) &&
         (quality < 0.0f || does(SetOption(*options, L"ImageQuality", quality))) &&
         does(frame->Initialize(options.get())) && does(frame->SetSize(kSide, kSide)) &&
         does(frame->SetPixelFormat(&taken)) && taken == form &&
         does(frame->WritePixels(kSide, rowBytes, rowBytes * kSide, samples.data())) && does(frame->Commit()) &&
         does(encoder->Commit());
}

ULONGLONG LengthOf(IStream& stream) {
  STATSTG status{};
  return SUCCEEDED(stream.Stat(&status, STATFLAG_NONAME)) ? status.cbSize.QuadPart : 0;
}

bool FindSwap() {
  const ComPtr<IStream> memory = MakeMemory();
  if (!memory || !Encode(GUID_ContainerFormatPng, GUID_WICPixelFormat16bppGray, 2, -1.0f, *memory)) return false;
  // The first bytes are 0 and 3.
  memory->Seek({}, STREAM_SEEK_SET, nullptr);
  ComPtr<IWICBitmapDecoder> decoder;
  ComPtr<IWICBitmapFrameDecode> frame;
  std::array<BYTE, 2> sample{};
  const WICRect first{0, 0, 1, 1};
  const bool isRead =
      SUCCEEDED(TheImagingFactory().CreateDecoder(GUID_ContainerFormatPng, nullptr,
                                                  reinterpret_cast<IWICBitmapDecoder**>(decoder.Receive()))) &&
      SUCCEEDED(decoder->Initialize(memory.get(), WICDecodeMetadataCacheOnDemand)) &&
      SUCCEEDED(decoder->GetFrame(0, reinterpret_cast<IWICBitmapFrameDecode**>(frame.Receive()))) &&
      SUCCEEDED(frame->CopyPixels(&first, 2, 2, sample.data()));
  constexpr std::array<BYTE, 2> kSwapped{3, 0};
  return isRead && sample == kSwapped;
}

bool FindQuality() {
  const auto length = [](float quality) -> ULONGLONG {
    const ComPtr<IStream> memory = MakeMemory();
    if (!memory || !Encode(GUID_ContainerFormatJpeg, GUID_WICPixelFormat24bppBGR, 3, quality, *memory)) return 0;
    return LengthOf(*memory);
  };
  return length(0.1f) < length(0.9f);
}

}  // namespace

bool SwapsPngSamples() {
  static const bool swaps = FindSwap();
  return swaps;
}

bool HasJpegQuality() {
  static const bool has = FindQuality();
  return has;
}

}  // namespace vblur::host
