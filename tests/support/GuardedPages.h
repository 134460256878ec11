// Memory between two protected pages: an access one byte before or after it crashes.
#pragma once

#include <cstddef>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

namespace vblur::test {

class GuardedPages {
 public:
  // At least `bytes`, in whole pages.
  explicit GuardedPages(std::size_t bytes) : size_((bytes + page() - 1) / page() * page()) {
    all_ = mmap(nullptr, size_ + 2 * page(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (all_ == MAP_FAILED || mprotect(begin(), size_, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
  }
  ~GuardedPages() { munmap(all_, size_ + 2 * page()); }
  GuardedPages(const GuardedPages&) = delete;
  GuardedPages& operator=(const GuardedPages&) = delete;

  std::byte* begin() const { return static_cast<std::byte*>(all_) + page(); }
  std::byte* end() const { return begin() + size_; }

 private:
  static std::size_t page() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

  std::size_t size_;
  void* all_;
};

}  // namespace vblur::test
