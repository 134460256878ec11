// The contract of all processors. See Subject.h for how to test one.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "image/HvImgProc.h"
#include "tests/support/Scene.h"
#include "tests/support/StandardError.h"
#include "tests/support/StopAfter.h"
#include "tests/support/TypeNames.h"

namespace vblur::test {

inline constexpr std::uint64_t kContractScenes = 16;

// Names the first pixel that differs, counted from the first of row 0.
template <class Pixel>
::testing::AssertionResult samePixels(const std::vector<Pixel>& have, const std::vector<Pixel>& want) {
  if (have.size() != want.size()) return ::testing::AssertionFailure() << have.size() << " pixels, not " << want.size();
  for (std::size_t i = 0; i < have.size(); ++i) {
    if (have[i] == want[i]) continue;
    return ::testing::AssertionFailure() << "pixel " << i << " of " << have.size() << " is "
                                         << ::testing::PrintToString(have[i]) << ", not "
                                         << ::testing::PrintToString(want[i]);
  }
  return ::testing::AssertionSuccess();
}

// The same for the pixels of a scene's target for which counts(x, y) is true, in image coordinates.
template <class S, class Pixel, class Counts>
::testing::AssertionResult samePixelsWhere(const Scene<S>& scene, const std::vector<Pixel>& have,
                                           const std::vector<Pixel>& want, const Counts& counts) {
  const Window whole = scene.wholeTarget();
  std::vector<Pixel> counted = want;
  for (int y = whole.y1; y <= whole.y2; ++y) {
    for (int x = whole.x1; x <= whole.x2; ++x) {
      if (counts(x, y)) counted[scene.indexOf(x, y)] = have[scene.indexOf(x, y)];
    }
  }
  return samePixels(counted, want);
}

template <class S>
class ProcessorContract : public ::testing::Test {
 protected:
  template <class Body>
  static void forScenes(const Body& body) {
    for (std::uint64_t seed = 1; seed <= kContractScenes && !::testing::Test::HasFailure(); ++seed) {
      SCOPED_TRACE("scene " + std::to_string(seed));
      body(seed);
    }
  }
  // For a clause that some processors do not keep: body passes in each scene, or else fails in at least one.
  template <class Body>
  static void forScenesWhere(bool holds, const Body& body) {
    bool failed = false;
    forScenes([&](std::uint64_t seed) {
      const ::testing::AssertionResult same = body(seed);
      failed = failed || !same;
      EXPECT_TRUE(!holds || same) << same.message();
    });
    EXPECT_NE(failed, holds);
  }
  static auto resultOf(std::uint64_t seed, const SceneOptions& options, bool windowed) {
    Scene<S> scene(seed, options);
    Job job;
    if (windowed) job.window = scene.window();
    return scene.run(job);
  }
};

TYPED_TEST_SUITE_P(ProcessorContract);

TYPED_TEST_P(ProcessorContract, WritesNothingButPixelsOfItsTarget) {
  this->forScenes([](std::uint64_t seed) {
    for (const Layout& layout : kLayouts) {
      Scene<TypeParam> scene(seed, {.outLayout = layout, .inLayout = layout});
      Job job;
      if (seed % 2 == 0) job.window = scene.window();
      scene.run(job);
      EXPECT_TRUE(scene.guardsAreIntact());
      EXPECT_TRUE(scene.inputsAreUnchanged());
    }
  });
}

TYPED_TEST_P(ProcessorContract, WritesNothingOutsideItsWindow) {
  this->forScenesWhere(TypeParam::kKeepsToWindow, [](std::uint64_t seed) {
    Scene<TypeParam> scene(seed);
    const auto after = scene.run({.window = scene.window()});
    const Window window = scene.settled(scene.window());
    return samePixelsWhere(scene, after, scene.before(), [&](int x, int y) { return !window.has(x, y); });
  });
}

TYPED_TEST_P(ProcessorContract, GivesInAWindowThatPartOfTheWhole) {
  this->forScenesWhere(TypeParam::kPartsEqualWhole, [](std::uint64_t seed) {
    Scene<TypeParam> scene(seed);
    const auto part = scene.run({.window = scene.window()});
    const auto whole = Scene<TypeParam>(seed).run({});
    const Window window = scene.settled(scene.window());
    return samePixelsWhere(scene, part, whole, [&](int x, int y) { return window.has(x, y); });
  });
}

TYPED_TEST_P(ProcessorContract, GivesTheSameBitsOnAnyNumberOfThreads) {
  std::vector<std::vector<typename TypeParam::OutTexture::Pixel>> first;
  for (const std::int32_t threads : kThreadCounts) {
    const ThreadCount scope(threads);
    this->forScenes([&](std::uint64_t seed) {
      auto result = this->resultOf(seed, {}, seed % 2 == 0);
      if (threads == 1) {
        first.push_back(std::move(result));
      } else {
        EXPECT_TRUE(samePixels(result, first[seed - 1])) << threads << " threads";
      }
    });
  }
}

TYPED_TEST_P(ProcessorContract, GivesTheSameBitsWhateverTheLayoutOfMemory) {
  this->forScenes([this](std::uint64_t seed) {
    const auto plain = this->resultOf(seed, {}, false);
    for (const Layout& layout : kLayouts) {
      EXPECT_TRUE(samePixels(this->resultOf(seed, {.outLayout = layout, .inLayout = {}}, false), plain));
      EXPECT_TRUE(samePixels(this->resultOf(seed, {.outLayout = {}, .inLayout = layout}, false), plain));
      EXPECT_TRUE(samePixels(this->resultOf(seed, {.outLayout = layout, .inLayout = layout}, false), plain));
    }
  });
}

TYPED_TEST_P(ProcessorContract, GivesTheSameBitsInPlace) {
  const SceneOptions apart{.outLayout = {}, .inLayout = {}, .sameAsTarget = true};
  const SceneOptions shared{.outLayout = {}, .inLayout = {}, .shareTarget = true};
  for (const bool windowed : {false, true}) {
    this->forScenesWhere(TypeParam::kMayBeInPlace, [&](std::uint64_t seed) {
      return samePixels(this->resultOf(seed, shared, windowed), this->resultOf(seed, apart, windowed));
    });
  }
}

TYPED_TEST_P(ProcessorContract, GivesTheSameBitsWhereverThePicturesLie) {
  const SceneOptions there{.outLayout = {}, .inLayout = {}, .moveX = -1003, .moveY = 507};
  for (const bool windowed : {false, true}) {
    this->forScenesWhere(TypeParam::kMoves, [&](std::uint64_t seed) {
      return samePixels(this->resultOf(seed, there, windowed), this->resultOf(seed, {}, windowed));
    });
  }
}

// A processor without fields writes all rows.
TYPED_TEST_P(ProcessorContract, WritesOnlyTheRowsOfItsField) {
  for (const std::int32_t threads : {1, 3}) {
    const ThreadCount scope(threads);
    this->forScenes([](std::uint64_t seed) {
      const SceneOptions options{.outLayout = {}, .inLayout = {}, .positive = true};
      const auto whole = Scene<TypeParam>(seed, options).run({});
      for (const std::int32_t mode : {kEvenRows, kOddRows}) {
        Scene<TypeParam> scene(seed, options);
        const auto after = scene.run({.window = {}, .fieldMode = mode});
        const Window target = scene.wholeTarget();
        for (int y = target.y1; y <= target.y2; ++y) {
          const bool writes = !TypeParam::kKnowsFields || (y % 2 == 1) == (mode == kOddRows);
          const auto& expected = writes ? whole : scene.before();
          for (int x = target.x1; x <= target.x2; ++x)
            ASSERT_EQ(after[scene.indexOf(x, y)], expected[scene.indexOf(x, y)]) << x << ", " << y;
        }
      }
    });
  }
}

TYPED_TEST_P(ProcessorContract, ReadsAnEmptyInputAsItsOutsideColour) {
  const SceneOptions empty{.outLayout = {}, .inLayout = {}, .emptyInputs = true};
  const SceneOptions flat{.outLayout = {}, .inLayout = {}, .flatInputs = true};
  this->forScenesWhere(TypeParam::kReadsThroughEdges, [&](std::uint64_t seed) {
    return samePixels(this->resultOf(seed, empty, false), this->resultOf(seed, flat, false));
  });
}

TYPED_TEST_P(ProcessorContract, LeavesATargetWithoutPixelsAlone) {
  typename TypeParam::Inputs inputs;
  const auto refuses = [&](typename TypeParam::OutTexture* target) {
    StopAfter stop(StopAfter::kNever);
    typename TypeParam::Processor processor;
    TypeParam::setUp(processor);
    processor.interrupt = &stop.record;
    standardErrorOf([&] { TypeParam::process(processor, inputs, target); });
    // An HvImgProc runs its passes over no rows.
    if (!std::is_base_of_v<HvImgProc, typename TypeParam::Processor> || target == nullptr) {
      EXPECT_EQ(stop.asked(), 0);
    }
  };
  refuses(nullptr);
  typename TypeParam::OutTexture empty;
  refuses(&empty);
  typename TypeParam::OutTexture::Pixel pixel{};
  const auto before = pixel;
  typename TypeParam::OutTexture flat;
  flat.wrap(5, 0, &pixel);
  refuses(&flat);
  flat.wrap(0, 5, &pixel);
  refuses(&flat);
  flat.wrap(5, 5, nullptr);
  refuses(&flat);
  EXPECT_EQ(pixel, before);
}

TYPED_TEST_P(ProcessorContract, TouchesNothingOnceAFrameIsStopped) {
  this->forScenes([](std::uint64_t seed) {
    StopAfter stop(0);
    EXPECT_NE(poll(&stop.record), 0);
    Scene<TypeParam> scene(seed);
    const auto after = scene.run({.window = {}, .fieldMode = kAllRows, .interrupt = &stop.record});
    EXPECT_TRUE(samePixels(after, scene.before()));
    EXPECT_EQ(stop.asked(), 1);
    EXPECT_EQ(stop.record.state, StopAfter::kReason);
  });
}

TYPED_TEST_P(ProcessorContract, KeepsWhatWasWrittenBeforeAStopAndIsAskedNoMore) {
  const ThreadCount scope(1);
  for (std::uint64_t seed = 1; seed <= 4; ++seed) {
    const auto whole = Scene<TypeParam>(seed).run({});
    bool finished = false;
    for (std::int32_t polls = 0; !finished && polls < 2000; polls += 1 + polls / 8) {
      StopAfter stop(polls);
      Scene<TypeParam> scene(seed);
      const auto after = scene.run({.window = {}, .fieldMode = kAllRows, .interrupt = &stop.record});
      finished = stop.record.interrupted == 0;
      EXPECT_TRUE(scene.guardsAreIntact());
      if (finished) {
        EXPECT_TRUE(samePixels(after, whole));
      } else {
        EXPECT_EQ(stop.asked(), polls + 1);
        for (std::size_t i = 0; TypeParam::kPixelsOldOrNew && i < after.size(); ++i)
          ASSERT_TRUE(after[i] == whole[i] || after[i] == scene.before()[i]) << "pixel " << i;
      }
    }
    EXPECT_TRUE(finished);
  }
}

REGISTER_TYPED_TEST_SUITE_P(ProcessorContract, WritesNothingButPixelsOfItsTarget, WritesNothingOutsideItsWindow,
                            GivesInAWindowThatPartOfTheWhole, GivesTheSameBitsOnAnyNumberOfThreads,
                            GivesTheSameBitsWhateverTheLayoutOfMemory, GivesTheSameBitsInPlace,
                            GivesTheSameBitsWhereverThePicturesLie, WritesOnlyTheRowsOfItsField,
                            ReadsAnEmptyInputAsItsOutsideColour, LeavesATargetWithoutPixelsAlone,
                            TouchesNothingOnceAFrameIsStopped, KeepsWhatWasWrittenBeforeAStopAndIsAskedNoMore);

template <class... Ss>
using Subjects = ::testing::Types<Ss...>;

}  // namespace vblur::test
