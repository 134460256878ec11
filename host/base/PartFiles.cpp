#include "host/base/PartFiles.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <system_error>

#include "host/base/LongPath.h"
#include "host/base/Processes.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"

namespace vblur::host {

namespace {

using Letter = std::filesystem::path::value_type;

constexpr std::size_t kLongestPiece = 60;

// The machine's name with separators replaced.
const std::string& MachinePiece() {
  static const std::string name = [] {
    std::string kept;
    for (const char c : MachineName().substr(0, kLongestPiece))
      kept += c == '.' || c == '-' ? '_' : c;
    return kept.empty() ? std::string("unknown") : kept;
  }();
  return name;
}

// The begin of a name in UTF-8, of whole characters.
std::string PieceOf(const std::string& name) {
  std::size_t end = std::min(name.size(), kLongestPiece);
  const auto isWithin = [&] { return end < name.size() && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80; };
  while (end > 0 && isWithin())
    --end;
  return name.substr(0, end);
}

// The process that wrote a part file of this machine.
std::optional<std::uint32_t> WriterOf(const std::string& fileName) {
  static const std::regex form(R"(\..*\.([^.-]+)-([0-9]{1,10})-[0-9]+\.part(\.[^.]*)?(\.scratch)?)");
  std::smatch parts;
  if (!std::regex_match(fileName, parts, form) || parts[1].str() != MachinePiece()) return std::nullopt;
  const unsigned long long process = std::stoull(parts[2].str());
  if (process > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return static_cast<std::uint32_t>(process);
}

// More than frames can be in flight. Files without a place are left to RemoveAbandonedParts.
constexpr std::size_t kMostNotes = 1024;
std::array<std::atomic<Letter*>, kMostNotes> notes;
static_assert(std::atomic<Letter*>::is_always_lock_free, "a signal handler must not wait for a lock");

}  // namespace

std::filesystem::path PartFileFor(const std::filesystem::path& target) {
  static std::atomic<unsigned> counter{0};
  const std::string name = "." + PieceOf(Utf8Of(target.stem())) + "." + MachinePiece() + "-" +
                           std::to_string(OwnProcess()) + "-" + std::to_string(counter++) + ".part" +
                           PieceOf(Utf8Of(target.extension()));
  return ExtendedPath(target.parent_path() / PathOf(name));
}

std::filesystem::path ScratchFileFor(const std::filesystem::path& part) {
  std::filesystem::path scratch = part;
  scratch += ".scratch";
  return ExtendedPath(scratch);
}

PartFileNote::PartFileNote(const std::filesystem::path& file) {
  const auto& text = file.native();
  auto name = std::make_unique<Letter[]>(text.size() + 1);
  text.copy(name.get(), text.size());
  for (auto& place : notes) {
    Letter* none = nullptr;
    if (!place.compare_exchange_strong(none, name.get())) continue;
    place_ = &place;
    name_ = name.release();
    return;
  }
}

// A name taken by a signal handler is not freed.
PartFileNote::~PartFileNote() {
  Letter* own = name_;
  if (place_ != nullptr && place_->compare_exchange_strong(own, nullptr)) delete[] name_;
}

void RemoveNotedParts() noexcept {
  for (auto& place : notes) {
    if (const Letter* const name = place.exchange(nullptr); name != nullptr) RemoveAtOnce(name);
  }
}

void RemoveAbandonedParts(const std::filesystem::path& folder) {
  for (const std::filesystem::path& name : EntriesOf(folder.empty() ? "." : folder)) {
    const auto writer = WriterOf(Utf8Of(name));
    if (!writer || !HasEnded(*writer)) continue;
    std::error_code ignored;
    std::filesystem::remove(ExtendedPath(folder / name), ignored);
  }
}

}  // namespace vblur::host
