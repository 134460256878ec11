// One object's share in the count that keeps its server loaded.
#pragma once

#include <atomic>
#include <cstdint>

namespace vblur {

// Counts from construction to destruction, so that an object whose constructor fails is not counted either.
// Null: there is no server, and nothing is counted.
class ServerCount {
 public:
  explicit ServerCount(std::atomic<std::int32_t>* count) : count_(count) {
    if (count_ != nullptr) count_->fetch_add(1);
  }
  ~ServerCount() {
    if (count_ != nullptr) count_->fetch_sub(1);
  }
  ServerCount(const ServerCount&) = delete;
  ServerCount& operator=(const ServerCount&) = delete;

 private:
  std::atomic<std::int32_t>* const count_;
};

}  // namespace vblur
