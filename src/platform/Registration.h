// Registration of a server's classes and object families with the host.
#pragma once

#include <cstdint>

#include "DsTypes.h"
#include "Module.h"

namespace vblur {

// The description is a string of the module; empty when the module lacks it.
HRESULT DSRegisterCOMEffect(const GUID& clsid, HMODULE module, std::int32_t descriptionString);
// kFailed for a class that is not registered.
HRESULT DSUnregisterCOMEffect(const GUID& clsid);
// Registers a class under `count` families with a name. `kind` is 1 for an effect.
HRESULT DSRegisterObjectFamilies(const GUID& clsid, std::int32_t count, const GUID* families, std::int32_t kind,
                                 const char16_t* name, HMODULE module);
// kFailed for a class without families.
HRESULT DSUnregisterObjectFamilies(const GUID& clsid, std::int32_t count, const GUID* families, HMODULE module);

}  // namespace vblur
