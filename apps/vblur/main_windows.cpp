#include <string>
#include <vector>

#include "apps/vblur/CommandLine.h"
#include "host/base/Utf8.h"

#include <windows.h>
// After it, whose types it uses.
#include <shellapi.h>

// The arguments of main are in a code page that holds few names of files. No shell there knows wildcards.
int main() {
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; words != nullptr && i < count; ++i)
    arguments.push_back(vblur::host::Utf8Of(std::u16string_view(reinterpret_cast<const char16_t*>(words[i]))));
  LocalFree(words);
  return vblur::cli::RunCommandLine(std::move(arguments), vblur::cli::Wildcards::Program);
}
