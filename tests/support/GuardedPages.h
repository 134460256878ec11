// Memory between two protected pages: an access one byte before or after it crashes.
#pragma once

#include <cstddef>
#include <new>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace vblur::test {

class GuardedPages {
 public:
  // At least `bytes`, in whole pages.
  explicit GuardedPages(std::size_t bytes)
      : size_((bytes + page() - 1) / page() * page()), all_(reserve(size_ + 2 * page())) {
    if (all_ == nullptr || !open(begin(), size_)) throw std::bad_alloc();
  }
  ~GuardedPages() { release(all_, size_ + 2 * page()); }
  GuardedPages(const GuardedPages&) = delete;
  GuardedPages& operator=(const GuardedPages&) = delete;

  std::byte* begin() const { return static_cast<std::byte*>(all_) + page(); }
  std::byte* end() const { return begin() + size_; }

 private:
#ifdef _WIN32
  static std::size_t page() {
    return 4096;
  }
  static void* reserve(std::size_t bytes) {
    return VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS);
  }
  static bool open(void* from, std::size_t bytes) {
    return VirtualAlloc(from, bytes, MEM_COMMIT, PAGE_READWRITE) != nullptr;
  }
  static void release(void* all, std::size_t) {
    VirtualFree(all, 0, MEM_RELEASE);
  }
#else
  static std::size_t page() {
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  }
  static void* reserve(std::size_t bytes) {
    void* const all = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return all == MAP_FAILED ? nullptr : all;
  }
  static bool open(void* from, std::size_t bytes) {
    return mprotect(from, bytes, PROT_READ | PROT_WRITE) == 0;
  }
  static void release(void* all, std::size_t bytes) {
    munmap(all, bytes);
  }
#endif

  std::size_t size_;
  void* all_;
};

}  // namespace vblur::test
