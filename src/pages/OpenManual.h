// The manual, a file below the system's folder for programs.
#pragma once

namespace vblur {

// The folder for programs, as the registry has it. False, and "C:Program Files", without the key. The buffer holds at
// least 260 characters.
bool ProgramFilesPath(char16_t* buffer);

// Opens the manual with the system's reader. The topic has no influence, and a manual that is missing goes unnoticed.
void OpenManual(const char* topic);

}  // namespace vblur
