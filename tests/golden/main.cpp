// Compares the golden pictures, or rewrites them and shows what changed.
#include <algorithm>
#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>

#include "host/base/Failure.h"
#include "tests/golden/GoldenPictures.h"

namespace {

int RunCommandLine(int argc, char** argv) {
  CLI::App app("Compares the golden pictures");
  std::string folder;
  std::string changes = "build/golden";
  bool update = false;
  app.add_option("FOLDER", folder, "Jobs, their pictures and what is expected of them")->required();
  app.add_option("--changes", changes, "Where differences are drawn: before, after, difference")->capture_default_str();
  app.add_flag("--update", update, "What differs becomes what is expected");
  CLI11_PARSE(app, argc, argv);
  const auto results = vblur::golden::CompareGoldenPictures(folder, changes, update);
  std::size_t different = 0;
  for (const auto& result : results) {
    if (result.equal()) continue;
    ++different;
    if (result.isNew) {
      std::printf("%s: new\n", result.name.c_str());
    } else {
      std::printf("%s: %zu components differ, see %s\n", result.name.c_str(), result.componentsThatDiffer,
                  result.picture.c_str());
    }
  }
  std::printf("%zu golden pictures, %zu %s\n", results.size(), different, update ? "rewritten" : "differ");
  return different == 0 || update ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return RunCommandLine(argc, argv);
  } catch (const vblur::host::Failure& failure) {
    std::fprintf(stderr, "golden pictures: %s\n", failure.what());
    return static_cast<int>(failure.Code());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "golden pictures: %s\n", error.what());
    return 1;
  }
}
