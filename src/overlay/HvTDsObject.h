// Binding of a widget to properties of the effect: writes them when a drag ends, and updates the widget when they
// or the time change.
#pragma once

#include <cstdint>

#include "overlay/HvList.h"
#include "overlay/HvMessageLink.h"
#include "platform/DSVariant.h"
#include "platform/DsTypes.h"

namespace vblur {

class HvTInteract;

class HvTDsObject : public HvMessageHandler {
 public:
  ~HvTDsObject() override;

  // Acts only on the end of an interaction of its own widget: commits, then refreshes its dependants.
  void HandleMessage(const HvMessage& message, HvMessageSender* sender) override;
  // A property changed; with a null `value`, read it. Non-zero if it is one of the binding's.
  virtual std::int32_t OnPropertyChange(const GUID& property, const DSVariant* value) = 0;
  // Reads the properties at a time.
  virtual void OnTime(double time) = 0;
  // Writes the widget's state to the properties.
  virtual void Commit() = 0;
  // Reads the properties now.
  virtual void Refresh() = 0;

  // Bindings to refresh after this one commits. Not owned. For tools whose bindings share properties; the effect has
  // none.
  HvList<HvTDsObject*>& Dependants() { return dependants_; }

  // Null until HvTInteract::AddDsObject. Not owned.
  HvTInteract* Tool() const { return tool_; }
  void JoinTool(HvTInteract* tool);
  // Unregisters from the tool. A binding destroyed before its tool must call it.
  void LeaveTool();
  // Called by a tool in its destructor.
  void ForgetTool() { tool_ = nullptr; }

 protected:
  static constexpr double kNow = -1.0;

  HvTDsObject() = default;

  // Links to the widget's sender; messages of others are ignored.
  void Obey(HvMessageSender* sender);

 private:
  HvTInteract* tool_ = nullptr;
  HvMessageSender* sender_ = nullptr;
  HvList<HvTDsObject*> dependants_;
};

}  // namespace vblur
