#include "host/base/NameMatch.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include <nlohmann/json.hpp>

namespace vblur::host {

namespace {

constexpr std::size_t kLongestQuote = 60;

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Edit distance; two swapped neighbours count once.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = Lower(a[i - 1]) == Lower(b[j - 1]);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0u : 1u)});
      const bool swapped = i > 1 && j > 1 && Lower(a[i - 1]) == Lower(b[j - 2]) && Lower(a[i - 2]) == Lower(b[j - 1]);
      if (swapped) row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before.swap(last);
    last.swap(row);
  }
  return last[b.size()];
}

}  // namespace

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, Lower, Lower);
}

std::string_view NearestName(std::string_view text, std::span<const std::string_view> names) {
  // The distance takes O(n * m).
  constexpr std::size_t kLongestGuess = 200;
  if (text.empty() || text.size() > kLongestGuess) return {};
  std::string_view nearest;
  std::size_t fewest = 0;
  for (const std::string_view name : names) {
    const std::size_t changes = Distance(text, name);
    const bool near = changes <= std::max<std::size_t>(1, std::min(text.size(), name.size()) / 2);
    if (!near || (!nearest.empty() && changes >= fewest)) continue;
    nearest = name;
    fewest = changes;
  }
  return nearest;
}

std::string UnknownName(std::string_view what, std::string_view text, std::span<const std::string_view> names) {
  std::string message = "unknown " + std::string(what) + " " + Quoted(text);
  const std::string_view nearest = NearestName(text, names);
  if (!nearest.empty()) message += "; did you mean " + Quoted(nearest) + "?";
  return message;
}

std::string Quoted(std::string_view text) {
  const bool cut = text.size() > kLongestQuote;
  const nlohmann::json shown = std::string(text.substr(0, kLongestQuote)) + (cut ? "..." : "");
  const std::string escaped = shown.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  std::string quoted;
  for (std::size_t at = 0; at < escaped.size(); ++at) {
    quoted += escaped[at];
    // Folders of Windows are typed with one backslash.
    const bool isEscape = escaped[at] == '\\' && at + 1 < escaped.size();
    if (isEscape && escaped[++at] != '\\') quoted += escaped[at];
  }
  return quoted;
}

}  // namespace vblur::host
