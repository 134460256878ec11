// The component's codecs and their options.
#pragma once

#include <string_view>

#include <oaidl.h>

#include "host/wic/ImagingFactory.h"

namespace vblur::host {

// By OutputFormat::name.
const ::GUID& ContainerOf(std::string_view format);

// One of none, lzw and zip, for the option TiffCompressionMethod.
BYTE TiffCompression(std::string_view name);
::HRESULT SetOption(IPropertyBag2& options, const wchar_t* name, float value);
::HRESULT SetOption(IPropertyBag2& options, const wchar_t* name, BYTE value);

}  // namespace vblur::host
