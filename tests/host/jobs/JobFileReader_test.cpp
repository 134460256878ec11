#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "host/jobs/JobFile.h"
#include "host/properties/PropertyText.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

using nlohmann::json;

const json kSmallest = {{"input", {{"file", "in.png"}}}, {"output", {{"file", "out.png"}}}};

// The smallest job with one field replaced.
std::string With(const char* pointer, const json& value) {
  json document = kSmallest;
  document[json::json_pointer(pointer)] = value;
  return document.dump();
}

Job JobWith(const char* pointer, const json& value) {
  return ParseJob(With(pointer, value), ".");
}

std::string FailureWith(const char* pointer, const json& value) {
  return UsageFailureOf([&] { JobWith(pointer, value); });
}

TEST(JobFileReader, ReadsTheSmallestJob) {
  const Job job = ParseJob(kSmallest.dump(), "shots");
  Job expected;
  expected.folder = "shots";
  expected.input = ImageRecord{"in.png", {}, {}, {0, 0}};
  expected.output.file = "out.png";
  EXPECT_EQ(job, expected);
}

TEST(JobFileReader, ReadsEveryField) {
  const Job job = ParseJob(R"({
    "version": 1, "depth": 16, "use": "transition",
    "input": {"file": "a.%04d.exr", "position": [1.5, -2], "size": [640, 480.25], "origin": [3, -4],
              "layer": "diffuse"},
    "input2": {"file": "b.####.exr", "origin": [5, 6], "layer": "spec.direct"},
    "mask": {"file": "m.png", "offset": [-7, 8], "origin": [1, 2], "channel": "A"},
    "output": {"file": "out.%04d.exr", "width": 64, "height": 48, "renumber": 1001, "initial": "start.exr", "position": [0.5, 1]},
    "frames": [-1, 48], "start": -3, "time": -2.5, "duration": 24, "field": "both", "roi": [-1, -2, 3, 4], "outside": "clear",
    "project": {"userSize": [720, 486], "worldSize": [4, 3]}, "proxy": [0.5, 0.25],
    "properties": {"Blur": {"keys": [[0, 0.0], [47, 80.0]], "interpolation": "smooth"}, "channels": "luminance",
                   "Mix Back": 10, "Blend": 35, "Mask Red": false, "Mask Green": 0, "Display Cropped": true}})",
                           ".");
  Job expected;
  expected.depth = 16;
  expected.kind = EffectKind::Transition;
  expected.input = ImageRecord{"a.%04d.exr", {{1.5, -2}}, {{640, 480.25}}, {3, -4}};
  expected.input2 = ImageRecord{"b.####.exr", {}, {}, {5, 6}};
  expected.mask = MaskRecord{{"m.png", {}, {}, {1, 2}}, {-7, 8}};
  expected.input->layer = "diffuse";
  expected.input2->layer = "spec.direct";
  expected.mask->channel = "A";
  expected.output = OutputRecord{{"out.%04d.exr", {{0.5, 1}}, {}, {0, 0}}, 64, 48, "start.exr"};
  expected.output.renumber = 1001;
  expected.frames = FrameRange{-1, 48, 1};
  expected.start = -3;
  expected.time = -2.5;
  expected.duration = 24;
  expected.field = FieldChoice::Both;
  expected.roi = Region{-1, -2, 3, 4};
  expected.outside = OutsideChoice::Clear;
  expected.project = ProjectSizes{{720, 486}, {4, 3}};
  expected.proxy = {0.5, 0.25};
  const auto set = [&](PropertyId id, PropertyStore::Setting setting) {
    expected.properties.Set(PropertyOf(id).guid, std::move(setting));
  };
  set(PropertyId::Blur, Curve{{{0, 0}, {47, 80}}, Interpolation::Smooth});
  set(PropertyId::Channels, 7.0);
  set(PropertyId::MixBack, 10.0);
  set(PropertyId::Blend, 35.0);
  set(PropertyId::MaskRed, 0.0);
  set(PropertyId::MaskGreen, 0.0);
  set(PropertyId::DisplayCropped, 1.0);
  EXPECT_EQ(job, expected);
}

TEST(JobFileReader, ReadsEveryUseAndField) {
  const std::pair<json, EffectKind> kinds[] = {{"filter", EffectKind::Filter},
                                               {"paint", EffectKind::Paint},
                                               {"Transition", EffectKind::Transition},
                                               {"generator", EffectKind::Generator},
                                               {1, EffectKind::Filter},
                                               {2, EffectKind::Source},
                                               {3, EffectKind::Generator},
                                               {4, EffectKind::Paint},
                                               {5, EffectKind::Transition},
                                               {7, EffectKind::Other}};
  for (const auto& [text, kind] : kinds)
    EXPECT_EQ(JobWith("/use", text).kind, kind) << text;
  EXPECT_EQ(JobWith("/field", 0).field, FieldChoice::Frame);
  EXPECT_EQ(JobWith("/field", 1).field, FieldChoice::First);
  EXPECT_EQ(JobWith("/field", 2).field, FieldChoice::Second);
  EXPECT_TRUE(JobWith("/project", nullptr).projectUnreadable);
  EXPECT_EQ(JobWith("/depth", 8.0).depth, 8);
}

TEST(JobFileReader, GeneratorsDoWithoutAnInput) {
  for (const json& use : {json("generator"), json(3), json(7)}) {
    EXPECT_FALSE(ParseJob(json{{"use", use}, {"output", {{"file", "o.png"}}}}.dump(), ".").input);
  }
  for (const json& use : {json("filter"), json(2), json("paint"), json(5)}) {
    EXPECT_EQ(UsageFailureOf([&] {
                ParseJob(json{{"use", use}, {"output", {{"file", "o.png"}}}}.dump(), ".");
              }),
              "input: missing, expected an image record such as {\"file\": \"plate.%04d.png\"}");
  }
  EXPECT_EQ(UsageFailureOf([&] { ParseJob(R"({"input": {"file": "i.png"}})", "."); }),
            "output: missing, expected an image record such as {\"file\": \"plate.%04d.png\"}");
}

TEST(JobFileReader, SuggestsTheFieldThatWasMeant) {
  EXPECT_EQ(FailureWith("/propertys", json::object()), "unknown field \"propertys\"; did you mean \"properties\"?");
  EXPECT_EQ(FailureWith("/zzzz", 1), "unknown field \"zzzz\"");
  EXPECT_EQ(FailureWith("/input/fiel", 1), "input: unknown field \"fiel\"; did you mean \"file\"?");
  EXPECT_EQ(FailureWith("/input/offset", {1, 2}), "input: unknown field \"offset\"");
  EXPECT_EQ(FailureWith("/output/layer", "diffuse"), "output: unknown field \"layer\"");
  EXPECT_EQ(FailureWith("/properties/Blurr", 1), "properties: unknown property \"Blurr\"; did you mean \"Blur\"?");
  EXPECT_EQ(FailureWith("/properties/Blur", {{"key", {{0, 1}}}}),
            "properties/Blur: unknown field \"key\"; did you mean \"keys\"?");
  EXPECT_EQ(FailureWith("/project", {{"userSize", {1, 1}}, {"worldsize", {1, 1}}}),
            "project: unknown field \"worldsize\"; did you mean \"worldSize\"?");
}

struct Refusal {
  const char* pointer;
  json value;
  const char* message;
};

TEST(JobFileReader, RefusesWrongTypesAndRangesWithTheirPlace) {
  const std::string image = "expected an image record such as {\"file\": \"plate.%04d.png\"}, found ";
  const Refusal refusals[] = {
      {"/version", 2, "version: expected 1, found 2"},
      {"/version", "1", "version: expected 1, found \"1\""},
      {"/depth", 12, "depth: expected 8, 16 or 32, found 12"},
      {"/depth", "8", "depth: expected 8, 16 or 32, found \"8\""},
      {"/use", 6,
       "use: expected \"filter\", \"paint\", \"transition\", \"generator\" or a kind from 1 to 5 or 7, found 6"},
      {"/use", "wipe",
       "use: expected \"filter\", \"paint\", \"transition\", \"generator\" or a kind from 1 to 5 or 7, found \"wipe\""},
      {"/input/file", 3, "input/file: expected a file name, found 3"},
      {"/input/file", "", "input/file: expected a file name, found \"\""},
      {"/input/file", "a%d%d.png", "input/file: \"a%d%d.png\": expected one frame number, found two"},
      {"/input", json::object(), "input/file: missing, expected a file name"},
      {"/input/position", {1}, "input/position: expected [x, y] in world units, found [1]"},
      {"/input/size", {1, "2"}, "input/size: expected [width, height] in world units, found [1, \"2\"]"},
      {"/input/origin", {1, 2.5}, "input/origin: expected [x, y] in whole pixels, found [1, 2.5]"},
      {"/input/origin", {1, 2147483648u}, "input/origin: expected [x, y] in whole pixels, found [1, 2147483648]"},
      {"/mask", {{"file", "m"}, {"offset", 3}}, "mask/offset: expected [x, y] in whole pixels, found 3"},
      {"/output/width", 0, "output/width: expected a number of pixels, at least 1, found 0"},
      {"/output/height", true, "output/height: expected a number of pixels, at least 1, found true"},
      {"/output/initial", nullptr, "output/initial: expected a file name, found null"},
      {"/frames",
       {5, 4},
       "frames: expected [first, last] with a last frame that is not before the first, found [5, 4]"},
      {"/frames",
       {1, 2, 3},
       "frames: expected [first, last], two whole numbers of 32 bits, or frames such as \"1,3,5-9x2\", found [1, 2, "
       "3]"},
      {"/frames", "1-5x", "frames: expected frames such as 7, 1-48, 1-48x2, 1,3,5-9, 10- or all, found \"1-5x\""},
      {"/frames", "all",
       "frames: expected frames that do not depend on files, such as 7, 1-48, 1-48x2 or 1,3,5-9, found \"all\""},
      {"/output/renumber", 0.5, "output/renumber: expected a number, a whole number of 32 bits, found 0.5"},
      {"/output/file", std::string("o\0.png", 6), "output/file: \"o\\u0000.png\": a file name holds no NUL character"},
      {"/start", 0.5, "start: expected a frame, a whole number of 32 bits, found 0.5"},
      {"/time", "0", "time: expected a finite number, found \"0\""},
      {"/duration", nullptr, "duration: expected a finite number, found null"},
      {"/field", 3, "field: expected 0, 1, 2 or \"both\", found 3"},
      {"/field", "first", "field: expected 0, 1, 2 or \"both\", found \"first\""},
      {"/roi",
       {0, 0, 0, 5},
       "roi: expected [x, y, width, height], whole numbers with width and height at least 1, found [0, 0, 0, 5]"},
      {"/roi", {0, 0.5, 1, 5}, "roi/1: expected a whole number of 32 bits, found 0.5"},
      {"/roi",
       {0, 0, 1, 5, 9},
       "roi: expected [x, y, width, height], whole numbers with width and height at least 1, found an array of 5"},
      {"/outside", "all", "outside: expected \"keep\" or \"clear\", found \"all\""},
      {"/project",
       {{"userSize", {1, 1}}},
       "project: expected {\"userSize\": [w, h], \"worldSize\": [w, h]} or null, found an object"},
      {"/project", 1, "project: expected {\"userSize\": [w, h], \"worldSize\": [w, h]} or null, found 1"},
      {"/proxy", 0.5, "proxy: expected [sx, sy], two factors, found 0.5"},
      {"/properties", json::array(), "properties: expected an object of property names and values, found []"},
  };
  for (const auto& [pointer, value, message] : refusals)
    EXPECT_EQ(FailureWith(pointer, value), message);
  EXPECT_EQ(FailureWith("/input", "in.png"), "input: " + image + "\"in.png\"");
  EXPECT_EQ(FailureWith("/mask", nullptr), "mask: " + image + "null");
  EXPECT_EQ(UsageFailureOf([] { ParseJob("[1]", "."); }), "expected an object with the fields of a job, found [1]");
}

TEST(JobFileReader, RefusesWrongPropertyValues) {
  const std::string number = "expected a finite number or {\"keys\": [[time, value], ...]}, found ";
  EXPECT_EQ(FailureWith("/properties/Blur", "24"), "properties/Blur: " + number + "\"24\"");
  EXPECT_EQ(FailureWith("/properties/Blur", true), "properties/Blur: " + number + "true");
  EXPECT_EQ(FailureWith("/properties/Blur", {1, 2}), "properties/Blur: " + number + "[1, 2]");
  const std::string list = "properties/Method: expected one of Blur, Sharpen, or a whole number from 0 to 1";
  for (const json& value : {json("Both"), json(2), json(-1), json(0.5), json(true), json("1"), json(nullptr)}) {
    EXPECT_EQ(FailureWith("/properties/Method", value), list + ", found " + value.dump());
  }
  EXPECT_EQ(FailureWith("/properties/Method", {{"keys", {{0, 1}}}}),
            list + " since the property is not animated, found an object");
  for (const json& value : {json(2), json("on"), json(0.5)}) {
    EXPECT_EQ(FailureWith("/properties/Mask Red", value),
              "properties/Mask Red: expected true or false, 1 or 0, found " + value.dump());
  }
}

TEST(JobFileReader, RefusesWrongKeys) {
  const auto failure = [](const json& keys) { return FailureWith("/properties/Blur", {{"keys", keys}}); };
  EXPECT_EQ(failure({{0, 1}, {1, 1}, {2, 1}, 7}), "properties/Blur/keys/3: expected [time, value], found 7");
  EXPECT_EQ(failure({{0, 1, 2}}), "properties/Blur/keys/0: expected [time, value], found [0, 1, 2]");
  EXPECT_EQ(failure({{0, 1}, {0, 2}}),
            "properties/Blur/keys/1: expected [time, value] with a time after 0, found [0, 2]");
  EXPECT_EQ(failure({{4, 1}, {3.5, 2}}),
            "properties/Blur/keys/1: expected [time, value] with a time after 4, found [3.5, 2]");
  EXPECT_EQ(failure(json::array()), "properties/Blur/keys: expected at least one [time, value], found []");
  EXPECT_EQ(FailureWith("/properties/Blur", json::object()),
            "properties/Blur: expected {\"keys\": [[time, value], ...]}, found an object");
  EXPECT_EQ(FailureWith("/properties/Blur", {{"keys", {{0, 1}}}, {"interpolation", "cubic"}}),
            "properties/Blur/interpolation: expected \"linear\", \"hold\" or \"smooth\", found \"cubic\"");
}

TEST(JobFileReader, RefusesAPropertyThatIsThereTwice) {
  json document = kSmallest;
  document["properties"] = {{"Blur", 1}, {"blur", 2}};
  EXPECT_EQ(UsageFailureOf([&] { ParseJob(document.dump(), "."); }),
            "properties/blur: this property is there twice, expected it once");
  EXPECT_EQ(UsageFailureOf([&] { ParseJob(R"({"properties": {"Blur": 1, "Blur": 1}})", "."); }),
            "properties/Blur: this field is there twice, expected it once");
}

TEST(JobFileReader, NamesTheFileAndTakesItsFolder) {
  const ScratchFolder scratch;
  const auto path = scratch.Write("shot.json", kSmallest.dump());
  EXPECT_EQ(ReadJobFile(path).folder, scratch.path());
  scratch.Write("shot.json", "{\n  \"input\": oops}");
  const std::string place = path.string() + ": not JSON (line 2, column 12: invalid literal";
  EXPECT_EQ(UsageFailureOf([&] { ReadJobFile(path); }).substr(0, place.size()), place);
  scratch.Write("shot.json", With("/depth", 9));
  EXPECT_EQ(UsageFailureOf([&] { ReadJobFile(path); }), path.string() + ": depth: expected 8, 16 or 32, found 9");
}

TEST(JobFileReader, SaysWhyAFileCannotBeRead) {
  const ScratchFolder scratch;
  const auto failure = [](const std::filesystem::path& path) {
    const auto caught = CaughtFailure([&] { ReadJobFile(path); });
    if (!caught) return std::string();
    EXPECT_EQ(caught->Code(), ExitCode::CannotRead);
    return std::string(caught->what());
  };
  const auto missing = scratch.path() / "none.json";
  EXPECT_EQ(failure(missing), missing.string() + ": cannot read the job file: No such file or directory");
  EXPECT_EQ(failure(scratch.path()), scratch.path().string() + ": is a directory, expected a job file");
  EXPECT_EQ(failure("/dev/zero"), "/dev/zero: larger than 16 MiB, expected a job file");
}

TEST(JobFileReader, EveryCutAndEveryChangedByteIsReadOrRefused) {
  json document = kSmallest;
  document["properties"] = {{"Blur", {{"keys", {{0, 1.5}, {2, 3}}}}}, {"Channels", "U"}, {"Mask Red", false}};
  document["roi"] = {1, 2, 3, 4};
  const std::string text = document.dump();
  int refused = 0;
  const auto tryText = [&](const std::string& changed) {
    try {
      ParseJob(changed, ".");
    } catch (const Failure& failure) {
      EXPECT_EQ(std::string(failure.what()).find('\n'), std::string::npos);
      ++refused;
    }
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    tryText(text.substr(0, i));
    for (const char byte : {'\0', '\n', '"', '{', ']', ',', '9', 'e', '-', '\xff'}) {
      std::string changed = text;
      changed[i] = byte;
      tryText(changed);
    }
  }
  EXPECT_GT(refused, static_cast<int>(text.size()));
}

}  // namespace
}  // namespace vblur::host
