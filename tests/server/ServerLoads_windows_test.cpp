// The server loaded and unloaded, again and again: what it leaves, and what it does when the system tells it.
#include <algorithm>
#include <array>

#include <gtest/gtest.h>

#include "platform/CDSPropertyPage.h"
#include "sdk/effects/Catalogue.h"
#include "tests/support/ImportHook_windows.h"
// The system's header behind those of the project.
#include "tests/server/LoadedServer_windows.h"

namespace vblur {
namespace {

DWORD KeysOfClasses(HKEY root) {
  HKEY key = nullptr;
  DWORD count = 0;
  if (::RegOpenKeyExW(root, L"Software\\Classes\\CLSID", 0, KEY_READ, &key) != ERROR_SUCCESS) return 0;
  EXPECT_EQ(::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr),
            ERROR_SUCCESS);
  ::RegCloseKey(key);
  return count;
}

SIZE_T HeldMemory() {
  SIZE_T held = 0;
  std::array<HANDLE, 64> heaps{};
  const DWORD count = ::GetProcessHeaps(heaps.size(), heaps.data());
  for (DWORD i = 0; i < count && i < heaps.size(); ++i) {
    PROCESS_HEAP_ENTRY entry{};
    ::HeapLock(heaps[i]);
    while (::HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) held += entry.cbData;
    }
    ::HeapUnlock(heaps[i]);
  }
  return held;
}

// The highest number of many objects that are made at once: what is left over from others raises it, wherever there was
// a gap for the first ones.
template <class Make, class Drop>
std::uintptr_t HighestNumber(const Make& make, const Drop& drop) {
  std::array<decltype(make()), 300> made{};
  std::uintptr_t highest = 0;
  for (auto& each : made) {
    each = make();
    EXPECT_NE(each, nullptr);
    // Of objects of the user interface the lower word is the number.
    highest = std::max(highest, reinterpret_cast<std::uintptr_t>(each) & 0xffff);
  }
  for (const auto& each : made)
    EXPECT_TRUE(drop(each));
  return highest;
}

// What the process holds of the system. Wine has no count of its objects.
struct Holdings {
  std::uintptr_t handles = HighestNumber([] { return ::CreateEventW(nullptr, TRUE, FALSE, nullptr); }, ::CloseHandle);
  std::uintptr_t userObjects = HighestNumber(::CreateMenu, ::DestroyMenu);
  std::uintptr_t drawingObjects = HighestNumber([] { return ::CreateSolidBrush(1); }, ::DeleteObject);
  DWORD threadWord = ::TlsAlloc();  // the next of the words that the system has for threads
  DWORD classesOfAll = KeysOfClasses(HKEY_LOCAL_MACHINE);
  DWORD classesOfUser = KeysOfClasses(HKEY_CURRENT_USER);
  SIZE_T memory = HeldMemory();

  Holdings() { ::TlsFree(threadWord); }
};

// Makes dialogs of the system's own controls.
struct DialogSite final : IDSPageSite {
  HWND MakeDialog(HMODULE module, std::int32_t dialog, IDSPropertyPage&) override {
    return ::CreateDialogParamW(
        module, MAKEINTRESOURCEW(dialog), ::GetDesktopWindow(),
        [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
  }
  void DropDialog(HWND dialog) override {
    // Wine's controls leave the picture that they have loaded for the dialog behind.
    const auto dropPicture = [](HWND control, LPARAM) -> BOOL {
      const LRESULT picture = ::SendMessageW(control, STM_SETIMAGE, IMAGE_BITMAP, 0);
      if (picture != 0) ::DeleteObject(reinterpret_cast<HGDIOBJ>(picture));
      return TRUE;
    };
    ::EnumChildWindows(dialog, dropPicture, 0);
    EXPECT_TRUE(::DestroyWindow(dialog));
  }
  void ShowDialog(HWND, bool) override {}
  double CurrentTime() override { return 0.0; }
  IDSUndo* Undo() override { return nullptr; }
  void OnPropertyAccess(const char*, const GUID&, double, double, HRESULT) override {}
};

void OpenHelpPage(IUnknown* effect) {
  DialogSite site;
  const auto page = MakeBySystem<IDSPropertyPage>(classes::kHelpPPG);
  EXPECT_EQ(page->SetSite(&site), kOk);
  EXPECT_EQ(page->SetObjects(1, &effect), kOk);
  EXPECT_EQ(page->Activate(), kOk);
  EXPECT_EQ(page->Deactivate(), kOk);
  EXPECT_EQ(page->SetObjects(0, nullptr), kOk);
  EXPECT_EQ(page->SetSite(nullptr), kOk);
}

// Registers the server, has the system make objects of it, and unregisters it.
void UseOnce(bool rendersAndShows) {
  ASSERT_EQ(CallEntryPoint("DllRegisterServer"), kOk);
  ASSERT_FALSE(IsLoaded());
  {
    const auto effect = MakeBySystem<IDSImageEffect>(classes::kBlur);
    const auto tool = MakeBySystem<IUnknown>(classes::kHvTInteract);
    const auto page = MakeBySystem<IUnknown>(classes::kFullBlurPPG);
    if (rendersAndShows) {
      RenderOnce(effect);
      OpenHelpPage(effect.get());
    }
    ASSERT_TRUE(IsLoaded());
  }
  FreeUnusedLibraries();
  ASSERT_FALSE(IsLoaded());
  ASSERT_EQ(CallEntryPoint("DllUnregisterServer"), kOk);
  ASSERT_FALSE(IsLoaded());
}

TEST(ServerLoads, AThousandLeaveNothing) {
  host::KeepClassesInProcess(false);
  const Apartment apartment(COINIT_APARTMENTTHREADED);
  constexpr int kLoads = 1000;
  // The first ones fill what the system keeps.
  constexpr int kFirst = 100;
  constexpr int kShown = 20;
  for (int i = 0; i < kFirst; ++i)
    ASSERT_NO_FATAL_FAILURE(UseOnce(i % kShown == 0)) << i;
  const Holdings before;
  for (int i = 0; i < kLoads; ++i)
    ASSERT_NO_FATAL_FAILURE(UseOnce(i % kShown == 0)) << i;
  const Holdings after;
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_EQ(after.userObjects, before.userObjects);
  EXPECT_EQ(after.drawingObjects, before.drawingObjects);
  EXPECT_LT(after.memory, before.memory + kLoads) << "in bytes";
  EXPECT_EQ(after.threadWord, before.threadWord);
  EXPECT_EQ(after.classesOfAll, before.classesOfAll);
  EXPECT_EQ(after.classesOfUser, before.classesOfUser);
  for (const GUID& clsid : kRegisteredClasses) {
    HKEY key = nullptr;
    EXPECT_EQ(::RegOpenKeyExW(HKEY_LOCAL_MACHINE, ClassKey(clsid).c_str(), 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
  }
}

TEST(ServerLoads, AHostThatDoesNotAskKeepsItsThreadsCode) {
  host::KeepClassesInProcess(true);
  HINSTANCE const library = ::LoadLibraryW(L"V_Blur.dll");
  ASSERT_NE(library, nullptr);
  auto* const canUnload = Find<HRESULT()>(library, "DllCanUnloadNow");
  {
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(Find<DllGetClassObjectFunction>(library, "DllGetClassObject")(classes::kBlur, IClassFactory::kIid,
                                                                            factory.Receive()),
              kOk);
    ComPtr<IDSImageEffect> effect;
    ASSERT_EQ(factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()), kOk);
    RenderOnce(effect);
  }
  ::FreeLibrary(library);
  SYSTEM_INFO machine{};
  ::GetSystemInfo(&machine);
  if (machine.dwNumberOfProcessors > 1) {
    ASSERT_TRUE(IsLoaded()) << "threads wait in it for the next frame";
    HINSTANCE const again = ::LoadLibraryW(L"V_Blur.dll");
    EXPECT_EQ(canUnload(), kOk);
    ::FreeLibrary(again);
  }
  EXPECT_FALSE(IsLoaded());
  host::KeepClassesInProcess(false);
}

HINSTANCE askedForNoNotices = nullptr;

BOOL WINAPI NoteNoNotices(HINSTANCE library) {
  askedForNoNotices = library;
  return TRUE;
}

// The system has called the entry point before anything can be replaced: it is called once more.
TEST(ServerLoads, NoNoticesOfThreadsAreAskedFor) {
  HINSTANCE const library = ::LoadLibraryW(L"V_Blur.dll");
  ASSERT_NE(library, nullptr);
  test::HookImport(library, "kernel32.dll", "DisableThreadLibraryCalls", &NoteNoNotices);
  auto* const base = reinterpret_cast<std::uint8_t*>(library);
  const auto* const headers =
      reinterpret_cast<const IMAGE_NT_HEADERS*>(base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
  auto* const entry =
      reinterpret_cast<BOOL(WINAPI*)(HINSTANCE, DWORD, void*)>(base + headers->OptionalHeader.AddressOfEntryPoint);
  EXPECT_TRUE(entry(library, DLL_PROCESS_ATTACH, nullptr));
  EXPECT_EQ(askedForNoNotices, library);
  ::FreeLibrary(library);
  EXPECT_FALSE(IsLoaded());
}

}  // namespace
}  // namespace vblur
