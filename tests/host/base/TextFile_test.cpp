#include "host/base/TextFile.h"

#include <gtest/gtest.h>

#include "host/base/Failure.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class TextFile : public testing::Test {
 protected:
  std::string Read(std::string_view bytes) const { return ReadTextFile(folder_.Write("t.txt", bytes), "job file"); }

  ScratchFolder folder_;
};

TEST_F(TextFile, IsReadAsItIs) {
  EXPECT_EQ(Read(""), "");
  EXPECT_EQ(Read("{\"a\": \"\xC3\xA4\"}\r\n"), "{\"a\": \"\xC3\xA4\"}\r\n");
}

// What editors and shells of Windows write.
TEST_F(TextFile, MayHaveAByteOrderMark) {
  EXPECT_EQ(Read("\xEF\xBB\xBF{}"), "{}");
  EXPECT_EQ(Read({"\xFF\xFE{\0\xE4\0}\0", 8}), "{\xC3\xA4}");
  EXPECT_EQ(Read({"\xFE\xFF\0{\0\xE4\0}", 8}), "{\xC3\xA4}");
  EXPECT_EQ(Read({"\xFF\xFE\x3D\xD8\0\xDE", 6}), "\xF0\x9F\x98\x80");
  EXPECT_EQ(Read("\xFF\xFE"), "");
}

TEST_F(TextFile, OfUtf16WithoutAByteOrderMarkIsRefused) {
  for (const std::string_view text : {std::string_view("{\0}\0", 4), std::string_view("\0{\0}", 4)}) {
    const auto failure = CaughtFailure([&] { Read(text); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
    EXPECT_TRUE(std::string(failure->what())
                    .ends_with("t.txt: a text in UTF-16 without a byte order mark, expected a job file in UTF-8, or "
                               "with the mark"))
        << failure->what();
  }
}

TEST_F(TextFile, OfUtf16IsRefusedWhereItIsCut) {
  const auto failure = CaughtFailure([&] { Read({"\xFF\xFE{\0}", 5}); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
  EXPECT_NE(std::string(failure->what())
                .find("t.txt: a text in UTF-16 that ends in the middle of a character, expected a whole job file"),
            std::string::npos)
      << failure->what();
}

}  // namespace
}  // namespace vblur::host
