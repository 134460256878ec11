// A window of a property page's dialog: the dialog itself or a control of it. It holds what there is to see and takes
// what a user does; whoever draws it (a desktop's window, a picture, a test) observes it. User-interface thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/pages/DialogUnits.h"
#include "platform/Module.h"
#include "platform/Window.h"

#ifdef _WIN32
struct HDC__;  // the system's
#endif

namespace vblur::host {

class PageDialog;
class PageWindow;

class PageObserver {
 public:
  virtual ~PageObserver() = default;

  // What the window shows has changed. The call must not drop the dialog, with which its windows end, untold.
  virtual void OnWindowChanged(PageWindow& window) = 0;
};

enum class PageWindowKind { Dialog, Label, Group, Picture, Button, CheckBox, List, Number, ColourChip };

#ifdef _WIN32
// A window of the system's. Messages to it come to Receive first.
class WindowBehind {
 public:
  virtual ~WindowBehind() = default;

  virtual void Invalidate() = 0;
  virtual PageWindow* Item(std::int32_t id) = 0;
  virtual bool Enable(bool enable) = 0;
  virtual LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) = 0;

 protected:
  HWND handle_ = nullptr;
  bool isThere_ = false;     // from its dialog's first message to its own last one
  std::u16string seenText_;  // as observers were told last
};
#else
// The object is the window.
class WindowBehind : public IHostWindow {
 protected:
  std::u16string text_;
  bool enabled_ = true;
  bool visible_ = true;
};
#endif

class PageWindow : public WindowBehind, public std::enable_shared_from_this<PageWindow> {
 public:
  PageWindow(const PageWindow&) = delete;
  PageWindow& operator=(const PageWindow&) = delete;
  ~PageWindow() override;

  // As the page knows it. It stays the same, but names no window once that has ended.
  HWND Handle() const;
  // Only of a window on a page.
  PageDialog& Dialog() const { return *dialog_; }
  // ModuleControl::kNoId for a control without one; of the dialog its number in the module.
  std::int32_t Id() const { return id_; }
  PageWindowKind Kind() const { return kind_; }
  // The name of the window's class: "Static", "Button", "ComboBox", those of the host's own controls, or "Dialog".
  std::string_view ClassName() const;
  // The system's style bits, of which WS_VISIBLE and WS_TABSTOP count here.
  std::uint32_t Style() const { return style_; }
  const DialogRectangle& Area() const { return area_; }
  PixelRectangle AreaInPixels(const DialogUnits& units) const { return units.ToPixels(area_); }

  // Its title, caption, or shown entry.
  std::u16string Text() const;
  // From the page; empty for a window without one.
  std::u16string ToolTip();

  bool IsEnabled() const;
  bool IsVisible() const;
  // A dialog is hidden until it is shown, whatever its style.
  void Show(bool visible);
  // Whether a user can reach it: it and its dialog are visible and enabled, and the dialog is open. One that is on no
  // page asks its own window alone.
  bool TakesInput() const;
  // Whether the tabulator key stops at it while it takes input.
  bool IsTabStop() const;

  // Borrowed, told in the order of adding; those of a dialog are told of its controls too. One may be added or removed
  // at any time, during a call as well; twice added counts once.
  void AddObserver(PageObserver& observer);
  void RemoveObserver(PageObserver& observer);

  void Invalidate() override;
  PageWindow* Item(std::int32_t id) override;
  bool Enable(bool enable) override;
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override;

 protected:
  // The text is that of its resource. On Windows the dialog may be null, for a window that is on no page (yet).
  PageWindow(PageDialog* dialog, PageWindowKind kind, const ModuleControl& control, std::u16string text);

  // Tells the observers.
  virtual void Changed();
  // Keeps this window, with its dialog, while a message to the page may drop it; null for one that nobody shares.
  [[nodiscard]] std::shared_ptr<const PageWindow> Hold() const;
  // Send a message about this window to the page, or to its parent: by its registered name, and as a command. Nothing
  // for a window without id.
  LRESULT Tell(const char16_t* message, LPARAM lParam = 0) const;
#ifdef _WIN32
  friend class PageDialog;

  // A window that was on no page is on this one from now on, as the control of this record.
  void Join(PageDialog& dialog, const ModuleControl& control);
  // Ties the window to the one that the system has made.
  virtual void Attach(HWND handle);
  // The system's window ends.
  virtual void Detach();
  // Tells the observers if the window shows something else than at the last look.
  void Look();
  // Notes what it shows; whether that is something else than before.
  virtual bool SeesChange();
  // The window's own answer.
  LRESULT Pass(UINT message, WPARAM wParam, LPARAM lParam) const;
  // Any window; throws what its procedure and those behind it throw.
  static LRESULT SendTo(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
  // Likewise to this one; 0 once it has ended.
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
#else
  LRESULT TellCommand(UINT what) const;
  void SetText(std::u16string text);
#endif

 private:
#ifdef _WIN32
  struct Procedure;
#endif
  void TellObservers(PageWindow& changed);

  PageDialog* dialog_;
  const PageWindowKind kind_;
  std::int32_t id_;
  std::uint32_t style_;
  DialogRectangle area_;
  std::vector<PageObserver*> observers_;  // null: removed while they are told
  std::int32_t telling_ = 0;              // calls in progress
};

// ASCII widened, up to a NUL, where the system's texts end.
std::u16string Widened(std::string_view text);

}  // namespace vblur::host
