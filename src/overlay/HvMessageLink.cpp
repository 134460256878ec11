#include "overlay/HvMessageLink.h"

namespace vblur {

void HvMessageSender::Send(const HvMessage& message) {
  handlers_.Start();
  while (const auto* node = handlers_.Step()) {
    if (node->element == nullptr) return;
    node->element->HandleMessage(message, this);
  }
}

HvMessageSender::~HvMessageSender() {
  // Only the first handler: later ones must not outlive this sender.
  const auto* first = handlers_.First();
  if (first == nullptr || first->element == nullptr) return;
  first->element->senders_.Remove(this);
}

HvMessageHandler::~HvMessageHandler() {
  senders_.Start();
  while (const auto* node = senders_.Step()) {
    if (node->element == nullptr) return;
    node->element->handlers_.Remove(this);
  }
}

void LinkHandler(HvMessageHandler* handler, HvMessageSender* sender) {
  if (handler == nullptr || sender == nullptr) return;
  if (!sender->handlers_.Contains(handler)) sender->handlers_.Append(handler);
  if (!handler->senders_.Contains(sender)) handler->senders_.Append(sender);
}

}  // namespace vblur
