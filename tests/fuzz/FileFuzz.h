// What people hand the program as files and as text, one input at a time. Whatever it holds, it is refused in one line,
// or it is accepted and keeps what its kind promises, such as to be the same after it was written and read again. What
// goes wrong in memory is found by the sanitizers.
#pragma once

#include <array>
#include <string_view>

namespace vblur::test {

// Each takes the bytes of a file and returns whether the program accepts them. Throws std::logic_error with what does
// not hold.

// A job file, as `vblur job` reads and checks it before it renders.
bool CheckJobFile(std::string_view bytes);
bool CheckPropertyFile(std::string_view bytes);
bool CheckPenScript(std::string_view bytes);
// A page script, played on the effect's own pages as `vblur page` does; accepted if it ends in one of the uses.
bool CheckPageScript(std::string_view bytes);
// A file name's pattern, a line break, and frames; accepted where both are.
bool CheckFrameText(std::string_view bytes);
// A picture file of any format, read within a million pixels and 64 MiB.
bool CheckPicture(std::string_view bytes);

struct FileKind {
  std::string_view name;
  bool (*check)(std::string_view bytes);
};

inline constexpr std::array<FileKind, 6> kFileKinds{{
    {"jobs", CheckJobFile},
    {"properties", CheckPropertyFile},
    {"pens", CheckPenScript},
    {"pages", CheckPageScript},
    {"frames", CheckFrameText},
    {"pictures", CheckPicture},
}};

}  // namespace vblur::test
