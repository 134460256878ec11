// The classes of servers in the system's registry, where CoCreateInstance finds them.
#pragma once

#include <string>
#include <vector>

#include "platform/DsTypes.h"

struct HKEY__;

namespace vblur::host {

// Writes to the registry that belong together: what was there before comes back unless all are kept.
class RegistryWrites {
 public:
  explicit RegistryWrites(HKEY__* root) : root_(root) {}
  ~RegistryWrites();
  RegistryWrites(const RegistryWrites&) = delete;
  RegistryWrites& operator=(const RegistryWrites&) = delete;

  // Gives a value of a key below the root a text, null for the key's own value, and makes the key; keys above it that
  // were not there stay. The system's error, 0 for none.
  long Set(const std::wstring& key, const wchar_t* name, const std::wstring& text);
  void Keep() { undo_.clear(); }

 private:
  struct Undo {
    std::wstring key;
    bool isKey = false;  // made here: removed if nobody has put anything into it since
    std::wstring name;
    bool wasThere = false;
    unsigned long type = 0;
    std::vector<unsigned char> bytes;
  };

  long MakeKey(const std::wstring& key);

  HKEY__* root_;
  std::vector<Undo> undo_;
};

struct ServerEntry {
  GUID clsid;
  std::wstring file;
  std::wstring description;
};

// Where classes are entered, below Software\Classes\CLSID of each: for all users if the program may do that, else for
// this one.
struct RegistryRoots {
  HKEY__* all = nullptr;
  HKEY__* user = nullptr;
};

// The machine's and the user's.
RegistryRoots SystemRoots();

// A failure leaves the registry as it was, and says so: kFailed without a file, or the system's own.
HRESULT EnterClass(const RegistryRoots& roots, const ServerEntry& entry);
// kFailed for a class that neither has; the system's own failure where it is left in one.
HRESULT RemoveClass(const RegistryRoots& roots, const GUID& clsid);

}  // namespace vblur::host
