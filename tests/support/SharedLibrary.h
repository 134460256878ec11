// A library that a test loads at run time.
#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#ifdef _WIN32
struct HINSTANCE__;
extern "C" __declspec(dllimport) HINSTANCE__* LoadLibraryW(const wchar_t* file);
extern "C" __declspec(dllimport) int FreeLibrary(HINSTANCE__* library);
extern "C" __declspec(dllimport) long long int (*GetProcAddress(HINSTANCE__* library, const char* name))();
#else
#include <dlfcn.h>
#endif

namespace vblur::test {

class SharedLibrary {
 public:
#ifdef _WIN32
  explicit SharedLibrary(const std::filesystem::path& file) : library_(::LoadLibraryW(file.c_str())) {
    EXPECT_NE(library_, nullptr) << file;
  }
  ~SharedLibrary() {
    if (library_ != nullptr) ::FreeLibrary(library_);
  }
  // Null when the library has no such function.
  template <class Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library_, name)));
  }
#else
  explicit SharedLibrary(const std::filesystem::path& file) : library_(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(library_, nullptr) << ::dlerror();
  }
  ~SharedLibrary() {
    if (library_ != nullptr) ::dlclose(library_);
  }
  // Null when the library has no such function.
  template <class Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(::dlsym(library_, name));
  }
#endif
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;

 private:
#ifdef _WIN32
  HINSTANCE__* const library_;
#else
  void* const library_;
#endif
};

}  // namespace vblur::test
