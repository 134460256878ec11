// What is thrown below a procedure of a window, while it passes the system's functions, through which nothing may be
// thrown: the procedure keeps it, and who has sent the message throws it again. Windows only; one for each thread.
#pragma once

#include "platform/Window.h"

namespace vblur::host {

// What is being handled, unless something is kept already.
void KeepCurrentFailure() noexcept;
// Throws what is kept, and keeps it no longer. Nothing without such.
void ThrowKeptFailure();

// The answer of a procedure; 0 where `answer` throws, which is kept.
template <class Answer>
LRESULT AnswerOrKeep(const Answer& answer) noexcept {
  try {
    return answer();
  } catch (...) {
    KeepCurrentFailure();
    return 0;
  }
}

}  // namespace vblur::host
