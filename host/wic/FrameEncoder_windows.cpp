#include "host/wic/FrameEncoder.h"

#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "host/base/Failure.h"
#include "host/files/ColourProfile.h"
#include "host/wic/CodecOptions.h"
#include "host/wic/CodecTraits.h"
#include "host/wic/FileMetadata.h"

namespace vblur::host {

namespace {

const ::GUID& ContainerOf(std::string_view format) {
  if (format == "png") return GUID_ContainerFormatPng;
  if (format == "jpeg") return GUID_ContainerFormatJpeg;
  return format == "tiff" ? GUID_ContainerFormatTiff : GUID_ContainerFormatBmp;
}

BYTE TiffCompression(std::string_view name) {
  if (name == "none") return WICTiffCompressionNone;
  return name == "lzw" ? WICTiffCompressionLZW : WICTiffCompressionZIP;
}

constexpr std::array kGreyBmp{&GUID_WICPixelFormat8bppIndexed, &GUID_WICPixelFormat24bppBGR};

}  // namespace

FrameEncoder::FrameEncoder(const PictureToWrite& picture, const OutputPixels& pixels, FileStream& stream) {
  IWICImagingFactory& factory = TheImagingFactory();
  ComPtr<IPropertyBag2> options;
  const bool begins = Do(factory.CreateEncoder(ContainerOf(picture.format.name), nullptr,
                                               reinterpret_cast<IWICBitmapEncoder**>(encoder_.Receive()))) &&
                      Do(encoder_->Initialize(&stream, WICBitmapEncoderNoCache)) &&
                      Do(encoder_->CreateNewFrame(reinterpret_cast<IWICBitmapFrameEncode**>(frame_.Receive()),
                                                  reinterpret_cast<IPropertyBag2**>(options.Receive())));
  if (begins && options) SetOptions(picture, *options);
  const bool goesOn =
      begins && Do(frame_->Initialize(options.get())) &&
      Do(frame_->SetSize(static_cast<UINT>(picture.image.Width()), static_cast<UINT>(picture.image.Height())));
  if (goesOn) ChooseForm(picture, pixels);
  if (goesOn && picture.metadata != nullptr) PassMetadata(*picture.metadata, picture.format.name, pixels);
  if (FAILED(result_)) RefuseToWrite(picture.target, Message());
  swaps_ = picture.format.name == "png" && form_.bits == 16 && SwapsPngSamples();
}

bool FrameEncoder::Do(::HRESULT result) {
  if (SUCCEEDED(result_)) result_ = result;
  return SUCCEEDED(result);
}

void FrameEncoder::SetOptions(const PictureToWrite& picture, IPropertyBag2& options) {
  const OutputStorage& storage = picture.storage;
  if (picture.format.name == "jpeg") {
    constexpr std::int32_t kQuality = 98;
    Do(SetOption(options, L"ImageQuality", static_cast<float>(storage.quality.value_or(kQuality)) / 100.0f));
    Do(SetOption(options, L"JpegYCrCbSubsampling", static_cast<BYTE>(WICJpegYCrCbSubsampling444)));
  }
  if (picture.format.name == "tiff") {
    const std::string name = storage.compression ? FindCompression(picture.format, *storage.compression) : "zip";
    Do(SetOption(options, L"TiffCompressionMethod", TiffCompression(name)));
  }
}

bool FrameEncoder::Takes(const ::GUID& id) {
  WICPixelFormatGUID taken = id;
  return Do(frame_->SetPixelFormat(&taken)) && taken == id;
}

// Codecs answer with another kind where they do not have one.
void FrameEncoder::ChooseForm(const PictureToWrite& picture, const OutputPixels& pixels) {
  const bool isGreyBmp = picture.format.name == "bmp" && IsGrey(pixels.layout);
  const auto forms = isGreyBmp ? std::span<const ::GUID* const>(kGreyBmp) : FormsFor(pixels.layout, pixels.type);
  for (const ::GUID* const id : forms) {
    if (FAILED(result_)) return;
    if (!Takes(*id)) continue;
    form_ = *FindPixelForm(*id);
    if (form_.model == ColourModel::Palette) SetGreyPalette();
    return;
  }
  if (SUCCEEDED(result_)) result_ = WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT;
}

void FrameEncoder::SetGreyPalette() {
  constexpr UINT kColours = 256;
  std::array<WICColor, kColours> colours{};
  for (UINT grey = 0; grey < kColours; ++grey)
    colours[grey] = 0xff000000u | grey * 0x010101u;
  ComPtr<IWICPalette> palette;
  if (Do(TheImagingFactory().CreatePalette(reinterpret_cast<IWICPalette**>(palette.Receive()))) &&
      Do(palette->InitializeCustom(colours.data(), kColours)))
    Do(frame_->SetPalette(palette.get()));
}

void FrameEncoder::PassMetadata(const PictureMetadata& metadata, std::string_view format, const OutputPixels& pixels) {
  const FileExtras& extras = metadata.extras;
  // JPEG files hold whole numbers, and codecs drop the fraction.
  const bool isWhole = format == "jpeg";
  const auto held = [&](double perInch) { return isWhole ? std::round(perInch) : perInch; };
  if (extras.pixelsPerInchX > 0.0) Do(frame_->SetResolution(held(extras.pixelsPerInchX), held(extras.pixelsPerInchY)));
  // Into the heads of the others it is put afterwards.
  if (format != "tiff" || !LayoutsOfProfile(metadata.extras.profile).Has(pixels.layout)) return;
  ComPtr<IWICColorContext> context;
  const bool isMade =
      SUCCEEDED(TheImagingFactory().CreateColorContext(reinterpret_cast<IWICColorContext**>(context.Receive()))) &&
      SUCCEEDED(context->InitializeFromMemory(reinterpret_cast<const BYTE*>(metadata.extras.profile.data()),
                                              static_cast<UINT>(metadata.extras.profile.size())));
  IWICColorContext* contexts[] = {context.get()};
  losesProfile_ = !isMade || FAILED(frame_->SetColorContexts(1, contexts));
}

bool FrameEncoder::Write(std::int32_t count, std::size_t rowBytes, std::byte* rows) {
  if (swaps_) {
    std::byte* const end = rows + rowBytes * static_cast<std::size_t>(count);
    for (std::byte* sample = rows; sample < end; sample += 2)
      std::swap(sample[0], sample[1]);
  }
  return Do(frame_->WritePixels(static_cast<UINT>(count), static_cast<UINT>(rowBytes),
                                static_cast<UINT>(rowBytes * static_cast<std::size_t>(count)),
                                reinterpret_cast<BYTE*>(rows)));
}

bool FrameEncoder::Close() {
  return Do(frame_->Commit()) && Do(encoder_->Commit());
}

}  // namespace vblur::host
