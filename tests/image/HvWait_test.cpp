#include "image/HvWait.h"

#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vblur::test {
namespace {

using namespace std::chrono_literals;

class HvWait : public testing::Test {
 protected:
  static constexpr std::uint32_t kPlayers = 7;
  static constexpr std::uint32_t kTurns = kPlayers * 15000;

  // Takes its turn when the number says so, and passes it on.
  void Play(std::uint32_t own) {
    for (std::uint32_t turn = own; turn < kTurns; turn += kPlayers) {
      for (std::uint32_t now = number_.load(); now != turn; now = number_.load())
        HvWaitWhile(number_, now);
      number_.store(turn + 1);
      HvWakeAll(number_);
    }
    over_.fetch_add(1);
  }

  // Whether all players are through in time.
  bool EndsWithin(std::chrono::milliseconds time) const {
    for (auto waited = 0ms; waited < time; waited += 10ms) {
      if (over_.load() == kPlayers) return true;
      std::this_thread::sleep_for(10ms);
    }
    return false;
  }

  std::atomic<std::uint32_t> number_{0};
  std::atomic<std::uint32_t> over_{0};
};

// Each player sleeps until another has woken it: one wake that is missed, and all sleep.
TEST_F(HvWait, NoWakeIsMissed) {
  std::vector<std::thread> players;
  for (std::uint32_t i = 0; i < kPlayers; ++i)
    players.emplace_back([this, i] { Play(i); });
  EXPECT_TRUE(EndsWithin(30s)) << "all sleep at turn " << number_.load();
  while (over_.load() != kPlayers) {
    HvWakeAll(number_);
    std::this_thread::sleep_for(100us);
  }
  for (std::thread& player : players)
    player.join();
}

TEST_F(HvWait, ANumberThatIsAnotherIsNotWaitedFor) {
  HvWaitWhile(number_, 1);
}

TEST_F(HvWait, WakesAll) {
  std::vector<std::thread> sleepers;
  for (int i = 0; i < 5; ++i) {
    sleepers.emplace_back([this] {
      while (number_.load() == 0)
        HvWaitWhile(number_, 0);
    });
  }
  std::this_thread::sleep_for(20ms);
  number_.store(1);
  HvWakeAll(number_);
  for (std::thread& sleeper : sleepers)
    sleeper.join();
}

}  // namespace
}  // namespace vblur::test
