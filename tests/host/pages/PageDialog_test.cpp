#include "host/pages/PageDialog.h"

#include <array>

#include "host/pages/ButtonControl.h"
#include "host/pages/ListControl.h"
#include "host/pages/NumberControl.h"
#include "host/pages/StaticControls.h"
#include "tests/host/pages/RecordingPage.h"
#include "tests/support/host/TestModule.h"

namespace vblur::host {
namespace {

using Kind = ModuleControlKind;

std::vector<ModuleControl> AllKinds() {
  return {ShownControl(1, Kind::Static, "Blur", {17, 29, 39, 8}),
          ShownControl(2, Kind::Group, "Blending", {6, 87, 177, 55}),
          ShownControl(ModuleControl::kNoId, Kind::Picture),
          ShownControl(4, Kind::PushButton, "Reset", {73, 148, 44, 10}),
          ShownControl(5, Kind::CheckBox, "Hide Overlay Controls"),
          ShownControl(6, Kind::List, ""),
          ShownControl(7, Kind::Static, "Blur;class=dsnewnumberctrl;min=0;max=720", {17, 38, 156, 12}),
          ShownControl(8, Kind::Static, ";class=dsnewcolorchipctrl;auto=1")};
}

TEST(PageDialog, MakesAControlOfEachKind) {
  RecordingPage page;
  const auto dialog = ShownDialog(page, AllKinds());
  struct Row {
    PageWindowKind kind;
    std::string_view className;
    std::u16string_view text;
  };
  const std::array<Row, 8> rows{{{PageWindowKind::Label, "Static", u"Blur"},
                                 {PageWindowKind::Group, "Button", u"Blending"},
                                 {PageWindowKind::Picture, "Static", u""},
                                 {PageWindowKind::Button, "Button", u"Reset"},
                                 {PageWindowKind::CheckBox, "Button", u"Hide Overlay Controls"},
                                 {PageWindowKind::List, "ComboBox", u""},
                                 {PageWindowKind::Number, "dsnewnumberctrl", u"Blur"},
                                 {PageWindowKind::ColourChip, "dsnewcolorchipctrl", u""}}};
  ASSERT_EQ(dialog->Items().size(), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const PageWindow& item = *dialog->Items()[i];
    EXPECT_EQ(item.Kind(), rows[i].kind) << i;
    EXPECT_EQ(item.ClassName(), rows[i].className) << i;
    EXPECT_EQ(item.Text(), rows[i].text) << i;
    EXPECT_EQ(&item.Dialog(), dialog.get()) << i;
  }
  EXPECT_EQ(dialog->Kind(), PageWindowKind::Dialog);
  EXPECT_EQ(dialog->ClassName(), "Dialog");
}

TEST(PageDialog, FindsItemsByIdButNoneWithoutOne) {
  RecordingPage page;
  const auto dialog = ShownDialog(page, {ShownControl(ModuleControl::kNoId, Kind::Static, "a"),
                                         ShownControl(3, Kind::Static, "b"), ShownControl(3, Kind::Static, "c")});
  EXPECT_EQ(GetDlgItem(dialog->Handle(), 3), dialog->Items()[1]->Handle()) << "the first of several";
  EXPECT_EQ(dialog->Item(ModuleControl::kNoId), nullptr);
  EXPECT_EQ(GetDlgItem(dialog->Handle(), 4), nullptr);
}

TEST(PageDialog, HasItsResourcesSizeAndFont) {
  RecordingPage page;
  const auto dialog = ShownDialog(page, AllKinds());
  EXPECT_EQ(dialog->Id(), kDialogNumber);
  EXPECT_EQ(dialog->Area(), (DialogRectangle{0, 0, 190, 160}));
  EXPECT_EQ(dialog->AreaInPixels({6, 13}), (PixelRectangle{0, 0, 285, 260}));
  EXPECT_EQ(dialog->FontName(), "Arial");
  EXPECT_EQ(dialog->FontPoints(), 11);
  EXPECT_EQ(dialog->Item(7)->Area(), (DialogRectangle{17, 38, 156, 12}));
  EXPECT_EQ(dialog->Item(7)->AreaInPixels({6, 13}), (PixelRectangle{26, 62, 234, 20}));
}

TEST(PageDialog, IsHiddenUntilItIsShown) {
  RecordingPage page;
  const auto controls = AllKinds();
  const auto dialog =
      PageDialog::Make({kDialogNumber, 190, 160, "Arial", 11, WS_CHILD | WS_VISIBLE, controls}, page, nullptr);
  RecordingObserver observer;
  dialog->AddObserver(observer);
  EXPECT_FALSE(dialog->IsVisible());
  dialog->Show(true);
  dialog->Show(true);
  EXPECT_TRUE(dialog->IsVisible());
  EXPECT_EQ(observer.Taken(), (std::vector<std::int32_t>{kDialogNumber}));
}

TEST(PageDialog, TakesPicturesFromTheModule) {
  constexpr std::array<std::uint8_t, 4> kPixel{1, 2, 3, 4};
  const std::array<ModuleBitmap, 1> bitmaps{{{103, 1, 1, kPixel}}};
  const Module record{{}, bitmaps, {}};
  const TestModule module(record);
  ModuleControl logo = ShownControl(1, Kind::Picture);
  logo.bitmap = 103;
  ModuleControl missing = ShownControl(2, Kind::Picture);
  missing.bitmap = 104;
  RecordingPage page;
  const auto dialog = ShownDialog(page, {logo, missing}, module.Handle());
  EXPECT_NE(dynamic_cast<PictureControl&>(*dialog->Item(1)).Bitmap(), nullptr);
  EXPECT_EQ(dynamic_cast<PictureControl&>(*dialog->Item(2)).Bitmap(), nullptr);
  const auto without = ShownDialog(page, {logo});
  EXPECT_EQ(dynamic_cast<PictureControl&>(*without->Item(1)).Bitmap(), nullptr);
}

TEST(PageDialog, StopsAtThoseThatTakeInputInTheirOrder) {
  RecordingPage page;
  ModuleControl label = ShownControl(2, Kind::Static, "Blur");
  label.style &= ~WS_TABSTOP;
  const auto dialog = ShownDialog(page, {ShownControl(1, Kind::PushButton), label, ShownControl(3, Kind::CheckBox),
                                         ShownControl(4, Kind::List), ShownControl(5, Kind::PushButton)});
  const auto item = [&](std::int32_t id) { return dialog->Item(id); };
  item(4)->Enable(false);
  EXPECT_EQ(dialog->NextStop(nullptr), item(1));
  EXPECT_EQ(dialog->NextStop(item(1)), item(3));
  EXPECT_EQ(dialog->NextStop(item(2)), item(3));
  EXPECT_EQ(dialog->NextStop(item(3)), item(5));
  EXPECT_EQ(dialog->NextStop(item(5)), item(1));
  EXPECT_EQ(dialog->PreviousStop(nullptr), item(5));
  EXPECT_EQ(dialog->PreviousStop(item(5)), item(3));
  EXPECT_EQ(dialog->PreviousStop(item(1)), item(5));
  item(1)->Show(false);
  item(3)->Enable(false);
  EXPECT_EQ(dialog->NextStop(item(5)), item(5)) << "it is the only one";
  dialog->Show(false);
  EXPECT_EQ(dialog->NextStop(nullptr), nullptr);
  EXPECT_EQ(dialog->PreviousStop(item(5)), nullptr);
}

TEST(PageDialog, HasNoStopsWithoutControls) {
  RecordingPage page;
  const auto dialog = ShownDialog(page, {});
  EXPECT_EQ(dialog->NextStop(nullptr), nullptr);
  EXPECT_EQ(dialog->PreviousStop(nullptr), nullptr);
}

TEST(PageDialog, SendsNothingOnceClosed) {
  RecordingPage page;
  const auto dialog = ShownDialog(page, {ShownControl(4, Kind::PushButton)});
  EXPECT_TRUE(dialog->IsOpen());
  dialog->Close();
  EXPECT_FALSE(dialog->IsOpen());
  EXPECT_EQ(dialog->SendToPage(WM_COMMAND, 4, 0), 0);
  EXPECT_FALSE(dynamic_cast<ButtonControl&>(*dialog->Item(4)).Press());
  EXPECT_EQ(page.Taken(), Messages{});
}

TEST(PageDialog, OutlivesAMessageThatDropsIt) {
  for (const bool scrubs : {false, true}) {
    RecordingPage page;
    auto dialog = ShownDialog(page, {ShownControl(7, Kind::Static, "Blur;class=dsnewnumberctrl")});
    auto& number = dynamic_cast<NumberControl&>(*dialog->Item(7));
    const std::weak_ptr<PageDialog> watched = dialog;
    if (scrubs) number.BeginScrub();
    page.Taken();
    page.onMessage = [&](const std::string&) {
      dialog->Close();
      dialog.reset();
      EXPECT_FALSE(watched.expired());
    };
    if (scrubs) {
      EXPECT_TRUE(number.Scrub(3));
    } else {
      EXPECT_EQ(number.Type("3"), std::nullopt);
    }
    EXPECT_EQ(page.Taken(), (Messages{"notify 7"})) << "nothing follows";
    EXPECT_TRUE(watched.expired());
  }
}

TEST(PageDialog, LetsThePageChangeControlsDuringAMessage) {
  RecordingPage page;
  const auto dialog = ShownDialog(page, {ShownControl(6, Kind::List), ShownControl(7, Kind::PushButton)});
  auto& list = dynamic_cast<ListControl&>(*dialog->Item(6));
  for (const char16_t* entry : {u"None", u"Mix"})
    SendText(list.Handle(), CB_ADDSTRING, entry);
  page.onMessage = [&](const std::string&) {
    SendMessageW(list.Handle(), CB_RESETCONTENT, 0, 0);
    EnableWindow(list.Handle(), false);
    EnableWindow(GetDlgItem(dialog->Handle(), 7), false);
  };
  EXPECT_TRUE(list.Choose(1));
  EXPECT_EQ(list.Selected(), ListControl::kNone);
  EXPECT_EQ(list.Entries().size(), 0u);
  EXPECT_FALSE(list.ChooseNext());
  EXPECT_EQ(page.Taken(), (Messages{"command 6 1"}));
  EXPECT_EQ(dialog->NextStop(nullptr), nullptr);
}

}  // namespace
}  // namespace vblur::host
