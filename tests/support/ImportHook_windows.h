// A function that a loaded library imports, replaced in this library alone.
#pragma once

#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

#include <windows.h>

namespace vblur::test {

// Where the library has the address of a function that it imports by name; null if it does not.
inline void** ImportSlot(HINSTANCE library, const char* from, const char* function) {
  auto* const base = reinterpret_cast<std::uint8_t*>(library);
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const DWORD table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (const auto* each = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + table); each->Name != 0; ++each) {
    if (::_stricmp(reinterpret_cast<const char*>(base + each->Name), from) != 0) continue;
    const auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + each->OriginalFirstThunk);
    auto* slot = reinterpret_cast<void**>(base + each->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++slot) {
      const auto* const byName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
      if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) && std::strcmp(byName->Name, function) == 0) return slot;
    }
  }
  return nullptr;
}

// Until the library is unloaded.
template <class Function>
void HookImport(HINSTANCE library, const char* from, const char* function, Function* replacement) {
  void** const slot = ImportSlot(library, from, function);
  ASSERT_NE(slot, nullptr) << function;
  DWORD before = 0;
  ASSERT_TRUE(::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before));
  *slot = reinterpret_cast<void*>(replacement);
  EXPECT_TRUE(::VirtualProtect(slot, sizeof *slot, before, &before));
}

// The same of a library that stays, or of the program: while this lives.
class HookedImport {
 public:
  template <class Function>
  HookedImport(HINSTANCE library, const char* from, const char* function, Function* replacement)
      : library_(library), from_(from), function_(function) {
    void** const slot = ImportSlot(library, from, function);
    if (slot != nullptr) before_ = *slot;
    HookImport(library, from, function, replacement);
  }
  ~HookedImport() {
    if (before_ != nullptr) HookImport(library_, from_, function_, static_cast<char*>(before_));
  }
  HookedImport(const HookedImport&) = delete;
  HookedImport& operator=(const HookedImport&) = delete;

 private:
  HINSTANCE library_;
  const char* from_;
  const char* function_;
  void* before_ = nullptr;
};

}  // namespace vblur::test
