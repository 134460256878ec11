// The host's base classes of property pages: a page makes its dialog from its module's resources, and its control map
// ties each control to a property and to a variable of the page. Implemented by sdk/effects.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "CDSCOMObject.h"
#include "ComPtr.h"
#include "IDSProperties.h"
#include "PageControls.h"
#include "PageSite.h"

namespace vblur {

class CDSBasePropertyPage;

// Value types of bound variables, numbered as in VARIANT: none, a 32-bit integer, a double, a bool.
using VARTYPE = std::uint16_t;
inline constexpr VARTYPE VT_EMPTY = 0;
inline constexpr VARTYPE VT_I4 = 3;
inline constexpr VARTYPE VT_R8 = 5;
inline constexpr VARTYPE VT_BOOL = 11;

// How the property writes of a control are recorded.
using UNDO_STYLE = std::int32_t;
inline constexpr UNDO_STYLE kUndoStep = 1;     // each is a step of its own, unless one is open
inline constexpr UNDO_STYLE kUndoBracket = 2;  // all of them belong to the bracket that is open

// One control of a page.
struct CDSPPGControlMapEntry {
  using Variable = void* (*)(CDSBasePropertyPage& page);
  using Action = void (*)(CDSBasePropertyPage& page);

  GUID property;            // GUID_NO_PROPERTY for none
  VARTYPE type = VT_EMPTY;  // of the variable
  Variable variable = nullptr;
  std::int32_t controlId = -1;
  Action action = nullptr;  // runs after the control has changed
  std::int32_t flags = 0;
  std::int32_t toolTip = 0;  // a string of the module
  std::int32_t last = -1;
};

namespace control_flags {
inline constexpr std::int32_t kAnimated = 1;    // a number that may have keys
inline constexpr std::int32_t kButton = 2;      // a button or chip: no property of its own
inline constexpr std::int32_t kSelection = 16;  // a list, a check box, or a button with a tool tip of its own
}  // namespace control_flags

// The entries end with one of a zero GUID and the control id -1.
struct CDSPPGControlMap {
  const CDSPPGControlMap* parent = nullptr;
  const char* name = "";
  const CDSPPGControlMapEntry* entries = nullptr;
  // Set by Initialize.
  std::size_t count = 0;

  // Counts the entries, once.
  void Initialize();
  // The entry of a control in this map or a parent; null for none.
  const CDSPPGControlMapEntry* Find(std::int32_t controlId) const;
};

// What happened to a control.
struct DSControlNotification {
  UINT message = 0;  // 0: nothing yet
  std::int32_t controlId = 0;
};

struct DSPageInfo {
  std::int32_t dialog = 0;
  char16_t title[256] = {};
  const CDSPPGControlMap* controls = nullptr;
};

// A page as its host calls it.
class IDSPropertyPage : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A841}");

  // Borrowed; null takes the page from its site, its dialog with it. Steps that the page has begun there end.
  virtual HRESULT SetSite(IDSPageSite* site) = 0;
  // What the page edits, each counted. Controls read and write the first, which has IDSProperties.
  virtual HRESULT SetObjects(std::int32_t count, IUnknown* const* objects) = 0;
  virtual HRESULT GetPageInfo(DSPageInfo* info) = 0;
  // Makes the dialog and runs OnInitDialog. kFailed without a site or a dialog in the resources, or a second time.
  virtual HRESULT Activate() = 0;
  // Shows what the properties are now.
  virtual HRESULT Refresh() = 0;
  virtual HRESULT Deactivate() = 0;
  virtual HRESULT Show(std::uint32_t mode) = 0;
  virtual HRESULT Help(const char16_t* helpDirectory) = 0;
  // A message of a control to its dialog.
  virtual LRESULT OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
  // A property changed; `value` is null when the change has no value of its own.
  virtual HRESULT PropertyChanged(const GUID& property, const DSVariant* value) = 0;
  // The time changed.
  virtual HRESULT UpdateAnimatedControls(double time) = 0;

 protected:
  ~IDSPropertyPage() = default;
};

// The host's undo bracket of a page.
class CDSUndoStyleMgr {
 public:
  explicit CDSUndoStyleMgr(CDSBasePropertyPage& page) : page_(page) {}

  // What the page writes until End is one step, named after the button that the notification tells of; `style` becomes
  // the style to write with. `open` is 1.
  HRESULT Begin(const DSControlNotification& notification, UNDO_STYLE* style, std::int32_t open);
  // kFalse without a bracket.
  HRESULT End();

 private:
  CDSBasePropertyPage& page_;
  std::int32_t depth_ = 0;
};

// User-interface thread only.
class CDSBasePropertyPage : public IDSPropertyPage, public CDSCOMObject {
 public:
  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override { return AddReference(); }
  std::uint32_t Release() override { return DropReference(); }

  HRESULT SetSite(IDSPageSite* site) override;
  HRESULT SetObjects(std::int32_t count, IUnknown* const* objects) override;
  HRESULT GetPageInfo(DSPageInfo* info) override;
  HRESULT Activate() override;
  HRESULT Refresh() override;
  HRESULT Deactivate() override;
  HRESULT Show(std::uint32_t mode) override;
  HRESULT Help(const char16_t* helpDirectory) override;
  LRESULT OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  // Moves the controls of the property.
  HRESULT PropertyChanged(const GUID& property, const DSVariant* value) override;
  // Moves the controls of animated properties.
  HRESULT UpdateAnimatedControls(double time) override;

  // The map that others have as their parent; it is empty.
  static CDSPPGControlMap m_ControlMap;

  // Null: the page has no controls.
  virtual CDSPPGControlMap* GetControlMap() = 0;
  // The module with the dialog and its texts.
  virtual HMODULE GetResourceInstance() = 0;
  // The dialog has just been made. The base reads all bound variables from their properties and moves the controls.
  virtual HRESULT OnInitDialog();

  // The dialog, and a control of it; null for none.
  HWND GetDialog() const { return dialog_; }
  HWND GetHwndControl(std::int32_t id) const { return GetDlgItem(dialog_, id); }
  // Borrowed; null for none.
  IUnknown* InspectedObject() const { return objects_.empty() ? nullptr : objects_.front().get(); }
  IDSPageSite* Site() const { return site_; }

  // Properties of the first object, kFailed without one. `reserved` is null. A plain value that is read has the
  // property's type; time -1.0 is the site's. A property with keys gets one at the time, another its plain value.
  HRESULT SetPlainProperty(const GUID& property, const DSVariant& value, IUnknown* reserved, UNDO_STYLE style);
  HRESULT SetAnimatedProperty(const GUID& property, const DSVariant& value, IUnknown* reserved, double time,
                              UNDO_STYLE style);
  HRESULT GetPlainProperty(const GUID& property, DSVariant* value, IUnknown* reserved);
  HRESULT GetAnimatedProperty(const GUID& property, DSVariant* value, IUnknown* reserved, double time);
  // Shows the bound variable's value; kWrongArgument for a control that is not in the map or has no variable.
  HRESULT SetControlFromBoundVariable(std::int32_t controlId);

  // A step of the site's history, if it has one.
  void BeginStep(const char16_t* name);
  void EndStep();

 protected:
  CDSBasePropertyPage(std::int32_t dialog, std::int32_t titleString);
  ~CDSBasePropertyPage() override;

  // What the user did last.
  DSControlNotification lastNotification;

 private:
  class Listener;

  // Makes a write with its place in the history, and tells the site.
  template <class Put>
  HRESULT Write(const char* call, const GUID& property, double value, double time, UNDO_STYLE style, Put put);
  void ReadOf(const char* call, const GUID& property, const DSVariant& value, double time, HRESULT result) const;
  double TimeOf(double time) const;
  void ReadVariable(const CDSPPGControlMapEntry& entry);
  void ReadControl(const CDSPPGControlMapEntry& entry);
  void WriteProperty(const CDSPPGControlMapEntry& entry);
  DSAnimationMark MarkOf(const CDSPPGControlMapEntry& entry) const;
  void OnControlChanged(std::int32_t controlId);
  LRESULT FillToolTip(std::int32_t controlId, const DSToolTipText* text);

  const std::int32_t dialogId_;
  const std::int32_t titleString_;
  IDSPageSite* site_ = nullptr;
  HWND dialog_ = nullptr;
  // The scrub of a control is a step that is open.
  bool scrubbing_ = false;
  std::int32_t openSteps_ = 0;
  std::vector<ComPtr<IUnknown>> objects_;
  ComPtr<IDSProperties> properties_;
  std::unique_ptr<Listener> listener_;
};

class CDSPropertyPage : public CDSBasePropertyPage {
 protected:
  CDSPropertyPage(std::int32_t dialog, std::int32_t titleString) : CDSBasePropertyPage(dialog, titleString) {}
};

}  // namespace vblur
