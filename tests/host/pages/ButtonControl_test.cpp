#include "host/pages/ButtonControl.h"

#include "tests/host/pages/RecordingPage.h"

namespace vblur::host {
namespace {

using Button = OneControl<ButtonControl>;

TEST(ButtonControl, TellsThePageThatItIsPressed) {
  Button button(ModuleControlKind::PushButton, "Reset");
  EXPECT_EQ(button.control.Text(), u"Reset");
  EXPECT_TRUE(button.control.Press());
  EXPECT_EQ(button.page.Taken(), (Messages{"command 5 0"}));
}

TEST(ButtonControl, TakesNoInputWhileDisabledOrHidden) {
  Button button(ModuleControlKind::PushButton, "Reset");
  button.control.Enable(false);
  EXPECT_FALSE(button.control.Press());
  button.control.Enable(true);
  button.control.Show(false);
  EXPECT_FALSE(button.control.Press());
  EXPECT_EQ(button.page.Taken(), Messages{});
}

TEST(ButtonControl, TellsNothingWithoutAnId) {
  RecordingPage page;
  const auto dialog = ShownDialog(page, {ShownControl(ModuleControl::kNoId, ModuleControlKind::PushButton)});
  EXPECT_TRUE(dynamic_cast<ButtonControl&>(*dialog->Items()[0]).Press());
  EXPECT_EQ(page.Taken(), Messages{});
}

TEST(ButtonControl, KeepsItsIdToTheLower16Bits) {
  RecordingPage page;
  const auto dialog = ShownDialog(page, {ShownControl(0x12345, ModuleControlKind::PushButton)});
  EXPECT_TRUE(dynamic_cast<ButtonControl&>(*dialog->Item(0x12345)).Press());
  EXPECT_EQ(page.Taken(), (Messages{"command 9029 0"}));
}

}  // namespace
}  // namespace vblur::host
