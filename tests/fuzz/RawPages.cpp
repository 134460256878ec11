#include "tests/fuzz/RawPages.h"

#include <algorithm>

#include "properties/PageNames.h"
#include "properties/PropertyTable.h"
#include "resources/Numbers.h"
#include "tests/fuzz/OddNumber.h"

namespace vblur::test {

class RawPages::Site : public IDSPageSite {
 public:
  explicit Site(Random& random) : random_(random) {}

  HWND MakeDialog(HMODULE module, std::int32_t dialog, IDSPropertyPage& page) override {
    auto made = host::PageDialog::Make(module, dialog, page);
    if (made == nullptr || random_.oneIn(10)) return nullptr;
    dialogs.push_back(std::move(made));
    return dialogs.back()->Handle();
  }
  void DropDialog(HWND dialog) override {
    const auto found = std::ranges::find_if(dialogs, [&](const auto& each) { return each->Handle() == dialog; });
    if (found == dialogs.end()) return;
    const auto last = *found;
    dialogs.erase(found);
    last->Close();
  }
  void ShowDialog(HWND dialog, bool show) override {
    const auto found = std::ranges::find_if(dialogs, [&](const auto& each) { return each->Handle() == dialog; });
    if (found == dialogs.end()) return;
    const auto held = *found;
    held->Show(show);
  }
  double CurrentTime() override { return random_.oneIn(3) ? OddNumber(random_) : time_; }
  IDSUndo* Undo() override { return undo; }
  void OnPropertyAccess(const char*, const GUID&, double, double time, HRESULT) override { time_ = time; }

  std::vector<std::shared_ptr<host::PageDialog>> dialogs;
  IDSUndo* undo = nullptr;

 private:
  Random& random_;
  double time_ = 0.0;
};

namespace {

constexpr std::array kNames = {kControlNotify, kControlNotifyComplete, kControlScrub, kControlToolTip};
constexpr std::array kControls = {
    resources::full_blur::kBlur,          resources::full_blur::kMethod,     resources::full_blur::kMixBack,
    resources::full_blur::kReset,         resources::transition_blur::kBlur, resources::transition_blur::kReset,
    resources::transition::kReset,        resources::help::kOnlineHelp,      resources::help::kHideOverlayControls,
    resources::full_crop::kCropLeft,      resources::full_crop::kRed,        resources::full_crop::kColourChip,
    resources::full_crop::kXEdgeMethod,   resources::full_crop::kReset,      resources::full_crop::kBlankCropped,
    resources::transition::kEffectScaling};

template <class Range>
const auto& OneOf(Random& random, const Range& range) {
  return range[static_cast<std::size_t>(random.within(0, static_cast<int>(std::size(range)) - 1))];
}

GUID SomeProperty(Random& random) {
  switch (random.within(0, 5)) {
    case 0: return GUID_ALL_PROPERTIES;
    case 1: return random.oneIn(2) ? GUID_NO_PROPERTY : classes::kBlur;
    default: return OneOf(random, kProperties).guid;
  }
}

DSVariant SomeValue(Random& random) {
  switch (random.within(0, 3)) {
    case 0: return DSVariant::Of(random.within(-3, 300));
    case 1: return {DSValueType::Boolean32, OddNumber(random), random.within(-1, 2)};
    default: return DSVariant::Of(OddNumber(random));
  }
}

}  // namespace

RawPages::RawPages(Random& random) : random_(random) {
  for (auto& site : sites_)
    site = std::make_unique<Site>(random);
}

RawPages::~RawPages() {
  for (auto& page : pages_)
    page.reset();
}

host::PageDialog* RawPages::SomeDialog() {
  const auto& dialogs = OneOf(random_, sites_)->dialogs;
  return dialogs.empty() ? nullptr : OneOf(random_, dialogs).get();
}

void RawPages::UseUndo(IDSUndo* undo) {
  for (const auto& site : sites_)
    site->undo = undo;
}

IDSUndo* RawPages::Undo() const {
  return sites_.front()->undo;
}

void RawPages::MakeOrRelease(ComPtr<IDSPropertyPage>& place) {
  if (place) {
    // The slot first: what the page does at its end may come back here.
    ComPtr<IDSPropertyPage> last;
    std::swap(last, place);
    return;
  }
  const GUID& clsid = Chance(12) ? classes::kHvTInteract : OneOf(random_, pages::kNamed).clsid;
  ComPtr<IDSPropertyPage> page;
  if (CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IDSPropertyPage::kIid, page.Receive()) == kOk) {
    place = page;
  }
}

void RawPages::SetSite(IDSPropertyPage& page) {
  page.SetSite(Chance(3) ? nullptr : OneOf(random_, sites_).get());
}

void RawPages::SetObjects(IDSPropertyPage& page, Blur* effect, IUnknown* stranger) {
  auto* const properties = static_cast<IDSProperties*>(effect);
  const std::array<IUnknown*, 3> objects = Chance(4) ? std::array<IUnknown*, 3>{stranger, properties, stranger}
                                                     : std::array<IUnknown*, 3>{properties, stranger, properties};
  switch (Roll(6)) {
    case 0: page.SetObjects(0, nullptr); break;
    case 1: page.SetObjects(Roll(6) - 2, nullptr); break;
    case 2: page.SetObjects(1 + Roll(3), objects.data()); break;
    default: page.SetObjects(1, objects.data()); break;
  }
}

void RawPages::Send(IDSPropertyPage& page) {
  const UINT message = Chance(2)   ? WM_COMMAND
                       : Chance(6) ? static_cast<UINT>(Roll(0x500))
                                   : RegisterWindowMessageW(OneOf(random_, kNames));
  const auto control = Chance(8) ? static_cast<WPARAM>(Roll(0x10000)) : static_cast<WPARAM>(OneOf(random_, kControls));
  const WPARAM what = Chance(3) ? static_cast<WPARAM>(Roll(3)) << 16 : 0;
  std::array<char16_t, 40> buffer{};
  const DSToolTipText text{Chance(6) ? nullptr : buffer.data(), Chance(6) ? Roll(2) - 1 : Roll(40)};
  LPARAM parameter = Roll(2);
  if (message == RegisterWindowMessageW(kControlToolTip)) {
    parameter = Chance(5) ? 0 : reinterpret_cast<LPARAM>(&text);
  }
  page.OnDialogMessage(message, control | what, parameter);
}

void RawPages::Tell(IDSPropertyPage& page) {
  const GUID property = SomeProperty(random_);
  const DSVariant value = SomeValue(random_);
  switch (Roll(4)) {
    case 0: page.UpdateAnimatedControls(OddNumber(random_)); break;
    case 1: page.Refresh(); break;
    default: page.PropertyChanged(property, Chance(2) ? nullptr : &value); break;
  }
}

void RawPages::Ask(IDSPropertyPage& page) {
  switch (Roll(4)) {
    case 0: {
      DSPageInfo info;
      page.GetPageInfo(Chance(4) ? nullptr : &info);
      break;
    }
    case 1: {
      ComPtr<IUnknown> unknown;
      page.QueryInterface(OneOf(random_, std::array{IUnknown::kIid, IDSProperties::kIid, classes::kBlur}),
                          Chance(6) ? nullptr : unknown.Receive());
      break;
    }
    default: page.Help(Chance(2) ? nullptr : u"/usr/share/doc"); break;
  }
}

void RawPages::Call(Blur* effect, IUnknown* stranger, bool mayDrop) {
  auto& place = pages_[static_cast<std::size_t>(Roll(static_cast<int>(pages_.size())))];
  if (!place || (mayDrop && Chance(24))) return mayDrop || !place ? MakeOrRelease(place) : void();
  // Callers keep what they call.
  const ComPtr<IDSPropertyPage> page = place;
  switch (Roll(16)) {
    case 0:
    case 1:
      if (mayDrop) SetSite(*page);
      break;
    case 2:
    case 3: SetObjects(*page, effect, stranger); break;
    case 4:
    case 5:
    case 6: page->Activate(); break;
    case 7:
      if (mayDrop) page->Deactivate();
      break;
    case 8: page->Show(Chance(4) ? static_cast<std::uint32_t>(Roll(12)) : (Chance(4) ? SW_HIDE : SW_SHOW)); break;
    case 9: Ask(*page); break;
    case 10:
    case 11: Tell(*page); break;
    default: Send(*page); break;
  }
}

}  // namespace vblur::test
