#include "tests/support/process/Process.h"

#include <fstream>
#include <iterator>
#include <thread>

namespace vblur::cli {

std::filesystem::path Process::StreamFile(std::string_view name) const {
  std::filesystem::path file = folder_;
  file += "." + std::string(name) + std::to_string(number_);
  return file;
}

std::string Process::Take(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  stream.close();
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
  return text;
}

bool WaitUntil(const std::function<bool()>& holds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (std::chrono::steady_clock::now() < end) {
    if (holds()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return false;
}

}  // namespace vblur::cli
