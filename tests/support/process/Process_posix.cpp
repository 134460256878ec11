#include "tests/support/process/Process.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vblur::cli {

namespace {

int starts = 0;

void Connect(const std::filesystem::path& file, int flags, int stream) {
  const int opened = ::open(file.c_str(), flags, 0600);
  ::dup2(opened, stream);
  ::close(opened);
}

// What the standard input holds comes from another process then.
void PipeInput() {
  int ends[2];
  if (::pipe(ends) != 0) ::_exit(127);
  const bool isFeeder = ::fork() == 0;
  ::dup2(ends[isFeeder ? 1 : 0], isFeeder ? STDOUT_FILENO : STDIN_FILENO);
  ::close(ends[0]);
  ::close(ends[1]);
  if (!isFeeder) return;
  ::execl("/bin/cat", "cat", nullptr);
  ::_exit(127);
}

}  // namespace

class Process::Child {
 public:
  explicit Child(const Setup& setup) {
    if (setup.unread >= 0 && ::pipe2(unread, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
    id = ::fork();
    if (id < 0) throw std::runtime_error("cannot start a process");
    if (id > 0) CloseUnread(1);
  }
  ~Child() { CloseUnread(0); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  void CloseUnread(std::size_t end) {
    if (unread[end] >= 0) ::close(unread[end]);
    unread[end] = -1;
  }

  [[noreturn]] void Become(const Process& process, std::vector<char*>& arguments, const Setup& setup) const {
    Connect(process.StreamFile("out"), O_CREAT | O_TRUNC | O_WRONLY, STDOUT_FILENO);
    Connect(process.StreamFile("err"), O_CREAT | O_TRUNC | O_WRONLY, STDERR_FILENO);
    if (!setup.input.empty()) Connect(setup.input, O_RDONLY, STDIN_FILENO);
    if (setup.isPiped) PipeInput();
    if (setup.unread >= 0) ::dup2(unread[1], setup.unread);
    for (const int stream : setup.closed)
      ::close(stream);
    // The program has no sanitizer suppressions; the tests of its libraries check for leaks and races.
    ::setenv("ASAN_OPTIONS", "detect_leaks=0:allocator_may_return_null=1", 1);
    ::setenv("TSAN_OPTIONS", "report_bugs=0", 1);
    if (setup.inChild) setup.inChild();
    if (::chdir(process.folder_.c_str()) == 0) ::execv(arguments[0], arguments.data());
    ::_exit(127);
  }

  pid_t id = -1;
  int unread[2] = {-1, -1};
};

Process::Process(const std::filesystem::path& folder, std::vector<std::string> arguments, const Setup& setup)
    : folder_(folder), number_(starts++) {
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments)
    pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  child_ = std::make_unique<Child>(setup);
  if (child_->id == 0) child_->Become(*this, pointers, setup);
}

Process::~Process() {
  if (!child_) return;
  Kill();
  Wait();
}

int Process::Id() const {
  return child_->id;
}

std::int64_t Process::UnreadBytes() const {
  int bytes = 0;
  if (::ioctl(child_->unread[0], FIONREAD, &bytes) != 0) throw std::runtime_error("nothing is unread");
  return bytes;
}

void Process::Send(int signal) const {
  ::kill(child_->id, signal);
}

void Process::Interrupt() const {
  Send(SIGINT);
}

void Process::Kill() const {
  Send(SIGKILL);
}

ProcessResult Process::Wait() {
  constexpr std::chrono::milliseconds kPoll{1};
  int status = 0;
  rusage use{};
  // One that hangs is killed.
  for (auto left = kLongest; ::wait4(child_->id, &status, WNOHANG, &use) == 0; left -= kPoll) {
    if (left <= kPoll) Kill();
    std::this_thread::sleep_for(kPoll);
  }
  child_.reset();
  ProcessResult result;
  result.mostMemory = std::int64_t{use.ru_maxrss} * 1024;
  if (WIFEXITED(status)) result.exit = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  result.isKilled = result.signal == SIGKILL;
  result.out = Take(StreamFile("out"));
  result.err = Take(StreamFile("err"));
  return result;
}

}  // namespace vblur::cli
