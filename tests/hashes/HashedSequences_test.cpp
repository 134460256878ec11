#include "tests/hashes/HashedSequences.h"

#include <set>

#include <gtest/gtest.h>

#include "host/jobs/FramePattern.h"
#include "host/jobs/JobCheck.h"

namespace vblur::hashes {
namespace {

TEST(HashedSequences, HaveJobsOfAllTheirFrames) {
  for (const HashedSequence& sequence : DrawSequences(8)) {
    EXPECT_NO_THROW(host::CheckJob(sequence.job)) << sequence.name;
    ASSERT_EQ(sequence.job.frames->Count(), kFramesOfSequence);
    ASSERT_EQ(sequence.frames.size(), std::size_t{kFramesOfSequence});
    for (std::int32_t i = 0; i < kFramesOfSequence; ++i) {
      const host::Job& job = sequence.frames[static_cast<std::size_t>(i)].frame.job;
      EXPECT_EQ(job.time, sequence.job.time + i);
      EXPECT_EQ(job.output.file, host::FramePattern(sequence.job.output.file).FileName(i));
      EXPECT_EQ(*job.output.initial, host::FramePattern(*sequence.job.output.initial).FileName(i));
      for (const Property& property : kProperties) {
        EXPECT_EQ(sequence.job.properties.ValueAt(property.guid, job.time),
                  job.properties.ValueAt(property.guid, job.time))
            << property.name;
      }
    }
  }
}

TEST(HashedSequences, HavePicturesAndNumbersOfTheirOwnInEachFrame) {
  for (const HashedSequence& sequence : DrawSequences(8)) {
    std::set<std::vector<std::int32_t>> outputs;
    std::set<std::string> names;
    for (const NamedFrame& each : sequence.frames) {
      names.insert(each.name);
      outputs.insert(each.frame.initial.values);
    }
    EXPECT_EQ(names.size(), sequence.frames.size());
    EXPECT_GT(outputs.size(), sequence.frames.size() / 2);
  }
}

TEST(HashedSequences, AreOfAllUsesAndDepths) {
  std::set<host::EffectKind> kinds;
  std::set<std::int32_t> depths;
  for (const HashedSequence& sequence : DrawSequences(kSequences)) {
    kinds.insert(*sequence.job.kind);
    depths.insert(*sequence.job.depth);
  }
  EXPECT_EQ(kinds.size(), 6U);
  EXPECT_EQ(depths.size(), 2U);
}

}  // namespace
}  // namespace vblur::hashes
