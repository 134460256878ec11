#include "apps/vblur/CommandLine.h"

int main(int argc, char** argv) {
  return vblur::cli::RunCommandLine(argc, argv);
}
