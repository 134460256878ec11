// The dialogs of the server's pages as the system makes them of the server's resources.
#include "host/pages/PageDialog.h"

#include <cstdlib>
#include <span>

#include "host/pages/ControlClasses.h"
#include "host/pages/DialogTemplate.h"
#include "host/pages/PageFrame.h"
#include "platform/PageControls.h"
#include "properties/PageNames.h"
#include "resources/Numbers.h"
#include "tests/host/pages/RecordingPage.h"
#include "tests/host/pages/SystemWindows_windows.h"
// After the system's header.
#include <commctrl.h>

namespace vblur::host {
namespace {

using namespace resources;

// As the resource compiler has written it into the server's file.
ReadDialog InServer(std::int32_t number) {
  const HMODULE server = ::GetModuleHandleW(L"V_Blur.dll");
  const HRSRC found = ::FindResourceW(server, MAKEINTRESOURCEW(static_cast<WORD>(number)), MAKEINTRESOURCEW(5));
  const auto* const bytes = static_cast<const std::byte*>(::LockResource(::LoadResource(server, found)));
  return ReadDialog::Of(number, std::span(bytes, ::SizeofResource(server, found))).value();
}

std::string ExpectedClass(const ModuleControl& control, const ControlText& text) {
  switch (control.kind) {
    case ModuleControlKind::List: return "ComboBox";
    case ModuleControlKind::Group:
    case ModuleControlKind::PushButton:
    case ModuleControlKind::CheckBox: return "Button";
    default: break;
  }
  return text.kind == PageWindowKind::Number       ? "dsnewnumberctrl"
         : text.kind == PageWindowKind::ColourChip ? "dsnewcolorchipctrl"
                                                   : "Static";
}

void ExpectPlace(HWND dialog, HWND window, const ModuleControl& control) {
  // Each by itself, as sizes are scaled.
  RECT at{control.x, control.y, control.width, control.height};
  ::MapDialogRect(dialog, &at);
  const RECT expected{at.left, at.top, at.left + at.right, at.top + at.bottom};
  RECT place{};
  ::GetWindowRect(window, &place);
  ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
  EXPECT_EQ(place.left, expected.left) << control.id;
  EXPECT_EQ(place.top, expected.top) << control.id;
  // A bitmap gives its window its own size, and a font its list's height.
  if (control.kind == ModuleControlKind::Picture) return;
  EXPECT_EQ(place.right, expected.right) << control.id;
  if (control.kind != ModuleControlKind::List) {
    EXPECT_EQ(place.bottom, expected.bottom) << control.id;
  }
}

TEST(PageDialog, IsMadeByTheSystemOfTheServersResources) {
  PagedEffect user(EffectKind::Other);
  for (const std::string_view name : pages::kAll) {
    SCOPED_TRACE(name);
    const OpenedPage& page = user.session.Pages().Show(name);
    const HWND dialog = page.dialog->Handle();
    EXPECT_EQ(ClassOf(dialog), "#32770") << "the system's class of dialogs";
    ReadDialog read = InServer(page.info.dialog);
    const ModuleDialog record = read.Record();
    EXPECT_EQ(record.width, 190);
    EXPECT_EQ(record.height, 160);
    EXPECT_EQ(record.font, "Arial");
    EXPECT_EQ(record.fontPoints, 11);
    HWND window = ::GetWindow(dialog, GW_CHILD);
    for (const ModuleControl& control : record.controls) {
      ASSERT_NE(window, nullptr) << control.id;
      const ControlText text = ReadControlText(control.text);
      EXPECT_EQ(ClassOf(window), ExpectedClass(control, text)) << control.id;
      EXPECT_EQ(::GetDlgCtrlID(window), control.id);
      const auto style = static_cast<std::uint32_t>(::GetWindowLongW(window, GWL_STYLE));
      // What drops down of a list has its scroll bar.
      const std::uint32_t own = control.style & ~(control.kind == ModuleControlKind::List ? WS_VSCROLL : 0u);
      EXPECT_EQ(style & own, own) << control.id;
      ExpectPlace(dialog, window, control);
      // Lists show entries, pictures have numbers, and the help page writes its texts itself.
      const bool isText = control.kind != ModuleControlKind::List && control.kind != ModuleControlKind::Picture;
      if (isText && (name != pages::kHelp || control.kind != ModuleControlKind::Static)) {
        EXPECT_EQ(TitleOf(window), text.caption);
      }
      const bool isHosts = text.kind != PageWindowKind::Label && control.kind == ModuleControlKind::Static;
      EXPECT_EQ(::GetPropW(window, L"DSCTLIFACE") != nullptr, isHosts) << control.id;
      window = ::GetWindow(window, GW_HWNDNEXT);
    }
    EXPECT_EQ(window, nullptr) << "nothing else is in it";
  }
}

TEST(PageDialog, AnswersTheControlsInterfacesThroughTheirWindows) {
  PagedEffect user;
  user.Do("show crop");
  const OpenedPage& page = user.Front();
  auto* const number = static_cast<IUnknown*>(::GetPropW(WindowOf(page, full_crop::kRed), L"DSCTLIFACE"));
  ComPtr<IDSNumberControl> red;
  ASSERT_EQ(number->QueryInterface(IDSNumberControl::kIid, red.Receive()), kOk);
  EXPECT_EQ(red->SetValue(DSVariant::Of(40.0)), kOk);
  EXPECT_EQ(user.Number("Crop Colour R"), 40.0);
  auto* const chip = static_cast<IUnknown*>(::GetPropW(WindowOf(page, full_crop::kColourChip), L"DSCTLIFACE"));
  ComPtr<IDSColourChip> colour;
  ASSERT_EQ(chip->QueryInterface(IDSColourChip::kIid, colour.Receive()), kOk);
  EXPECT_EQ(colour->SetColour(1, 2, 3, 4), kOk);
  EXPECT_EQ(user.Chip(), (std::array<std::int32_t, 4>{1, 2, 3, 4}));
}

TEST(PageDialog, EnablesByTheMixBackListAsItsKeysMoveIt) {
  PagedEffect user;
  user.Do("show FullBlurPPG");
  const OpenedPage& page = user.Front();
  const HWND list = WindowOf(page, full_blur::kMixBack);
  for (const std::int32_t id : {full_blur::kBlend, full_blur::kEffectGain, full_blur::kSourceGain})
    EXPECT_FALSE(::IsWindowEnabled(WindowOf(page, id))) << id;
  PressKey(list, VK_DOWN);
  EXPECT_EQ(user.ValueAt("Mix Back"), 1.0);
  for (const std::int32_t id : {full_blur::kBlend, full_blur::kEffectGain, full_blur::kSourceGain})
    EXPECT_TRUE(::IsWindowEnabled(WindowOf(page, id))) << id;
  PressKey(list, VK_END);
  EXPECT_EQ(user.Entry("Mix Back"), "HardLight");
  PressKey(list, VK_HOME);
  EXPECT_EQ(user.ValueAt("Mix Back"), 0.0);
  EXPECT_FALSE(::IsWindowEnabled(WindowOf(page, full_blur::kBlend)));
  EXPECT_EQ(user.History().UndoDepth(), 3u);
  EXPECT_TRUE(user.History().Undo());
  EXPECT_TRUE(::IsWindowEnabled(WindowOf(page, full_blur::kBlend))) << "the rule holds for an undo, too";
}

TEST(PageDialog, ResetsInOneStepWhenItsButtonIsClicked) {
  PagedEffect user;
  user.Do("show FullBlurPPG\nset Blur 33\nchoose Channels Red\nchoose \"Mix Back\" Screen\nset Blend 7");
  const std::size_t before = user.History().UndoDepth();
  const HWND button = WindowOf(user.Front(), full_blur::kReset);
  ::SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
  ::SendMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
  EXPECT_EQ(user.ValueAt("Blur"), 10.0);
  EXPECT_EQ(user.ValueAt("Channels"), 1.0);
  EXPECT_EQ(user.ValueAt("Blend"), 50.0);
  EXPECT_FALSE(::IsWindowEnabled(WindowOf(user.Front(), full_blur::kBlend)));
  EXPECT_EQ(user.History().UndoDepth(), before + 1);
  EXPECT_EQ(user.History().UndoName(), "Reset");
}

TEST(PageDialog, TicksItsBoxWhenItIsClicked) {
  PagedEffect user;
  user.Do("show crop");
  const HWND box = WindowOf(user.Front(), full_crop::kDisplayCropped);
  for (const double ticked : {1.0, 0.0}) {
    ::SendMessageW(box, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
    ::SendMessageW(box, WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
    EXPECT_EQ(user.ValueAt("Display Cropped"), ticked);
    EXPECT_EQ(::SendMessageW(box, BM_GETCHECK, 0, 0), ticked);
  }
}

TEST(PageDialog, HearsOnlyOfWhatAUserHasDone) {
  RecordingPage page;
  const auto dialog = ShownDialog(
      page, {ShownControl(4, ModuleControlKind::PushButton, "Go"), ShownControl(5, ModuleControlKind::List)});
  const auto tell = [&](std::int32_t id, int what) {
    const HWND from = dialog->Item(id)->Handle();
    ::SendMessageW(dialog->Handle(), WM_COMMAND, MAKEWPARAM(static_cast<WORD>(id), static_cast<WORD>(what)),
                   reinterpret_cast<LPARAM>(from));
  };
  for (const int what : {CBN_SETFOCUS, CBN_KILLFOCUS, CBN_DROPDOWN, CBN_CLOSEUP, CBN_SELENDOK})
    tell(5, what);
  tell(4, BN_SETFOCUS);
  ::SendMessageW(dialog->Handle(), WM_COMMAND, 4, 0);
  EXPECT_EQ(page.Taken(), Messages{});
  tell(5, CBN_SELCHANGE);
  EXPECT_EQ(page.Taken(), (Messages{"command 5 1"}));
}

TEST(PageDialog, MayBeDestroyedByTheSystem) {
  PagedEffect user;
  user.Do("show FullBlurPPG");
  const auto dialog = user.Front().dialog;
  auto& number = ControlOf<NumberControl>(user.Front(), "Blur");
  auto& list = ControlOf<ListControl>(user.Front(), "Mix Back");
  number.BeginScrub();
  ::DestroyWindow(dialog->Handle());
  EXPECT_FALSE(number.TakesInput());
  EXPECT_EQ(list.Entries().size(), 0u);
  EXPECT_EQ(list.Selected(), ListControl::kNone);
  EXPECT_EQ(dialog->Text(), u"");
  EXPECT_EQ(number.ToolTip(), u"");
  EXPECT_TRUE(number.EndScrub());
  EXPECT_NE(number.Type("3"), std::nullopt);
  EXPECT_FALSE(list.Choose(1));
  user.Put("Blur", 12.0);
  user.session.Pages().Close("FullBlurPPG");
  user.Do("show FullBlurPPG\nset Blur 44");
  EXPECT_EQ(user.ValueAt("Blur"), 44.0);
}

// The last place among the system's objects once all that are free are taken: more if some are never given back.
std::uint32_t LastGdiPlace() {
  std::vector<HBRUSH> brushes(3000);
  std::uint32_t last = 0;
  for (HBRUSH& brush : brushes) {
    brush = ::CreateSolidBrush(0);
    last = std::max(last, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(brush)) & 0xFFFF);
  }
  for (const HBRUSH brush : brushes)
    ::DeleteObject(brush);
  return last;
}

TEST(PageDialog, LeavesNothingBehind) {
  PagedEffect user;
  const auto openAll = [&] {
    user.Do("show FullBlurPPG\nset Blur 3\nshow crop\npick 1,2,3\nshow HelpPPG");
    user.session.Pages().CloseAll();
    Pump();
  };
  const auto userObjects = [] { return ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS); };
  const auto gdiObjects = [] { return ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS); };
  for (int i = 0; i < 5; ++i)
    openAll();
  const std::size_t windows = CountWindows();
  const std::uint32_t place = LastGdiPlace();
  const DWORD users = userObjects();
  const DWORD gdis = gdiObjects();
  for (int i = 0; i < 67; ++i)
    openAll();
  EXPECT_EQ(CountWindows(), windows);
  EXPECT_LE(LastGdiPlace(), place + 20);
  EXPECT_LE(userObjects(), users + 5);
  EXPECT_LE(gdiObjects(), gdis + 5);
}

// The classes of controls without one of them.
class MissingClass {
 public:
  explicit MissingClass(const wchar_t* name) {
    RegisterControlClasses();
    class_.cbSize = sizeof(class_);
    ::GetClassInfoExW(OwnModule(), name, &class_);
    class_.lpszClassName = name;
    EXPECT_TRUE(::UnregisterClassW(name, OwnModule()));
  }
  ~MissingClass() { EXPECT_NE(::RegisterClassExW(&class_), 0); }
  MissingClass(const MissingClass&) = delete;
  MissingClass& operator=(const MissingClass&) = delete;

 private:
  WNDCLASSEXW class_{};
};

TEST(PageDialog, IsNoneWithoutOneOfItsControls) {
  RecordingPage page;
  PageFrame::Hidden();
  const std::vector<ModuleControl> controls{ShownControl(1, ModuleControlKind::Static, "a"),
                                            ShownControl(2, ModuleControlKind::Static, ";class=dsnewcolorchipctrl"),
                                            ShownControl(3, ModuleControlKind::Static, ";class=dsnewnumberctrl")};
  const std::size_t windows = CountWindows();
  // A dialog that the system does not make, and one that it makes without the control.
  for (const std::uint32_t style : {0u, static_cast<std::uint32_t>(DS_NOFAILCREATE)}) {
    const MissingClass missing(L"dsnewnumberctrl");
    EXPECT_EQ(PageDialog::Make({kDialogNumber, 190, 160, "Arial", 11, WS_CHILD | style, controls}, page), nullptr);
    EXPECT_EQ(CountWindows(), windows) << style;
  }
  EXPECT_NE(PageDialog::Make({kDialogNumber, 190, 160, "Arial", 11, WS_CHILD, controls}, page), nullptr);
}

// The tool tips of a dialog's window.
HWND ToolTipsOf(HWND dialog) {
  struct Search {
    HWND dialog;
    HWND found = nullptr;
  } search{dialog};
  static constexpr auto kLook = [](HWND window, LPARAM searched) -> BOOL {
    auto& for_ = *reinterpret_cast<Search*>(searched);
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    if (ClassOf(window) != TOOLTIPS_CLASSA ||
        !::SendMessageW(window, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool)))
      return TRUE;
    if (tool.hwnd == for_.dialog) for_.found = window;
    return for_.found == nullptr ? TRUE : FALSE;
  };
  ::EnumThreadWindows(::GetCurrentThreadId(), kLook, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

TEST(PageDialog, GivesTheSystemTheTextsOfToolTips) {
  PagedEffect user(EffectKind::Other);
  std::size_t texts = 0;
  for (const std::string_view name : pages::kAll) {
    const OpenedPage& page = user.session.Pages().Show(name);
    const HWND tips = ToolTipsOf(page.dialog->Handle());
    ASSERT_NE(tips, nullptr) << name;
    for (const auto& item : page.dialog->Items()) {
      std::array<wchar_t, 1024> text{};
      TTTOOLINFOW tool{};
      tool.cbSize = TTTOOLINFOW_V1_SIZE;
      tool.hwnd = page.dialog->Handle();
      tool.uId = reinterpret_cast<UINT_PTR>(item->Handle());
      tool.lpszText = text.data();
      ::SendMessageW(tips, TTM_GETTEXTW, text.size(), reinterpret_cast<LPARAM>(&tool));
      const std::wstring shown(text.data());
      EXPECT_EQ(std::u16string(shown.begin(), shown.end()), item->ToolTip()) << name << " " << item->Id();
      texts += shown.empty() ? 0 : 1;
      if (name == pages::kFullBlur && item->Id() == full_blur::kBlur) {
        EXPECT_EQ(shown, L"Amount to blur by (in pixels).");
      }
    }
  }
  EXPECT_GT(texts, 30u);
}

TEST(PageDialog, IsNoneWithoutItsResource) {
  RecordingPage page;
  EXPECT_EQ(PageDialog::Make(::GetModuleHandleW(nullptr), 7, page), nullptr);
  EXPECT_EQ(PageDialog::Make(nullptr, 1, page), nullptr);
  const std::vector<std::byte> cut(20, std::byte{1});
  EXPECT_FALSE(ReadDialog::Of(1, cut));
}

}  // namespace
}  // namespace vblur::host
