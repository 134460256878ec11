#include "host/base/Wildcards.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "host/base/LongPath.h"
#include "host/base/NameMatch.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"

namespace vblur::host {

namespace {

// The place behind the character at a place.
std::size_t NextCharacter(std::string_view text, std::size_t at) {
  constexpr unsigned kFollows = 0x80;
  do {
    ++at;
  } while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0u) == kFollows);
  return at;
}

// Where the last part of a name begins.
std::size_t LastPart(const std::string& name) {
  const std::filesystem::path path = PathOf(name);
  return name.size() - Utf8Of(path.filename()).size();
}

bool ComesBefore(const std::string& a, const std::string& b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  const auto less = [](char x, char y) { return static_cast<unsigned char>(x) < static_cast<unsigned char>(y); };
  const auto alike = std::ranges::mismatch(a, b, {}, lower, lower);
  if (alike.in1 == a.end() || alike.in2 == b.end()) return a.size() == b.size() ? a < b : a.size() < b.size();
  return less(lower(*alike.in1), lower(*alike.in2));
}

}  // namespace

bool MatchesWildcards(std::string_view name, std::string_view pattern) {
  constexpr std::size_t kNone = std::string_view::npos;
  if (name.starts_with('.') && !pattern.starts_with('.')) return false;
  std::size_t star = kNone;  // the last one that has been met
  std::size_t behind = 0;    // the part of the name that it stands for ends here
  std::size_t at = 0;
  for (std::size_t in = 0; in < name.size();) {
    const char wanted = at < pattern.size() ? pattern[at] : '\0';
    if (wanted == '*') {
      star = at++;
      behind = in;
    } else if (wanted == '?') {
      in = NextCharacter(name, in);
      ++at;
    } else if (at < pattern.size() && EqualIgnoringCase(name.substr(in, 1), pattern.substr(at, 1))) {
      ++in;
      ++at;
    } else if (star != kNone) {
      behind = NextCharacter(name, behind);
      in = behind;
      at = star + 1;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', at) == kNone;
}

std::vector<std::string> FilesNamed(const std::string& name) {
  std::error_code error;
  const std::size_t last = LastPart(name);
  const std::string pattern = name.substr(last);
  const bool isPattern = pattern.find_first_of("*?") != std::string::npos;
  if (!isPattern || std::filesystem::exists(ExtendedPath(PathOf(name)), error)) return {name};
  const std::string folder = name.substr(0, last);
  std::vector<std::string> found;
  for (const std::filesystem::path& entry : EntriesOf(folder.empty() ? "." : PathOf(folder))) {
    const std::string each = Utf8Of(entry);
    if (!MatchesWildcards(each, pattern)) continue;
    if (!std::filesystem::is_directory(ExtendedPath(PathOf(folder + each)), error)) found.push_back(folder + each);
  }
  if (found.empty()) return {name};
  std::ranges::sort(found, ComesBefore);
  return found;
}

}  // namespace vblur::host
