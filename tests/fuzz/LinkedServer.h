// The server's classes in the program itself: no library is loaded at run time, so that sanitizers and fuzzers see all
// of its code.
#pragma once

#include <cstdint>

#include "platform/Com.h"
#include "sdk/effects/ClassObjects.h"
#include "server/ServerModule.h"

namespace vblur {

extern "C" HRESULT DllGetClassObject(const GUID& clsid, const GUID& iid, void** result);

namespace test {

// While one lives, CoCreateInstance finds the classes.
class LinkedServer {
 public:
  LinkedServer() { host::AddServer(&DllGetClassObject); }
  ~LinkedServer() { host::RemoveServer(&DllGetClassObject); }
  LinkedServer(const LinkedServer&) = delete;
  LinkedServer& operator=(const LinkedServer&) = delete;

  // Effects, pages, tools and factories that nobody has released.
  static std::int32_t LiveObjects() { return ServerLocks().load(); }
};

}  // namespace test
}  // namespace vblur
