#include "host/pictures/OutputFileStream.h"

#include <gtest/gtest.h>

#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

// What is in the file after these writes, with a head of four bytes in brackets.
std::string Written(const std::vector<std::string>& writes) {
  const ScratchFolder folder;
  const auto path = folder.path() / "out";
  const StopTest stop;
  OutputFileStream stream(path, stop);
  stream.ChangeHead(4, [](const std::string& head) { return "(" + head + ")"; });
  std::size_t told = 0;
  for (const std::string& bytes : writes) {
    EXPECT_EQ(stream.write(bytes.data(), bytes.size()), bytes.size());
    told += bytes.size();
    // The place counts what is held, until the head is out.
    EXPECT_TRUE(told >= 4 || stream.tell() == static_cast<int64_t>(told));
  }
  stream.close();
  EXPECT_EQ(stream.SystemError(), 0);
  return Bytes(path);
}

TEST(OutputFileStream, ChangesTheFirstBytesHoweverTheyAreWritten) {
  EXPECT_EQ(Written({"abcdef", "gh"}), "(abcd)efgh");
  EXPECT_EQ(Written({"ab", "cdef", "gh"}), "(abcd)efgh");
  EXPECT_EQ(Written({"abcd", "efgh"}), "(abcd)efgh");
  EXPECT_EQ(Written({"a", "b", "c", "d", "e"}), "(abcd)e");
  EXPECT_EQ(Written({"", "abcd", ""}), "(abcd)");
}

TEST(OutputFileStream, ChangesAllOfAShorterFile) {
  EXPECT_EQ(Written({"abc"}), "(abc)");
  EXPECT_EQ(Written({}), "()");
}

TEST(OutputFileStream, PutsTheHeadBeforeAnotherPlaceIsTaken) {
  const ScratchFolder folder;
  const auto path = folder.path() / "out";
  const StopTest stop;
  OutputFileStream stream(path, stop);
  stream.ChangeHead(4, [](const std::string& head) { return head; });
  stream.write("ab", 2);
  EXPECT_TRUE(stream.seek(1));
  stream.write("XY", 2);
  stream.close();
  EXPECT_EQ(Bytes(path), "aXY");
}

}  // namespace
}  // namespace vblur::host
