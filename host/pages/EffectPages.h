// The property pages of one effect, as a program shows them: made by their class ids, one in front at a time, all of
// them following the effect's properties and the time. User-interface thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/hosted/CallTrace.h"
#include "host/pages/PageDialog.h"
#include "host/pages/TracedShell.h"
#include "host/pages/TracedUndo.h"
#include "host/pages/UndoHistory.h"
#include "platform/CDSPropertyPage.h"
#include "platform/ComPtr.h"
#include "platform/IDSProperties.h"

namespace vblur::host {

// An open page. Its controls act while it is in front.
struct OpenedPage {
  std::string name;
  ComPtr<IDSPropertyPage> page;
  std::shared_ptr<PageDialog> dialog;
  DSPageInfo info;

  std::string Title() const;
  // The property that the control map ties a control to; null for none.
  const Property* PropertyOf(const PageWindow& control) const;
  // The control's name: its property's, else its text.
  std::string NameOf(const PageWindow& control) const;
};

class EffectPages final : private IDSPageSite {
 public:
  // History and trace are borrowed; the trace may be null. The effect is counted.
  EffectPages(IDSProperties& effect, UndoHistory& history, CallTrace* trace = nullptr);
  // Closes all.
  ~EffectPages() override;
  EffectPages(const EffectPages&) = delete;
  EffectPages& operator=(const EffectPages&) = delete;

  // The names of the pages that the effect lists for its use, in their order.
  std::vector<std::string_view> Listed() const;
  // Throws Failure (wrong usage) for a page that the effect does not list: `PLACE: expected one of the pages A, B,
  // found "C"`.
  void RequireListed(std::string_view name, const std::string& place) const;

  // Opens a page, or takes the one that is open, and brings it to the front; the one that was there is hidden. Throws
  // Failure: wrong usage for a name that no page has, some frames failed for a page that cannot be made.
  OpenedPage& Show(std::string_view name);
  void Close(std::string_view name);
  void CloseAll();
  // Null while none is.
  OpenedPage* Front() { return front_; }
  OpenedPage* Find(std::string_view name);
  std::size_t Count() const { return opened_.size(); }
  // Null for none.
  CallTrace* Trace() const { return trace_; }

  // The time at which values are shown and keys are set.
  void SetTime(double time);
  double CurrentTime() override { return time_; }

 private:
  HWND MakeDialog(HMODULE module, std::int32_t dialog, IDSPropertyPage& page) override;
  void DropDialog(HWND dialog) override;
  void ShowDialog(HWND dialog, bool show) override;
  IDSUndo* Undo() override { return &tracedHistory_; }
  void OnPropertyAccess(const char* call, const GUID& property, double value, double time, HRESULT result) override;

  OpenedPage& Open(const GUID& clsid, std::string_view name);
  template <typename Call>
  HRESULT Made(const OpenedPage& page, const std::string& text, Call call) const;
  void End(OpenedPage& page);

  ComPtr<IDSProperties> effect_;
  UndoHistory& history_;
  CallTrace* const trace_;
  TracedUndo tracedHistory_{history_, trace_};
  // Without a trace the program's own answers stay.
  std::optional<TracedShell> shell_;
  double time_ = 0.0;
  std::vector<std::unique_ptr<OpenedPage>> opened_;
  OpenedPage* front_ = nullptr;
  std::vector<std::shared_ptr<PageDialog>> dialogs_;
};

}  // namespace vblur::host
