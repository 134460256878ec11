#include "host/pages/ShowPages.h"

#include "host/base/Failure.h"

namespace vblur::host {

void ShowPages(EffectPages&, UndoHistory&, const ExecuteContext&) {
  throw Failure(ExitCode::SomeFramesFailed, "pages are shown in windows on Windows only");
}

}  // namespace vblur::host
