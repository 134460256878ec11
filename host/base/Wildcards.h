// Names of files with `*` and `?`, for systems whose shells leave them to the programs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vblur::host {

// Whether a name is that of the pattern: `*` stands for any characters, `?` for one. Only the letters A to Z have a
// case, which does not count. A name that begins with a dot needs a pattern that does, as in other shells.
bool MatchesWildcards(std::string_view name, std::string_view pattern);

// The files that a name stands for: those in its folder that match, by their names and without folders. Itself where
// such a file exists, none matches or its last part has neither `*` nor `?`: whoever uses it tells what is wrong.
std::vector<std::string> FilesNamed(const std::string& name);

}  // namespace vblur::host
