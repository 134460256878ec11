// Runs a program as a child process and captures its output.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vblur::cli {

struct ProcessResult {
  int exit = -1;  // -1 when a signal ended it
  int signal = 0;
  std::string out;
  std::string err;
  std::int64_t mostMemory = 0;  // in bytes, at any time
};

class Process {
 public:
  // What the child does before it becomes the program.
  using Setup = std::function<void()>;

  // Starts the program in a folder.
  Process(const std::filesystem::path& folder, std::vector<std::string> arguments, const Setup& setup = {})
      : folder_(folder), number_(next_++) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
      pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    child_ = ::fork();
    if (child_ < 0) throw std::runtime_error("cannot start a process");
    if (child_ == 0) Become(pointers, setup);
  }
  ~Process() {
    if (child_ > 0) {
      ::kill(child_, SIGKILL);
      Wait();
    }
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  pid_t Id() const { return child_; }
  void Send(int signal) const { ::kill(child_, signal); }

  ProcessResult Wait() {
    int status = 0;
    rusage use{};
    // One that hangs is killed.
    for (auto left = kLongest; ::wait4(child_, &status, WNOHANG, &use) == 0; left -= kPoll) {
      if (left <= kPoll) ::kill(child_, SIGKILL);
      std::this_thread::sleep_for(kPoll);
    }
    child_ = -1;
    ProcessResult result;
    result.mostMemory = std::int64_t{use.ru_maxrss} * 1024;
    if (WIFEXITED(status)) result.exit = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
    result.out = Take(StreamFile("out"));
    result.err = Take(StreamFile("err"));
    return result;
  }

 private:
  static constexpr std::chrono::milliseconds kLongest{300'000};
  static constexpr std::chrono::milliseconds kPoll{1};

  // Beside the folder, which holds the program's files only.
  std::string StreamFile(const char* name) const { return folder_.string() + "." + name + std::to_string(number_); }

  [[noreturn]] void Become(std::vector<char*>& arguments, const Setup& setup) const {
    const int out = ::open(StreamFile("out").c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
    const int err = ::open(StreamFile("err").c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    // The program has no sanitizer suppressions; the tests of its libraries check for leaks and races.
    ::setenv("ASAN_OPTIONS", "detect_leaks=0:allocator_may_return_null=1", 1);
    ::setenv("TSAN_OPTIONS", "report_bugs=0", 1);
    if (setup) setup();
    if (::chdir(folder_.c_str()) == 0) ::execv(arguments[0], arguments.data());
    ::_exit(127);
  }

  static std::string Take(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    return text;
  }

  static inline int next_ = 0;
  std::filesystem::path folder_;
  int number_;
  pid_t child_ = -1;
};

// Setups.
inline Process::Setup Limited(__rlimit_resource resource, rlim_t most) {
  return [resource, most] {
    const rlimit limit{most, most};
    ::setrlimit(resource, &limit);
  };
}
inline Process::Setup Without(int stream) {
  return [stream] { ::close(stream); };
}
// A stream that goes to a file.
inline Process::Setup Into(int stream, const char* file) {
  return [=] {
    const int opened = ::open(file, O_WRONLY);
    ::dup2(opened, stream);
    ::close(opened);
  };
}
inline Process::Setup Ignoring(int signal) {
  return [signal] { ::signal(signal, SIG_IGN); };
}

// Waits until it holds; false when it does not within 30 seconds.
inline bool WaitUntil(const std::function<bool()>& holds) {
  for (int i = 0; i < 30000; ++i) {
    if (holds()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return false;
}

}  // namespace vblur::cli
