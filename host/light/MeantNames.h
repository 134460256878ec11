// Names of attributes that are no mere texts to readers and writers of picture files.
#pragma once

#include <string_view>

namespace vblur::host {

// Whether an attribute of this name, whatever follows it, means more than its value to a reader or writer of some
// format in the full library.
bool IsMeantName(std::string_view name);
// Whether no writer of the full library but its own format's takes an attribute of this name that is no text: how fast
// frames follow one another and when, and what programs note.
bool IsNotedName(std::string_view name);

}  // namespace vblur::host
