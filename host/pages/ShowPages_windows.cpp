#include "host/pages/ShowPages.h"

#include "host/base/Failure.h"
#include "host/pages/PageFrame.h"

namespace vblur::host {

void ShowPages(EffectPages& pages, UndoHistory& history, const ExecuteContext& context) {
  PageFrame frame(pages, history);
  if (!frame.IsOpen()) throw Failure(ExitCode::SomeFramesFailed, "the system makes no window: is there a screen?");
  frame.Run(context);
}

}  // namespace vblur::host
