#include "host/pages/EffectPages.h"

#include <algorithm>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/base/Utf8.h"
#include "host/pages/Desktop.h"
#include "host/properties/PropertyStore.h"
#include "host/properties/PropertyText.h"
#include "platform/CDSPlugInEffect.h"
#include "properties/PageNames.h"

namespace vblur::host {

namespace {

const pages::NamedPage& PageNamed(std::string_view name) {
  const auto found = std::ranges::find_if(
      pages::kNamed, [name](const pages::NamedPage& page) { return EqualIgnoringCase(page.name, name); });
  if (found == pages::kNamed.end()) throw Failure(ExitCode::WrongUsage, UnknownName("page", name, pages::kAll));
  return *found;
}

}  // namespace

std::string OpenedPage::Title() const {
  return Utf8Of(info.title);
}

const Property* OpenedPage::PropertyOf(const PageWindow& control) const {
  const CDSPPGControlMapEntry* const entry =
      info.controls == nullptr || control.Id() == ModuleControl::kNoId ? nullptr : info.controls->Find(control.Id());
  return entry == nullptr ? nullptr : FindProperty(entry->property);
}

std::string OpenedPage::NameOf(const PageWindow& control) const {
  const Property* const property = PropertyOf(control);
  return property == nullptr ? Utf8Of(control.Text()) : std::string(property->name);
}

EffectPages::EffectPages(IDSProperties& effect, UndoHistory& history, CallTrace* trace)
    : effect_(&effect), history_(history), trace_(trace) {
  if (trace != nullptr) shell_.emplace(trace);
}

EffectPages::~EffectPages() {
  CloseAll();
}

template <typename Call>
HRESULT EffectPages::Made(const OpenedPage& page, const std::string& text, Call call) const {
  return NotedCall(
      trace_, page.name, [&] { return text; }, call);
}

std::vector<std::string_view> EffectPages::Listed() const {
  std::vector<std::string_view> names;
  const auto generic = effect_.As<IDSGeneric>();
  std::int32_t count = 0;
  if (!generic || generic->GetPageCount(&count) != kOk) return names;
  for (std::int32_t i = 0; i < count; ++i) {
    GUID clsid;
    if (generic->GetPage(i, &clsid) == kOk) names.push_back(pages::NameOf(clsid));
  }
  return names;
}

void EffectPages::RequireListed(std::string_view name, const std::string& place) const {
  const auto listed = Listed();
  const auto is = [name](std::string_view each) { return EqualIgnoringCase(each, name); };
  if (std::ranges::any_of(listed, is)) return;
  if (listed.empty()) Refuse(place, "the effect has no pages in this use, found " + Quoted(name));
  std::string names;
  for (const std::string_view each : listed)
    names.append(names.empty() ? "" : ", ").append(each);
  Refuse(place, "expected one of the pages " + names + ", found " + Quoted(name));
}

OpenedPage* EffectPages::Find(std::string_view name) {
  const auto found = std::ranges::find_if(
      opened_, [name](const std::unique_ptr<OpenedPage>& page) { return EqualIgnoringCase(page->name, name); });
  return found == opened_.end() ? nullptr : found->get();
}

OpenedPage& EffectPages::Open(const GUID& clsid, std::string_view name) {
  if (!HasDesktop()) {
    throw Failure(ExitCode::SomeFramesFailed, "the page " + std::string(name) +
                                                  " cannot be shown: the session has no desktop, expected one where " +
                                                  "windows can be made, also those that nobody sees");
  }
  auto opened = std::make_unique<OpenedPage>();
  opened->name = name;
  const auto require = [&](const char* call, HRESULT result) {
    if (result >= 0) return;
    End(*opened);
    throw Failure(ExitCode::SomeFramesFailed,
                  "the page " + opened->name + " cannot be shown: " + call + " returns " + FormatResult(result));
  };
  OpenedPage& page = *opened;
  require("CoCreateInstance", Made(page, "CoCreateInstance()", [&] {
            return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IDSPropertyPage::kIid, page.page.Receive());
          }));
  IUnknown* const object = effect_.get();
  require("SetSite", Made(page, "SetSite()", [&] { return page.page->SetSite(this); }));
  require("SetObjects", Made(page, "SetObjects(1)", [&] { return page.page->SetObjects(1, &object); }));
  require("GetPageInfo", Made(page, "GetPageInfo()", [&] { return page.page->GetPageInfo(&page.info); }));
  const std::size_t before = dialogs_.size();
  require("Activate", Made(page, "Activate()", [&] { return page.page->Activate(); }));
  if (dialogs_.size() <= before) require("MakeDialog", kFailed);
  page.dialog = dialogs_.back();
  page.dialog->UseTrace(trace_, page.name);
  require("Refresh", Made(page, "Refresh()", [&] { return page.page->Refresh(); }));
  opened_.push_back(std::move(opened));
  return page;
}

OpenedPage& EffectPages::Show(std::string_view name) {
  const pages::NamedPage& named = PageNamed(name);
  OpenedPage* page = Find(named.name);
  if (page == nullptr) page = &Open(named.clsid, named.name);
  if (front_ != nullptr && front_ != page) {
    OpenedPage& behind = *std::exchange(front_, nullptr);
    Made(behind, "Show(" + std::to_string(SW_HIDE) + ")", [&] { return behind.page->Show(SW_HIDE); });
  }
  front_ = page;
  Made(*page, "Show(" + std::to_string(SW_SHOW) + ")", [&] { return page->page->Show(SW_SHOW); });
  return *page;
}

void EffectPages::End(OpenedPage& page) {
  if (!page.page) return;
  Made(page, "Deactivate()", [&] { return page.page->Deactivate(); });
  page.page->SetSite(nullptr);
  page.page.reset();
}

void EffectPages::Close(std::string_view name) {
  OpenedPage* const page = Find(name);
  if (page == nullptr) return;
  if (front_ == page) front_ = nullptr;
  const auto at = std::ranges::find_if(opened_, [page](const auto& each) { return each.get() == page; });
  const std::unique_ptr<OpenedPage> last = std::move(*at);
  opened_.erase(at);
  End(*last);
}

void EffectPages::CloseAll() {
  while (!opened_.empty())
    Close(opened_.back()->name);
}

void EffectPages::SetTime(double time) {
  time_ = time;
  // By index: who observes a window may open another page.
  for (std::size_t i = 0; i < opened_.size(); ++i) {
    const OpenedPage& opened = *opened_[i];
    Made(opened, "UpdateAnimatedControls(" + FormatNumber(time) + ")",
         [&] { return opened.page->UpdateAnimatedControls(time); });
  }
}

HWND EffectPages::MakeDialog(HMODULE module, std::int32_t dialog, IDSPropertyPage& page) {
  auto made = PageDialog::Make(module, dialog, page);
  if (made == nullptr) return nullptr;
  dialogs_.push_back(std::move(made));
  return dialogs_.back()->Handle();
}

void EffectPages::DropDialog(HWND dialog) {
  const auto found = std::ranges::find_if(dialogs_, [dialog](const auto& each) { return each->Handle() == dialog; });
  if (found == dialogs_.end()) return;
  const auto last = *found;
  dialogs_.erase(found);
  last->Close();
}

void EffectPages::ShowDialog(HWND dialog, bool show) {
  const auto found = std::ranges::find_if(dialogs_, [dialog](const auto& each) { return each->Handle() == dialog; });
  if (found == dialogs_.end()) return;
  // Who observes a window may open another page.
  const auto shown = *found;
  shown->Show(show);
}

void EffectPages::OnPropertyAccess(const char* call, const GUID& property, double value, double time, HRESULT result) {
  if (trace_ == nullptr) return;
  const Property* const known = FindProperty(property);
  const std::string name = known == nullptr ? FormatGuid(property) : std::string(known->name);
  trace_->Note("page", std::string(call) + "(" + name + ", " + FormatNumber(value) + ", " + FormatNumber(time) + ")",
               result, 0.0);
}

}  // namespace vblur::host
