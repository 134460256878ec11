// The host's base class of COM objects: a reference count that deletes the object.
#pragma once

#include "RefCount.h"

namespace vblur {

class CDSCOMObject {
 public:
  CDSCOMObject(const CDSCOMObject&) = delete;
  CDSCOMObject& operator=(const CDSCOMObject&) = delete;

 protected:
  // A new object has one reference, its maker's.
  CDSCOMObject() = default;
  virtual ~CDSCOMObject() = 0;

  std::uint32_t AddReference() { return references_.Add(); }
  std::uint32_t DropReference() {
    const std::uint32_t left = references_.Drop();
    if (left == 0) delete this;
    return left;
  }

 private:
  RefCount references_;
};

inline CDSCOMObject::~CDSCOMObject() = default;

}  // namespace vblur
