// What libjpeg says of a file, which is kept and printed nowhere.
#pragma once

#include <csetjmp>
#include <cstdio>
#include <string>

// It declares functions on FILE.
#include <jpeglib.h>

namespace vblur::host {

// Its errors jump to `place`. Between a setjmp and the calls that it guards no object is made that has to be destroyed.
struct JpegErrors {
  jpeg_error_mgr manager{};
  std::jmp_buf place{};
  std::string message{};  // the last error or warning; empty: none

  // Of a structure that is made after this.
  jpeg_error_mgr* Use();
};

}  // namespace vblur::host
