// Ctrl-C and a polite kill, as a stop of the render: the first asks it to end and clean up behind
// itself, the second ends the program at once.
#pragma once

#include "host/hosted/ExecuteContext.h"

namespace vblur::cli {

class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  host::ExecuteContext& context() { return context_; }

 private:
  host::ExecuteContext context_;
};

}  // namespace vblur::cli
