#include "host/pages/CheckBoxControl.h"

#include "tests/host/pages/RecordingPage.h"

namespace vblur::host {
namespace {

struct CheckBox : OneControl<CheckBoxControl> {
  CheckBox() : OneControl(ModuleControlKind::CheckBox, "Hide Overlay Controls") {}
};

TEST(CheckBoxControl, IsCheckedByThePageWithoutAMessage) {
  CheckBox box;
  EXPECT_EQ(SendMessageW(box.control.Handle(), BM_GETCHECK, 0, 0), 0);
  SendMessageW(box.control.Handle(), BM_SETCHECK, 1, 0);
  EXPECT_EQ(SendMessageW(box.control.Handle(), BM_GETCHECK, 0, 0), 1);
  EXPECT_EQ(box.Changes(), 1u);
  SendMessageW(box.control.Handle(), BM_SETCHECK, 2, 0);
  EXPECT_EQ(SendMessageW(box.control.Handle(), BM_GETCHECK, 0, 0), 1);
  EXPECT_EQ(box.Changes(), 0u);
  SendMessageW(box.control.Handle(), BM_SETCHECK, 0, 0);
  EXPECT_FALSE(box.control.IsChecked());
  EXPECT_EQ(box.page.Taken(), Messages{});
  EXPECT_EQ(TextOf(box.control.Handle()), u"Hide Overlay Controls");
}

TEST(CheckBoxControl, TogglesAndTellsThePage) {
  CheckBox box;
  LRESULT seen = 0;
  box.page.onMessage = [&](const std::string&) { seen = SendMessageW(box.control.Handle(), BM_GETCHECK, 0, 0); };
  EXPECT_TRUE(box.control.Toggle());
  EXPECT_TRUE(box.control.IsChecked());
  EXPECT_EQ(seen, 1) << "it is checked before the page is told";
  EXPECT_TRUE(box.control.Toggle());
  EXPECT_FALSE(box.control.IsChecked());
  EXPECT_EQ(box.Changes(), 2u);
  EXPECT_EQ(box.page.Taken(), (Messages{"command 5 0", "command 5 0"}));
}

TEST(CheckBoxControl, TakesNoInputWhileDisabledOrHidden) {
  CheckBox box;
  box.control.Enable(false);
  EXPECT_FALSE(box.control.Toggle());
  box.control.Enable(true);
  box.control.Show(false);
  EXPECT_FALSE(box.control.Toggle());
  EXPECT_FALSE(box.control.IsChecked());
  EXPECT_EQ(box.page.Taken(), Messages{});
}

}  // namespace
}  // namespace vblur::host
