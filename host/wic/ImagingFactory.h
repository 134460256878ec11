// The Windows Imaging Component. For sources of this room, after all other headers: the system's macros replace names.
#pragma once

#include <string>

#include "platform/ComPtr.h"

#include <wincodec.h>
#include <windows.h>

namespace vblur::host {

// Keeps COM's multithreaded apartment for the process, which threads without one of their own are in. Throws
// std::runtime_error when the system has no such component. From any thread.
IWICImagingFactory& TheImagingFactory();

// What an error of the component means, in words.
std::string ImagingErrorText(::HRESULT error);

}  // namespace vblur::host
