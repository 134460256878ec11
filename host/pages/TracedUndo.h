// A history whose steps are noted in a trace of calls.
#pragma once

#include "host/base/Utf8.h"
#include "host/hosted/CallTrace.h"
#include "platform/PageSite.h"

namespace vblur::host {

class TracedUndo final : public IDSUndo {
 public:
  // Both borrowed; the trace may be null.
  TracedUndo(IDSUndo& undo, CallTrace* trace) : undo_(undo), trace_(trace) {}

  void BeginStep(const char16_t* name) override {
    Note("BeginStep(" + (name == nullptr ? std::string() : Utf8Of(name)) + ")");
    undo_.BeginStep(name);
  }
  void EndStep() override {
    undo_.EndStep();
    Note("EndStep()");
  }

 private:
  void Note(const std::string& call) const {
    if (trace_ != nullptr) trace_->Note("history", call, 0, 0.0);
  }

  IDSUndo& undo_;
  CallTrace* const trace_;
};

}  // namespace vblur::host
