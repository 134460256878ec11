// Scope guard: runs a function at the end of a scope, also on an exception. Listeners of widgets may throw.
#pragma once

#include <utility>

namespace vblur {

// The function must not throw.
template <class Function>
class ScopeExit {
 public:
  explicit ScopeExit(Function function) : function_(std::move(function)) {}
  ~ScopeExit() { function_(); }
  ScopeExit(const ScopeExit&) = delete;
  ScopeExit& operator=(const ScopeExit&) = delete;

 private:
  Function function_;
};

}  // namespace vblur
