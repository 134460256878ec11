// A page's site that notes what the page asks of it. Dialogs are the host's own.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/base/Utf8.h"
#include "host/pages/ButtonControl.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/ListControl.h"
#include "host/pages/NumberControl.h"
#include "host/pages/PageDialog.h"
#include "host/pages/UndoHistory.h"
#include "host/properties/PropertyText.h"
#include "platform/CDSPropertyPage.h"

namespace vblur::host {

using Calls = std::vector<std::string>;

class RecordingSite final : public IDSPageSite, private IDSUndo {
 public:
  double time = 0.0;
  // Null: steps are noted, but not kept.
  UndoHistory* history = nullptr;
  bool hasUndo = true;
  bool makesDialogs = true;
  std::shared_ptr<PageDialog> dialog;

  // What was asked since the last call.
  Calls Taken() { return std::exchange(calls_, {}); }
  // The same without what reads and shows: steps and writes.
  Calls TakenChanges() {
    Calls changes = Taken();
    std::erase_if(changes, [](const std::string& call) {
      return !call.starts_with("begin") && !call.starts_with("Set") && call != "end";
    });
    return changes;
  }
  // To put other calls among them.
  void Note(std::string call) { calls_.push_back(std::move(call)); }

  // A control of the dialog; a wrong id or kind ends the test.
  template <class Control>
  Control& Of(std::int32_t id) {
    return dynamic_cast<Control&>(*dialog->Item(id));
  }

  HWND MakeDialog(HMODULE module, std::int32_t number, IDSPropertyPage& page) override {
    Note("make dialog " + std::to_string(number));
    auto made = makesDialogs ? PageDialog::Make(module, number, page) : nullptr;
    if (made == nullptr) return nullptr;
    dialog = std::move(made);
    return dialog->Handle();
  }
  void DropDialog(HWND) override {
    Note("drop dialog");
    dialog->Close();
  }
  void ShowDialog(HWND, bool show) override {
    Note(show ? "show dialog" : "hide dialog");
    dialog->Show(show);
  }
  double CurrentTime() override { return time; }
  IDSUndo* Undo() override { return hasUndo ? this : nullptr; }
  void OnPropertyAccess(const char* call, const GUID& property, double value, double at, HRESULT result) override {
    Note(std::string(call) + " " + NameOf(property) + " " + FormatNumber(value) +
         (at == -1.0 ? "" : " at " + FormatNumber(at)) + (result == kOk ? "" : " fails"));
  }

 private:
  static std::string NameOf(const GUID& property) {
    const auto found = std::ranges::find(kProperties, property, &Property::guid);
    if (found != kProperties.end()) return std::string(found->name);
    return property == GUID_NO_PROPERTY ? "nothing" : std::to_string(property.data4.back());
  }

  void BeginStep(const char16_t* name) override {
    Note("begin" + (name == nullptr ? std::string() : " \"" + Utf8Of(name) + "\""));
    if (history != nullptr) history->BeginStep(name);
  }
  void EndStep() override {
    Note("end");
    if (history != nullptr) history->EndStep();
  }

  Calls calls_;
};

}  // namespace vblur::host
