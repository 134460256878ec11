// The server's library as tests load it, and what they have it do.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ComPtr.h"
#include "platform/IDSImageEffect.h"
#include "properties/ClassIds.h"

#include <objbase.h>
#include <windows.h>

namespace vblur {

inline constexpr std::array kRegisteredClasses = {
    classes::kBlur,        classes::kFullBlurPPG, classes::kTransitionBlurPPG, classes::kHvTransitionPPG,
    classes::kHvTInteract, classes::kHelpPPG,     classes::kFullCropPPG};

inline const ::GUID& System(const GUID& id) {
  return reinterpret_cast<const ::GUID&>(id);
}

inline bool IsLoaded() {
  return ::GetModuleHandleW(L"V_Blur.dll") != nullptr;
}

template <class Function>
Function* Find(HINSTANCE library, const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

// Loads the library for the call, as the system's registration tool does.
inline HRESULT CallEntryPoint(const char* name) {
  HINSTANCE const library = ::LoadLibraryW(L"V_Blur.dll");
  const HRESULT result = Find<HRESULT()>(library, name)();
  ::FreeLibrary(library);
  return result;
}

// Of a class, below the machine's part of the registry and the user's.
inline std::wstring ClassKey(const GUID& clsid) {
  std::array<wchar_t, 39> id{};
  ::StringFromGUID2(System(clsid), id.data(), 39);
  return L"Software\\Classes\\CLSID\\" + std::wstring(id.data());
}

// By the system, which loads the library if it must.
template <class Interface>
ComPtr<Interface> MakeBySystem(const GUID& clsid) {
  ComPtr<Interface> object;
  EXPECT_EQ(::CoCreateInstance(System(clsid), nullptr, CLSCTX_INPROC_SERVER, System(Interface::kIid), object.Receive()),
            S_OK);
  return object;
}

inline void FreeUnusedLibraries() {
  // Twice: what was free at the first call is unloaded without a delay.
  ::CoFreeUnusedLibrariesEx(0, 0);
  ::CoFreeUnusedLibrariesEx(0, 0);
}

class Apartment {
 public:
  explicit Apartment(DWORD kind) { EXPECT_TRUE(SUCCEEDED(::CoInitializeEx(nullptr, kind))); }
  ~Apartment() { ::CoUninitialize(); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

struct SmallPicture final : IDSImage {
  std::vector<std::uint8_t> pixels = std::vector<std::uint8_t>(32 * 32 * 4, 77);

  HRESULT IsUsable() const override { return kOk; }
  GUID Format() const override { return MFIF_RGBA_RAW_32; }
  DSPixelPair Size() const override { return {32, 32}; }
  void* FirstPixel() const override { return const_cast<std::uint8_t*>(pixels.data()); }
  DSWorldPair WorldPosition() const override { return {}; }
  DSWorldPair WorldSize() const override { return {32.0, 32.0}; }
};

inline void RenderOnce(const ComPtr<IDSImageEffect>& effect) {
  SmallPicture input;
  SmallPicture output;
  tagDSImgFxInfo use;
  use.record = kDSImgFxInfoRecord;
  use.family = families::kFilter;
  EXPECT_EQ(effect->GetImageEffectInfo(&use), kOk);
  EXPECT_EQ(effect->SetInput(&input), kOk);
  EXPECT_EQ(effect->SetOutput(&output), kOk);
  EXPECT_EQ(effect->Verify(), kOk);
  EXPECT_EQ(effect->RenderFrame(0.0), kOk);
  EXPECT_EQ(effect->SetInput(nullptr), kOk);
  EXPECT_EQ(effect->SetOutput(nullptr), kOk);
}

}  // namespace vblur
