// What a page hears of a list that a user drops.
#include "host/pages/ListControl.h"

#include "tests/host/pages/RecordingPage.h"
#include "tests/host/pages/SystemWindows_windows.h"

namespace vblur::host {
namespace {

struct Dropped : OneControl<ListControl> {
  Dropped() : OneControl(ModuleControlKind::List), list(control.Handle()) {
    for (const char16_t* const entry : {u"a", u"b", u"c", u"d"})
      SendText(list, CB_ADDSTRING, entry);
    ::SendMessageW(list, CB_SETCURSEL, 0, 0);
    Drop();
  }
  void Drop() const {
    ::SendMessageW(list, CB_SHOWDROPDOWN, TRUE, 0);
    EXPECT_TRUE(IsDropped());
  }
  bool IsDropped() const { return ::SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) != FALSE; }

  HWND list;
};

const Messages kChosen{"command 5 1"};

TEST(ListControl, TellsThePageOnceOfAnEntryThatItIsLeftWith) {
  Dropped dropped;
  PressKey(dropped.list, VK_DOWN);
  PressKey(dropped.list, VK_DOWN);
  EXPECT_EQ(dropped.page.Taken(), Messages{});
  PressKey(dropped.list, VK_RETURN);
  EXPECT_EQ(dropped.page.Taken(), kChosen);
  dropped.Drop();
  PressKey(dropped.list, VK_DOWN);
  PressKey(dropped.list, VK_UP);
  PressKey(dropped.list, VK_RETURN);
  EXPECT_EQ(dropped.page.Taken(), Messages{}) << "the same as before";
  PressKey(dropped.list, VK_DOWN);
  EXPECT_EQ(dropped.page.Taken(), kChosen) << "closed";
}

TEST(ListControl, TellsThePageOnceOfAnEntryThatIsClicked) {
  Dropped dropped;
  // Keys have passed some before.
  PressKey(dropped.list, VK_END);
  COMBOBOXINFO parts{};
  parts.cbSize = sizeof(parts);
  ASSERT_TRUE(::GetComboBoxInfo(dropped.list, &parts));
  const auto place = static_cast<WORD>(::SendMessageW(parts.hwndList, LB_GETITEMHEIGHT, 0, 0) * 3 / 2);
  for (const UINT message : {UINT{WM_LBUTTONDOWN}, UINT{WM_LBUTTONUP}})
    ::SendMessageW(parts.hwndList, message, 0, MAKELPARAM(5, place));
  EXPECT_EQ(dropped.control.Selected(), 1);
  EXPECT_EQ(dropped.page.Taken(), kChosen);
}

TEST(ListControl, ShowsTheEntryOfThePageWhenItIsLeft) {
  Dropped dropped;
  PressKey(dropped.list, VK_END);
  PressKey(dropped.list, VK_ESCAPE);
  EXPECT_EQ(dropped.control.Selected(), 0);
  dropped.Drop();
  PressKey(dropped.list, VK_END);
  // The page changes it meanwhile.
  ::SendMessageW(dropped.list, CB_SETCURSEL, 2, 0);
  PressKey(dropped.list, VK_UP);
  PressKey(dropped.list, VK_ESCAPE);
  EXPECT_EQ(dropped.control.Selected(), 2);
  EXPECT_EQ(dropped.page.Taken(), Messages{});
}

TEST(ListControl, ClosesBeforeAScriptChooses) {
  Dropped dropped;
  PressKey(dropped.list, VK_DOWN);
  EXPECT_TRUE(dropped.control.Choose(3));
  EXPECT_FALSE(dropped.IsDropped());
  EXPECT_EQ(dropped.control.Selected(), 3);
  EXPECT_EQ(dropped.page.Taken(), kChosen);
}

}  // namespace
}  // namespace vblur::host
