#include "tests/support/process/Process.h"

#include <array>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "host/base/Utf8.h"
#include "tests/support/host/Pictures.h"

#include <windows.h>
// After it, whose types it uses.
#include <psapi.h>

namespace vblur::cli {

namespace {

// What the program never ends with of its own.
constexpr DWORD kKilled = 0xDEAD;

int starts = 0;

class Handle {
 public:
  explicit Handle(HANDLE handle = nullptr) : handle_(handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() { Close(); }

  HANDLE get() const { return handle_; }
  void Close() {
    if (handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
    handle_ = nullptr;
  }

 private:
  HANDLE handle_;
};

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

std::wstring WideOf(std::string_view text) {
  const std::u16string units = host::Utf16Of(text);
  return {units.begin(), units.end()};
}

// So that the program's run-time library takes the same words from the line.
std::wstring Quoted(const std::wstring& word) {
  if (!word.empty() && word.find_first_of(L" \t\n\v\"") == std::wstring::npos) return word;
  std::wstring quoted = L"\"";
  std::size_t slashes = 0;
  for (const wchar_t letter : word) {
    // Before a quotation mark each of them counts as half.
    if (letter == L'"') quoted.append(slashes + 1, L'\\');
    slashes = letter == L'\\' ? slashes + 1 : 0;
    quoted += letter;
  }
  quoted.append(slashes, L'\\');
  return quoted + L'"';
}

// One that the child inherits.
Handle Open(const std::filesystem::path& file, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  Handle handle(CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited,
                            disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (handle.get() == INVALID_HANDLE_VALUE) Fail("cannot open a stream");
  return handle;
}

struct Pipe {
  Handle read;
  Handle write;
};

// The child inherits one end of it.
Pipe MakePipe(bool isReader) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (CreatePipe(&read, &write, &inherited, 0) == 0) Fail("cannot make a pipe");
  SetHandleInformation(isReader ? write : read, HANDLE_FLAG_INHERIT, 0);
  return {Handle(read), Handle(write)};
}

BOOL CALLBACK StayAlive(DWORD event) {
  return event == CTRL_C_EVENT ? TRUE : FALSE;
}

// To all programs of its console, which are it and this one, which does not mind.
void SendControlC(DWORD process) {
  [[maybe_unused]] static const BOOL handled = SetConsoleCtrlHandler(StayAlive, TRUE);
  FreeConsole();
  if (AttachConsole(process) == 0) Fail("the program has no console");
  if (GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) == 0) Fail("cannot interrupt the program");
  FreeConsole();
  AttachConsole(ATTACH_PARENT_PROCESS);
}

// As the system tells a program, in a thread of it. Not every system has another way to send one of these.
void SendConsoleEvent(HANDLE program, DWORD event) {
  const auto tell = reinterpret_cast<LPTHREAD_START_ROUTINE>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernelbase"), "CtrlRoutine")));
  if (tell == nullptr) Fail("the system tells no programs");
  const Handle thread(CreateRemoteThread(program, nullptr, 0, tell,
                                         reinterpret_cast<void*>(static_cast<std::uintptr_t>(event)), 0, nullptr));
  if (thread.get() == nullptr) Fail("cannot tell the program");
}

}  // namespace

class Process::Child {
 public:
  Child(const Process& process, std::wstring line, const Setup& setup) {
    if (setup.isPiped) {
      Pipe pipe = MakePipe(true);
      streams_[0] = std::move(pipe.read);
      if (setup.input.empty()) {
        silent_ = std::move(pipe.write);
      } else {
        feeder_ = std::thread(Feed, std::move(pipe.write), setup.input);
      }
    } else {
      streams_[0] = Open(setup.input.empty() ? std::filesystem::path("NUL") : setup.input, GENERIC_READ, OPEN_EXISTING);
    }
    streams_[1] = Open(process.StreamFile("out"), GENERIC_WRITE, CREATE_ALWAYS);
    streams_[2] = Open(process.StreamFile("err"), GENERIC_WRITE, CREATE_ALWAYS);
    if (setup.unread >= 0) {
      Pipe pipe = MakePipe(false);
      streams_.at(static_cast<std::size_t>(setup.unread)) = std::move(pipe.write);
      unread_ = std::move(pipe.read);
    }
    if (setup.withoutReader >= 0) streams_.at(static_cast<std::size_t>(setup.withoutReader)) = MakePipe(false).write;
    for (const int stream : setup.closed)
      streams_.at(static_cast<std::size_t>(stream)).Close();
    // A console of its own, which nobody sees, is there to interrupt it alone. One without a console gets no console
    // for a stream that it lacks.
    Start(process.folder_, std::move(line), setup.closed.empty() ? CREATE_NO_WINDOW : DETACHED_PROCESS);
  }
  ~Child() {
    if (feeder_.joinable()) feeder_.join();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  HANDLE Program() const { return program_.get(); }
  DWORD Id() const { return id_; }
  HANDLE Unread() const { return unread_.get(); }

 private:
  void Start(const std::filesystem::path& folder, std::wstring line, DWORD flags) {
    STARTUPINFOW info{};
    info.cb = sizeof info;
    info.dwFlags = STARTF_USESTDHANDLES;
    info.hStdInput = streams_[0].get();
    info.hStdOutput = streams_[1].get();
    info.hStdError = streams_[2].get();
    PROCESS_INFORMATION started{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, flags, nullptr, folder.c_str(), &info, &started) ==
        0) {
      Fail("cannot start a process");
    }
    CloseHandle(started.hThread);
    program_ = Handle(started.hProcess);
    id_ = started.dwProcessId;
    // Those of the child alone are open from now on.
    for (Handle& stream : streams_)
      stream.Close();
  }

  // A program that has read enough closes its end.
  static void Feed(Handle end, const std::filesystem::path& file) {
    const std::string bytes = host::Bytes(file);
    DWORD written = 0;
    for (std::size_t at = 0; at < bytes.size(); at += written) {
      if (WriteFile(end.get(), bytes.data() + at, static_cast<DWORD>(bytes.size() - at), &written, nullptr) == 0)
        return;
    }
  }

  std::array<Handle, 3> streams_;
  Handle silent_;
  Handle unread_;
  std::thread feeder_;
  Handle program_;
  DWORD id_ = 0;
};

Process::Process(const std::filesystem::path& folder, std::vector<std::string> arguments, const Setup& setup)
    : folder_(folder), number_(starts++) {
  std::wstring line;
  for (const std::string& argument : arguments)
    line += (line.empty() ? L"" : L" ") + Quoted(WideOf(argument));
  child_ = std::make_unique<Child>(*this, std::move(line), setup);
}

Process::~Process() {
  if (!child_) return;
  Kill();
  Wait();
}

std::int64_t Process::UnreadBytes() const {
  DWORD bytes = 0;
  if (PeekNamedPipe(child_->Unread(), nullptr, 0, nullptr, &bytes, nullptr) == 0) Fail("nothing is unread");
  return bytes;
}

void Process::Interrupt() const {
  SendControlC(child_->Id());
}

void Process::Break() const {
  SendConsoleEvent(child_->Program(), CTRL_BREAK_EVENT);
}

void Process::CloseConsole() const {
  SendConsoleEvent(child_->Program(), CTRL_CLOSE_EVENT);
}

void Process::Kill() const {
  TerminateProcess(child_->Program(), kKilled);
}

ProcessResult Process::Wait() {
  // One that hangs is killed.
  if (WaitForSingleObject(child_->Program(), static_cast<DWORD>(kLongest.count())) != WAIT_OBJECT_0) {
    Kill();
    WaitForSingleObject(child_->Program(), INFINITE);
  }
  ProcessResult result;
  DWORD code = 0;
  GetExitCodeProcess(child_->Program(), &code);
  result.isKilled = code == kKilled;
  if (!result.isKilled) result.exit = static_cast<int>(code);
  PROCESS_MEMORY_COUNTERS memory{};
  if (K32GetProcessMemoryInfo(child_->Program(), &memory, sizeof memory) != 0) {
    result.mostMemory = static_cast<std::int64_t>(memory.PeakWorkingSetSize);
  }
  child_.reset();
  result.out = Take(StreamFile("out"));
  result.err = Take(StreamFile("err"));
  return result;
}

}  // namespace vblur::cli
