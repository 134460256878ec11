// What the user can do about a failure with the options that a command has.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "host/base/Failure.h"

namespace vblur::cli {

// To follow the failure's message; empty where no option helps.
std::string Advice(const CLI::App& command, host::FailureKind kind);

}  // namespace vblur::cli
