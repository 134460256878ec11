// Records the messages of a widget as "id kind payload; ".
#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <utility>

#include "overlay/HvMessageLink.h"

namespace vblur::test {

class Hearer : public HvMessageHandler {
 public:
  explicit Hearer(HvMessageSender& sender) { LinkHandler(this, &sender); }

  void HandleMessage(const HvMessage& message, HvMessageSender*) override {
    std::ostringstream out;
    out << message.Id() << ' ' << message.Kind();
    if (message.Kind() == kHoldsNumber) out << ' ' << message.AsNumber();
    if (message.Kind() == kHoldsWhole) out << ' ' << message.AsWhole();
    text_ += out.str() + "; ";
    if (whileHearing) whileHearing();
  }
  std::string take() { return std::exchange(text_, {}); }

  std::function<void()> whileHearing;

 private:
  std::string text_;
};

}  // namespace vblur::test
