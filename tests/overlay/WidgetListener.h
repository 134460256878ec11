// Hears a widget's messages, for tests.
#pragma once

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "overlay/HvMessageLink.h"

namespace vblur::test {

class WidgetListener : public HvMessageHandler {
 public:
  explicit WidgetListener(HvMessageSender& sender) : sender_(sender) { LinkHandler(this, &sender); }

  void HandleMessage(const HvMessage& message, HvMessageSender* sender) override {
    EXPECT_EQ(sender, &sender_);
    heard_ += std::to_string(message.id()) + ':' + payloadOf(message) + ' ';
    if (whenHeard) whenHeard(message);
  }

  // What was heard since the last call: id and payload of each message, "200:3 201:3 ".
  std::string heard() { return std::exchange(heard_, {}); }

  std::function<void(const HvMessage&)> whenHeard;

 private:
  static std::string payloadOf(const HvMessage& message) {
    switch (message.kind()) {
      case kHoldsNothing: return "none";
      case kHoldsWhole: return std::to_string(message.asWhole());
      case kHoldsNumber: return std::to_string(message.asNumber());
      default: return "kind " + std::to_string(message.kind());
    }
  }

  HvMessageSender& sender_;
  std::string heard_;
};

}  // namespace vblur::test
