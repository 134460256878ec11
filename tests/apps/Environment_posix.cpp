#include "tests/apps/Environment.h"

#include <stdlib.h>

namespace vblur::cli {

Environment::Environment(const char* name, const std::string& value) : name_(name) {
  ::setenv(name, value.c_str(), 1);
}
Environment::~Environment() {
  ::unsetenv(name_);
}

}  // namespace vblur::cli
