#include "host/pages/PageWindow.h"

#include "host/pages/StaticControls.h"
#include "tests/host/pages/RecordingPage.h"

namespace vblur::host {
namespace {

using Label = OneControl<LabelControl>;

constexpr auto kStatic = ModuleControlKind::Static;

TEST(PageWindow, SetsAndGetsItsText) {
  Label label(kStatic, "Aspect");
  EXPECT_EQ(label.control.Text(), u"Aspect");
  EXPECT_EQ(SendText(label.control.Handle(), WM_SETTEXT, u"Blur Größe"), 1);
  EXPECT_EQ(label.Changes(), 1u);
  EXPECT_EQ(TextOf(label.control.Handle()), u"Blur Größe");
  EXPECT_EQ(SendText(label.control.Handle(), WM_SETTEXT, u"Blur Größe"), 1);
  EXPECT_EQ(label.Changes(), 0u) << "nothing else is shown";
  EXPECT_EQ(SendText(label.control.Handle(), WM_SETTEXT, nullptr), 1);
  EXPECT_EQ(label.control.Text(), u"");
  EXPECT_EQ(label.page.Taken(), Messages{});
}

TEST(PageWindow, CutsItsTextToTheBuffer) {
  Label label(kStatic, "Aspect");
  EXPECT_EQ(TextOf(label.control.Handle(), 7), u"Aspect");
  EXPECT_EQ(TextOf(label.control.Handle(), 6), u"Aspec");
  EXPECT_EQ(TextOf(label.control.Handle(), 1), u"");
  char16_t untouched = u'#';
  EXPECT_EQ(SendMessageW(label.control.Handle(), WM_GETTEXT, 0, reinterpret_cast<LPARAM>(&untouched)), 0);
  EXPECT_EQ(untouched, u'#');
  EXPECT_EQ(SendMessageW(label.control.Handle(), WM_GETTEXT, 9, 0), 0);
  std::u16string buffer(7, u'#');
  SendMessageW(label.control.Handle(), WM_GETTEXT, 4, reinterpret_cast<LPARAM>(buffer.data()));
  EXPECT_EQ(buffer, (std::u16string{u'A', u's', u'p', 0, u'#', u'#', u'#'}));
}

TEST(PageWindow, TakesTextsOfAnyLength) {
  Label label(kStatic);
  const std::u16string text(1'000'000, u'x');
  SendText(label.control.Handle(), WM_SETTEXT, text.c_str());
  EXPECT_EQ(label.control.Text(), text);
}

TEST(PageWindow, EndsAResourceTextAtANul) {
  using namespace std::string_view_literals;
  EXPECT_EQ(Widened("ab\0cd"sv), u"ab");
  EXPECT_EQ(Widened("\xC4"), u"\u00C4") << "no byte is negative";
}

TEST(PageWindow, AnswersNoMessageThatItDoesNotKnow) {
  Label label(kStatic);
  EXPECT_EQ(SendMessageW(label.control.Handle(), BM_GETCHECK, 0, 0), 0);
  EXPECT_EQ(GetPropW(label.control.Handle(), kControlInterface), nullptr);
  EXPECT_EQ(label.control.Item(Label::kId), nullptr);
}

TEST(PageWindow, TellsWhetherItWasDisabled) {
  Label label(kStatic);
  EXPECT_FALSE(EnableWindow(label.control.Handle(), true));
  EXPECT_EQ(label.Changes(), 0u);
  EXPECT_FALSE(EnableWindow(label.control.Handle(), false));
  EXPECT_FALSE(label.control.IsEnabled());
  EXPECT_TRUE(EnableWindow(label.control.Handle(), false));
  EXPECT_EQ(label.Changes(), 1u);
  EXPECT_TRUE(EnableWindow(label.control.Handle(), true));
  EXPECT_TRUE(label.control.IsEnabled());
  EXPECT_EQ(label.Changes(), 1u);
}

TEST(PageWindow, TakesInputWhereAUserCanReachIt) {
  Label label(kStatic);
  EXPECT_TRUE(label.control.TakesInput());
  for (PageWindow* window : {static_cast<PageWindow*>(&label.control), static_cast<PageWindow*>(label.dialog.get())}) {
    window->Enable(false);
    EXPECT_FALSE(label.control.TakesInput());
    window->Enable(true);
    window->Show(false);
    EXPECT_FALSE(label.control.TakesInput());
    window->Show(true);
    EXPECT_TRUE(label.control.TakesInput());
  }
  label.dialog->Close();
  EXPECT_FALSE(label.control.TakesInput());
}

TEST(PageWindow, ShowsByItsStyle) {
  RecordingPage page;
  ModuleControl hidden = ShownControl(1, kStatic);
  hidden.style &= ~WS_VISIBLE;
  const auto dialog = ShownDialog(page, {hidden, ShownControl(2, kStatic)});
  EXPECT_FALSE(dialog->Item(1)->IsVisible());
  EXPECT_TRUE(dialog->Item(2)->IsVisible());
  EXPECT_EQ(dialog->Item(2)->Style(), WS_CHILD | WS_VISIBLE | WS_TABSTOP);
}

TEST(PageWindow, AsksThePageForItsToolTip) {
  Label label(kStatic);
  label.page.toolTip = u"Amount to blur by (in pixels).";
  EXPECT_EQ(label.control.ToolTip(), u"Amount to blur by (in pixels).");
  EXPECT_EQ(label.page.Taken(), (Messages{"tip 5"}));
  label.page.toolTip = std::u16string(5000, u'x');
  EXPECT_EQ(label.control.ToolTip(), std::u16string(1024, u'x')) << "a page that leaves out the end";
  label.dialog->Close();
  EXPECT_EQ(label.control.ToolTip(), u"");
}

TEST(PageWindow, AsksForNoToolTipWithoutAnId) {
  RecordingPage page;
  page.toolTip = u"Amount";
  const auto dialog = ShownDialog(page, {ShownControl(ModuleControl::kNoId, kStatic)});
  EXPECT_EQ(dialog->Items()[0]->ToolTip(), u"");
  EXPECT_EQ(dialog->ToolTip(), u"");
  EXPECT_EQ(page.Taken(), Messages{});
}

TEST(PageWindow, TellsItsObserversAndThoseOfItsDialog) {
  Label label(kStatic);
  RecordingObserver ofDialog;
  label.dialog->AddObserver(ofDialog);
  label.dialog->AddObserver(ofDialog);
  label.control.Invalidate();
  EXPECT_EQ(label.observer.Taken(), (std::vector<std::int32_t>{5}));
  EXPECT_EQ(ofDialog.Taken(), (std::vector<std::int32_t>{5})) << "once, though added twice";
  label.dialog->Invalidate();
  EXPECT_EQ(label.observer.Taken(), std::vector<std::int32_t>{});
  EXPECT_EQ(ofDialog.Taken(), (std::vector<std::int32_t>{kDialogNumber}));
  label.dialog->RemoveObserver(ofDialog);
  label.control.Invalidate();
  EXPECT_EQ(ofDialog.Taken(), std::vector<std::int32_t>{});
}

TEST(PageWindow, LosesAndGainsObserversDuringACall) {
  Label label(kStatic);
  RecordingObserver first;
  RecordingObserver second;
  RecordingObserver kept;
  RecordingObserver late;
  label.control.AddObserver(first);
  label.control.AddObserver(second);
  label.control.AddObserver(kept);
  first.onChange = [&] {
    label.control.RemoveObserver(first);
    label.control.RemoveObserver(second);
    label.control.AddObserver(late);
    // Another call within this one.
    if (first.Taken().size() == 1) label.control.Invalidate();
  };
  label.control.Invalidate();
  EXPECT_EQ(label.Changes(), 2u);
  EXPECT_EQ(kept.Taken().size(), 2u);
  EXPECT_EQ(second.Taken().size(), 0u) << "it is removed before its turn";
  EXPECT_EQ(late.Taken().size(), 1u) << "it is told from the next change on";
  label.control.Invalidate();
  EXPECT_EQ(late.Taken().size(), 1u);
  EXPECT_EQ(label.Changes(), 1u);
}

}  // namespace
}  // namespace vblur::host
