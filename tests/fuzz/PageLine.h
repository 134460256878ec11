// The line of a page script that makes an event.
#pragma once

#include <string>

#include "host/pages/PageEvent.h"

namespace vblur::test {

std::string PageLineOf(const host::PageEvent& event);
// But for their places.
bool IsSamePageEvent(const host::PageEvent& a, const host::PageEvent& b);

}  // namespace vblur::test
