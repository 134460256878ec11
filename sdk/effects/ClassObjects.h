// The servers of the process that CoCreateInstance asks for class objects. Whoever loads a server enters it,
// and takes it out before it is unloaded.
#pragma once

#include "platform/Com.h"

namespace vblur::host {

// A server that was entered twice must be taken out twice. The newest is asked first. From any thread.
void AddServer(DllGetClassObjectFunction* getClassObject);
void RemoveServer(DllGetClassObjectFunction* getClassObject);

}  // namespace vblur::host
