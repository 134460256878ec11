#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "host/jobs/FramePattern.h"
#include "host/jobs/FrameRangeText.h"
#include "host/jobs/JobFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

namespace fs = std::filesystem;

std::string TextOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

Job SmallJob(const fs::path& folder) {
  Job job;
  job.folder = folder;
  job.input = ImageRecord{"in.png", {}, {}, {0, 0}};
  job.output.file = "out.png";
  return job;
}

// Makes jobs of every shape.
class JobMaker {
 public:
  explicit JobMaker(std::uint64_t seed) : random_(seed) {}

  Job Make(const fs::path& folder) {
    Job job = SmallJob(folder);
    static_cast<ImageRecord&>(job.output) = Image();
    if (Chance()) job.input = Image();
    if (job.input && Chance()) job.input->layer = Name();
    if (Chance()) job.input2 = Image();
    if (job.input2 && Chance()) job.input2->layer = Name();
    if (Chance()) job.mask = MaskRecord{Image(), {Small(), Small()}};
    if (job.mask && Chance()) job.mask->channel = Name();
    if (Chance()) job.output.width = 1 + std::abs(Small());
    if (Chance()) job.output.height = 1 + std::abs(Small());
    if (Chance()) job.output.initial = Name();
    if (Chance()) job.output.storage.format = Name();
    if (Chance()) job.output.storage.type = static_cast<SampleType>(random_() % kSampleTypeNames.size());
    if (Chance()) job.output.storage.compression = Name();
    if (Chance()) job.output.storage.quality = static_cast<std::int32_t>(random_() % 100) + 1;
    job.premultipliesAround = Chance();
    job.linear = Chance();
    job.steady = Chance();
    if (Chance()) job.depth = Chance() ? 8 : Chance() ? 16 : 32;
    if (Chance()) job.kind = kKinds[random_() % std::size(kKinds)];
    if (Chance()) job.frames = FrameRange{Small(), 2000 + std::abs(Small()), Chance() ? 1 : 1 + std::abs(Small())};
    if (Chance()) job.output.renumber = Small();
    if (Chance()) job.start = Small();
    if (Chance()) job.time = Number();
    if (Chance()) job.duration = Number();
    job.field = static_cast<FieldChoice>(random_() % 4);
    if (Chance()) job.roi = Region{Small(), Small(), 1 + std::abs(Small()), 1 + std::abs(Small())};
    if (Chance()) job.outside = Chance() ? OutsideChoice::Keep : OutsideChoice::Clear;
    if (Chance()) job.project = ProjectSizes{{Number(), Number()}, {Number(), Number()}};
    if (!job.project) job.projectUnreadable = Chance();
    if (Chance()) job.proxy[0] = Number();
    if (Chance()) job.proxy[1] = Number();
    for (const Property& property : kProperties) {
      if (Chance()) job.properties.Set(property.guid, Setting(property));
    }
    return job;
  }

 private:
  static constexpr EffectKind kKinds[] = {EffectKind::Filter, EffectKind::Source,     EffectKind::Generator,
                                          EffectKind::Paint,  EffectKind::Transition, EffectKind::Other};

  bool Chance() { return random_() % 2 == 0; }
  std::int32_t Small() { return static_cast<std::int32_t>(random_() % 2001) - 1000; }

  double Number() {
    for (;;) {
      const std::uint64_t bits = random_();
      double value = 0.0;
      std::memcpy(&value, &bits, sizeof value);
      if (std::isfinite(value)) return value;
    }
  }

  // Above 0, as a 32-bit float too.
  double Size() {
    for (;;) {
      const double value = Number();
      if (static_cast<float>(value) > 0.0f) return value;
    }
  }

  std::string Name() {
    static constexpr const char* kParts[] = {"a",   "%04d", "\"", "\\",    " ", "\n",  "\xc3\xa4",
                                             "../", "/",    "%%", "x.exr", "#", "\x01"};
    std::string name = "n";
    bool hasNumber = false;
    for (std::size_t i = random_() % 6; i > 0; --i) {
      const std::string part = kParts[random_() % std::size(kParts)];
      if (part == "%04d" && std::exchange(hasNumber, true)) continue;
      if (part == "#" && name.back() == '#') continue;
      name += part;
    }
    return name;
  }

  ImageRecord Image() {
    ImageRecord image{Name(), {}, {}, {0, 0}};
    if (Chance()) image.position = {Number(), Number()};
    if (Chance()) image.size = {Size(), Size()};
    if (Chance()) image.origin = {Small(), Small()};
    return image;
  }

  PropertyStore::Setting Setting(const Property& property) {
    if (property.control != PropertyControl::Number) {
      return static_cast<double>(random_() % (static_cast<std::uint64_t>(property.maximum) + 1));
    }
    if (!property.IsAnimated() || Chance()) return Number();
    Curve curve{{}, static_cast<Interpolation>(random_() % 3)};
    std::set<double> times;
    while (times.size() < 1 + random_() % 5)
      times.insert(Number());
    for (const double time : times)
      curve.keys.push_back({time, Number()});
    return curve;
  }

  std::mt19937_64 random_;
};

TEST(JobFileWriter, RandomJobsComeBackEqual) {
  const ScratchFolder scratch;
  JobMaker maker(2024);
  for (int i = 0; i < 400; ++i) {
    const Job job = maker.Make(scratch.path());
    WriteJobFile(job, scratch.path() / "job.json");
    ASSERT_EQ(ReadJobFile(scratch.path() / "job.json"), job) << TextOf(scratch.path() / "job.json");
  }
}

TEST(JobFileWriter, WritesOnlyWhatDiffersFromTheDefaults) {
  EXPECT_EQ(FormatJob(SmallJob(".")),
            "{\n"
            "  \"version\": 1,\n"
            "  \"input\": {\"file\": \"in.png\"},\n"
            "  \"output\": {\"file\": \"out.png\"}\n"
            "}\n");
}

TEST(JobFileWriter, WritesTextAndKeysThatPeopleCanEdit) {
  Job job = SmallJob(".");
  job.kind = EffectKind::Other;
  job.frames = FrameRange{1, 48, 1};
  job.output.file = "out.%04d.png";
  job.properties.Set(PropertyOf(PropertyId::Channels).guid, 7.0);
  job.properties.Set(PropertyOf(PropertyId::MaskRed).guid, 0.0);
  job.properties.Set(PropertyOf(PropertyId::Blend).guid, 0.1);
  job.properties.Set(PropertyOf(PropertyId::Blur).guid, Curve{{{0, 0}, {47, 80.5}}, Interpolation::Hold});
  EXPECT_EQ(FormatJob(job),
            "{\n"
            "  \"version\": 1,\n"
            "  \"use\": 7,\n"
            "  \"input\": {\"file\": \"in.png\"},\n"
            "  \"output\": {\"file\": \"out.%04d.png\"},\n"
            "  \"frames\": [1, 48],\n"
            "  \"properties\": {\n"
            "    \"Blur\": {\"keys\": [[0.0, 0.0], [47.0, 80.5]], \"interpolation\": \"hold\"},\n"
            "    \"Channels\": \"Luminance\",\n"
            "    \"Blend\": 0.1,\n"
            "    \"Mask Red\": false\n"
            "  }\n"
            "}\n");
}

TEST(JobFileWriter, WritesListsOfFramesAsText) {
  Job job = SmallJob(".");
  job.frames = ParseFrames("1,3,5-9x2");
  job.output.file = "out.%04d.png";
  job.output.renumber = -4;
  EXPECT_EQ(FormatJob(job),
            "{\n"
            "  \"version\": 1,\n"
            "  \"input\": {\"file\": \"in.png\"},\n"
            "  \"output\": {\"file\": \"out.%04d.png\", \"renumber\": -4},\n"
            "  \"frames\": \"1,3,5-9x2\"\n"
            "}\n");
  EXPECT_EQ(ParseJob(FormatJob(job), "."), job);
}

// The path that a job's file name refers to.
fs::path Target(const Job& job, const std::string& file) {
  return fs::weakly_canonical(job.folder / FramePattern(file).FileName(12));
}

TEST(JobFileWriter, RewritesFileNamesForAnotherFolder) {
  const ScratchFolder scratch;
  for (const char* folder : {"work/in", "work/50%/shot ##", "jobs", "jobs/deep/er"}) {
    fs::create_directories(scratch.path() / folder);
  }
  for (const char* from : {"work/in", "work/50%/shot ##", "jobs/deep", "."}) {
    for (const char* to : {"jobs", "jobs/deep/er", "work/in", "."}) {
      Job job = SmallJob(scratch.path() / from);
      job.input->file = "../plate.%04d.exr";
      job.input2 = ImageRecord{"./b/c.####.exr", {}, {}, {0, 0}};
      job.mask = MaskRecord{{"/masks/m%%.png", {}, {}, {0, 0}}, {0, 0}};
      job.output.file = "sub/../out.%04d.exr";
      job.output.initial = "../../i.png";
      WriteJobFile(job, scratch.path() / to / "saved.json");
      const Job saved = ReadJobFile(scratch.path() / to / "saved.json");
      EXPECT_EQ(Target(saved, saved.input->file), Target(job, job.input->file)) << from << " to " << to;
      EXPECT_EQ(Target(saved, saved.input2->file), Target(job, job.input2->file)) << from << " to " << to;
      EXPECT_EQ(saved.mask->file, "/masks/m%%.png");
      EXPECT_EQ(Target(saved, saved.output.file), Target(job, job.output.file)) << from << " to " << to;
      EXPECT_EQ(Target(saved, *saved.output.initial), Target(job, *job.output.initial)) << from << " to " << to;
    }
  }
}

TEST(JobFileWriter, RewrittenNamesAreShort) {
  const ScratchFolder scratch;
  fs::create_directories(scratch.path() / "jobs");
  fs::create_directories(scratch.path() / "in");
  Job job = SmallJob(scratch.path() / "in");
  job.output.file = "../out.png";
  WriteJobFile(job, scratch.path() / "jobs/saved.json");
  const Job saved = ReadJobFile(scratch.path() / "jobs/saved.json");
  EXPECT_EQ(saved.input->file, "../in/in.png");
  EXPECT_EQ(saved.output.file, "../out.png");
}

TEST(JobFileWriter, FollowsLinksToFolders) {
  if (!kMakesLinks) GTEST_SKIP() << "the library makes no links here";
  const ScratchFolder scratch;
  fs::create_directories(scratch.path() / "a/real");
  fs::create_directories(scratch.path() / "b/c/jobs");
  fs::create_directory_symlink(scratch.path() / "b/c/jobs", scratch.path() / "a/jobs");
  Job job = SmallJob(scratch.path() / "a/real");
  scratch.Write("a/real/in.png", "x");
  WriteJobFile(job, scratch.path() / "a/jobs/saved.json");
  const Job saved = ReadJobFile(scratch.path() / "a/jobs/saved.json");
  EXPECT_TRUE(fs::equivalent(saved.folder / saved.input->file, scratch.path() / "a/real/in.png")) << saved.input->file;
}

TEST(JobFileWriter, RefusesWhatAFileCannotHold) {
  const ScratchFolder scratch;
  const auto path = scratch.Write("job.json", "as it was");
  const auto failure = [&](const Job& job) { return UsageFailureOf([&] { WriteJobFile(job, path); }); };
  Job job = SmallJob(scratch.path());
  job.time = NAN;
  EXPECT_EQ(failure(job), "time: expected a finite number, found nan");
  job = SmallJob(scratch.path());
  job.input->file = "\xff.png";
  EXPECT_EQ(failure(job), "a file name is not UTF-8, expected one that a job file can hold");
  EXPECT_EQ(TextOf(path), "as it was");
}

TEST(JobFileWriter, ReplacesAFileAsAWhole) {
  const ScratchFolder scratch;
  const auto path = scratch.Write("job.json", "as it was");
  fs::create_hard_link(path, scratch.path() / "old.json");
  WriteJobFile(SmallJob(scratch.path()), path);
  EXPECT_EQ(TextOf(path), FormatJob(SmallJob(scratch.path())));
  EXPECT_EQ(TextOf(scratch.path() / "old.json"), "as it was");
}

TEST(JobFileWriter, LeavesNothingBehindWhenItCannotWrite) {
  const ScratchFolder scratch;
  fs::create_directories(scratch.path() / "taken.json/inside");
  for (const fs::path& path : {scratch.path() / "taken.json", scratch.path() / "none/job.json"}) {
    const auto caught = CaughtFailure([&] { WriteJobFile(SmallJob(scratch.path()), path); });
    ASSERT_TRUE(caught);
    EXPECT_EQ(caught->Code(), ExitCode::CannotWrite);
    EXPECT_EQ(std::string(caught->what()).find(path.string() + ": cannot write"), 0u) << caught->what();
  }
  const auto count = std::distance(fs::directory_iterator(scratch.path()), fs::directory_iterator());
  EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace vblur::host
