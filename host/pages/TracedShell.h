// Answers what pages ask of the system where there is none of its kind: no registry key, and no document opens. What
// they ask is noted in a trace of calls. On Windows the system answers, and nothing is noted.
#pragma once

#include "host/hosted/CallTrace.h"
#ifndef _WIN32
#include "host/base/Utf8.h"
#include "sdk/system/ShellAnswers.h"
#endif

namespace vblur::host {

#ifdef _WIN32
struct TracedShell {
  explicit TracedShell(CallTrace*) {}
};
#else
class TracedShell final : public ShellAnswers {
 public:
  // Borrowed; may be null. Answers from now on in place of those before, until its end.
  explicit TracedShell(CallTrace* trace) : trace_(trace) { UseShellAnswers(this); }
  ~TracedShell() override { UseShellAnswers(nullptr); }
  TracedShell(const TracedShell&) = delete;
  TracedShell& operator=(const TracedShell&) = delete;

  bool HasKey(const std::u16string& key, std::uint32_t) override {
    Note("RegOpenKeyExW(" + Utf8Of(key) + ")");
    return false;
  }
  std::optional<std::u16string> Text(const std::u16string&, const std::u16string&) override { return std::nullopt; }
  std::intptr_t Open(const std::u16string&, const std::u16string& file, std::int32_t) override {
    Note("ShellExecuteW(" + Utf8Of(file) + ")");
    constexpr std::intptr_t kNoSuchFile = 2;
    return kNoSuchFile;
  }

 private:
  void Note(const std::string& call) const {
    if (trace_ != nullptr) trace_->Note("shell", call, kFalse, 0.0);
  }

  CallTrace* const trace_;
};
#endif

}  // namespace vblur::host
