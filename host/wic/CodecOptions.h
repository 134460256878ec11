// Options of the component's codecs.
#pragma once

#include <oaidl.h>

#include "host/wic/ImagingFactory.h"

namespace vblur::host {

::HRESULT SetOption(IPropertyBag2& options, const wchar_t* name, float value);
::HRESULT SetOption(IPropertyBag2& options, const wchar_t* name, BYTE value);

}  // namespace vblur::host
