// A smart pointer to a COM object.
#pragma once

#include <utility>

#include "Com.h"

namespace vblur {

template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  // Adds a reference.
  explicit ComPtr(Interface* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() { reset(); }

  // Takes over the caller's reference.
  static ComPtr Own(Interface* object) {
    ComPtr result;
    result.object_ = object;
    return result;
  }

  void reset() {
    if (Interface* last = std::exchange(object_, nullptr); last != nullptr) last->Release();
  }

  Interface* get() const { return object_; }
  Interface* operator->() const { return object_; }
  Interface& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }

  // For an out parameter; releases what was held.
  void** Receive() {
    reset();
    return reinterpret_cast<void**>(&object_);
  }

  // Queries another interface; empty if the object lacks it.
  template <class Other>
  ComPtr<Other> As() const {
    ComPtr<Other> result;
    if (object_ != nullptr) object_->QueryInterface(Other::kIid, result.Receive());
    return result;
  }

 private:
  Interface* object_ = nullptr;
};

}  // namespace vblur
