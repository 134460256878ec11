// Libraries that are loaded when they are first needed.
#pragma once

#include <filesystem>
#include <string>

namespace vblur::host {

class LoadedModule {
 public:
  // Loads the library, unless the process has it already. Throws Failure (cannot read), whose line begins with the
  // file's name and `cannot load ` and `what`, when there is no such file or it cannot be loaded.
  LoadedModule(const std::filesystem::path& file, const std::string& what);

  // A function that the library exports; null when it exports none of that name.
  template <class Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(FindSymbol(name));
  }
  // The same; throws Failure (cannot read) for none.
  template <class Function>
  Function& Get(const char* name) const {
    return *reinterpret_cast<Function*>(GetSymbol(name));
  }
  // A module stays loaded until then, or until the process ends.
  void Unload();

  // Throws Failure (cannot read) that says why the library is of no use.
  [[noreturn]] void Refuse(const std::string& why) const;

 private:
  void* FindSymbol(const char* name) const;
  void* GetSymbol(const char* name) const;

  std::filesystem::path file_;
  std::string what_;
  void* library_ = nullptr;
};

}  // namespace vblur::host
