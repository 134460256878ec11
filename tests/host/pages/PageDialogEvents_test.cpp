#include <random>

#include "host/pages/ButtonControl.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/ListControl.h"
#include "host/pages/NumberControl.h"
#include "tests/host/pages/RecordingPage.h"

namespace vblur::host {
namespace {

// Random events of a user on a dialog whose page changes controls at random while it gets their messages.
class RandomEvents {
 public:
  explicit RandomEvents(std::uint32_t seed) : random_(seed) {
    page_.onMessage = [this](const std::string& text) { OnMessage(text); };
  }

  void Run(int count) {
    for (int i = 0; i < count; ++i) {
      Act();
      Check();
    }
    number_.EndScrub();
    EXPECT_EQ(openScrubs_, 0);
  }

 private:
  int Pick(int count) { return static_cast<int>(random_() % static_cast<std::uint32_t>(count)); }

  void OnMessage(const std::string& text) {
    if (text == "scrub 1 1") ++openScrubs_;
    if (text == "scrub 1 0") --openScrubs_;
    PageWindow& other = *dialog_->Items()[static_cast<std::size_t>(Pick(5))];
    switch (Pick(8)) {
      case 0: EnableWindow(other.Handle(), Pick(3) != 0); break;
      case 1: other.Show(Pick(3) != 0); break;
      case 2: SendMessageW(list_.Handle(), CB_RESETCONTENT, 0, 0); break;
      case 3: SendText(list_.Handle(), CB_ADDSTRING, u"Entry"); break;
      case 4: SendMessageW(list_.Handle(), CB_SETCURSEL, static_cast<WPARAM>(Pick(4)), 0); break;
      case 5: number_.SetValue(DSVariant::Of(Pick(200) - 50.0)); break;
      case 6: number_.SetRange(DSVariant::Of(Pick(20) - 10.0), DSVariant::Of(Pick(100) - 5.0)); break;
      default: dialog_->Show(Pick(4) != 0); break;
    }
  }

  void Act() {
    switch (Pick(12)) {
      case 0: number_.Key(static_cast<NumberKey>(Pick(6)), static_cast<NumberStep>(Pick(3))); break;
      case 1: number_.Type(Pick(2) == 0 ? "+= 7" : "50%"); break;
      case 2: number_.BeginScrub(); break;
      case 3:
      case 4: number_.Scrub(Pick(9) - 4, static_cast<NumberStep>(Pick(3))); break;
      case 5: Pick(2) == 0 ? number_.EndScrub() : number_.CancelScrub(); break;
      case 6: Pick(2) == 0 ? list_.ChooseNext() : list_.ChoosePrevious(); break;
      case 7: list_.ChooseByLetter(u'e'); break;
      case 8: chip_.PickColour(Pick(300), Pick(300), Pick(300)); break;
      case 9: box_.Toggle(); break;
      case 10: button_.Press(); break;
      default:  // a page that comes back in front
        dialog_->Show(true);
        for (const auto& item : dialog_->Items()) {
          item->Show(true);
          item->Enable(true);
        }
    }
  }

  void Check() {
    ASSERT_EQ(number_.IsScrubbing() ? 1 : 0, openScrubs_);
    ASSERT_LE(number_.Range().minimum, number_.Range().maximum);
    const auto count = static_cast<std::int32_t>(list_.Entries().size());
    ASSERT_LT(list_.Selected(), count);
    ASSERT_GE(list_.Selected(), ListControl::kNone);
    ASSERT_EQ(list_.Text(), list_.Selected() == ListControl::kNone ? u"" : u"Entry");
    for (const std::int32_t component : chip_.Colour())
      ASSERT_TRUE(component >= 0 && component <= ColourChipControl::kMost);
    const PageWindow* stop = dialog_->NextStop(nullptr);
    ASSERT_TRUE(stop == nullptr || stop->TakesInput());
  }

  template <class Control>
  Control& Item(std::int32_t id) {
    return dynamic_cast<Control&>(*dialog_->Item(id));
  }

  std::mt19937 random_;
  int openScrubs_ = 0;
  RecordingPage page_;
  std::shared_ptr<PageDialog> dialog_ =
      ShownDialog(page_, {ShownControl(1, ModuleControlKind::Static, ";class=dsnewnumberctrl"),
                          ShownControl(2, ModuleControlKind::List), ShownControl(3, ModuleControlKind::CheckBox),
                          ShownControl(4, ModuleControlKind::PushButton),
                          ShownControl(5, ModuleControlKind::Static, ";class=dsnewcolorchipctrl")});
  NumberControl& number_ = Item<NumberControl>(1);
  ListControl& list_ = Item<ListControl>(2);
  CheckBoxControl& box_ = Item<CheckBoxControl>(3);
  ButtonControl& button_ = Item<ButtonControl>(4);
  ColourChipControl& chip_ = Item<ColourChipControl>(5);
};

// Windows of the system's are a hundred times as slow.
#ifdef _WIN32
constexpr std::uint32_t kDialogs = 20;
#else
constexpr std::uint32_t kDialogs = 200;
#endif

TEST(PageDialogEvents, LeaveEachControlWhole) {
  for (std::uint32_t seed = 0; seed < kDialogs; ++seed) {
    SCOPED_TRACE(seed);
    RandomEvents(seed).Run(200);
    if (testing::Test::HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace vblur::host
