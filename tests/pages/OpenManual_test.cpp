#include "pages/OpenManual.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Shell.h"
#include "tests/pages/ManualShelf.h"

namespace vblur {
namespace {

using Texts = std::vector<std::u16string>;

const std::u16string kVersionKey = u"Software\\Microsoft\\Windows\\CurrentVersion";

class OpenManualTest : public testing::Test {
 protected:
  std::u16string Folder() {
    buffer.fill(u'*');
    found = ProgramFilesPath(buffer.data());
    return buffer.data();
  }

  ManualShelf shelf;
  std::array<char16_t, 260> buffer{};
  bool found = false;
};

TEST_F(OpenManualTest, ReadsTheFolderFromTheRegistry) {
  EXPECT_EQ(Folder(), u"D:\\Programs");
  EXPECT_TRUE(found);
  EXPECT_EQ(shelf.asked, (Texts{kVersionKey, kVersionKey + u": ProgramFilesDir"}));
  EXPECT_EQ(shelf.rights, 0xF003Fu);
}

TEST_F(OpenManualTest, HasAFolderOfItsOwnWithoutTheKey) {
  shelf.hasKey = false;
  EXPECT_EQ(Folder(), u"C:Program Files");
  EXPECT_FALSE(found);
  EXPECT_EQ(shelf.asked, Texts{kVersionKey});
}

TEST_F(OpenManualTest, ReadsTwice) {
  shelf.failures = 1;
  EXPECT_EQ(Folder(), u"D:\\Programs");
  EXPECT_TRUE(found);
  EXPECT_EQ(shelf.asked.size(), 3u);
}

TEST_F(OpenManualTest, HasAFolderOfItsOwnWithoutTheText) {
  shelf.failures = 2;
  EXPECT_EQ(Folder(), u"C:Program Files");
  EXPECT_TRUE(found) << "the key is there";
  EXPECT_EQ(shelf.asked.size(), 3u);
}

TEST_F(OpenManualTest, HasRoomFor260Bytes) {
  shelf.folder = std::u16string(129, u'x');
  EXPECT_EQ(Folder(), shelf.folder);
  shelf.folder += u'x';
  EXPECT_EQ(Folder(), u"C:Program Files");
  EXPECT_TRUE(found);
}

TEST_F(OpenManualTest, ClosesTheKey) {
  HKEY before = 0;
  RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"any", 0, 0, &before);
  RegCloseKey(before);
  Folder();
  shelf.failures = 2;
  Folder();
  for (HKEY key = before + 1; key <= before + 2; ++key)
    EXPECT_NE(RegCloseKey(key), ERROR_SUCCESS) << "left open";
  HKEY after = 0;
  RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"any", 0, 0, &after);
  EXPECT_EQ(after, before + 3) << "keys are numbered in order";
  RegCloseKey(after);
}

TEST_F(OpenManualTest, OpensTheManualBelowTheFolderWhateverTheTopic) {
  for (const char* topic : {"index", "effect", static_cast<const char*>(nullptr)})
    OpenManual(topic);
  EXPECT_EQ(shelf.opened, Texts(3, u"open|D:\\Programs" + kManual));
  EXPECT_EQ(shelf.shows, 10);
}

TEST_F(OpenManualTest, OpensItBelowTheFolderOfItsOwn) {
  shelf.hasKey = false;
  shelf.result = 2;
  OpenManual("index");
  EXPECT_EQ(shelf.opened, Texts{u"open|C:Program Files" + kManual});
}

TEST_F(OpenManualTest, FormatsTheWholePath) {
  shelf.folder = u"D:\\100%%";
  OpenManual("index");
  EXPECT_EQ(shelf.opened, Texts{u"open|D:\\100%" + kManual});
}

TEST_F(OpenManualTest, GoesUnnoticedWithoutAShell) {
  host::UseShellAnswers(nullptr);
  OpenManual("index");
  EXPECT_EQ(shelf.opened, Texts{});
}

}  // namespace
}  // namespace vblur
