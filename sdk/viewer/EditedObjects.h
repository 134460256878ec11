// Which viewer shows which edited object: pages put a tool over "the viewer of this effect". User-interface thread
// only.
#pragma once

#include "platform/Viewer.h"

namespace vblur::host {

// From now on the viewer shows this object, and no other; null: none. Both are borrowed: set null before either ends.
// The viewer that came last is that of an object which several show.
void ShowInViewer(IUnknown* edited, IVWViewer* viewer);
// Null if no viewer shows it.
IVWViewer* ViewerOf(IUnknown* edited);

}  // namespace vblur::host
