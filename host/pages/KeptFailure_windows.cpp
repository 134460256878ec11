#include "host/pages/KeptFailure.h"

#include <exception>
#include <utility>

namespace vblur::host {

namespace {

thread_local std::exception_ptr kept;

}  // namespace

void KeepCurrentFailure() noexcept {
  if (!kept) kept = std::current_exception();
}

void ThrowKeptFailure() {
  if (kept) std::rethrow_exception(std::exchange(kept, nullptr));
}

}  // namespace vblur::host
