#include "host/wic/CodecOptions.h"

namespace vblur::host {

namespace {

::HRESULT SetOption(IPropertyBag2& options, const wchar_t* name, VARIANT& value) {
  PROPBAG2 option{};
  option.pstrName = const_cast<LPOLESTR>(name);
  return options.Write(1, &option, &value);
}

}  // namespace

const ::GUID& ContainerOf(std::string_view format) {
  if (format == "png") return GUID_ContainerFormatPng;
  if (format == "jpeg") return GUID_ContainerFormatJpeg;
  return format == "tiff" ? GUID_ContainerFormatTiff : GUID_ContainerFormatBmp;
}

BYTE TiffCompression(std::string_view name) {
  if (name == "none") return WICTiffCompressionNone;
  return name == "lzw" ? WICTiffCompressionLZW : WICTiffCompressionZIP;
}

::HRESULT SetOption(IPropertyBag2& options, const wchar_t* name, float value) {
  VARIANT variant{};
  variant.vt = VT_R4;
  variant.fltVal = value;
  return SetOption(options, name, variant);
}

::HRESULT SetOption(IPropertyBag2& options, const wchar_t* name, BYTE value) {
  VARIANT variant{};
  variant.vt = VT_UI1;
  variant.bVal = value;
  return SetOption(options, name, variant);
}

}  // namespace vblur::host
