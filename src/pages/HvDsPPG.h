// The base of the effect's property pages: the link to the effect, undo brackets, and what pages do with their
// controls. Pages write properties through their ValueControls; everything that has no window or interface is passed
// over.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "effect/HvDsEffect.h"
#include "pages/ValueControl.h"
#include "platform/CDSPropertyPage.h"
#include "platform/ServerCount.h"

namespace vblur {

class HvDsPPG : public CDSPropertyPage {
 public:
  // The numbers of the messages between controls and page, registered when the server is loaded.
  static const UINT kNotifyMessage;
  static const UINT kNotifyCompleteMessage;
  static const UINT kScrubMessage;
  static const UINT kToolTipMessage;

  // The server's module, with dialogs and texts. Set before the first page is made.
  static inline HMODULE module = nullptr;

  HMODULE GetResourceInstance() override { return module; }
  // Tells the effect when the page shows. The base is shown twice.
  HRESULT Show(std::uint32_t mode) override;
  // Opens the manual.
  HRESULT Help(const char16_t* helpDirectory) override;

  // On the number control; nothing for any other.
  void SetNumberRange(std::int32_t id, double minimum, double maximum);
  // The range of a control's property.
  void SetNumberRange(const ControlRow& row);
  template <class Value>
  void ClearList(const ValueControl<Value>& control);
  // Adds a text of the module to a list; a selected one is shown. Nothing without the text.
  template <class Value>
  void AddListString(const ValueControl<Value>& control, std::int32_t stringId, bool select);
  // Fills a list with the texts of its property's entries and shows the default.
  void FillList(const ValueControl<std::int32_t>& control, const ControlRow& row);
  // A text of 8-bit characters, at most 2047; what is beyond is cut.
  void SetControlText(std::int32_t id, const char* text);
  template <class Value>
  void Enable(const ValueControl<Value>& control, bool enabled);

  // What is written between the two is one step of the host's history.
  void BeginUndo();
  void EndUndo();

  // The style of each property write.
  UNDO_STYLE UndoStyle() const { return undoStyle; }
  // A property change is being reported.
  bool IsChanging() const { return changingProperty != nullptr; }
  bool IsSuspended() const { return suspended != 0; }
  // For tests.
  bool IsShown() const { return shown != 0; }
  HvDsEffect* Effect() const { return effect; }

  // The value that the change which is being reported gives a control; nothing if it is of another property.
  template <class Value>
  std::optional<Value> ReadIfAffected(const ValueControl<Value>& control) const;

 protected:
  // `name` is copied; null for none.
  HvDsPPG(std::int32_t dialog, std::int32_t titleString, const char* name);
  ~HvDsPPG() override = default;

  // Asks the first inspected object for the effect behind it; null if it is none. The effect is counted; one of an
  // earlier dialog is given back.
  void* QueryEffect(const GUID& iid);
  // Links the effect's controls to the viewer of the first inspected object. Returns the effect's tool, null for none.
  HvTInteract* ConnectOverlay();
  // Unlinks them and gives the effect back, once.
  void DisconnectEffect();

  // While it lives, ReadIfAffected and Get see the change.
  class Change {
   public:
    Change(HvDsPPG& page, const GUID& property, const DSVariant* value) : page_(page) {
      page_.changingProperty = &property;
      page_.changingValue = value;
    }
    ~Change() {
      page_.changingProperty = nullptr;
      page_.changingValue = nullptr;
    }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

   private:
    HvDsPPG& page_;
  };
  // BeginUndo to EndUndo.
  class UndoBracket {
   public:
    explicit UndoBracket(HvDsPPG& page) : page_(page) { page_.BeginUndo(); }
    ~UndoBracket() { page_.EndUndo(); }
    UndoBracket(const UndoBracket&) = delete;
    UndoBracket& operator=(const UndoBracket&) = delete;

   private:
    HvDsPPG& page_;
  };
  // While it lives the page passes over notices of properties.
  class Suspension {
   public:
    explicit Suspension(HvDsPPG& page) : page_(page) { ++page_.suspended; }
    ~Suspension() { --page_.suspended; }
    Suspension(const Suspension&) = delete;
    Suspension& operator=(const Suspension&) = delete;

   private:
    HvDsPPG& page_;
  };
  friend struct ColourChip;

  struct FreeText {
    void operator()(char* text) const;
  };

  HvDsEffect* effect = nullptr;
  std::unique_ptr<char, FreeText> pageName;
  CDSUndoStyleMgr undoMgr{*this};
  UNDO_STYLE undoStyle = kUndoStep;
  std::uint32_t suspended = 0;
  std::int32_t shown = 0;
  const GUID* changingProperty = nullptr;
  const DSVariant* changingValue = nullptr;
};

// Counts the objects of a class in its server.
template <class Page>
class CountedPage : public HvDsPPG {
 public:
  // Null without a server. Set before the first page is made.
  static inline std::atomic<std::int32_t>* liveObjects = nullptr;

 protected:
  using HvDsPPG::HvDsPPG;

 private:
  const ServerCount countsInServer_{liveObjects};
};

}  // namespace vblur
