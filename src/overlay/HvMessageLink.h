// Links between senders and handlers of messages. A link is once in both lists until either side is destroyed.
// One thread. A handler must not send on the sender that is calling it.
#pragma once

#include "overlay/HvList.h"
#include "overlay/HvMessage.h"

namespace vblur {

class HvMessageHandler;

// Its destructor unlinks only the first handler: a sender with several must outlive the others.
class HvMessageSender {
 public:
  HvMessageSender() = default;
  virtual ~HvMessageSender();
  HvMessageSender(const HvMessageSender&) = delete;
  HvMessageSender& operator=(const HvMessageSender&) = delete;

  // Calls every handler in the order of linking.
  void Send(const HvMessage& message);

  // For tests.
  const HvList<HvMessageHandler*>& Handlers() const { return handlers_; }

 private:
  friend class HvMessageHandler;
  friend void LinkHandler(HvMessageHandler* handler, HvMessageSender* sender);

  HvList<HvMessageHandler*> handlers_;
};

class HvMessageHandler {
 public:
  HvMessageHandler() = default;
  virtual ~HvMessageHandler();
  HvMessageHandler(const HvMessageHandler&) = delete;
  HvMessageHandler& operator=(const HvMessageHandler&) = delete;

  // `sender` is null for a message from the viewer tool.
  virtual void HandleMessage(const HvMessage& message, HvMessageSender* sender) = 0;

  // For tests.
  const HvList<HvMessageSender*>& Senders() const { return senders_; }

 private:
  friend class HvMessageSender;
  friend void LinkHandler(HvMessageHandler* handler, HvMessageSender* sender);

  HvList<HvMessageSender*> senders_;
};

// Ignores null; a pair that is already linked stays linked once.
void LinkHandler(HvMessageHandler* handler, HvMessageSender* sender);

}  // namespace vblur
