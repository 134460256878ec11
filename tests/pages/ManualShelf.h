// Answers for the registry and the shell: where programs are, and which manual was opened.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sdk/system/ShellAnswers.h"

namespace vblur {

class ManualShelf final : public host::ShellAnswers {
 public:
  ManualShelf() { host::UseShellAnswers(this); }
  ~ManualShelf() override { host::UseShellAnswers(nullptr); }

  bool HasKey(const std::u16string& key, std::uint32_t access) override {
    asked.push_back(key);
    rights = access;
    return hasKey;
  }
  std::optional<std::u16string> Text(const std::u16string& key, const std::u16string& name) override {
    asked.push_back(key + u": " + name);
    if (failures > 0 && failures-- > 0) return std::nullopt;
    return folder;
  }
  std::intptr_t Open(const std::u16string& operation, const std::u16string& file, std::int32_t show) override {
    opened.push_back(operation + u"|" + file);
    shows = show;
    return result;
  }

  bool hasKey = true;
  // Readings that fail before one succeeds.
  int failures = 0;
  std::u16string folder = u"D:\\Programs";
  std::intptr_t result = 42;
  std::vector<std::u16string> asked;
  std::uint32_t rights = 0;
  std::vector<std::u16string> opened;
  std::int32_t shows = 0;
};

inline const std::u16string kManual = u"\\The Halvern\\Vessin 4.3 for DS10 (64bit)\\Documentation\\Vessin4.3.pdf";

}  // namespace vblur
