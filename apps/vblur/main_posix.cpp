#include <string>
#include <vector>

#include "apps/vblur/CommandLine.h"

int main(int argc, char** argv) {
  return vblur::cli::RunCommandLine(std::vector<std::string>(argv + 1, argv + argc), vblur::cli::Wildcards::Shell);
}
