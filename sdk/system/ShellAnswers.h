// What a program answers when its servers read the registry or open a document. Without answers there are no registry
// keys, and no document opens.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vblur::host {

class ShellAnswers {
 public:
  virtual ~ShellAnswers() = default;

  // Whether a key below HKEY_LOCAL_MACHINE can be opened with a mask of rights.
  virtual bool HasKey(const std::u16string& key, std::uint32_t access) = 0;
  // A text of such a key.
  virtual std::optional<std::u16string> Text(const std::u16string& key, const std::u16string& name) = 0;
  // `operation` is "open" and the like, empty for the usual one; `show` says how the document's window shows. Above 32:
  // done.
  virtual std::intptr_t Open(const std::u16string& operation, const std::u16string& file, std::int32_t show) = 0;
};

// Borrowed: set null, the default, before it ends. User-interface thread only.
void UseShellAnswers(ShellAnswers* answers);

}  // namespace vblur::host
