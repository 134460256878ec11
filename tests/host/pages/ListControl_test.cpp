#include "host/pages/ListControl.h"

#include "tests/host/pages/RecordingPage.h"

namespace vblur::host {
namespace {

const std::vector<std::u16string> kNoEntries;

struct List : OneControl<ListControl> {
  explicit List(const std::vector<std::u16string>& entries = {u"Colour", u"Repeat", u"Reflect", u"wrap"})
      : OneControl(ModuleControlKind::List) {
    for (const std::u16string& entry : entries)
      SendText(control.Handle(), CB_ADDSTRING, entry.c_str());
    Changes();
  }
};

LRESULT Send(List& list, UINT message, WPARAM wParam = 0) {
  return SendMessageW(list.control.Handle(), message, wParam, 0);
}

TEST(ListControl, IsFilledByThePage) {
  List list(kNoEntries);
  EXPECT_EQ(Send(list, CB_GETCOUNT), 0);
  EXPECT_EQ(Send(list, CB_GETCURSEL), CB_ERR);
  EXPECT_EQ(SendText(list.control.Handle(), CB_ADDSTRING, u"Blur"), 0);
  EXPECT_EQ(SendText(list.control.Handle(), CB_ADDSTRING, u"Sharpen"), 1);
  EXPECT_EQ(SendText(list.control.Handle(), CB_ADDSTRING, nullptr), CB_ERR);
  EXPECT_EQ(list.Changes(), 2u);
  EXPECT_EQ(Send(list, CB_GETCOUNT), 2);
  EXPECT_EQ(Send(list, CB_GETCURSEL), CB_ERR) << "nothing is selected by itself";
  EXPECT_EQ(list.control.Entries(), (std::vector<std::u16string>{u"Blur", u"Sharpen"}));
  EXPECT_EQ(list.page.Taken(), Messages{});
}

TEST(ListControl, SelectsForThePageWithoutAMessage) {
  List list;
  EXPECT_EQ(Send(list, CB_SETCURSEL, 2), 2);
  EXPECT_EQ(Send(list, CB_GETCURSEL), 2);
  EXPECT_EQ(TextOf(list.control.Handle()), u"Reflect");
  EXPECT_EQ(list.Changes(), 1u);
  EXPECT_EQ(Send(list, CB_SETCURSEL, 2), 2);
  EXPECT_EQ(list.Changes(), 0u);
  for (const WPARAM missing : {WPARAM{4}, static_cast<WPARAM>(-1), WPARAM{1} << 32}) {
    Send(list, CB_SETCURSEL, 1);
    EXPECT_EQ(Send(list, CB_SETCURSEL, missing), CB_ERR);
    EXPECT_EQ(list.control.Selected(), ListControl::kNone);
    EXPECT_EQ(list.control.Text(), u"");
  }
  EXPECT_EQ(list.page.Taken(), Messages{});
}

TEST(ListControl, ShowsTheEntryOfAText) {
  List list({u"Mix", u"Hue", u"Mix"});
  EXPECT_EQ(SendText(list.control.Handle(), WM_SETTEXT, u"Hue"), 1);
  EXPECT_EQ(list.control.Selected(), 1);
  EXPECT_EQ(SendText(list.control.Handle(), WM_SETTEXT, u"Mix"), 1);
  EXPECT_EQ(list.control.Selected(), 0) << "the first of several";
  for (const char16_t* other : {u"mix", u"Mi", u""}) {
    EXPECT_EQ(SendText(list.control.Handle(), WM_SETTEXT, other), CB_ERR);
    EXPECT_EQ(list.control.Text(), u"Mix");
  }
  EXPECT_EQ(SendText(list.control.Handle(), WM_SETTEXT, nullptr), CB_ERR);
  EXPECT_EQ(list.page.Taken(), Messages{});
}

TEST(ListControl, EmptiesWithItsSelection) {
  List list;
  Send(list, CB_SETCURSEL, 1);
  list.Changes();
  Send(list, CB_RESETCONTENT);
  EXPECT_EQ(list.Changes(), 1u);
  EXPECT_EQ(Send(list, CB_GETCOUNT), 0);
  EXPECT_EQ(Send(list, CB_GETCURSEL), CB_ERR);
  EXPECT_EQ(TextOf(list.control.Handle()), u"");
  Send(list, CB_RESETCONTENT);
  EXPECT_EQ(list.Changes(), 0u) << "it is empty";
  List unselected;
  Send(unselected, CB_RESETCONTENT);
  EXPECT_EQ(unselected.Changes(), 1u);
}

TEST(ListControl, TellsThePageWhatAUserChooses) {
  List list;
  EXPECT_TRUE(list.control.Choose(3));
  EXPECT_EQ(list.control.Selected(), 3);
  EXPECT_EQ(list.control.Text(), u"wrap");
  EXPECT_EQ(list.Changes(), 1u);
  EXPECT_EQ(list.page.Taken(), (Messages{"command 5 1"}));
  EXPECT_TRUE(list.control.Choose(3));
  EXPECT_EQ(list.page.Taken(), Messages{}) << "it is the same";
  EXPECT_FALSE(list.control.Choose(4));
  EXPECT_FALSE(list.control.Choose(-1));
  EXPECT_EQ(list.control.Selected(), 3);
  EXPECT_EQ(list.page.Taken(), Messages{});
}

TEST(ListControl, ShowsTheChoiceBeforeThePageIsTold) {
  List list;
  LRESULT seen = CB_ERR;
  list.page.onMessage = [&](const std::string&) { seen = Send(list, CB_GETCURSEL); };
  list.control.Choose(2);
  EXPECT_EQ(seen, 2);
}

TEST(ListControl, StepsUpAndDown) {
  List list;
  EXPECT_TRUE(list.control.ChooseNext());
  EXPECT_EQ(list.control.Selected(), 0);
  EXPECT_TRUE(list.control.ChooseNext());
  EXPECT_EQ(list.control.Selected(), 1);
  EXPECT_TRUE(list.control.ChoosePrevious());
  EXPECT_EQ(list.control.Selected(), 0);
  EXPECT_EQ(list.page.Taken().size(), 3u);
  EXPECT_TRUE(list.control.ChoosePrevious());
  EXPECT_EQ(list.control.Selected(), 0);
  EXPECT_EQ(list.page.Taken(), Messages{}) << "the end";
  list.control.Choose(3);
  list.page.Taken();
  EXPECT_TRUE(list.control.ChooseNext());
  EXPECT_EQ(list.control.Selected(), 3);
  EXPECT_EQ(list.page.Taken(), Messages{});
  List other;
  EXPECT_TRUE(other.control.ChoosePrevious());
  EXPECT_EQ(other.control.Selected(), 0);
  List empty(kNoEntries);
  EXPECT_FALSE(empty.control.ChooseNext());
  EXPECT_FALSE(empty.control.ChoosePrevious());
  EXPECT_FALSE(empty.control.ChooseByLetter(u'a'));
}

TEST(ListControl, ChoosesByFirstLetterFromTheSelectionOn) {
  List list({u"Colour", u"Repeat", u"", u"Reflect", u"wrap", u"Ö"});
  const auto chosen = [&](char16_t letter) {
    list.control.ChooseByLetter(letter);
    return list.control.Selected();
  };
  EXPECT_EQ(chosen(u'r'), 1);
  EXPECT_EQ(chosen(u'R'), 3);
  EXPECT_EQ(chosen(u'r'), 1) << "from the top again";
  EXPECT_EQ(chosen(u'W'), 4);
  EXPECT_EQ(chosen(u'Ö'), 5);
  EXPECT_EQ(chosen(u'w'), 4);
  EXPECT_EQ(list.page.Taken().size(), 6u);
  EXPECT_FALSE(list.control.ChooseByLetter(u'x'));
  EXPECT_FALSE(list.control.ChooseByLetter(u'\0')) << "an empty entry begins with nothing";
  EXPECT_TRUE(list.control.ChooseByLetter(u'w')) << "itself, when no other begins with it";
  EXPECT_EQ(list.control.Selected(), 4);
  EXPECT_EQ(list.page.Taken(), Messages{});
}

TEST(ListControl, TakesNoInputWhileDisabledOrHidden) {
  List list;
  list.control.Enable(false);
  EXPECT_FALSE(list.control.Choose(1));
  EXPECT_FALSE(list.control.ChooseNext());
  EXPECT_FALSE(list.control.ChooseByLetter(u'c'));
  list.control.Enable(true);
  list.control.Show(false);
  EXPECT_FALSE(list.control.Choose(1));
  EXPECT_EQ(list.control.Selected(), ListControl::kNone);
  EXPECT_EQ(list.page.Taken(), Messages{});
  EXPECT_EQ(Send(list, CB_SETCURSEL, 1), 1) << "the page may select";
}

TEST(ListControl, SeesAnotherEntryOfTheSameText) {
  List list({u"Mix", u"Mix"});
  list.control.Choose(0);
  list.Changes();
  list.control.Choose(1);
  EXPECT_EQ(list.Changes(), 1u);
  EXPECT_EQ(list.page.Taken().size(), 2u);
}

TEST(ListControl, HoldsManyEntriesAndLongOnes) {
  List list(kNoEntries);
  const std::u16string longest(100'000, u'x');
  EXPECT_EQ(SendText(list.control.Handle(), CB_ADDSTRING, longest.c_str()), 0);
  for (int i = 1; i < 10'000; ++i)
    SendText(list.control.Handle(), CB_ADDSTRING, u"entry");
  EXPECT_EQ(Send(list, CB_GETCOUNT), 10'000);
  EXPECT_TRUE(list.control.Choose(9'999));
  EXPECT_TRUE(list.control.Choose(0));
  EXPECT_EQ(TextOf(list.control.Handle()), std::u16string(63, u'x'));
}

}  // namespace
}  // namespace vblur::host
