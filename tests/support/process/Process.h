// Runs a program as a child process and captures its output.
#pragma once

#include <chrono>
#include <concepts>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vblur::cli {

struct ProcessResult {
  int exit = -1;  // -1 when it was ended by a signal, or by Kill()
  int signal = 0;
  bool isKilled = false;
  std::string out;
  std::string err;
  std::int64_t mostMemory = 0;  // in bytes, at any time
};

// What a program is started with.
struct ProcessSetup {
  ProcessSetup() = default;
  // Not on Windows: what the child does before it becomes the program.
  template <std::invocable Function>
  ProcessSetup(Function function) : inChild(std::move(function)) {}

  std::filesystem::path input;  // the file that is its standard input; without one: this process' own
  bool isPiped = false;         // the input comes through a pipe; on Windows without a file: nothing comes
  std::vector<int> closed;      // standard streams that it does not have
  int unread = -1;              // the stream that is a pipe which nobody reads
  int withoutReader = -1;       // Windows only: the stream that is a pipe whose reader has left
  std::function<void()> inChild;
};

class Process {
 public:
  using Setup = ProcessSetup;

  // Starts the program in a folder. Arguments are UTF-8.
  Process(const std::filesystem::path& folder, std::vector<std::string> arguments, const Setup& setup = {});
  // Kills it if it runs.
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // How much it has written to the pipe that nobody reads.
  std::int64_t UnreadBytes() const;
  // Ctrl-C.
  void Interrupt() const;
  // It cannot clean up.
  void Kill() const;
  // Its end, or that by a time limit.
  ProcessResult Wait();

#ifndef _WIN32
  int Id() const;
  void Send(int signal) const;
#else
  // Ctrl-Break, and the end of its console.
  void Break() const;
  void CloseConsole() const;
#endif

 private:
  class Child;

  static constexpr std::chrono::milliseconds kLongest{300'000};

  // Beside the folder, which holds the program's files only.
  std::filesystem::path StreamFile(std::string_view name) const;
  static std::string Take(const std::filesystem::path& file);

  std::filesystem::path folder_;
  int number_;
  std::unique_ptr<Child> child_;
};

// Setups.
inline Process::Setup Without(int stream) {
  Process::Setup setup;
  setup.closed.push_back(stream);
  return setup;
}
inline Process::Setup InputFrom(const std::filesystem::path& file) {
  Process::Setup setup;
  setup.input = file;
  return setup;
}

// Waits until it holds; false when it does not within 30 seconds.
bool WaitUntil(const std::function<bool()>& holds);

}  // namespace vblur::cli
