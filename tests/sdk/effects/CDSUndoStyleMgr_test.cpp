#include "tests/sdk/effects/EditingPage.h"

namespace vblur {
namespace {

using namespace editing_page;
using host::Calls;

class CDSUndoStyleMgrTest : public EditingTest {
 protected:
  HRESULT Begin(UINT message = 0, std::int32_t id = 0) { return undo.Begin({message, id}, &style, 1); }

  CDSUndoStyleMgr undo{*page};
  UNDO_STYLE style = kUndoStep;
};

TEST_F(CDSUndoStyleMgrTest, WritesBelongToTheBracketInBetween) {
  Open();
  EXPECT_EQ(undo.Begin({}, nullptr, 1), kNullPointer);
  EXPECT_EQ(undo.End(), kFalse);
  EXPECT_EQ(site.Taken(), Calls{});
  EXPECT_EQ(Begin(), kOk);
  EXPECT_EQ(style, 2);
  EXPECT_EQ(Begin(), kOk);
  EXPECT_EQ(undo.End(), kOk);
  EXPECT_EQ(undo.End(), kOk);
  EXPECT_EQ(undo.End(), kFalse);
  EXPECT_EQ(site.Taken(), (Calls{"begin \"\"", "begin \"\"", "end", "end"}));
  EXPECT_EQ(style, 2) << "the page's matter";
}

TEST_F(CDSUndoStyleMgrTest, IsNamedAfterTheButtonThatWasPressed) {
  Open();
  const auto nameOf = [&](UINT message, std::int32_t id) {
    Begin(message, id);
    undo.End();
    return site.Taken().front();
  };
  EXPECT_EQ(nameOf(WM_COMMAND, kGoId), "begin \"Go!\"");
  EXPECT_EQ(nameOf(WM_COMMAND, kIdleId), "begin \"Idle\"") << "a flag beside others";
  EXPECT_EQ(nameOf(WM_COMMAND, kTickId), "begin \"\"");
  EXPECT_EQ(nameOf(WM_COMMAND, kStrangerId), "begin \"\"");
  EXPECT_EQ(nameOf(WM_SETTEXT, kGoId), "begin \"\"");
  page->hasMap = false;
  EXPECT_EQ(nameOf(WM_COMMAND, kGoId), "begin \"\"");
}

TEST_F(CDSUndoStyleMgrTest, BracketsWithoutAHistory) {
  EXPECT_EQ(Begin(), kOk) << "no site";
  EXPECT_EQ(style, 2);
  EXPECT_EQ(undo.End(), kOk);
  page->SetSite(&site);
  site.hasUndo = false;
  EXPECT_EQ(Begin(), kOk);
  EXPECT_EQ(undo.End(), kOk);
  EXPECT_EQ(site.Taken(), Calls{});
}

TEST_F(CDSUndoStyleMgrTest, EndsNoStepThatItHasNotBegunThere) {
  EXPECT_EQ(Begin(), kOk);
  page->SetSite(&site);
  EXPECT_EQ(undo.End(), kOk);
  EXPECT_EQ(site.Taken(), Calls{});
  EXPECT_EQ(Begin(), kOk);
  page->SetSite(nullptr);
  EXPECT_EQ(site.Taken(), (Calls{"begin \"\"", "end"}));
  EXPECT_EQ(undo.End(), kOk);
  EXPECT_EQ(site.Taken(), Calls{});
}

}  // namespace
}  // namespace vblur
