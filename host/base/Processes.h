// This process and others of the machine.
#pragma once

#include <cstdint>
#include <string>

namespace vblur::host {

// Empty where the system does not tell.
std::string MachineName();

std::uint32_t OwnProcess();

// Whether no process of this machine has the number.
bool HasEnded(std::uint32_t process);

}  // namespace vblur::host
