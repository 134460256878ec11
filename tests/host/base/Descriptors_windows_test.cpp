#include "host/base/Descriptors.h"

#include <array>
#include <cerrno>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>

#include "host/base/SystemError_windows.h"

#include <windows.h>

namespace vblur::host {
namespace {

// A pipe by name: the end that programs open, and the end of who made it.
class NamedPipe {
 public:
  NamedPipe() {
    const std::wstring name = L"\\\\.\\pipe\\vblur-tests-" + std::to_wstring(GetCurrentProcessId());
    maker_ = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 64, 64, 0, nullptr);
    EXPECT_NE(maker_, INVALID_HANDLE_VALUE);
    HANDLE opened = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(opened, INVALID_HANDLE_VALUE);
    file_ = _open_osfhandle(reinterpret_cast<std::intptr_t>(opened), _O_BINARY);
  }
  ~NamedPipe() {
    _close(file_);
    CloseHandle(maker_);
  }
  NamedPipe(const NamedPipe&) = delete;
  NamedPipe& operator=(const NamedPipe&) = delete;

  int File() const { return file_; }
  void Disconnect() const { EXPECT_TRUE(DisconnectNamedPipe(maker_)); }

 private:
  HANDLE maker_ = nullptr;
  int file_ = -1;
};

TEST(Descriptors, APipeThatIsDisconnectedIsAtItsEndAndBroken) {
  const NamedPipe pipe;
  EXPECT_EQ(WriteSome(pipe.File(), std::string_view("abc")), 3);
  pipe.Disconnect();
  std::array<char, 4> bytes{};
  EXPECT_EQ(ReadSome(pipe.File(), bytes), 0);
  errno = 0;
  EXPECT_EQ(WriteSome(pipe.File(), std::string_view("abc")), -1);
  EXPECT_EQ(errno, EPIPE);
}

TEST(Descriptors, EveryErrorOfAnEndedPipeHasTheSameWords) {
  for (const unsigned long error : {ERROR_BROKEN_PIPE, ERROR_NO_DATA, ERROR_PIPE_NOT_CONNECTED})
    EXPECT_EQ(SystemErrorText(error), "Broken pipe") << error;
  EXPECT_FALSE(IsEndOfPipe(ERROR_ACCESS_DENIED));
}

}  // namespace
}  // namespace vblur::host
