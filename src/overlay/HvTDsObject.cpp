#include "overlay/HvTDsObject.h"

#include "overlay/HvTInteract.h"

namespace vblur {

HvTDsObject::~HvTDsObject() {
  LeaveTool();
}

void HvTDsObject::Obey(HvMessageSender* sender) {
  sender_ = sender;
  LinkHandler(this, sender);
}

void HvTDsObject::JoinTool(HvTInteract* tool) {
  if (tool_ != tool) LeaveTool();
  tool_ = tool;
}

void HvTDsObject::LeaveTool() {
  if (tool_ != nullptr) tool_->RemoveDsObject(this);
  tool_ = nullptr;
}

void HvTDsObject::HandleMessage(const HvMessage& message, HvMessageSender* sender) {
  const bool ends = message.Id() == kInteractionEnds || message.Id() == kInteractionEndsToo;
  if (sender == nullptr || sender != sender_ || !ends) return;
  Commit();
  dependants_.Start();
  while (const auto* node = dependants_.Step())
    node->element->Refresh();
}

}  // namespace vblur
