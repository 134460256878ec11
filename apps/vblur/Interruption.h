// Ctrl-C and SIGTERM: the first stops the render, which cleans up; the second ends the process at once.
#pragma once

#include "host/hosted/ExecuteContext.h"

namespace vblur::cli {

class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  host::ExecuteContext& Context() { return context_; }

 private:
  host::ExecuteContext context_;
};

}  // namespace vblur::cli
