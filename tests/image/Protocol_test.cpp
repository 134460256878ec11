// The protocol of the processors: the order of their operations, passes, stops and refusals.
#include <atomic>
#include <string>

#include <gtest/gtest.h>

#include "image/Combiner.h"
#include "image/Generator.h"
#include "image/HvImgProc1.h"
#include "image/HvImgProc3.h"
#include "image/Sampler.h"
#include "tests/support/StandardError.h"
#include "tests/support/StopAfter.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

using Frame = HvTexture<R8, Rf>;

// What was called, in order: a letter for each operation and the number of the pass.
class Log {
 public:
  void note(const char* operation) { text_ += operation; }
  void note(const char* operation, std::int32_t pass) { text_ += operation + std::to_string(pass) + " "; }
  void countRows() { ++rows_; }
  void noteRows(std::int32_t pass) { note("rows", pass); }
  const std::string& text() const { return text_; }
  std::int32_t rows() const { return rows_; }

 private:
  std::string text_;
  std::atomic<std::int32_t> rows_{0};
};

class LoggingSampler : public Sampler<Frame, Frame>, public Log {
 public:
  void preProcess(Frame*, Frame* target) override {
    note("pre ");
    EXPECT_EQ(map, target);
    EXPECT_EQ(mapWidth, target->width());
    EXPECT_EQ(mapHeight, target->height());
    EXPECT_EQ(HvThreadIndex(), 0);
  }
  void processRows(Frame*, Frame*) override {
    countRows();
    if (HvThreadIndex() == 0) noteRows(pass);
  }
  void postProcess(Frame*, Frame*) override { note("post"); }
  void prePass(Frame*, Frame*) override { note("before", pass); }
};

class LoggingCombiner : public Combiner<Frame, Frame, Frame>, public Log {
 public:
  void preProcess(Frame*, Frame*, Frame*) override { note("pre "); }
  void processRows(Frame*, Frame*, Frame*) override {
    countRows();
    if (HvThreadIndex() == 0) noteRows(pass);
  }
  void postProcess(Frame*, Frame*, Frame*) override { note("post"); }
};

class LoggingGenerator : public Generator<Frame>, public Log {
 public:
  void preProcess(Frame*) override { note("pre "); }
  void processRows(Frame*) override {
    countRows();
    if (HvThreadIndex() == 0) noteRows(pass);
  }
  void postProcess(Frame*) override { note("post"); }
};

template <class Base>
class LoggingProc : public Base, public Log {
 public:
  void preProcess() override { note("pre "); }
  void processRows() override {
    countRows();
    EXPECT_EQ((this->flags & HvImgProc::kSharingRows) != 0, (this->options & HvImgProc::kUseThreads) != 0);
    if (HvThreadIndex() == 0) noteRows(this->pass);
  }
  void postProcess() override { note("post"); }
  void prePass() override { note("before", this->pass); }
  void postPass() override { note("after", this->pass); }
};

class Protocol : public ::testing::Test {
 protected:
  ThreadCount threads_{3};
  Frame target_{6, 6};
  Frame empty_;
};

TEST_F(Protocol, OfASampler) {
  LoggingSampler sampler;
  sampler.setPasses(2);
  sampler.process(&empty_, &target_);
  EXPECT_EQ(sampler.text(), "pre before0 rows0 before1 rows1 post");
  EXPECT_EQ(sampler.rows(), 6);
}

TEST_F(Protocol, OfACombiner) {
  LoggingCombiner combiner;
  combiner.setPasses(2);
  combiner.process(&empty_, &empty_, &target_);
  EXPECT_EQ(combiner.text(), "pre rows0 rows1 post");
  EXPECT_EQ(combiner.rows(), 6);
}

TEST_F(Protocol, OfAGenerator) {
  LoggingGenerator generator;
  generator.process(&target_);
  EXPECT_EQ(generator.text(), "pre rows0 post");
  EXPECT_EQ(generator.rows(), 3);
}

TEST_F(Protocol, OfAProcessorWithMembers) {
  LoggingProc<HvImgProc1<Frame>> proc;
  proc.setPasses(2);
  proc.process(&target_);
  EXPECT_EQ(proc.text(), "pre before0 rows0 after0 before1 rows1 after1 post");
  EXPECT_EQ(proc.rows(), 6);
  EXPECT_EQ(proc.map, nullptr);
  EXPECT_EQ(proc.flags & HvImgProc::kSharingRows, 0u);
}

TEST_F(Protocol, OfNoPassesHasNoRows) {
  LoggingSampler sampler;
  sampler.setPasses(0);
  sampler.process(&empty_, &target_);
  EXPECT_EQ(sampler.text(), "pre post");
}

TEST_F(Protocol, OnTheCallingThreadAlone) {
  LoggingSampler sampler;
  sampler.flags |= Imager::kOneThread;
  sampler.process(&empty_, &target_);
  EXPECT_EQ(sampler.rows(), 1);
  LoggingProc<HvImgProc1<Frame>> proc;
  proc.options = 0;
  proc.process(&target_);
  EXPECT_EQ(proc.rows(), 1);
}

TEST_F(Protocol, HandsTheTexturesToTheMembersForTheRunOnly) {
  class Members : public HvImgProc3<Frame, Frame, Frame> {
   public:
    void preProcess() override {
      EXPECT_EQ(imageA, a);
      EXPECT_EQ(imageB, nullptr);
      EXPECT_EQ(target, out);
    }
    bool holdsNothing() const { return target == nullptr && imageA == nullptr && imageB == nullptr; }
    const Frame* a = nullptr;
    Frame* out = nullptr;
  } members;
  members.a = &empty_;
  members.out = &target_;
  EXPECT_TRUE(members.holdsNothing());
  members.process(&empty_, nullptr, &target_);
  EXPECT_TRUE(members.holdsNothing());
}

TEST_F(Protocol, PollsBeforeEachPassAndFinishesAfterAStop) {
  const std::pair<std::int32_t, const char*> cases[] = {
      {0, "pre post"}, {1, "pre before0 rows0 post"}, {2, "pre before0 rows0 before1 rows1 post"}};
  for (const auto& [polls, expected] : cases) {
    LoggingSampler sampler;
    sampler.setPasses(2);
    StopAfter stop(polls);
    sampler.interrupt = &stop.record;
    sampler.process(&empty_, &target_);
    EXPECT_EQ(sampler.text(), expected);
    EXPECT_EQ(stop.asked(), polls < 2 ? polls + 1 : 2);
  }
}

TEST_F(Protocol, OfAProcessorWithMembersPollsTwiceAPassAndLeavesAnInterruptedOneUnfinished) {
  const std::pair<std::int32_t, const char*> cases[] = {{0, "pre post"},
                                                        {1, "pre before0 post"},
                                                        {2, "pre before0 rows0 after0 post"},
                                                        {3, "pre before0 rows0 after0 before1 post"}};
  for (const auto& [polls, expected] : cases) {
    LoggingProc<HvImgProc1<Frame>> proc;
    proc.setPasses(2);
    StopAfter stop(polls);
    proc.interrupt = &stop.record;
    proc.process(&target_);
    EXPECT_EQ(proc.text(), expected);
    EXPECT_EQ(stop.asked(), polls + 1);
    EXPECT_EQ(proc.map, nullptr);
  }
}

TEST_F(Protocol, RefusesATargetWithAMessageAndCallsNothing) {
  LoggingSampler sampler;
  EXPECT_EQ(standardErrorOf([&] { sampler.process(&target_, nullptr); }),
            "Map passed into Generator::process is NULL\n");
  EXPECT_EQ(standardErrorOf([&] { sampler.process(&target_, &empty_); }),
            "Map passed into Sampler::process is bogus\n");
  EXPECT_EQ(sampler.text(), "");
  LoggingGenerator generator;
  EXPECT_EQ(standardErrorOf([&] { generator.process(nullptr); }), "Map passed into Generator::process is NULL\n");
  EXPECT_EQ(standardErrorOf([&] { generator.process(&empty_); }), "Map passed into Generator::process is bogus\n");
  EXPECT_EQ(generator.text(), "");
  LoggingCombiner combiner;
  EXPECT_EQ(standardErrorOf([&] { combiner.process(&target_, &target_, nullptr); }),
            "Map passed into Combiner::process is NULL\n");
  EXPECT_EQ(standardErrorOf([&] { combiner.process(&target_, &target_, &empty_); }),
            "Map passed into Generator::process is bogus\n");
  EXPECT_EQ(combiner.text(), "");
}

TEST_F(Protocol, RefusesATargetWithASizeButNoMemory) {
  Frame hollow;
  hollow.horizontal.setSize(4);
  hollow.vertical.setSize(4);
  LoggingSampler sampler;
  EXPECT_EQ(standardErrorOf([&] { sampler.process(&target_, &hollow); }),
            "Map passed into Sampler::process is bogus\n");
}

TEST_F(Protocol, OfAProcessorWithMembersIgnoresANullTargetInSilence) {
  LoggingProc<HvImgProc1<Frame>> proc;
  EXPECT_EQ(standardErrorOf([&] { proc.process(static_cast<Frame*>(nullptr)); }), "");
  EXPECT_EQ(proc.text(), "");
}

TEST_F(Protocol, SaysNothingOfATargetThatItTakes) {
  LoggingSampler sampler;
  EXPECT_EQ(standardErrorOf([&] { sampler.process(&empty_, &target_); }), "");
}

}  // namespace
}  // namespace vblur::test
