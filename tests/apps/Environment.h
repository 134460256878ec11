// An environment variable of this process and its children, for a scope.
#pragma once

#include <string>

namespace vblur::cli {

class Environment {
 public:
  Environment(const char* name, const std::string& value);
  ~Environment();
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  const char* name_;
};

}  // namespace vblur::cli
