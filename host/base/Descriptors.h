// Open files by the numbers of the C library, read and written past its buffers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>

namespace vblur::host {

inline constexpr int kStandardInput = 0;
inline constexpr int kStandardOutput = 1;

// Whether people are at the other end.
bool IsTerminal(int file);

// Whether there is something to read, or the end, within a tenth of a second.
bool IsReady(int file);

// How many bytes were read, 0 at the end, or written; -1 with the error in errno. What is typed into a terminal is a
// line at a time, on Windows UTF-8 whatever the console's code page is.
std::int64_t ReadSome(int file, std::span<char> bytes);
std::int64_t WriteSome(int file, std::span<const char> bytes);
// Writes what a stream holds. False with the error in errno, also where an earlier write has failed.
bool Flush(std::FILE* stream);
// From a place in a file. Moves the place of ReadSome or leaves it.
std::int64_t ReadSomeAt(int file, std::int64_t place, std::span<char> bytes);

}  // namespace vblur::host
