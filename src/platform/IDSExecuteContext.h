// Tells a render whether to go on.
#pragma once

#include <cstdint>

namespace vblur {

class IDSExecuteContext {
 public:
  virtual ~IDSExecuteContext() = default;

  // Non-zero to go on. Called once a row from every thread of a render.
  virtual std::int32_t MayContinue() = 0;
};

}  // namespace vblur
