#include "host/jobs/JobCheck.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/host/jobs/CheckedJobs.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

TEST(JobCheck, ResolvesTheKindFromThePictures) {
  Job job = Still();
  EXPECT_EQ(ResolveKind(job), EffectKind::Filter);
  job.mask = MaskRecord{};
  EXPECT_EQ(ResolveKind(job), EffectKind::Paint);
  job.input2 = ImageRecord{};
  EXPECT_EQ(ResolveKind(job), EffectKind::Transition);
  job.kind = EffectKind::Source;
  EXPECT_EQ(ResolveKind(job), EffectKind::Source);
}

TEST(JobCheck, CountsTimeFromTheFirstFrame) {
  Job job = Still();
  job.time = 2.5;
  EXPECT_EQ(FrameTime(job, 0), 2.5);
  EXPECT_EQ(ResolveDuration(job), 1.0);
  job.frames = FrameRange{-10, 37, 3};
  EXPECT_EQ(FrameTime(job, -10), 2.5);
  EXPECT_EQ(FrameTime(job, -4), 8.5);
  EXPECT_EQ(ResolveDuration(job), 48.0);
  job.duration = 12.5;
  EXPECT_EQ(ResolveDuration(job), 12.5);
  job.frames = FrameRange{std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max(), 1};
  job.duration.reset();
  EXPECT_EQ(ResolveDuration(job), 4294967296.0);
  EXPECT_EQ(FrameTime(job, std::numeric_limits<std::int32_t>::max()), 4294967297.5);
}

TEST(JobCheck, CountsTimeFromTheStart) {
  Job job = Sequence();
  job.time = 2.5;
  job.start = 10;
  EXPECT_EQ(FrameTime(job, 1), -6.5);
  EXPECT_EQ(FrameTime(job, 48), 40.5);
  EXPECT_EQ(ResolveDuration(job), 48.0);
}

TEST(JobCheck, OtherFramesHaveTheTimesAndTheLengthOfTheJob) {
  Job job = Sequence();
  job.time = 2.5;
  for (const FrameRange frames : {FrameRange{20, 29, 1}, FrameRange{25, 25, 1}, FrameRange{1, 48, 3}}) {
    TakeFrames(job, frames);
    EXPECT_EQ(job.frames, frames);
    EXPECT_EQ(FrameTime(job, 25), 26.5);
    EXPECT_EQ(ResolveDuration(job), 48.0);
  }
  Job still = Still();
  TakeFrames(still, FrameRange{7, 9, 1});
  EXPECT_EQ(FrameTime(still, 7), 7.0);
  still = Still();
  still.input2 = ImageRecord{"b.png", {}, {}, {0, 0}};
  EXPECT_EQ(UsageFailureOf([&] {
              TakeFrames(still, FrameRange{7, 9, 1});
            }),
            "duration: missing, expected the length of the transition, since the job has no frames to take it from");
  still.duration = 12.0;
  EXPECT_NO_THROW(TakeFrames(still, FrameRange{7, 9, 1}));
}

TEST(JobCheck, NumbersOutputsFromTheStart) {
  Job job = Sequence();
  EXPECT_EQ(OutputNumber(job, 7), 7);
  job.output.renumber = 1001;
  EXPECT_EQ(OutputNumber(job, 1), 1001);
  EXPECT_EQ(OutputNumber(job, 48), 1048);
  TakeFrames(job, FrameRange{20, 29, 1});
  EXPECT_EQ(OutputNumber(job, 20), 1020) << "however the work is cut";
  EXPECT_NO_THROW(CheckJob(job));
  job.output.renumber = 2147483640;
  EXPECT_EQ(UsageFailureOf([&] { CheckJob(job); }),
            "output/renumber: frame 20 would have the number 2147483659, expected numbers from -2147483648 to "
            "2147483647");
}

TEST(JobCheck, LooksForRenumberedOutputsAmongTheInputs) {
  Job job = Sequence();
  job.output.file = job.input->file;
  job.output.renumber = 49;
  EXPECT_NO_THROW(CheckJob(job));
  job.output.renumber = 48;
  EXPECT_EQ(UsageFailureOf([&] { CheckJob(job); }),
            "output: \"in.0048.exr\" is the picture that input is read from, expected another file");
}

// A program may advise to replace a picture that no other frame reads.
TEST(JobCheck, TellsWhatMayBeReplaced) {
  Job job = Sequence();
  job.output.file = job.input->file;
  EXPECT_EQ(CaughtFailure([&] { CheckJob(job); })->Kind(), FailureKind::IsInput);
  job.output.renumber = 2;
  EXPECT_EQ(CaughtFailure([&] { CheckJob(job); })->Kind(), FailureKind::Other);
}

TEST(JobCheck, AcceptsWhatCanBeRendered) {
  EXPECT_NO_THROW(CheckJob(Still()));
  EXPECT_NO_THROW(CheckJob(Sequence()));
  Job job = Sequence();
  job.field = FieldChoice::Both;
  job.frames = FrameRange{1, 48, 2};
  job.input->file = "still.png";
  job.output.initial = "background.png";
  job.mask = MaskRecord{{"mask.png", {}, {}, {0, 0}}, {-5, 5}};
  job.roi = Region{-10, -10, 5, 5};
  EXPECT_NO_THROW(CheckJob(job));
  for (const EffectKind kind : {EffectKind::Generator, EffectKind::Other}) {
    Job generator;
    generator.kind = kind;
    generator.output.file = "out.png";
    generator.output.width = generator.output.height = 1;
    EXPECT_NO_THROW(CheckJob(generator));
  }
}

TEST(JobCheck, RefusesMissingPictures) {
  const auto use = [](EffectKind kind) { return [kind](Job& job) { job.kind = kind; }; };
  for (const EffectKind kind : {EffectKind::Filter, EffectKind::Source, EffectKind::Paint, EffectKind::Transition}) {
    Job job = Still();
    job.input.reset();
    EXPECT_EQ(FailureWith(job, use(kind)), "input: missing, expected a picture to work on");
  }
  EXPECT_EQ(FailureWith(Still(), use(EffectKind::Transition)),
            "input2: missing, expected a second clip for a transition");
  EXPECT_EQ(FailureWith(Still(), use(EffectKind::Paint)), "mask: missing, expected a mask to paint through");
  Job job = Still();
  job.input.reset();
  job.kind = EffectKind::Generator;
  EXPECT_EQ(FailureWith(job,
                        [](Job& j) {
                          j.mask = MaskRecord{{"m.png", {}, {}, {}}, {}};
                        }),
            "mask: lies relative to the input, expected an input too");
  for (const bool hasWidth : {true, false}) {
    EXPECT_EQ(FailureWith(job, [&](Job& j) { (hasWidth ? j.output.width : j.output.height) = 5; }),
              "output: expected width and height, since there is no input to take them from");
  }
}

TEST(JobCheck, RefusesAnOutsideOfNothing) {
  const auto set = [](Job& job) { job.outside = OutsideChoice::Keep; };
  EXPECT_EQ(FailureWith(Still(), set), "outside: there is no region to be outside of, expected roi too");
  Job job = Still();
  job.roi = Region{0, 0, 5, 5};
  EXPECT_NO_THROW([&] {
    Job kept = job;
    set(kept);
    CheckJob(kept);
  }());
  job.output.initial = "start.png";
  EXPECT_EQ(FailureWith(job, set), "outside: output/initial is what the output holds there, expected one of the two");
  job.output.initial.reset();
  job.input.reset();
  job.kind = EffectKind::Generator;
  job.output.width = job.output.height = 8;
  EXPECT_EQ(FailureWith(job, set), "outside: there is no input to keep, expected clear");
}

TEST(JobCheck, RefusesFileNamesThatDoNotFitTheFrames) {
  EXPECT_EQ(FailureWith(Sequence(), [](Job& job) { job.output.file = "out.exr"; }),
            "output: 48 frames would all be written to \"out.exr\", expected a file name with a frame number such as "
            "out.%04d.png");
  const auto unnumbered = [](const std::string& field) {
    return field + ": the file name \"x.%04d.exr\" takes a frame number, expected frames such as 1-48";
  };
  EXPECT_EQ(FailureWith(Still(), [](Job& job) { job.output.file = "x.%04d.exr"; }), unnumbered("output"));
  EXPECT_EQ(FailureWith(Still(), [](Job& job) { job.input->file = "x.%04d.exr"; }), unnumbered("input"));
  EXPECT_EQ(FailureWith(Still(), [](Job& job) { job.output.initial = "x.%04d.exr"; }), unnumbered("output/initial"));
  EXPECT_EQ(FailureWith(Still(), [](Job& job) { job.input->file = "%d%d"; }),
            "input: \"%d%d\": expected one frame number, found two");
  Job single = Still();
  single.frames = FrameRange{5, 5, 1};
  EXPECT_NO_THROW(CheckJob(single));
}

TEST(JobCheck, RefusesWrongValues) {
  const std::pair<void (*)(Job&), const char*> refusals[] = {
      {[](Job& job) { job.depth = 12; }, "depth: expected 8, 16 or 32, found 12"},
      {[](Job& job) { job.kind = static_cast<EffectKind>(6); }, "use: expected 1 to 5 or 7, found 6"},
      {[](Job& job) { job.input->file.clear(); }, "input: expected a file name, found none"},
      {[](Job& job) { job.output.file.clear(); }, "output: expected a file name, found none"},
      {[](Job& job) { job.output.initial = ""; }, "output/initial: expected a file name, found none"},
      {[](Job& job) {
         job.input->position = {0, NAN};
       },
       "input/position: expected a finite number, found nan"},
      {[](Job& job) {
         job.output.size = {INFINITY, 0};
       },
       "output/size: expected a finite number, found inf"},
      {[](Job& job) {
         job.input->size = {10, 0};
       },
       "input/size: expected a width and a height above 0, found 0"},
      {[](Job& job) {
         job.output.size = {-2, 10};
       },
       "output/size: expected a width and a height above 0, found -2"},
      {[](Job& job) {
         job.input->size = {1e-60, 10};
       },
       "input/size: expected a width and a height above 0, found 1e-60"},
      {[](Job& job) { job.output.width = 0; }, "output/width: expected at least 1, found 0"},
      {[](Job& job) { job.output.height = -4; }, "output/height: expected at least 1, found -4"},
      {[](Job& job) {
         job.roi = Region{0, 0, 0, 1};
       },
       "roi width: expected at least 1, found 0"},
      {[](Job& job) {
         job.roi = Region{0, 0, 1, -1};
       },
       "roi height: expected at least 1, found -1"},
      {[](Job& job) {
         job.roi = Region{2147483647, 0, 2, 1};
       },
       "roi: reaches pixel 2147483647, expected pixels from -536870912 to 536870911"},
      {[](Job& job) {
         job.frames = FrameRange{5, 4, 1};
       },
       "frames: expected a last frame that is not before the first, found 5-4"},
      {[](Job& job) {
         job.frames = FrameRange{1, 4, 0};
       },
       "frame step: expected at least 1, found 0"},
      {[](Job& job) { job.time = NAN; }, "time: expected a finite number, found nan"},
      {[](Job& job) { job.duration = -INFINITY; }, "duration: expected a finite number, found -inf"},
      {[](Job& job) { job.duration = -0.5; }, "duration: expected 0 or more, found -0.5"},
      {[](Job& job) { job.proxy[0] = 0.0; }, "proxy: expected two factors above 0, found 0"},
      {[](Job& job) { job.proxy[1] = -1.0; }, "proxy: expected two factors above 0, found -1"},
      {[](Job& job) { job.proxy[1] = NAN; }, "proxy: expected a finite number, found nan"},
      {[](Job& job) {
         job.project = ProjectSizes{{NAN, 1}, {1, 1}};
       },
       "project/userSize: expected a finite number, found nan"},
      {[](Job& job) {
         job.project = ProjectSizes{{1, 1}, {1, NAN}};
       },
       "project/worldSize: expected a finite number, found nan"},
  };
  for (const auto& [change, message] : refusals)
    EXPECT_EQ(FailureWith(Still(), change), message);
}

TEST(JobCheck, RefusesPixelsBeyondThoseThatCount) {
  const std::string expected = ", expected pixels from -536870912 to 536870911";
  EXPECT_EQ(FailureWith(Still(),
                        [](Job& job) {
                          job.input->origin = {0, 2147483600};
                        }),
            "input/origin: reaches pixel 2147483600" + expected);
  EXPECT_EQ(FailureWith(Still(),
                        [](Job& job) {
                          job.output.origin = {-536870913, 0};
                        }),
            "output/origin: reaches pixel -536870913" + expected);
  Job job = Still();
  job.input->origin = {-100, 536870812};
  job.roi = Region{0, 0, 10, 100};
  EXPECT_NO_THROW(CheckJob(job));
  EXPECT_EQ(FailureWith(job, [](Job& j) { j.roi->height = 101; }), "roi: reaches pixel 536870912" + expected);
  job.roi.reset();
  EXPECT_EQ(FailureWith(job,
                        [](Job& j) {
                          j.mask = MaskRecord{{"m.png", {}, {}, {}}, {-536870900, 0}};
                        }),
            "mask/offset: reaches pixel -536871000" + expected);
  const auto widen = [](Job& j) {
    j.output.origin = {536870900, 0};
    j.output.width = 13;
  };
  EXPECT_EQ(FailureWith(Still(), widen), "output: reaches pixel 536870912" + expected);
  EXPECT_EQ(FailureWith(Still(), [](Job& j) { j.output.height = 67108865; }),
            "output/height: expected at most 67108864 pixels, found 67108865");
}

// Where the sizes of the pictures are known.
TEST(JobCheck, RefusesPicturesThatReachBeyondThePixelsThatCount) {
  const auto failure = [](const PixelPosition& corner, std::int32_t width, std::int32_t height) {
    return UsageFailureOf([&] { CheckPictureAt("input", corner, width, height); });
  };
  EXPECT_NO_THROW(CheckPictureAt("input", {536870812, -536870912}, 100, 67108864));
  EXPECT_EQ(failure({536870812, 0}, 101, 1),
            "input: reaches pixel 536870912, expected pixels from -536870912 to 536870911");
  EXPECT_EQ(failure({0, -4294967296}, 1, 1),
            "input: reaches pixel -4294967296, expected pixels from -536870912 to 536870911");
  EXPECT_EQ(failure({0, 0}, 67108865, 1), "input: expected at most 67108864 pixels, found 67108865");
}

TEST(JobCheck, RefusesPropertyValuesThatAreNotAllowed) {
  const auto set = [](PropertyId id, const PropertyStore::Setting& setting) {
    return [=](Job& job) { job.properties.Set(PropertyOf(id).guid, setting); };
  };
  EXPECT_EQ(FailureWith(Still(), set(PropertyId::Blur, INFINITY)),
            "properties/Blur: expected a finite number, found inf");
  EXPECT_EQ(FailureWith(Still(), set(PropertyId::Blur, Curve{{{0, 1}, {1, NAN}}, {}})),
            "properties/Blur: expected a finite number, found nan");
  EXPECT_EQ(FailureWith(Still(), set(PropertyId::Blur, Curve{{{0, 1}, {INFINITY, 1}}, {}})),
            "properties/Blur: expected a finite number, found inf");
  EXPECT_EQ(FailureWith(Still(), set(PropertyId::Method, 2.0)),
            "properties/Method: expected one of Blur, Sharpen, or a whole number from 0 to 1, found 2");
  EXPECT_NO_THROW([&] {
    Job job = Still();
    set(PropertyId::Blur, 100000.0)(job);
    CheckJob(job);
  }());
}

TEST(JobCheck, LetsATransitionHaveNoLength) {
  Job job = Still();
  job.input2 = ImageRecord{"b.png", {}, {}, {0, 0}};
  job.duration = 0.0;
  EXPECT_NO_THROW(CheckJob(job));
}

TEST(JobCheck, RefusesAnOutputThatIsAnInput) {
  const auto same = [](const std::string& name, const std::string& field) {
    return "output: \"" + name + "\" is the picture that " + field + " is read from, expected another file";
  };
  EXPECT_EQ(FailureWith(Still(), [](Job& job) { job.output.file = "../shots/./in.png"; }),
            same("../shots/./in.png", "input"));
  EXPECT_EQ(FailureWith(Sequence(), [](Job& job) { job.output.file = "in.####.exr"; }), same("in.0001.exr", "input"));
  // Patterns of different widths give the same name for long numbers.
  EXPECT_EQ(FailureWith(Sequence(),
                        [](Job& job) {
                          job.output.file = "in.%03d.exr";
                          job.frames = FrameRange{1, 1001, 1};
                        }),
            same("in.1000.exr", "input"));
  EXPECT_NO_THROW([] {
    Job job = Sequence();
    job.output.file = "in.%03d.exr";
    CheckJob(job);
  }());
}

TEST(JobCheck, RefusesASequenceThatRunsOverAStill) {
  const auto over = [](const std::string& still, const FrameRange& frames) {
    Job job = Sequence();
    job.mask = MaskRecord{{still, {}, {}, {}}, {}};
    job.frames = frames;
    try {
      CheckJob(job);
    } catch (const Failure&) {
      return true;
    }
    return false;
  };
  EXPECT_TRUE(over("out.0017.exr", {1, 48, 1}));
  EXPECT_TRUE(over("out.-017.exr", {-20, 48, 1}));
  EXPECT_TRUE(over("/shots/out.12345.exr", {1, 20000, 2}));
  EXPECT_FALSE(over("out.0049.exr", {1, 48, 1}));
  EXPECT_FALSE(over("out.0018.exr", {1, 48, 2}));
  EXPECT_FALSE(over("out.017.exr", {1, 48, 1}));
}

TEST(JobCheck, RefusesAnOutputThatAnotherFrameReads) {
  const auto over = [](Job& job) {
    job.input->file = "in.%04d.exr";
    job.output.file = "in.1%03d.exr";
    job.frames = FrameRange{5, 1005, 5};
  };
  EXPECT_EQ(FailureWith(Sequence(), over),
            "output: \"in.1005.exr\" is the picture that input is read from, expected another file");
}

TEST(JobCheck, RefusesASequenceThatFeedsItself) {
  const auto failure = [](const auto& change) {
    Job job = Sequence();
    change(job);
    return UsageFailureOf([&] { CheckJob(job, {.outputMayBeInput = true}); });
  };
  EXPECT_EQ(failure([](Job& job) {
              job.input->file = "in.%04d.exr";
              job.output.file = "in.1%03d.exr";
              job.frames = FrameRange{5, 1005, 5};
            }),
            "output: \"in.1005.exr\" of frame 5 is the picture that frame 1005 reads as input, expected another file");
  EXPECT_EQ(
      failure([](Job& job) { job.mask.emplace().file = "out.0007.exr"; }),
      "output: \"out.0007.exr\" of frame 7 is the picture that several frames read as mask, expected another file");
  EXPECT_EQ(failure([](Job& job) { job.output.initial = "out.0009.exr"; }),
            "output: \"out.0009.exr\" of frame 9 is the picture that several frames read as output/initial, expected "
            "another file");
  Job job = Sequence();
  job.output.file = "in.%04d.exr";
  job.output.initial = job.output.file;
  EXPECT_NO_THROW(CheckJob(job, {.outputMayBeInput = true}));
}

TEST(JobCheck, HoldsAMillionFrames) {
  Job job = Sequence();
  job.frames = FrameRange{1, 1000001, 1};
  EXPECT_EQ(UsageFailureOf([&] { CheckJob(job); }), "frames: 1000001 frames, expected at most 1000000");
  job.frames = FrameRange{1, 1000000, 1};
  EXPECT_EQ(FailureWith(job, [](Job& j) { j.output.file = "out.exr"; }),
            "output: 1000000 frames would all be written to \"out.exr\", expected a file name with a frame number such "
            "as out.%04d.png");
  job.frames = FrameRange{1, 2000000, 200};
  EXPECT_NO_THROW(CheckJob(job));
}

TEST(JobCheck, AllowsAnOutputOverAnInputWithTheOption) {
  Job job = Still();
  job.output.file = "in.png";
  EXPECT_NO_THROW(CheckJob(job, {.outputMayBeInput = true}));
  job.output.file = "out.png";
  job.output.initial = "out.png";
  EXPECT_NO_THROW(CheckJob(job));
}

}  // namespace
}  // namespace vblur::host
