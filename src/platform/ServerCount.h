// Counts an object in its server, which stays loaded while the count is not 0.
#pragma once

#include <atomic>
#include <cstdint>

namespace vblur {

// Counts from construction to destruction, also when the object's constructor fails. Null: no server, no count.
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
