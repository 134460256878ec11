// A property page that notes the messages of its controls, and dialogs for it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/pages/PageDialog.h"
#include "platform/CDSPropertyPage.h"
#include "platform/PageControls.h"
#include "platform/WindowStyles.h"

namespace vblur::host {

using Messages = std::vector<std::string>;

// On the stack: it counts no references.
class RecordingPage final : public IDSPropertyPage {
 public:
  std::function<void(const std::string&)> onMessage;  // carries out the page's actions
  std::u16string toolTip;

  // The messages since the last call: "NAME ID", and LPARAM of a scrub or what happened of a command.
  Messages Taken() { return std::exchange(messages_, {}); }

  LRESULT OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    std::string text = NameOf(message) + " " + std::to_string(wParam & 0xFFFF);
    if (message == WM_COMMAND) text += " " + std::to_string(wParam >> 16);
    if (message == RegisterWindowMessageW(kControlScrub)) text += " " + std::to_string(lParam);
    if (message == RegisterWindowMessageW(kControlToolTip)) Fill(*reinterpret_cast<DSToolTipText*>(lParam));
    messages_.push_back(text);
    if (onMessage) onMessage(text);
    return 0;
  }

  HRESULT QueryInterface(const GUID&, void**) override { return kNoInterface; }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  HRESULT SetSite(IDSPageSite*) override { return kOk; }
  HRESULT SetObjects(std::int32_t, IUnknown* const*) override { return kOk; }
  HRESULT GetPageInfo(DSPageInfo*) override { return kOk; }
  HRESULT Activate() override { return kOk; }
  HRESULT Refresh() override { return kOk; }
  HRESULT Deactivate() override { return kOk; }
  HRESULT Show(std::uint32_t) override { return kOk; }
  HRESULT Help(const char16_t*) override { return kOk; }
  HRESULT PropertyChanged(const GUID&, const DSVariant*) override { return kOk; }
  HRESULT UpdateAnimatedControls(double) override { return kOk; }

 private:
  static std::string NameOf(UINT message) {
    if (message == WM_COMMAND) return "command";
    if (message == RegisterWindowMessageW(kControlNotify)) return "notify";
    if (message == RegisterWindowMessageW(kControlNotifyComplete)) return "complete";
    if (message == RegisterWindowMessageW(kControlScrub)) return "scrub";
    if (message == RegisterWindowMessageW(kControlToolTip)) return "tip";
    return "unknown";
  }

  void Fill(const DSToolTipText& text) const {
    const std::size_t length = std::min(toolTip.size(), static_cast<std::size_t>(text.capacity));
    std::copy_n(toolTip.begin(), length, text.buffer);
  }

  Messages messages_;
};

// Notes which windows changed, by id.
class RecordingObserver : public PageObserver {
 public:
  std::function<void()> onChange;

  std::vector<std::int32_t> Taken() { return std::exchange(changed_, {}); }
  void OnWindowChanged(PageWindow& window) override {
    changed_.push_back(window.Id());
    if (onChange) onChange();
  }

 private:
  std::vector<std::int32_t> changed_;
};

inline constexpr std::int32_t kDialogNumber = 100;

inline ModuleControl ShownControl(std::int32_t id, ModuleControlKind kind, std::string_view text = {},
                                  DialogRectangle area = {0, 0, 40, 12}) {
  return {id, kind, text, area.x, area.y, area.width, area.height, WS_CHILD | WS_VISIBLE | WS_TABSTOP};
}

// A dialog of 190 x 160 units, shown.
inline std::shared_ptr<PageDialog> ShownDialog(IDSPropertyPage& page, const std::vector<ModuleControl>& controls,
                                               HMODULE module = nullptr) {
  const ModuleDialog resources{kDialogNumber, 190, 160, "Arial", 11, WS_CHILD, controls};
  auto dialog = PageDialog::Make(resources, page, module);
  dialog->Show(true);
  return dialog;
}

// A page with one control, whose id is 5.
template <class Control>
struct OneControl {
  static constexpr std::int32_t kId = 5;

  explicit OneControl(ModuleControlKind kind, std::string_view text = {})
      : dialog(ShownDialog(page, {ShownControl(kId, kind, text)})),
        control(dynamic_cast<Control&>(*dialog->Item(kId))) {
    control.AddObserver(observer);
  }

  // How often the control has changed since the last call.
  std::size_t Changes() { return observer.Taken().size(); }

  RecordingPage page;
  RecordingObserver observer;
  std::shared_ptr<PageDialog> dialog;
  Control& control;
};

inline std::u16string TextOf(HWND window, std::size_t capacity = 64) {
  std::u16string buffer(capacity, u'#');
  const LRESULT length = SendMessageW(window, WM_GETTEXT, capacity, reinterpret_cast<LPARAM>(buffer.data()));
  buffer.resize(static_cast<std::size_t>(length));
  return buffer;
}

inline LRESULT SendText(HWND window, UINT message, const char16_t* text) {
  return SendMessageW(window, message, 0, reinterpret_cast<LPARAM>(text));
}

}  // namespace vblur::host
