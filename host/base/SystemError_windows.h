// Errors of Windows in words.
#pragma once

#include <string>

namespace vblur::host {

// Of a number of GetLastError: in the words of other systems where they have the error, too, otherwise in those of
// Windows, and always on one line without a period.
std::string SystemErrorText(unsigned long error);

// Whether it says that the other end of a pipe is closed; which number does depends on who made the pipe.
bool IsEndOfPipe(unsigned long error);

// Of the last error of this thread.
std::string LastErrorText();

}  // namespace vblur::host
