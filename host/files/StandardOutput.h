// The standard output as the place of a picture.
#pragma once

#include <memory>

#include "host/base/UnnamedFile.h"

namespace vblur::host {

// Throws Failure (cannot write) for a terminal.
void RequirePictureOutput();

// A temporary file for the picture, which is sent when it is whole. Throws Failure (cannot write) where none can be
// made.
std::unique_ptr<UnnamedFile> MakeFileForOutput();

// Sends the whole file. Throws Failure (cannot write), also when the reader has left.
void SendToStandardOutput(const UnnamedFile& file);

}  // namespace vblur::host
