// The pages of an effect in a window of the system's, for a user.
#pragma once

#include "host/hosted/ExecuteContext.h"
#include "host/pages/EffectPages.h"
#include "host/pages/UndoHistory.h"

namespace vblur::host {

// Whether the system has such windows.
#ifdef _WIN32
inline constexpr bool kShowsPages = true;
#else
inline constexpr bool kShowsPages = false;
#endif

// Shows the page in front, and those that the effect lists beside it, until the user closes the window or the context
// is stopped. Ctrl+Z and Ctrl+Y undo and redo, Ctrl+Tab and Ctrl+Shift+Tab show the next page and the one before.
// Throws Failure (some frames failed) where there are no windows, and what the pages throw.
void ShowPages(EffectPages& pages, UndoHistory& history, const ExecuteContext& context);

}  // namespace vblur::host
