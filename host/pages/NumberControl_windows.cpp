#include "host/pages/NumberControl.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "host/base/Utf8.h"
#include "host/pages/ControlClasses.h"
#include "host/pages/KeptFailure.h"
#include "sdk/system/SystemTypes_windows.h"
// After the system's header.
#include <commctrl.h>

namespace vblur::host {

namespace {

// Posted to itself, with the number of the scrub that has lost the mouse.
constexpr UINT kLostMouse = WM_APP + 1;
// The most steps that one message says, so that the place fits in it.
constexpr std::int32_t kMostSteps = 20'000;

WPARAM KeysOf(NumberStep step) {
  return MK_LBUTTON | (step == NumberStep::Coarse ? MK_SHIFT : 0) | (step == NumberStep::Fine ? MK_CONTROL : 0);
}

NumberStep StepOf(bool shift, bool control) {
  return shift ? NumberStep::Coarse : control ? NumberStep::Fine : NumberStep::Normal;
}

WPARAM CodeOf(NumberKey key) {
  switch (key) {
    case NumberKey::Up: return VK_UP;
    case NumberKey::Down: return VK_DOWN;
    case NumberKey::PageUp: return VK_PRIOR;
    case NumberKey::PageDown: return VK_NEXT;
    case NumberKey::Home: return VK_HOME;
    case NumberKey::End: return VK_END;
  }
  return 0;
}

std::optional<NumberKey> KeyOf(WPARAM code) {
  for (const NumberKey key :
       {NumberKey::Up, NumberKey::Down, NumberKey::PageUp, NumberKey::PageDown, NumberKey::Home, NumberKey::End}) {
    if (CodeOf(key) == code) return key;
  }
  return std::nullopt;
}

bool IsHeld(int key) {
  return GetKeyState(key) < 0;
}

// The modifier keys of a step are held while it lives.
class HeldModifiers {
 public:
  explicit HeldModifiers(NumberStep step) {
    constexpr BYTE kDown = 0x80;
    GetKeyboardState(before_.data());
    auto held = before_;
    held[VK_SHIFT] = step == NumberStep::Coarse ? kDown : 0;
    held[VK_CONTROL] = step == NumberStep::Fine ? kDown : 0;
    SetKeyboardState(held.data());
  }
  ~HeldModifiers() { SetKeyboardState(before_.data()); }
  HeldModifiers(const HeldModifiers&) = delete;
  HeldModifiers& operator=(const HeldModifiers&) = delete;

 private:
  std::array<BYTE, 256> before_{};
};

// What begins a number or an expression.
bool BeginsANumber(WPARAM character) {
  return character < 0x80 &&
         std::u16string_view(u"0123456789.+-*/(").find(static_cast<char16_t>(character)) != std::u16string_view::npos;
}

LPARAM PlaceOf(std::int32_t x) {
  return MAKELPARAM(static_cast<WORD>(static_cast<std::int16_t>(x)), 0);
}

void DrawMark(HDC dc, DSAnimationMark mark, const RECT& area) {
  if (mark == DSAnimationMark::None) return;
  const int half = (area.bottom - area.top) / 4;
  const int x = area.left + half + 2;
  const int y = (area.top + area.bottom) / 2;
  const std::array<POINT, 4> diamond{{{x - half, y}, {x, y - half}, {x + half, y}, {x, y + half}}};
  const bool isKey = mark == DSAnimationMark::Key;
  const auto brush = ::SelectObject(dc, isKey ? GetSysColorBrush(COLOR_WINDOWTEXT) : GetStockObject(NULL_BRUSH));
  const auto pen = ::SelectObject(dc, GetStockObject(BLACK_PEN));
  Polygon(dc, diamond.data(), static_cast<int>(diamond.size()));
  ::SelectObject(dc, pen);
  ::SelectObject(dc, brush);
}

}  // namespace

// The system's field in which the user types.
struct NumberEditor {
  static LRESULT CALLBACK Run(HWND handle, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR reference) {
    auto& control = *reinterpret_cast<NumberControl*>(reference);
    if (message == WM_NCDESTROY) {
      RemoveWindowSubclass(handle, &Run, 0);
      if (control.editor_ == handle) control.editor_ = nullptr;
      return DefSubclassProc(handle, message, wParam, lParam);
    }
    return AnswerOrKeep([&] {
      // The page may drop the dialog.
      const auto held = control.Hold();
      return Receive(control, handle, message, wParam, lParam);
    });
  }

 private:
  static LRESULT Receive(NumberControl& control, HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
      case WM_GETDLGCODE: return DLGC_WANTALLKEYS;
      case WM_KEYDOWN:
        if (OnKey(control, wParam)) return 0;
        break;
      case WM_CHAR:
        if (wParam == VK_RETURN || wParam == VK_ESCAPE || wParam == VK_TAB) return 0;
        break;
      case WM_KILLFOCUS: OnLeft(control, handle); return 0;
      default: break;
    }
    return DefSubclassProc(handle, message, wParam, lParam);
  }
  static bool OnKey(NumberControl& control, WPARAM key) {
    if (key == VK_ESCAPE) {
      control.CloseEditor();
      return true;
    }
    if (key != VK_RETURN && key != VK_TAB) return false;
    control.CommitEditor();
    if (key == VK_TAB && control.editor_ == nullptr && control.isThere_) {
      PostMessageW(GetParent(control.handle_), WM_NEXTDLGCTL, IsHeld(VK_SHIFT) ? TRUE : FALSE, FALSE);
    }
    return true;
  }
  // What was typed counts; a text that is none is forgotten.
  static void OnLeft(NumberControl& control, HWND handle) {
    if (control.editor_ != handle) return;
    control.CommitEditor();
    control.CloseEditor();
  }
};

std::optional<std::string> NumberControl::Type(std::string_view text) {
  if (!TakesInput() || scrub_) return Complaint("takes no input now");
  const auto held = Hold();
  const std::u16string typed = Utf16Of(text);
  Send(WM_KEYDOWN, VK_F2);
  if (editor_ == nullptr) return Complaint("takes no input now");
  // The whole text is selected.
  ::SendMessageW(editor_, WM_CLEAR, 0, 0);
  const auto replace = [&](const char16_t* with) {
    ::SendMessageW(editor_, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(with));
  };
  if (typed.size() > kLongestTypedNumber) {
    replace(typed.c_str());
  } else {
    for (const char16_t character : typed) {
      // What the field would take as a command is pasted.
      const std::array<char16_t, 2> single{character, 0};
      if (character < u' ' || character == 0x7F) {
        replace(single.data());
      } else {
        ::SendMessageW(editor_, WM_CHAR, character, 1);
      }
    }
  }
  ::SendMessageW(editor_, EM_SETMODIFY, TRUE, 0);
  complaint_.reset();
  SendTo(editor_, WM_KEYDOWN, VK_RETURN, 1);
  if (complaint_ && editor_ != nullptr) SendTo(editor_, WM_KEYDOWN, VK_ESCAPE, 1);
  return std::exchange(complaint_, std::nullopt);
}

bool NumberControl::Key(NumberKey key, NumberStep step) {
  if (!TakesInput() || scrub_) return false;
  const auto held = Hold();
  const HeldModifiers modifiers(step);
  Send(WM_KEYDOWN, CodeOf(key), 1);
  return true;
}

bool NumberControl::BeginScrub() {
  if (!TakesInput() || scrub_) return false;
  const auto held = Hold();
  Send(WM_LBUTTONDOWN, MK_LBUTTON, PlaceOf(0));
  return true;
}

bool NumberControl::Scrub(std::int32_t steps, NumberStep step) {
  if (!TakesInput() || !scrub_) return false;
  const auto held = Hold();
  for (std::int64_t left = steps; left != 0;) {
    const auto now = static_cast<std::int32_t>(std::clamp<std::int64_t>(left, -kMostSteps, kMostSteps));
    const double before = value_;
    // From 0 each time, so that the place fits in the message.
    draggedTo_ = 0;
    Send(WM_MOUSEMOVE, KeysOf(step), PlaceOf(now));
    left -= now;
    // The page may have stopped it; at the end of the range nothing more happens.
    if (!TakesInput() || !scrub_ || value_ == before) break;
  }
  return true;
}

bool NumberControl::EndScrub() {
  if (!scrub_) return false;
  const auto held = Hold();
  Send(WM_LBUTTONUP, 0, PlaceOf(draggedTo_));
  return true;
}

bool NumberControl::CancelScrub() {
  if (!scrub_) return false;
  const auto held = Hold();
  Send(WM_KEYDOWN, VK_ESCAPE, 1);
  return true;
}

LRESULT NumberControl::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_GETDLGCODE: {
      const auto* const asked = reinterpret_cast<const MSG*>(lParam);
      const bool isWanted = asked != nullptr && asked->message == WM_KEYDOWN &&
                            (asked->wParam == VK_RETURN || (asked->wParam == VK_ESCAPE && scrub_));
      return DLGC_WANTARROWS | DLGC_WANTCHARS | (isWanted ? DLGC_WANTMESSAGE : 0);
    }
    case WM_ENABLE:
      if (wParam == FALSE) CloseEditor();
      break;
    case WM_LBUTTONDOWN:
    case WM_MOUSEMOVE:
    case WM_LBUTTONUP: return OnMouse(message, wParam, static_cast<std::int16_t>(LOWORD(lParam)));
    case WM_LBUTTONDBLCLK: OpenEditor(); return 0;
    case WM_CAPTURECHANGED:
      // Later: the page that takes the mouse by disabling the control may be in the midst of it.
      if (scrub_ && reinterpret_cast<HWND>(lParam) != handle_) PostMessageW(handle_, kLostMouse, scrubs_, 0);
      return 0;
    case kLostMouse:
      if (wParam == scrubs_) TakeRelease();
      return 0;
    case WM_KEYDOWN:
      if (OnKeyDown(wParam)) return 0;
      break;
    case WM_CHAR:
      if (!BeginsANumber(wParam)) break;
      OpenEditor();
      if (editor_ != nullptr) ::SendMessageW(editor_, WM_CHAR, wParam, lParam);
      return 0;
    default: break;
  }
  return OwnControl::Receive(message, wParam, lParam);
}

LRESULT NumberControl::OnMouse(UINT message, WPARAM keys, std::int32_t x) {
  if (message == WM_LBUTTONDOWN) {
    CloseEditor();
    SetFocus(handle_);
    draggedTo_ = x;
    if (!TakesInput() || scrub_) return 0;
    ++scrubs_;
    SetCapture(handle_);
    TakePress();
  } else if (message == WM_MOUSEMOVE && scrub_) {
    const std::int32_t steps = x - draggedTo_;
    draggedTo_ = x;
    TakeDrag(steps, StepOf((keys & MK_SHIFT) != 0, (keys & MK_CONTROL) != 0));
  } else if (message == WM_LBUTTONUP && scrub_) {
    if (GetCapture() == handle_) ReleaseCapture();
    TakeRelease();
  }
  return 0;
}

bool NumberControl::OnKeyDown(WPARAM key) {
  if (key == VK_ESCAPE && scrub_) {
    if (GetCapture() == handle_) ReleaseCapture();
    TakeCancel();
    return true;
  }
  if (key == VK_F2 || key == VK_RETURN) {
    OpenEditor();
    return true;
  }
  const auto known = KeyOf(key);
  if (known) TakeKey(*known, StepOf(IsHeld(VK_SHIFT), IsHeld(VK_CONTROL)));
  return known.has_value();
}

void NumberControl::OpenEditor() {
  if (!TakesInput() || scrub_ || editor_ != nullptr) return;
  RECT area{};
  GetClientRect(handle_, &area);
  const std::string shown = ShownValue();
  const std::u16string text(shown.begin(), shown.end());
  const HWND made = CreateWindowExW(0, L"Edit", SystemText(text.c_str()), WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, 2, 2,
                                    std::max<int>(area.right - 4, 1), std::max<int>(area.bottom - 4, 1), handle_,
                                    nullptr, OwnModule(), nullptr);
  if (made == nullptr) return;
  // Without it nothing would take what is typed, or close it.
  if (SetWindowSubclass(made, &NumberEditor::Run, 0, reinterpret_cast<DWORD_PTR>(this)) == FALSE) {
    DestroyWindow(made);
    return;
  }
  editor_ = made;
  ::SendMessageW(made, WM_SETFONT, static_cast<WPARAM>(Send(WM_GETFONT)), FALSE);
  ::SendMessageW(made, EM_SETMODIFY, FALSE, 0);
  ::SendMessageW(made, EM_SETSEL, 0, -1);
  SetFocus(made);
}

void NumberControl::CloseEditor() {
  const HWND editor = std::exchange(editor_, nullptr);
  if (editor == nullptr) return;
  const bool hasFocus = GetFocus() == editor;
  DestroyWindow(editor);
  if (hasFocus && isThere_) SetFocus(handle_);
}

void NumberControl::CommitEditor() {
  if (editor_ == nullptr) return;
  if (::SendMessageW(editor_, EM_GETMODIFY, 0, 0) == 0) return CloseEditor();
  std::u16string text(static_cast<std::size_t>(GetWindowTextLengthW(editor_)), u'\0');
  GetWindowTextW(editor_, SystemText(text.data()), static_cast<int>(text.size()) + 1);
  try {
    complaint_ = TakeTyped(Utf8Of(text));
  } catch (...) {
    CloseEditor();
    throw;
  }
  if (!complaint_) return CloseEditor();
  MessageBeep(MB_ICONWARNING);
  if (editor_ != nullptr) ::SendMessageW(editor_, EM_SETSEL, 0, -1);
}

// The value, how far along the range it is, and its mark.
void NumberControl::Paint(HDC dc) const {
  RECT area{};
  GetClientRect(handle_, &area);
  const bool isEnabled = IsEnabled();
  FillRect(dc, &area, GetSysColorBrush(isEnabled ? COLOR_WINDOW : COLOR_BTNFACE));
  DrawEdge(dc, &area, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
  if (isEnabled && range_.maximum > range_.minimum && std::isfinite(value_)) {
    const double part = std::clamp((value_ - range_.minimum) / (range_.maximum - range_.minimum), 0.0, 1.0);
    RECT bar = area;
    bar.top = bar.bottom - 3;
    bar.right = bar.left + static_cast<LONG>(std::lround(part * (area.right - area.left)));
    FillRect(dc, &bar, GetSysColorBrush(COLOR_HIGHLIGHT));
  }
  DrawMark(dc, mark_, area);
  const std::string shown = ShownValue();
  const std::u16string text(shown.begin(), shown.end());
  const WindowFont font(dc, handle_);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, GetSysColor(isEnabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
  RECT inner = area;
  inner.bottom -= 2;
  DrawTextW(dc, SystemText(text.c_str()), static_cast<int>(text.size()), &inner,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  if (GetFocus() == handle_) DrawFocusRect(dc, &area);
}

}  // namespace vblur::host
