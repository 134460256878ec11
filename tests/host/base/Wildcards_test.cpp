#include "host/base/Wildcards.h"

#include <gtest/gtest.h>

#include "host/base/Utf8.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

TEST(Wildcards, StandForAnyCharactersOrForOne) {
  for (const char* pattern : {"*", "*.png", "a*", "a*.png", "a??.png", "*1*", "a12.png", "A1?.PNG", "**.p*g", "*?*"})
    EXPECT_TRUE(MatchesWildcards("a12.png", pattern)) << pattern;
  for (const char* pattern : {"", "?", "*.jpg", "b*", "a?.png", "a???.png", "*.pn", "a12.png?", "12.png", "*a"})
    EXPECT_FALSE(MatchesWildcards("a12.png", pattern)) << pattern;
  EXPECT_TRUE(MatchesWildcards("aXbXc.png", "a*X*.png"));
  EXPECT_TRUE(MatchesWildcards("", "*"));
}

TEST(Wildcards, StandForWholeCharacters) {
  EXPECT_TRUE(MatchesWildcards("gr\xC3\xBC\xC3\x9F.png", "gr??.png"));
  EXPECT_FALSE(MatchesWildcards("gr\xC3\xBC\xC3\x9F.png", "gr????.png"));
  EXPECT_TRUE(MatchesWildcards("\xE6\x97\xA5.png", "?.png"));
}

TEST(Wildcards, LeaveHiddenFilesAlone) {
  EXPECT_FALSE(MatchesWildcards(".a.png", "*.png"));
  EXPECT_FALSE(MatchesWildcards(".a.png", "?a.png"));
  EXPECT_TRUE(MatchesWildcards(".a.png", ".*"));
}

class WildcardsFiles : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return Utf8Of(folder_.path()) + "/" + name; }

  ScratchFolder folder_;
};

TEST_F(WildcardsFiles, AreThoseOfTheFolderByTheirNames) {
  for (const char* name : {"b.png", "A2.png", "a10.png", "a1.png", "c.jpg", ".hidden.png", "in/d.png"})
    folder_.Write(name, "x");
  std::filesystem::create_directory(folder_.path() / "folder.png");
  EXPECT_EQ(FilesNamed(Path("*.png")),
            (std::vector<std::string>{Path("a1.png"), Path("a10.png"), Path("A2.png"), Path("b.png")}));
  EXPECT_EQ(FilesNamed(Path("in/?.png")), std::vector<std::string>{Path("in/d.png")});
}

TEST_F(WildcardsFiles, AreTheNameItselfWithoutAny) {
  for (const std::string& name : {Path("none.png"), Path("*/none.png"), std::string("-"), std::string(), Path("")})
    EXPECT_EQ(FilesNamed(name), std::vector<std::string>{name});
}

// As other shells do: whoever reads such a file tells that there is none, in its turn.
TEST_F(WildcardsFiles, AreTheNameItselfWhereNoFileMatches) {
  folder_.Write("a.png", "x");
  for (const std::string& name : {Path("*.jpg"), Path("b?.png"), Path("none/*.png")})
    EXPECT_EQ(FilesNamed(name), std::vector<std::string>{name});
}

}  // namespace
}  // namespace vblur::host
