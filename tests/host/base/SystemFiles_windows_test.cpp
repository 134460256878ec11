#include "host/base/SystemFiles.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/host/ScratchFolder.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace vblur::host {
namespace {

std::string TextOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(SystemFiles, NamesOfDevicesAndStreamsAreNoFiles) {
  for (const char* name : {"nul", "NUL", "con", "folder\\nul"})
    EXPECT_EQ(FlawOfName(name), "it is a device, a file name was expected") << name;
  for (const char* name : {"a?.png", "a*.png", "shot:1.png", "a|b", "<a>"})
    EXPECT_EQ(FlawOfName(name), R"(a file name holds none of < > : " | ? *)") << name;
  for (const char* name : {"a.png", "C:a.png", "C:\\b\\a.png", "..\\a.png", "\\\\?\\C:\\b\\a.png"})
    EXPECT_EQ(FlawOfName(name), "") << name;
}

TEST(SystemFiles, ReplacesAFile) {
  const ScratchFolder scratch;
  const auto target = scratch.Write("a.txt", "old");
  EXPECT_EQ(MoveOver(scratch.Write("b.txt", "new"), target), "");
  EXPECT_EQ(TextOf(target), "new");
  EXPECT_FALSE(std::filesystem::exists(scratch.path() / "b.txt"));
}

TEST(SystemFiles, AFileThatIsOpenElsewhereOrReadOnlyStays) {
  const ScratchFolder scratch;
  const auto target = scratch.Write("a.txt", "old");
  const auto part = scratch.Write("b.txt", "new");
  const HANDLE open = CreateFileW(target.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(open, INVALID_HANDLE_VALUE);
  EXPECT_NE(MoveOver(part, target), "");
  CloseHandle(open);
  EXPECT_EQ(TextOf(target), "old");
  SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(MoveOver(part, target), "Permission denied");
  SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(TextOf(target), "old");
  EXPECT_EQ(TextOf(part), "new");
}

}  // namespace
}  // namespace vblur::host
