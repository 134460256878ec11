// Senders of messages and those who hear them. A link stands in both lists, once, until either side goes.
// One thread; a handler does not send on the sender that it is called from.
#pragma once

#include "overlay/HvList.h"
#include "overlay/HvMessage.h"

namespace vblur {

class HvMessageHandler;

// May have several handlers only if it outlives all but the first: with it goes the first handler's entry
// for it, and no other's.
class HvMessageSender {
 public:
  HvMessageSender() = default;
  virtual ~HvMessageSender();
  HvMessageSender(const HvMessageSender&) = delete;
  HvMessageSender& operator=(const HvMessageSender&) = delete;

  // To every handler, in the order in which they were linked.
  void Send(const HvMessage& message);

  const HvList<HvMessageHandler*>& handlers() const { return handlers_; }

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

  // `sender` is null for a message that comes straight from the viewer tool.
  virtual void HandleMessage(const HvMessage& message, HvMessageSender* sender) = 0;

  const HvList<HvMessageSender*>& senders() const { return senders_; }

 private:
  friend class HvMessageSender;
  friend void LinkHandler(HvMessageHandler* handler, HvMessageSender* sender);

  HvList<HvMessageSender*> senders_;
};

// Nothing for null, and nothing new for a pair that is linked already.
void LinkHandler(HvMessageHandler* handler, HvMessageSender* sender);

}  // namespace vblur
