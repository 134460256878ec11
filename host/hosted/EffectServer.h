// A server library, loaded at run time. The host uses its four entry points and creates effects through its class
// factories.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "host/base/LoadModule.h"
#include "platform/ComPtr.h"
#include "platform/IDSImageEffect.h"

namespace vblur::host {

using EffectFactory = std::function<ComPtr<IDSImageEffect>()>;

class EffectServer {
 public:
  // Loads the library and has it register its classes. Throws Failure (cannot read) when there is no such
  // file, when it is no server, when it offers no image effect, and when the system does not take its classes.
  explicit EffectServer(const std::filesystem::path& file);
  // All effects must be released before. Unregisters the classes, and unloads the library unless it reports objects in
  // use.
  ~EffectServer();
  EffectServer(const EffectServer&) = delete;
  EffectServer& operator=(const EffectServer&) = delete;

  // A new effect with default properties. From any thread. Throws Failure (some frames failed)
  // when the server cannot make it.
  ComPtr<IDSImageEffect> CreateEffect() const;
  // CreateEffect as a function; the server must outlive it.
  EffectFactory Factory() const {
    return [this] { return CreateEffect(); };
  }
  // A class object of the server, with its result.
  HRESULT GetClassObject(const GUID& clsid, const GUID& iid, void** result) const;

 private:
  std::string Offer();
  void Unregister();

  std::filesystem::path file_;
  LoadedModule library_;
  DllGetClassObjectFunction* getClassObject_ = nullptr;
  GUID effect_;
};

// The server of this installation, or of this build.
std::filesystem::path DefaultServerFile();

}  // namespace vblur::host
