#include "host/base/SystemFiles.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "host/base/Utf8.h"
#include "tests/support/host/ScratchFolder.h"

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
  for (const wchar_t* name : {L"com\u00b9.png", L"b\\LPT\u00b2", L"Com\u00b3 .png"})
    EXPECT_EQ(FlawOfName(name), "it is a device, a file name was expected") << Utf8Of(std::filesystem::path(name));
  for (const wchar_t* name : {L"com\u00b9a.png", L"co\u00b9.png", L"com4a\u00b9.png"})
    EXPECT_EQ(FlawOfName(name), "") << Utf8Of(std::filesystem::path(name));
  for (const char* name : {"a?.png", "a*.png", "shot:1.png", "a|b", "<a>"})
    EXPECT_EQ(FlawOfName(name), R"(a file name holds none of < > : " | ? *)") << name;
  for (const char* name : {"tab\t.png", "b\\line\n.png"})
    EXPECT_EQ(FlawOfName(name), "a file name holds no control characters") << name;
  for (const char* name : {"a.png", "C:\\b\\a.png", "\\b\\a.png", "..\\a.png", "..", "\\\\?\\C:\\b\\a.png"})
    EXPECT_EQ(FlawOfName(name), "") << name;
}

TEST(SystemFiles, ADriveWithoutAFolderIsNoPlace) {
  for (const char* name : {"C:a.png", "c:b\\a.png", "Q:"}) {
    const std::string drive(name, 2);
    EXPECT_EQ(FlawOfName(name), "it lies in whatever folder is the current one of drive " + drive + ", expected " +
                                    drive + "\\ and the folders, or no drive");
  }
}

// Reading would wait for them, or take another folder than people think.
TEST(SystemFiles, InputsAreNoDevicesEither) {
  for (const char* name : {"nul", "CON", "folder\\nul"})
    EXPECT_EQ(FlawOfInputName(name), "it is a device, a file name was expected") << name;
  EXPECT_EQ(FlawOfInputName("C:a.png"), FlawOfName("C:a.png"));
  EXPECT_NE(FlawOfInputName("C:a.png"), "");
  for (const char* name : {"a.png", "C:\\b\\a.png", "a?.png", "a.png."})
    EXPECT_EQ(FlawOfInputName(name), "") << name;
}

// The system makes a file of another name.
TEST(SystemFiles, NoNameEndsInADotOrABlank) {
  for (const char* name : {"a.png.", "a.png ", "C:\\b\\a. ", "a...", "b./a.png", "C:\\b \\a.png", "b."})
    EXPECT_EQ(FlawOfName(name), "the name of a file or folder ends in no dot and no blank") << name;
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
  EXPECT_EQ(MoveOver(part, target), "another program has it open");
  CloseHandle(open);
  EXPECT_EQ(TextOf(target), "old");
  SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(MoveOver(part, target), "Permission denied");
  SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(TextOf(target), "old");
  EXPECT_EQ(TextOf(part), "new");
}

TEST(SystemFiles, AFileThatAnotherHasForItselfIsNotRead) {
  const ScratchFolder scratch;
  const auto file = scratch.Write("a.txt", "x");
  EXPECT_EQ(TryToRead(file), "");
  EXPECT_EQ(TryToRead(scratch.path() / "none"), "No such file or directory");
  HANDLE open = CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(open, INVALID_HANDLE_VALUE);
  EXPECT_EQ(TryToRead(file), "another program has it open");
  std::thread closing([&] {
    Sleep(100);
    CloseHandle(open);
  });
  EXPECT_EQ(TryToRead(file), "");
  closing.join();
}

// By a program that reads the old file, or replaces it too.
TEST(SystemFiles, AFileThatIsOpenForAMomentIsReplaced) {
  const ScratchFolder scratch;
  const auto target = scratch.Write("a.txt", "old");
  const HANDLE open = CreateFileW(target.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(open, INVALID_HANDLE_VALUE);
  std::thread closing([&] {
    Sleep(100);
    CloseHandle(open);
  });
  EXPECT_EQ(MoveOver(scratch.Write("b.txt", "new"), target), "");
  closing.join();
  EXPECT_EQ(TextOf(target), "new");
}

// By a process that has to end at once.
TEST(SystemFiles, AFileThatIsBeingWrittenMayBeRemoved) {
  const ScratchFolder scratch;
  const auto file = scratch.path() / "a.txt";
  std::atomic<bool> isWritten = false;
  std::thread writing([&] {
    EXPECT_EQ(WriteWhole(file, std::string(std::size_t{48} << 20, 'x')), "");
    isWritten = true;
  });
  int kept = 0;
  bool ends = false;
  while (!ends) {
    ends = isWritten;
    const HANDLE open = CreateFileW(file.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    kept += open == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION ? 1 : 0;
    if (open != INVALID_HANDLE_VALUE) CloseHandle(open);
  }
  writing.join();
  EXPECT_EQ(kept, 0);
  EXPECT_EQ(std::filesystem::file_size(file), std::uintmax_t{48} << 20);
}

}  // namespace
}  // namespace vblur::host
