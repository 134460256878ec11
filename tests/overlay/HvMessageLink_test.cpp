#include "overlay/HvMessageLink.h"

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace vblur {
namespace {

template <class T>
int countOf(const HvList<T>& list) {
  int count = 0;
  for (const auto* node = list.First(); node != nullptr; node = node->next)
    ++count;
  return count;
}

// Logs its name for each message, then runs `act`.
struct Listener : HvMessageHandler {
  Listener(std::string& heard, std::string ownName) : log(heard), name(std::move(ownName)) {}

  void HandleMessage(const HvMessage& message, HvMessageSender* sender) override {
    lastId = message.Id();
    lastSender = sender;
    log += name;
    if (act) act();
  }

  std::string& log;
  std::string name;
  std::function<void()> act;
  std::uint32_t lastId = 0;
  HvMessageSender* lastSender = nullptr;
};

TEST(HvMessageLink, SendsToEveryHandlerInTheOrderOfLinking) {
  std::string log;
  HvMessageSender sender;
  Listener a(log, "a");
  Listener b(log, "b");
  LinkHandler(&b, &sender);
  LinkHandler(&a, &sender);
  sender.Send(HvMessage(kInteractionEnds));
  EXPECT_EQ(log, "ba");
  EXPECT_EQ(a.lastId, 202u);
  EXPECT_EQ(a.lastSender, &sender);
}

TEST(HvMessageLink, SendsNothingWithoutHandlers) {
  HvMessageSender sender;
  sender.Send(HvMessage(1));
  EXPECT_EQ(sender.Handlers().First(), nullptr);
}

TEST(HvMessageLink, IsOnceInBothLists) {
  std::string log;
  Listener handler(log, "a");
  HvMessageSender sender;
  LinkHandler(&handler, &sender);
  LinkHandler(&handler, &sender);
  EXPECT_EQ(countOf(sender.Handlers()), 1);
  EXPECT_EQ(countOf(handler.Senders()), 1);
  EXPECT_EQ(sender.Handlers().First()->element, &handler);
  EXPECT_EQ(handler.Senders().First()->element, &sender);
}

TEST(HvMessageLink, IgnoresNull) {
  std::string log;
  Listener handler(log, "a");
  HvMessageSender sender;
  LinkHandler(&handler, nullptr);
  LinkHandler(nullptr, &sender);
  LinkHandler(nullptr, nullptr);
  EXPECT_EQ(countOf(handler.Senders()), 0);
  EXPECT_EQ(countOf(sender.Handlers()), 0);
}

TEST(HvMessageLink, StopsSendingAtANullElement) {
  std::string log;
  HvMessageSender sender;
  Listener a(log, "a");
  Listener b(log, "b");
  LinkHandler(&a, &sender);
  const_cast<HvList<HvMessageHandler*>&>(sender.Handlers()).Append(nullptr);
  LinkHandler(&b, &sender);
  sender.Send(HvMessage(1));
  EXPECT_EQ(log, "a");
}

TEST(HvMessageLink, ForgetsAHandlerThatIsDestroyed) {
  std::string log;
  HvMessageSender first;
  HvMessageSender second;
  Listener stays(log, "s");
  {
    Listener goes(log, "g");
    LinkHandler(&goes, &first);
    LinkHandler(&stays, &first);
    LinkHandler(&goes, &second);
  }
  EXPECT_EQ(countOf(first.Handlers()), 1);
  EXPECT_EQ(countOf(second.Handlers()), 0);
  first.Send(HvMessage(1));
  second.Send(HvMessage(1));
  EXPECT_EQ(log, "s");
}

TEST(HvMessageLink, ForgetsASenderThatIsDestroyed) {
  std::string log;
  Listener handler(log, "a");
  HvMessageSender stays;
  {
    HvMessageSender goes;
    LinkHandler(&handler, &goes);
    LinkHandler(&handler, &stays);
  }
  EXPECT_EQ(countOf(handler.Senders()), 1);
  EXPECT_EQ(handler.Senders().First()->element, &stays);
}

TEST(HvMessageLink, LeavesLaterHandlersWithAnEntryForADeadSender) {
  std::string log;
  std::optional<HvMessageSender> sender;
  sender.emplace();
  HvMessageSender* const address = &*sender;
  Listener first(log, "a");
  Listener second(log, "b");
  LinkHandler(&first, address);
  LinkHandler(&second, address);
  sender.reset();
  EXPECT_EQ(countOf(first.Senders()), 0);
  ASSERT_EQ(countOf(second.Senders()), 1);
  EXPECT_EQ(second.Senders().First()->element, address);
  // A sender at the same address, for the second handler's destructor.
  sender.emplace();
}

TEST(HvMessageLink, ANestedSendEndsTheOuterOne) {
  std::string log;
  HvMessageSender sender;
  Listener a(log, "a");
  Listener b(log, "b");
  LinkHandler(&a, &sender);
  LinkHandler(&b, &sender);
  a.act = [&] {
    a.act = nullptr;
    sender.Send(HvMessage(2));
  };
  sender.Send(HvMessage(1));
  EXPECT_EQ(log, "aab");
}

TEST(HvMessageLink, AHandlerMayDestroyItself) {
  std::string log;
  HvMessageSender sender;
  auto goes = std::make_unique<Listener>(log, "g");
  Listener stays(log, "s");
  LinkHandler(goes.get(), &sender);
  LinkHandler(&stays, &sender);
  goes->act = [&] {
    const auto own = std::move(goes->act);
    goes.reset();
  };
  sender.Send(HvMessage(1));
  EXPECT_EQ(log, "g") << "its unlinking walks the sender's list, which ends the sending";
  sender.Send(HvMessage(1));
  EXPECT_EQ(log, "gs");
}

TEST(HvMessageLink, SendsAgainAfterAHandlerThrew) {
  std::string log;
  Listener a(log, "a");
  HvMessageSender sender;
  LinkHandler(&a, &sender);
  a.act = [] { throw std::runtime_error("no"); };
  EXPECT_THROW(sender.Send(HvMessage(1)), std::runtime_error);
  a.act = nullptr;
  sender.Send(HvMessage(1));
  EXPECT_EQ(log, "aa");
}

}  // namespace
}  // namespace vblur
