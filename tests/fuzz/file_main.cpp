// file_fuzz_KIND CORPUS... [options of libFuzzer]: gives one kind of input, VBLUR_FUZZ_KIND, whatever the fuzzer makes
// of it. `./dev fuzz files` runs all of them, with limits of memory and time. The standard error stream is silent while
// the picture library opens files; -close_fd_mask=2 gives the fuzzer one of its own.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <span>
#include <string_view>

#include "tests/fuzz/FileFuzz.h"
#include "tests/fuzz/PngChecksums.h"

// NOLINTBEGIN(readability-identifier-naming): the fuzzer's own names.
extern "C" {
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned int seed);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto kind = std::ranges::find(vblur::test::kFileKinds, VBLUR_FUZZ_KIND, &vblur::test::FileKind::name);
  try {
    kind->check({reinterpret_cast<const char*>(data), size});
  } catch (const std::exception& error) {
    std::printf("broken: %s\n", error.what());
    std::fflush(stdout);
    std::abort();
  }
  return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned int /*seed*/) {
  const std::size_t changed = LLVMFuzzerMutate(data, size, most);
  vblur::test::MendPngChecksums(std::span(data, changed));
  return changed;
}
}
// NOLINTEND(readability-identifier-naming)
