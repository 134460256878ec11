// The servers that CoCreateInstance asks for class objects. Add a server after loading it, remove it before unloading.
#pragma once

#include "platform/Com.h"

namespace vblur::host {

// Each add that succeeds needs its own remove. The newest server is asked first. From any thread; on Windows both calls
// are made on the thread that makes objects, for whose apartment the system is given the classes in the current
// catalogue. An add fails there with the system's result when it does not take one of them: then it has none.
HRESULT AddServer(DllGetClassObjectFunction* getClassObject);
void RemoveServer(DllGetClassObjectFunction* getClassObject);

}  // namespace vblur::host
