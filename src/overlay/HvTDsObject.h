// Ties a widget to properties of the effect: writes them when a drag ends, and moves the widget when they or
// the time change.
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

  // Obeys its own widget alone: at the end of an interaction it commits, and its dependants read again.
  void HandleMessage(const HvMessage& message, HvMessageSender* sender) override;
  // A property changed; `value` null when it is to be read. Non-zero if one of the binding's was concerned.
  virtual std::int32_t OnPropertyChange(const GUID& property, const DSVariant* value) = 0;
  // Reads the properties at a time.
  virtual void OnTime(double time) = 0;
  // Writes the widget's state to the properties.
  virtual void Commit() = 0;
  // Reads the properties now.
  virtual void Refresh() = 0;

  // Bindings that read again after this one commits. Not owned.
  HvList<HvTDsObject*>& dependants() { return dependants_; }

  // Null until the tool has taken the binding on. Not owned.
  HvTInteract* tool() const { return tool_; }
  void JoinTool(HvTInteract* tool);
  // From here on the tool knows no more of the binding. What goes before its tool calls this.
  void LeaveTool();
  // The tool has gone.
  void ForgetTool() { tool_ = nullptr; }

 protected:
  static constexpr double kNow = -1.0;

  HvTDsObject() = default;

  // Links to the widget's sender, the only one obeyed.
  void Obey(HvMessageSender* sender);

 private:
  HvTInteract* tool_ = nullptr;
  HvMessageSender* sender_ = nullptr;
  HvList<HvTDsObject*> dependants_;
};

}  // namespace vblur
