// The host's registration: which classes a server has, and under which families the host offers them.
#pragma once

#include <cstdint>

#include "DsTypes.h"
#include "Module.h"

namespace vblur {

// The description is a text of the module; a number that the module has no text for is entered without.
HRESULT DSRegisterCOMEffect(const GUID& clsid, HMODULE module, std::int32_t descriptionString);
// kFailed for a class that is not registered.
HRESULT DSUnregisterCOMEffect(const GUID& clsid);
// Enters a class under `count` families by a name. `kind` is 1 for an effect.
HRESULT DSRegisterObjectFamilies(const GUID& clsid, std::int32_t count, const GUID* families, std::int32_t kind,
                                 const char16_t* name, HMODULE module);
// kFailed for a class without families.
HRESULT DSUnregisterObjectFamilies(const GUID& clsid, std::int32_t count, const GUID* families, HMODULE module);

}  // namespace vblur
