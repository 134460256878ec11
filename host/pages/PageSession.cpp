#include "host/pages/PageSession.h"

#include "host/pages/PageForm.h"

namespace vblur::host {

PageSession::PageSession(const Job& job, double time, const EffectFactory& makeEffect, CallTrace* trace)
    : effectHost_(job.projectUnreadable ? std::nullopt : job.project),
      coordMan_(job.proxy),
      effect_(makeEffect(), trace),
      history_(SetUp(job)),
      pages_(effect_.PropertyAccess(), history_, trace),
      player_(pages_, history_,
              {[this](double newTime) { pages_.SetTime(newTime); },
               [this] {
                 if (print_) print_();
               }}) {
  pages_.SetTime(time);
}

IDSProperties& PageSession::SetUp(const Job& job) {
  effect_.SetUp(job, coordMan_, context_);
  return effect_.PropertyAccess();
}

std::string PageSession::Form(bool toolTips) {
  return pages_.Front() == nullptr ? "" : FormatPage(*pages_.Front(), pages_.CurrentTime(), toolTips);
}

}  // namespace vblur::host
