// Statics of functions, which the compiler initialises by the server's guards.
#include <atomic>
#include <barrier>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vblur {
namespace {

constexpr int kThreads = 8;
// Long enough for threads that begin together to meet in an initialiser.
constexpr auto kSlow = std::chrono::milliseconds(100);

// Eight threads that begin together.
template <class Body>
void RunTogether(const Body& body) {
  std::barrier begin(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&] {
      begin.arrive_and_wait();
      body();
    });
  for (std::thread& thread : threads)
    thread.join();
}

std::atomic<int> slowRuns = 0;

int SlowValue() {
  static const int value = [] {
    ++slowRuns;
    std::this_thread::sleep_for(kSlow);
    return 42;
  }();
  return value;
}

TEST(StaticGuards, ManyThreadsInitialiseOnce) {
  std::atomic<int> right = 0;
  RunTogether([&] { right += SlowValue() == 42 ? 1 : 0; });
  EXPECT_EQ(slowRuns, 1);
  EXPECT_EQ(right, kThreads) << "the others wait for the value";
  EXPECT_EQ(SlowValue(), 42);
  EXPECT_EQ(slowRuns, 1);
}

int throwingRuns = 0;

int ValueOfSecondTry() {
  static const int value = [] {
    if (++throwingRuns == 1) throw std::runtime_error("not yet");
    return 7;
  }();
  return value;
}

TEST(StaticGuards, AnInitialiserThatThrewRunsAgain) {
  EXPECT_THROW(ValueOfSecondTry(), std::runtime_error);
  EXPECT_EQ(ValueOfSecondTry(), 7);
  EXPECT_EQ(ValueOfSecondTry(), 7);
  EXPECT_EQ(throwingRuns, 2);
}

std::atomic<int> sharedRuns = 0;

int ValueOfThirdTry() {
  static const int value = [] {
    const int run = ++sharedRuns;
    std::this_thread::sleep_for(kSlow);
    if (run < 3) throw std::runtime_error("not yet");
    return 9;
  }();
  return value;
}

TEST(StaticGuards, OneOfThoseThatWaitTriesAgain) {
  std::atomic<int> thrown = 0;
  std::atomic<int> right = 0;
  RunTogether([&] {
    try {
      right += ValueOfThirdTry() == 9 ? 1 : 0;
    } catch (const std::runtime_error&) {
      ++thrown;
    }
  });
  EXPECT_EQ(sharedRuns, 3);
  EXPECT_EQ(thrown, 2);
  EXPECT_EQ(right, kThreads - 2);
}

int InnerValue() {
  static const int value = [] { return 5; }();
  return value;
}

// Another thread needs the inner one while the outer one runs.
int OuterValue() {
  static const int value = [] {
    int inner = 0;
    std::thread([&] { inner = InnerValue(); }).join();
    return inner + 1;
  }();
  return value;
}

TEST(StaticGuards, OneStaticNeedNotWaitForAnother) {
  EXPECT_EQ(OuterValue(), 6);
}

}  // namespace
}  // namespace vblur
