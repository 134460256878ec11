#include "tests/fuzz/PageFuzz.h"

#include <limits>

#include "host/base/Failure.h"
#include "host/pages/ButtonControl.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/ListControl.h"
#include "host/pages/NumberControl.h"
#include "host/pages/PageForm.h"
#include "host/properties/PropertyText.h"
#include "properties/PageNames.h"
#include "properties/PropertyTable.h"
#include "tests/fuzz/OddNumber.h"
#include "tests/fuzz/WeightedChoice.h"

namespace vblur::test {

struct PageFuzz::Action {
  const char* name;
  int weight;
  void (PageFuzz::*act)();
  Within within = Within::Anything;
};

// Acts from within notices of properties.
class PageFuzz::Listener : public IDSPropertyNotify {
 public:
  explicit Listener(PageFuzz& fuzz) : fuzz_(fuzz) {}
  ~Listener() override { MoveTo(nullptr); }

  void MoveTo(Blur* effect) {
    if (effect_) effect_->Unadvise(this);
    effect_ = ComPtr<Blur>(effect);
    if (effect_) effect_->Advise(this);
  }

  void OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) override {
    constexpr int kDeepest = 2;
    if (fuzz_.listening_ == kDeepest || !fuzz_.Chance(5)) return;
    ++fuzz_.listening_;
    fuzz_.Step();
    --fuzz_.listening_;
  }

 private:
  PageFuzz& fuzz_;
  ComPtr<Blur> effect_;
};

// Acts from within notices of windows, which must not drop a dialog.
class PageFuzz::Observer : public host::PageObserver {
 public:
  explicit Observer(PageFuzz& fuzz) : fuzz_(fuzz) {}

  void OnWindowChanged(host::PageWindow&) override {
    if (fuzz_.observing_ != 0 || !fuzz_.Chance(4)) return;
    ++fuzz_.observing_;
    fuzz_.Step();
    --fuzz_.observing_;
  }

 private:
  PageFuzz& fuzz_;
};

PageFuzz::PageFuzz(Random& random, std::span<const ComPtr<Blur>> effects, std::span<const ComPtr<host::Viewer>> viewers)
    : random_(random),
      effects_(effects),
      viewers_(viewers),
      listener_(std::make_unique<Listener>(*this)),
      observer_(std::make_unique<Observer>(*this)),
      raw_(random) {}

PageFuzz::~PageFuzz() {
  if (Chance(2)) listener_->MoveTo(nullptr);
  for (auto& history : histories_) {
    if (Chance(2)) Release(history);
  }
  for (Program& program : programs_)
    End(program);
  listener_->MoveTo(nullptr);
  for (auto& history : histories_)
    Release(history);
}

const char* PageFuzz::Step() {
  static constexpr std::array kActions = {
      Action{"programs with pages started", 8, &PageFuzz::StartProgram},
      Action{"programs with pages ended", 2, &PageFuzz::EndProgram, Within::Nothing},
      Action{"property pages shown", 30, &PageFuzz::ShowPage},
      Action{"property pages closed", 6, &PageFuzz::ClosePage, Within::Listeners},
      Action{"all property pages closed", 2, &PageFuzz::ClosePages, Within::Listeners},
      Action{"numbers typed", 30, &PageFuzz::TypeNumber},
      Action{"keys pressed", 16, &PageFuzz::PressKey},
      Action{"moves of scrubs", 40, &PageFuzz::ScrubNumber},
      Action{"entries chosen", 20, &PageFuzz::ChooseEntry},
      Action{"boxes ticked", 10, &PageFuzz::TickBox},
      Action{"colours picked", 10, &PageFuzz::PickColour},
      Action{"buttons pressed", 12, &PageFuzz::PressButton},
      Action{"windows disturbed", 12, &PageFuzz::DisturbWindow},
      Action{"pages read", 4, &PageFuzz::ReadPage},
      Action{"times of pages", 8, &PageFuzz::ChangeTime},
      Action{"undos and redos", 24, &PageFuzz::UndoOrRedo},
      Action{"steps begun or ended", 6, &PageFuzz::BeginOrEndStep},
      Action{"histories kept or let go", 2, &PageFuzz::KeepHistory, Within::Nothing},
      Action{"histories of viewers and sites", 3, &PageFuzz::UseUndo},
      Action{"defaults put", 3, &PageFuzz::PutDefaults},
      Action{"values of any property put", 12, &PageFuzz::PutAnyValue},
      Action{"keys put", 6, &PageFuzz::PutKey},
      Action{"listeners moved", 3, &PageFuzz::MoveListener},
      Action{"observers moved", 24, &PageFuzz::MoveObserver},
      Action{"calls of raw pages", 60, &PageFuzz::CallRawPage},
  };
  const Action& action = ChooseWeighted(kActions, random_);
  const bool isAllowed = action.within == Within::Anything || (observing_ == 0 && listening_ == 0) ||
                         (action.within == Within::Listeners && observing_ == 0);
  if (isAllowed) (this->*action.act)();
  return action.name;
}

double PageFuzz::Number() {
  return OddNumber(random_);
}

host::UndoHistory* PageFuzz::SomeHistory() {
  return Chance(3) ? Some(histories_).get() : Some(programs_).history.get();
}

host::PageDialog* PageFuzz::SomeDialog() {
  if (Chance(4)) return raw_.SomeDialog();
  host::EffectPages* const pages = SomePages();
  if (pages == nullptr) return nullptr;
  const host::OpenedPage* const page = Chance(6) ? pages->Find(Some(pages::kAll)) : pages->Front();
  return page == nullptr ? nullptr : page->dialog.get();
}

host::PageWindow* PageFuzz::SomeWindow() {
  host::PageDialog* const dialog = SomeDialog();
  if (dialog == nullptr || Chance(8)) return dialog;
  return Some(dialog->Items()).get();
}

template <class Control>
Control* PageFuzz::SomeControl() {
  host::PageDialog* const dialog = SomeDialog();
  if (dialog == nullptr) return nullptr;
  std::vector<Control*> controls;
  for (const auto& item : dialog->Items()) {
    if (auto* const control = dynamic_cast<Control*>(item.get()); control != nullptr) controls.push_back(control);
  }
  return controls.empty() ? nullptr : Some(controls);
}

void PageFuzz::Release(std::unique_ptr<host::UndoHistory>& history) {
  if (!history) return;
  for (const auto& viewer : viewers_) {
    if (viewer) viewer->UseUndo(nullptr);
  }
  if (raw_.Undo() == history.get()) raw_.UseUndo(nullptr);
  history.reset();
}

void PageFuzz::End(Program& program) {
  program.pages.reset();
  // Unless what happened meanwhile has opened others.
  if (!program.pages) Release(program.history);
}

void PageFuzz::StartProgram() {
  Program& program = Some(programs_);
  Blur* const effect = SomeEffect();
  if (program.pages || effect == nullptr) return;
  // Of the history of another effect, too: it is only told of steps.
  if (!program.history) program.history = std::make_unique<host::UndoHistory>(*effect);
  program.pages = std::make_unique<host::EffectPages>(*effect, *program.history);
}

void PageFuzz::EndProgram() {
  End(Some(programs_));
}

void PageFuzz::ShowPage() {
  host::EffectPages* const pages = SomePages();
  if (pages == nullptr) return;
  try {
    pages->Show(Chance(16) ? "no such page" : Some(pages::kAll));
  } catch (const host::Failure&) {
  }
}

void PageFuzz::ClosePage() {
  if (host::EffectPages* const pages = SomePages(); pages != nullptr) pages->Close(Some(pages::kAll));
}

void PageFuzz::ClosePages() {
  auto& pages = Some(programs_).pages;
  if (!pages) return;
  if (Chance(2)) return pages->CloseAll();
  // The place first: what happens at the end may come back here.
  const auto last = std::move(pages);
}

std::string PageFuzz::NumberText() {
  constexpr std::array kTexts = {"",      "24",     "-3",        "50%",      "+= 5",      "-= 1e308", "*= 1e308",
                                 "/= 0",  "1e999",  "nan",       "inf",      "-0",        "((((",     ")",
                                 "1,5",   "1e-320", "(1+2)*3/0", "+= 10%",   "*= 0%",     "2 * 3",    "/ 7",
                                 "1.5.2", "0x10",   "++1",       "-(3 - 4)", "1e9999999", "%"};
  switch (Roll(6)) {
    case 0: return host::FormatNumber(Number());
    case 1: return std::string(static_cast<std::size_t>(Roll(300)), Chance(2) ? '(' : '9');
    case 2: {
      std::string text(static_cast<std::size_t>(Roll(12)), ' ');
      for (char& character : text)
        character = static_cast<char>(Chance(3) ? Roll(256) - 128 : "0123456789.+-*/()e% ="[Roll(21)]);
      return text;
    }
    default: return Some(kTexts);
  }
}

void PageFuzz::TypeNumber() {
  if (auto* const number = SomeControl<host::NumberControl>(); number != nullptr) number->Type(NumberText());
}

void PageFuzz::PressKey() {
  auto* const number = SomeControl<host::NumberControl>();
  if (number != nullptr) number->Key(static_cast<host::NumberKey>(Roll(6)), static_cast<host::NumberStep>(Roll(3)));
}

// Many scrubs do not end.
void PageFuzz::ScrubNumber() {
  auto* const number = SomeControl<host::NumberControl>();
  if (number == nullptr) return;
  const int steps =
      Chance(8) ? (Chance(2) ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max()) : Roll(21) - 10;
  switch (Roll(8)) {
    case 0:
    case 1:
    case 2: number->BeginScrub(); break;
    case 3: number->EndScrub(); break;
    case 4: number->CancelScrub(); break;
    default: number->Scrub(steps, static_cast<host::NumberStep>(Roll(3))); break;
  }
}

void PageFuzz::ChooseEntry() {
  auto* const list = SomeControl<host::ListControl>();
  if (list == nullptr) return;
  switch (Roll(4)) {
    case 0: list->ChooseNext(); break;
    case 1: list->ChoosePrevious(); break;
    case 2: list->ChooseByLetter(static_cast<char16_t>(Chance(4) ? Roll(0x10000) : u'A' + Roll(26))); break;
    default: list->Choose(Roll(10) - 2); break;
  }
}

void PageFuzz::TickBox() {
  if (auto* const box = SomeControl<host::CheckBoxControl>(); box != nullptr) box->Toggle();
}

void PageFuzz::PickColour() {
  auto* const chip = SomeControl<host::ColourChipControl>();
  if (chip != nullptr) chip->PickColour(Roll(260) - 2, Roll(260) - 2, Roll(256));
}

void PageFuzz::PressButton() {
  if (auto* const button = SomeControl<host::ButtonControl>(); button != nullptr) button->Press();
}

void PageFuzz::DisturbWindow() {
  host::PageWindow* const window = SomeWindow();
  if (window == nullptr) return;
  switch (Roll(8)) {
    case 0: window->Show(!Chance(3)); break;
    case 1: EnableWindow(window->Handle(), !Chance(3)); break;
    case 2: window->Dialog().NextStop(Chance(2) ? nullptr : window); break;
    case 3: window->Dialog().PreviousStop(Chance(2) ? nullptr : window); break;
    default: SendToWindow(*window); break;
  }
}

void PageFuzz::SendToWindow(host::PageWindow& window) {
  std::array<char16_t, 20> text{};
  if (auto* const number = dynamic_cast<host::NumberControl*>(&window); number != nullptr && Chance(2)) {
    switch (Roll(3)) {
      case 0: number->SetRange(DSVariant::Of(Number()), DSVariant::Of(Number())); break;
      case 1: number->SetAnimationMark(static_cast<DSAnimationMark>(Roll(5) - 1)); break;
      default: number->SetValue(DSVariant::Of(Number())); break;
    }
    return;
  }
  switch (Roll(6)) {
    case 0:
      SendMessageW(window.Handle(), WM_GETTEXT, static_cast<WPARAM>(Roll(21)), reinterpret_cast<LPARAM>(text.data()));
      break;
    case 1: SendMessageW(window.Handle(), WM_SETTEXT, 0, Chance(3) ? 0 : reinterpret_cast<LPARAM>(u"Add")); break;
    case 2: SendMessageW(window.Handle(), CB_ADDSTRING, 0, Chance(3) ? 0 : reinterpret_cast<LPARAM>(u"Zoom")); break;
    case 3: SendMessageW(window.Handle(), CB_SETCURSEL, static_cast<WPARAM>(Roll(12) - 2), 0); break;
    case 4: SendMessageW(window.Handle(), CB_RESETCONTENT, 0, 0); break;
    default: SendMessageW(window.Handle(), BM_SETCHECK, static_cast<WPARAM>(Roll(3)), 0); break;
  }
}

void PageFuzz::ReadPage() {
  host::EffectPages* const pages = SomePages();
  if (pages != nullptr && pages->Front() != nullptr) host::FormatPage(*pages->Front(), pages->CurrentTime(), true);
}

void PageFuzz::ChangeTime() {
  const double time = Chance(2) ? static_cast<double>(Roll(4) * 10) : Number();
  if (host::EffectPages* const pages = SomePages(); pages != nullptr) pages->SetTime(time);
}

void PageFuzz::UndoOrRedo() {
  host::UndoHistory* const history = SomeHistory();
  if (history != nullptr) Chance(3) ? history->Redo() : history->Undo();
}

void PageFuzz::BeginOrEndStep() {
  host::UndoHistory* const history = SomeHistory();
  if (history == nullptr) return;
  switch (Roll(5)) {
    case 0: history->BeginStep(nullptr); break;
    case 1: history->BeginStep(u"Drag"); break;
    default: history->EndStep(); break;
  }
}

void PageFuzz::KeepHistory() {
  auto& history = Some(histories_);
  if (history) return Release(history);
  if (Blur* const effect = SomeEffect(); effect != nullptr) history = std::make_unique<host::UndoHistory>(*effect);
}

void PageFuzz::UseUndo() {
  host::UndoHistory* const history = Chance(4) ? nullptr : SomeHistory();
  if (Chance(2)) return raw_.UseUndo(history);
  if (const auto& viewer = Some(viewers_); viewer) viewer->UseUndo(history);
}

void PageFuzz::PutDefaults() {
  if (const ComPtr<Blur> effect(SomeEffect()); effect) effect->SetDefaults();
}

void PageFuzz::PutAnyValue() {
  const ComPtr<Blur> effect(SomeEffect());
  if (!effect) return;
  const DSVariant value = Chance(3) ? DSVariant::Of(Roll(12) - 2) : DSVariant::Of(Number());
  effect->PutValue(Some(kProperties).guid, value);
}

void PageFuzz::PutKey() {
  const ComPtr<Blur> effect(SomeEffect());
  if (!effect) return;
  const GUID& property = Some(kProperties).guid;
  switch (Roll(3)) {
    case 0: effect->RemoveCurve(property); break;
    case 1: effect->PutCurve(property, DSCurve{{{0.0, Number()}, {10.0, Number()}}}); break;
    default: effect->PutValueAt(property, Chance(2) ? 10.0 : Number(), DSVariant::Of(Number())); break;
  }
}

void PageFuzz::MoveListener() {
  listener_->MoveTo(SomeEffect());
}

void PageFuzz::MoveObserver() {
  // A dialog's observers are told of its controls too.
  host::PageWindow* const window = Chance(4) ? SomeWindow() : SomeDialog();
  if (window != nullptr) Chance(5) ? window->RemoveObserver(*observer_) : window->AddObserver(*observer_);
}

void PageFuzz::CallRawPage() {
  raw_.Call(SomeEffect(), Chance(2) ? nullptr : static_cast<IUnknown*>(Some(viewers_).get()), observing_ == 0);
}

}  // namespace vblur::test
