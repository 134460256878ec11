// What a page throws in a message comes to whoever operates the control, and the control goes on.
#include <stdexcept>
#include <string>
#include <vector>

#include "host/base/Failure.h"
#include "host/pages/ButtonControl.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/ListControl.h"
#include "host/pages/NumberControl.h"
#include "tests/host/pages/RecordingPage.h"

namespace vblur::host {
namespace {

template <class Control>
struct Failing : OneControl<Control> {
  using OneControl<Control>::OneControl;

  // The page throws at this message.
  template <class Act>
  void ExpectThrown(const std::string& message, const Act& act) {
    this->page.onMessage = [message](const std::string& text) {
      if (text == message) throw std::runtime_error("at " + text);
    };
    try {
      act();
      ADD_FAILURE() << "nothing is thrown at " << message;
    } catch (const std::runtime_error& thrown) {
      EXPECT_EQ(thrown.what(), "at " + message);
    }
    this->page.onMessage = {};
    this->page.Taken();
  }
};

TEST(PageFailures, ComeFromButtonsAndBoxes) {
  Failing<ButtonControl> button(ModuleControlKind::PushButton, "Go");
  button.ExpectThrown("command 5 0", [&] { button.control.Press(); });
  EXPECT_TRUE(button.control.Press());
  EXPECT_EQ(button.page.Taken(), Messages{"command 5 0"});
  Failing<CheckBoxControl> box(ModuleControlKind::CheckBox, "On");
  box.ExpectThrown("command 5 0", [&] { box.control.Toggle(); });
  EXPECT_TRUE(box.control.IsChecked());
  EXPECT_TRUE(box.control.Toggle());
  EXPECT_EQ(box.page.Taken(), Messages{"command 5 0"});
}

TEST(PageFailures, ComeFromLists) {
  Failing<ListControl> list(ModuleControlKind::List);
  for (const char16_t* const entry : {u"one", u"two", u"three"})
    SendText(list.control.Handle(), CB_ADDSTRING, entry);
  list.ExpectThrown("command 5 1", [&] { list.control.Choose(1); });
  EXPECT_TRUE(list.control.Choose(2));
  EXPECT_EQ(list.control.Selected(), 2);
  EXPECT_EQ(list.page.Taken(), Messages{"command 5 1"});
}

TEST(PageFailures, ComeFromChips) {
  Failing<ColourChipControl> chip(ModuleControlKind::Static, ";class=dsnewcolorchipctrl;auto=1");
  chip.ExpectThrown("notify 5", [&] { chip.control.PickColour(1, 2, 3); });
  EXPECT_TRUE(chip.control.PickColour(4, 5, 6));
  EXPECT_EQ(chip.page.Taken(), Messages{"notify 5"});
}

TEST(PageFailures, ComeFromNumbersThatAreTypedOrStepped) {
  Failing<NumberControl> number(ModuleControlKind::Static, "N;class=dsnewnumberctrl;min=0;max=100");
  number.ExpectThrown("notify 5", [&] { number.control.Type("7"); });
  number.ExpectThrown("complete 5", [&] { number.control.Type("8"); });
  number.ExpectThrown("notify 5", [&] { number.control.Key(NumberKey::Up); });
  EXPECT_EQ(number.control.Value(), 9.0);
  EXPECT_EQ(number.control.Type("20"), std::nullopt);
  EXPECT_TRUE(number.control.Key(NumberKey::Down));
  EXPECT_EQ(number.page.Taken(), (Messages{"notify 5", "complete 5", "notify 5", "complete 5"}));
}

TEST(PageFailures, ComeFromScrubs) {
  Failing<NumberControl> number(ModuleControlKind::Static, "N;class=dsnewnumberctrl;min=0;max=100");
  number.ExpectThrown("scrub 5 1", [&] { number.control.BeginScrub(); });
  EXPECT_TRUE(number.control.IsScrubbing()) << "until it ends";
  number.ExpectThrown("notify 5", [&] { number.control.Scrub(3); });
  number.ExpectThrown("complete 5", [&] { number.control.EndScrub(); });
  EXPECT_FALSE(number.control.IsScrubbing());
  EXPECT_EQ(number.control.Value(), 3.0);
  EXPECT_TRUE(number.control.BeginScrub());
  number.ExpectThrown("scrub 5 0", [&] { number.control.CancelScrub(); });
  EXPECT_TRUE(number.control.BeginScrub());
  EXPECT_TRUE(number.control.Scrub(2));
  EXPECT_TRUE(number.control.EndScrub());
  EXPECT_EQ(number.page.Taken(), (Messages{"scrub 5 1", "notify 5", "complete 5", "scrub 5 0"}));
}

// A failure of the host's own is no fault of what was typed.
TEST(PageFailures, AreNoComplaintsAboutATypedText) {
  Failing<NumberControl> number(ModuleControlKind::Static, "N;class=dsnewnumberctrl;min=0;max=100");
  number.page.onMessage = [](const std::string&) { throw Failure(ExitCode::CannotWrite, "no room"); };
  EXPECT_THROW(number.control.Type("7"), Failure);
}

TEST(PageFailures, ComeFromObserversToWhoDisables) {
  Failing<ButtonControl> button(ModuleControlKind::PushButton, "Go");
  button.observer.onChange = [] { throw std::runtime_error("from an observer"); };
  EXPECT_THROW(button.control.Enable(false), std::runtime_error);
  button.observer.onChange = {};
  EXPECT_FALSE(button.control.IsEnabled());
}

}  // namespace
}  // namespace vblur::host
