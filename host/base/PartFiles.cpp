#include "host/base/PartFiles.h"

#include <array>
#include <atomic>
#include <cstdint>
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

// The process that wrote a part file of this machine.
std::optional<std::uint32_t> WriterOf(const std::string& fileName) {
  static const std::regex form(R"(\..*\.([^.-]+)-([0-9]{1,9})-[0-9]+\.part(\.[^.]*)?)");
  std::smatch parts;
  if (!std::regex_match(fileName, parts, form) || parts[1].str() != MachinePiece()) return std::nullopt;
  return static_cast<std::uint32_t>(std::stol(parts[2].str()));
}

// More than frames can be in flight. Files without a place are left to RemoveAbandonedParts.
constexpr std::size_t kMostNotes = 1024;
std::array<std::atomic<Letter*>, kMostNotes> notes;
static_assert(std::atomic<Letter*>::is_always_lock_free, "a signal handler must not wait for a lock");

}  // namespace

std::filesystem::path PartFileFor(const std::filesystem::path& target) {
  static std::atomic<unsigned> counter{0};
  const std::string name = "." + Utf8Of(target.stem()).substr(0, kLongestPiece) + "." + MachinePiece() + "-" +
                           std::to_string(OwnProcess()) + "-" + std::to_string(counter++) + ".part" +
                           Utf8Of(target.extension());
  return ExtendedPath(target.parent_path() / PathOf(name));
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
  std::error_code error;
  std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const auto writer = WriterOf(Utf8Of(entry->path().filename()));
    if (!writer || !HasEnded(*writer)) continue;
    std::error_code ignored;
    std::filesystem::remove(entry->path(), ignored);
  }
}

}  // namespace vblur::host
