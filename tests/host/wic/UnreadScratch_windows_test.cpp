// What the codec has written is copied to its place with a head of our own; here it cannot be read again.
#include <gtest/gtest.h>

#include "host/base/Failure.h"
#include "host/files/OutputFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
// It includes the system's header.
#include "tests/support/ImportHook_windows.h"

namespace vblur::host {
namespace {

BOOL WINAPI RefuseRead(HANDLE, void*, DWORD, DWORD*, OVERLAPPED*) {
  SetLastError(ERROR_CRC);
  return FALSE;
}

TEST(UnreadScratch, IsToldAndNothingIsWritten) {
  const ScratchFolder folder;
  HostImage image;
  image.Reset(8, 4, 40, 30);
  FillRandom(image, 0, 255, 1);
  for (const std::string name : {"out.png", "out.jpg"}) {
    const auto write = [&] { PictureWriter().Write(folder.path() / name, image, nullptr, true); };
    // What codecs can do is found out first.
    write();
    const std::string before = Bytes(folder.path() / name);
    FillRandom(image, 0, 255, 2);
    {
      const test::HookedImport refusing(::GetModuleHandleW(nullptr), "kernel32.dll", "ReadFile", &RefuseRead);
      const auto failure = CaughtFailure(write);
      ASSERT_TRUE(failure) << name;
      EXPECT_EQ(failure->Code(), ExitCode::CannotWrite);
      EXPECT_NE(std::string(failure->what()).find(name + ": cannot write: "), std::string::npos) << failure->what();
    }
    EXPECT_EQ(Bytes(folder.path() / name), before);
    EXPECT_EQ(NamesIn(folder.path()), std::set<std::string>{name});
    std::filesystem::remove(folder.path() / name);
  }
}

}  // namespace
}  // namespace vblur::host
