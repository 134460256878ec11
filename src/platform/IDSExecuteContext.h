// The host's word on whether a render may go on.
#pragma once

#include <cstdint>

namespace vblur {

class IDSExecuteContext {
 public:
  virtual ~IDSExecuteContext() = default;

  // Non-zero while work may go on. Called from every thread of a render, often: once a row.
  virtual std::int32_t MayContinue() = 0;
};

}  // namespace vblur
