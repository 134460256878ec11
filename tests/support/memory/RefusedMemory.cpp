#include "tests/support/memory/RefusedMemory.h"

#include <cstdlib>
#include <new>

namespace vblur {
namespace {

constexpr std::int64_t kNever = -1;
thread_local std::int64_t allocationsLeft = kNever;
thread_local bool refused = false;

void* Allocate(std::size_t bytes) noexcept {
  if (allocationsLeft > kNever && allocationsLeft-- == 0) {
    refused = true;
    return nullptr;
  }
  return std::malloc(bytes == 0 ? 1 : bytes);
}

void* AllocateOrThrow(std::size_t bytes) {
  void* const memory = Allocate(bytes);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

RefusedMemory::RefusedMemory(std::int64_t granted) {
  refused = false;
  allocationsLeft = granted;
}

RefusedMemory::~RefusedMemory() {
  allocationsLeft = kNever;
}

bool RefusedMemory::HasRefused() {
  return refused;
}

}  // namespace vblur

void* operator new(std::size_t bytes) {
  return vblur::AllocateOrThrow(bytes);
}
void* operator new[](std::size_t bytes) {
  return vblur::AllocateOrThrow(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return vblur::Allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return vblur::Allocate(bytes);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
