// One picture in a file of one of the component's formats.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/files/OutputPixels.h"
#include "host/formats/FileExtras.h"
#include "host/wic/FileStream.h"
#include "host/wic/PixelForms.h"

namespace vblur::host {

class FrameEncoder {
 public:
  // `compression` is of a TIFF file. Borrows nothing. Throws Failure (cannot write) when the system's codec does not
  // take such a picture.
  FrameEncoder(const PictureToWrite& picture, const OutputPixels& pixels, const std::string& compression,
               FileStream& stream);

  // What rows are made of.
  const PixelForm& Form() const { return form_; }
  // The next rows, from the top on, which it may change. False: the codec refuses them.
  bool Write(std::int32_t count, std::size_t rowBytes, std::byte* rows);
  bool Close();
  // What went wrong, in words.
  std::string Message() const { return ImagingErrorText(result_); }

 private:
  // Notes the first error.
  bool Do(::HRESULT result);
  void SetOptions(const PictureToWrite& picture, const std::string& compression, IPropertyBag2& options);
  void ChooseForm(const PictureToWrite& picture, const OutputPixels& pixels);
  bool Takes(const ::GUID& id);
  void SetGreyPalette();
  void PassResolution(const FileExtras& extras, std::string_view format);

  ::HRESULT result_ = S_OK;
  ComPtr<IWICBitmapEncoder> encoder_;
  ComPtr<IWICBitmapFrameEncode> frame_;
  PixelForm form_;
  bool swaps_ = false;  // the bytes of each sample
};

}  // namespace vblur::host
