// Libraries loaded at run time, when first needed.
#pragma once

#include <filesystem>
#include <string>

namespace vblur::host {

class LoadedModule {
 public:
  // Loads the library unless the process has it. Throws Failure (cannot read): "FILE: cannot load WHAT: ...".
  LoadedModule(const std::filesystem::path& file, const std::string& what);

  // An exported function; null for none of that name.
  template <class Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(FindSymbol(name));
  }
  // An exported function; throws Failure (cannot read) for none.
  template <class Function>
  Function& Get(const char* name) const {
    return *reinterpret_cast<Function*>(GetSymbol(name));
  }
  // Throws Failure (cannot read) unless the module comes from the same version of the project: the two share classes,
  // and half an update would crash. The module exports VBlurModuleVersion, which returns its version.
  void RequireOurVersion() const;

  // Without this the module stays loaded until the process ends.
  void Unload();

  // Throws Failure (cannot read) with the reason why the library is unusable.
  [[noreturn]] void Refuse(const std::string& why) const;

 private:
  // The system's; null for failure, of which LastError tells.
  static void* Open(const std::filesystem::path& file);
  static void Close(void* library);
  static std::string LastError();
  void* FindSymbol(const char* name) const;
  void* GetSymbol(const char* name) const;

  std::filesystem::path file_;
  std::string what_;
  void* library_ = nullptr;
};

}  // namespace vblur::host
