#include "host/wic/FrameEncoder.h"

#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "host/base/Failure.h"
#include "host/wic/CodecOptions.h"
#include "host/wic/CodecTraits.h"
#include "host/wic/FileMetadata.h"

namespace vblur::host {

FrameEncoder::FrameEncoder(const PictureToWrite& picture, const OutputPixels& pixels, const std::string& compression,
                           FileStream& stream) {
  IWICImagingFactory& factory = TheImagingFactory();
  ComPtr<IPropertyBag2> options;
  const bool begins = Do(factory.CreateEncoder(ContainerOf(picture.format.name), nullptr,
                                               reinterpret_cast<IWICBitmapEncoder**>(encoder_.Receive()))) &&
                      Do(encoder_->Initialize(&stream, WICBitmapEncoderNoCache)) &&
                      Do(encoder_->CreateNewFrame(reinterpret_cast<IWICBitmapFrameEncode**>(frame_.Receive()),
                                                  reinterpret_cast<IPropertyBag2**>(options.Receive())));
  if (begins && options) SetOptions(picture, compression, *options);
  const bool goesOn =
      begins && Do(frame_->Initialize(options.get())) &&
      Do(frame_->SetSize(static_cast<UINT>(picture.image.Width()), static_cast<UINT>(picture.image.Height())));
  if (goesOn) ChooseForm(picture, pixels);
  if (goesOn && picture.metadata != nullptr) PassResolution(picture.metadata->extras, picture.format.name);
  if (FAILED(result_)) RefuseToWrite(picture.target, Message());
  swaps_ = picture.format.name == "png" && form_.bits == 16 && SwapsPngSamples();
}

bool FrameEncoder::Do(::HRESULT result) {
  if (SUCCEEDED(result_)) result_ = result;
  return SUCCEEDED(result);
}

void FrameEncoder::SetOptions(const PictureToWrite& picture, const std::string& compression, IPropertyBag2& options) {
  if (picture.format.name == "jpeg") {
    constexpr std::int32_t kQuality = 98;
    Do(SetOption(options, L"ImageQuality", static_cast<float>(picture.storage.quality.value_or(kQuality)) / 100.0f));
    Do(SetOption(options, L"JpegYCrCbSubsampling", static_cast<BYTE>(WICJpegYCrCbSubsampling444)));
  }
  if (picture.format.name == "tiff") {
    Do(SetOption(options, L"TiffCompressionMethod", TiffCompression(compression)));
  }
}

bool FrameEncoder::Takes(const ::GUID& id) {
  WICPixelFormatGUID taken = id;
  return Do(frame_->SetPixelFormat(&taken)) && taken == id;
}

// Codecs answer with another kind where they do not have one.
void FrameEncoder::ChooseForm(const PictureToWrite& picture, const OutputPixels& pixels) {
  for (const ::GUID* const id : FormsFor(picture.format.name, pixels.layout, pixels.type)) {
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

void FrameEncoder::PassResolution(const FileExtras& extras, std::string_view format) {
  // JPEG files hold whole numbers, and codecs drop the fraction.
  const bool isWhole = format == "jpeg";
  const auto held = [&](double perInch) { return isWhole ? std::round(perInch) : perInch; };
  if (extras.pixelsPerInchX > 0.0) Do(frame_->SetResolution(held(extras.pixelsPerInchX), held(extras.pixelsPerInchY)));
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
