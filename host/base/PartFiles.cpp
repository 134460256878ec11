#include "host/base/PartFiles.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <regex>
#include <string>
#include <system_error>

#include <signal.h>
#include <unistd.h>

namespace vblur::host {

namespace {

constexpr std::size_t kLongestPiece = 60;

// The machine's name with separators replaced.
const std::string& MachineName() {
  static const std::string name = [] {
    std::array<char, 256> text{};
    if (::gethostname(text.data(), text.size() - 1) != 0) return std::string("unknown");
    std::string kept;
    for (const char c : std::string(text.data()).substr(0, kLongestPiece))
      kept += c == '.' || c == '-' ? '_' : c;
    return kept.empty() ? std::string("unknown") : kept;
  }();
  return name;
}

// The process that wrote a part file of this machine.
std::optional<pid_t> WriterOf(const std::string& fileName) {
  static const std::regex form(R"(\..*\.([^.-]+)-([0-9]{1,9})-[0-9]+\.part(\.[^.]*)?)");
  std::smatch parts;
  if (!std::regex_match(fileName, parts, form) || parts[1].str() != MachineName()) return std::nullopt;
  return static_cast<pid_t>(std::stol(parts[2].str()));
}

// More than frames can be in flight. Files without a place are left to RemoveAbandonedParts.
constexpr std::size_t kMostNotes = 1024;
std::array<std::atomic<char*>, kMostNotes> notes;
static_assert(std::atomic<char*>::is_always_lock_free, "a signal handler must not wait for a lock");

bool HasEnded(pid_t process) {
  return ::kill(process, 0) != 0 && errno == ESRCH;
}

}  // namespace

std::filesystem::path PartFileFor(const std::filesystem::path& target) {
  static std::atomic<unsigned> counter{0};
  const std::string name = "." + target.stem().string().substr(0, kLongestPiece) + "." + MachineName() + "-" +
                           std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".part" +
                           target.extension().string();
  return target.parent_path() / name;
}

PartFileNote::PartFileNote(const std::filesystem::path& file) : name_(::strdup(file.c_str())) {
  for (auto& place : notes) {
    char* none = nullptr;
    if (!place.compare_exchange_strong(none, name_)) continue;
    place_ = &place;
    return;
  }
  std::free(name_);
}

// A name taken by a signal handler is not freed.
PartFileNote::~PartFileNote() {
  char* own = name_;
  if (place_ != nullptr && place_->compare_exchange_strong(own, nullptr)) std::free(name_);
}

void RemoveNotedParts() noexcept {
  for (auto& place : notes) {
    if (const char* const name = place.exchange(nullptr); name != nullptr) ::unlink(name);
  }
}

void RemoveAbandonedParts(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const auto writer = WriterOf(entry->path().filename().string());
    if (!writer || !HasEnded(*writer)) continue;
    std::error_code ignored;
    std::filesystem::remove(entry->path(), ignored);
  }
}

}  // namespace vblur::host
