// The painter of texts that the program uses on this system.
#pragma once

#ifdef _WIN32
#include "host/wic/GdiTextPainter.h"
#else
#include "host/pictures/FontFilePainter.h"
#endif

namespace vblur::host {

#ifdef _WIN32
using SystemPainter = GdiTextPainter;
#else
using SystemPainter = FontFilePainter;
#endif

}  // namespace vblur::host
