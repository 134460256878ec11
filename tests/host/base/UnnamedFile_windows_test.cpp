#include "host/base/UnnamedFile.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <io.h>

#include <windows.h>

namespace vblur::host {
namespace {

TEST(UnnamedFile, MayBeRemovedWhileItIsOpen) {
  std::optional<UnnamedFile> file(std::in_place);
  const std::filesystem::path path = file->Path();
  EXPECT_EQ(_write(file->Descriptor(), "a\nb", 3), 3);
  const HANDLE removing = CreateFileW(path.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(removing, INVALID_HANDLE_VALUE) << GetLastError();
  if (removing != INVALID_HANDLE_VALUE) CloseHandle(removing);
  {
    std::ifstream again(path, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(again), {}), "a\nb");
  }
  file.reset();
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace vblur::host
