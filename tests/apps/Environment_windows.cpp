#include "tests/apps/Environment.h"

#include <filesystem>

#include "host/base/Utf8.h"

#include <windows.h>

namespace vblur::cli {

Environment::Environment(const char* name, const std::string& value) : name_(name) {
  SetEnvironmentVariableW(std::filesystem::path(name).c_str(), host::PathOf(value).c_str());
}
Environment::~Environment() {
  SetEnvironmentVariableW(std::filesystem::path(name_).c_str(), nullptr);
}

}  // namespace vblur::cli
