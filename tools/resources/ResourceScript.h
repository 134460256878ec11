// The module's texts, dialogs and pictures as files for the resource compiler of Windows.
#pragma once

#include <string>
#include <string_view>

#include "platform/Module.h"

namespace vblur {

// The script. It names each picture's file, which lies beside it.
std::string ResourceScript(const Module& module);

// The script of a library's version, "1.2.3", with the module's name, description and owner.
std::string VersionScript(const Module& module, std::string_view version);

std::string BitmapFileName(const ModuleBitmap& bitmap);

// A BMP file of 32 bits a pixel. Windows ignores the fourth component when it draws one.
std::string BitmapFile(const ModuleBitmap& bitmap);

}  // namespace vblur
