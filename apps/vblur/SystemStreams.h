// What the system has for the standard streams.
#pragma once

#include <cstdio>

namespace vblur::cli {

// Opens closed standard streams on nothing, so that files do not get their numbers. Using one still fails. On Windows,
// all are binary from then on, and a console shows UTF-8 and moves its cursor until RestoreConsole.
void PrepareStreams();
// From any thread, also from a handler of signals.
void RestoreConsole() noexcept;
// RestoreConsole, and the end of the process with this exit status whatever its threads do: nothing of it runs any
// more. From any thread, also from a handler of signals.
[[noreturn]] void EndProcess(int status) noexcept;

// A copy of the standard error stream, which programs that this one starts do not get; itself where there is none.
std::FILE* OwnErrorStream();
// The number of a stream, for host/base/Descriptors.h.
int NumberOf(std::FILE* stream);
// Whether the last write failed since nobody reads the pipe.
bool IsPipeBroken();

}  // namespace vblur::cli
