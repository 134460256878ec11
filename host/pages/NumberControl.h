// The host's number control: a caption, and a value that is typed, stepped by keys, or scrubbed by dragging.
//
// A user's change is clamped to the range. The page gets kControlNotify at each change, kControlNotifyComplete when the
// value stays as it is: typed, after a key, at the end of a scrub that changed it. A scrub is between kControlScrub
// with 1 and with 0.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/pages/ControlText.h"
#include "host/pages/OwnControl.h"
#include "host/pages/TypedNumber.h"
#include "platform/PageControls.h"
#include "platform/RefCount.h"

namespace vblur::host {

enum class NumberKey { Up, Down, PageUp, PageDown, Home, End };
// By the modifier keys.
enum class NumberStep { Normal, Fine, Coarse };

class NumberControl final : public OwnControl, public IDSNumberControl {
 public:
  static constexpr double kNormalStep = 1.0;
  static constexpr double kFineStep = 0.1;
  static constexpr double kCoarseStep = 10.0;
  static constexpr double kPageStep = 10.0;

  // Shows the number of its range that is nearest 0. Without a dialog it is on no page.
  NumberControl(PageDialog* dialog, const ModuleControl& control, const ControlText& text);

  double Value() const { return value_; }
  // The value as it is shown: to four decimals, which is more than anybody drags or sees.
  std::string ShownValue() const;
  const NumberRange& Range() const { return range_; }
  DSAnimationMark AnimationMark() const { return mark_; }
  bool IsScrubbing() const { return scrub_.has_value(); }

  // The user types a text, as TypedNumber.h has them. Nothing when it is taken; otherwise the value stays, and the
  // result is one line with what was expected.
  std::optional<std::string> Type(std::string_view text);
  // Arrows step by 1, or by the modifier's 0.1 or 10; the page keys always by 10; Home and End go to the ends of the
  // range. False if the control takes no input or is being scrubbed.
  bool Key(NumberKey key, NumberStep step = NumberStep::Normal);

  // A scrub: pressed, dragged by steps of the modifier's size, released; CancelScrub shows the value again that it had
  // before. The first two are false if the control takes no input, all but the first without a scrub. A scrub that has
  // begun can end even when the page has disabled the control meanwhile.
  bool BeginScrub();
  bool Scrub(std::int32_t steps, NumberStep step = NumberStep::Normal);
  bool EndScrub();
  bool CancelScrub();

  // References are counted but do not keep the control, which ends with its dialog, or its window on no page.
  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override { return references_.Add(); }
  std::uint32_t Release() override { return references_.Drop(); }
  HRESULT SetRange(const DSVariant& minimum, const DSVariant& maximum) override;
  HRESULT GetRange(DSVariant* minimum, DSVariant* maximum) override;
  HRESULT SetValue(const DSVariant& value) override;
  HRESULT GetValue(DSVariant* value) override;
  HRESULT SetAnimationMark(DSAnimationMark mark) override;

 private:
  IUnknown* Interface() override { return static_cast<IDSNumberControl*>(this); }

  struct ScrubState {
    double before = 0.0;
    bool changed = false;  // the page was told of a value
  };

  // What the user's doings come to.
  std::optional<std::string> TakeTyped(std::string_view text);
  bool TakeKey(NumberKey key, NumberStep step);
  bool TakePress();
  bool TakeDrag(std::int32_t steps, NumberStep step);
  bool TakeRelease();
  bool TakeCancel();
  std::string Complaint(const std::string& why) const;

#ifdef _WIN32
  friend struct NumberEditor;

  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override;
  void Paint(::HDC__* dc) const override;
  LRESULT OnMouse(UINT message, WPARAM keys, std::int32_t x);
  // False for a key that the control has no use for.
  bool OnKeyDown(WPARAM key);
  void OpenEditor();
  void CloseEditor();
  // The text in the editor is typed; the editor stays when it is none.
  void CommitEditor();
#endif

  double Clamped(double value) const;
  double Stepped(double by) const;
  bool Change(double value);
  void ChangeForGood(double value);
  void Finish(const ScrubState& scrub) const;

  RefCount references_;
  NumberRange range_;
  double value_ = 0.0;
  DSAnimationMark mark_ = DSAnimationMark::None;
  std::optional<ScrubState> scrub_;
#ifdef _WIN32
  HWND editor_ = nullptr;                 // in which the user types
  std::optional<std::string> complaint_;  // of the text that was typed last
  std::int32_t draggedTo_ = 0;            // the place in the window to which steps are counted, one a pixel
  std::uintptr_t scrubs_ = 0;             // so far
#endif
};

}  // namespace vblur::host
