#include "host/base/Failure.h"
#include "host/base/JsonPlace.h"
#include "host/base/JsonText.h"
#include "host/base/TextFile.h"
#include "host/base/Utf8.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/FrameRangeText.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFields.h"
#include "host/jobs/JobFile.h"
#include "host/properties/PropertyJson.h"

namespace vblur::host {

namespace {

constexpr std::string_view kImageExpected = "an image record such as {\"file\": \"plate.%04d.png\"}";

std::string ReadFileName(const JsonPlace& place) {
  std::string name = place.Text("a file name");
  if (name.empty()) place.FailExpected("a file name");
  try {
    FramePattern{name};
  } catch (const Failure& failure) {
    place.Fail(failure.what());
  }
  return name;
}

void ReadImage(const JsonPlace& place, ImageRecord& image) {
  const auto file = place.Field("file");
  if (!file) JsonPlace(place.Value(), JoinPath(place.Path(), "file")).Fail("missing, expected a file name");
  image.file = ReadFileName(*file);
  if (const auto field = place.Field("position")) image.position = field->NumberPair("[x, y] in world units");
  if (const auto field = place.Field("size")) image.size = field->NumberPair("[width, height] in world units");
  if (const auto field = place.Field("origin")) image.origin = field->WholePair("[x, y] in whole pixels");
}

std::string ReadName(const JsonPlace& place, std::string_view expected) {
  std::string name = place.Text(expected);
  if (name.empty()) place.FailExpected(expected);
  return name;
}

ImageRecord ReadInput(const JsonPlace& place) {
  place.RequireFields(job_fields::kInput, kImageExpected);
  ImageRecord image;
  ReadImage(place, image);
  if (const auto field = place.Field("layer")) image.layer = ReadName(*field, "the name of a layer");
  return image;
}

MaskRecord ReadMask(const JsonPlace& place) {
  place.RequireFields(job_fields::kMask, kImageExpected);
  MaskRecord mask;
  ReadImage(place, mask);
  if (const auto field = place.Field("offset")) mask.offset = field->WholePair("[x, y] in whole pixels");
  if (const auto field = place.Field("channel")) mask.channel = ReadName(*field, "the name of a channel");
  return mask;
}

std::int32_t ReadPixelCount(const JsonPlace& place) {
  const std::int32_t count = place.Whole("a number of pixels, at least 1");
  if (count < 1) place.FailExpected("a number of pixels, at least 1");
  return count;
}

OutputStorage ReadStorage(const JsonPlace& place) {
  constexpr std::string_view kTypes = "\"uint8\", \"uint10\", \"uint12\", \"uint16\", \"half\" or \"float\"";
  constexpr std::string_view kQuality = "a whole number from 1 to 100";
  OutputStorage storage;
  if (const auto field = place.Field("format")) storage.format = ReadName(*field, "a file extension such as \"png\"");
  if (const auto field = place.Field("type")) {
    storage.type = FindSampleType(field->Text(kTypes));
    if (!storage.type) field->FailExpected(kTypes);
  }
  if (const auto field = place.Field("compression")) storage.compression = field->Text("a compression's name");
  if (const auto field = place.Field("quality")) {
    storage.quality = field->Whole(kQuality);
    if (*storage.quality < 1 || *storage.quality > 100) field->FailExpected(kQuality);
  }
  return storage;
}

OutputRecord ReadOutput(const JsonPlace& place) {
  place.RequireFields(job_fields::kOutput, kImageExpected);
  OutputRecord output;
  ReadImage(place, output);
  if (const auto field = place.Field("width")) output.width = ReadPixelCount(*field);
  if (const auto field = place.Field("height")) output.height = ReadPixelCount(*field);
  if (const auto field = place.Field("renumber")) output.renumber = field->Whole("a number, a whole number of 32 bits");
  if (const auto field = place.Field("initial")) output.initial = ReadFileName(*field);
  output.storage = ReadStorage(place);
  return output;
}

EffectKind ReadKind(const JsonPlace& place) {
  constexpr std::string_view kExpected =
      "\"filter\", \"paint\", \"transition\", \"generator\" or a kind from 1 to 5 or 7";
  if (place.Value().is_string()) {
    const auto kind = job_fields::FindKind(place.Text(kExpected));
    if (!kind) place.FailExpected(kExpected);
    return *kind;
  }
  const std::int32_t number = place.Whole(kExpected);
  if (number < 1 || number > 7 || number == 6) place.FailExpected(kExpected);
  return static_cast<EffectKind>(number);
}

FieldChoice ReadFieldChoice(const JsonPlace& place) {
  constexpr std::string_view kExpected = "0, 1, 2 or \"both\"";
  if (place.Value().is_string()) {
    if (place.Text(kExpected) != "both") place.FailExpected(kExpected);
    return FieldChoice::Both;
  }
  const std::int32_t number = place.Whole(kExpected);
  if (number < 0 || number > 2) place.FailExpected(kExpected);
  return static_cast<FieldChoice>(number);
}

std::int32_t ReadDepth(const JsonPlace& place) {
  constexpr const char* kExpected = "8, 16 or 32";
  const std::int32_t depth = place.Whole(kExpected);
  if (!IsDepth(depth)) place.FailExpected(kExpected);
  return depth;
}

FrameList ReadFrames(const JsonPlace& place) {
  // Failures of the text begin with the name of the field.
  if (place.Value().is_string()) return ParseFrames(place.Text(""));
  const auto [first, last] =
      place.WholePair("[first, last], two whole numbers of 32 bits, or frames such as \"1,3,5-9x2\"");
  if (last < first) place.FailExpected("[first, last] with a last frame that is not before the first");
  return FrameRange{first, last, 1};
}

Region ReadRegion(const JsonPlace& place) {
  constexpr std::string_view kExpected = "[x, y, width, height], whole numbers with width and height at least 1";
  place.RequireArray(4, kExpected);
  const Region region{place.Item(0).Whole(), place.Item(1).Whole(), place.Item(2).Whole(), place.Item(3).Whole()};
  if (region.width < 1 || region.height < 1) place.FailExpected(kExpected);
  return region;
}

OutsideChoice ReadOutside(const JsonPlace& place) {
  constexpr std::string_view kExpected = "\"keep\" or \"clear\"";
  const std::string text = place.Text(kExpected);
  if (text != "keep" && text != "clear") place.FailExpected(kExpected);
  return text == "keep" ? OutsideChoice::Keep : OutsideChoice::Clear;
}

void ReadProject(const JsonPlace& place, Job& job) {
  if (place.Value().is_null()) {
    job.projectUnreadable = true;
    return;
  }
  constexpr std::string_view kExpected = "{\"userSize\": [w, h], \"worldSize\": [w, h]} or null";
  place.RequireFields(job_fields::kProject, kExpected);
  const auto user = place.Field("userSize");
  const auto world = place.Field("worldSize");
  if (!user || !world) place.FailExpected(kExpected);
  job.project = ProjectSizes{user->NumberPair("[width, height]"), world->NumberPair("[width, height]")};
}

void ReadPictures(const JsonPlace& root, Job& job) {
  if (const auto field = root.Field("input")) job.input = ReadInput(*field);
  if (const auto field = root.Field("input2")) job.input2 = ReadInput(*field);
  if (const auto field = root.Field("mask")) job.mask = ReadMask(*field);
  const auto output = root.Field("output");
  if (!output) root.Fail("output: missing, expected " + std::string(kImageExpected));
  job.output = ReadOutput(*output);
  if (!job.input && NeedsInput(ResolveKind(job))) root.Fail("input: missing, expected " + std::string(kImageExpected));
}

bool ReadSwitch(const JsonPlace& root, const char* name) {
  const auto field = root.Field(name);
  if (!field) return false;
  if (!field->Value().is_boolean()) field->FailExpected("true or false");
  return field->Value().get<bool>();
}

Job ReadJob(const JsonPlace& root) {
  if (!root.Value().is_object()) root.FailExpected("an object with the fields of a job");
  if (const auto field = root.Field("version"); field && field->Value() != 1) field->FailExpected("1");
  root.RequireFields(job_fields::kJob, "");
  Job job;
  if (const auto field = root.Field("depth")) job.depth = ReadDepth(*field);
  if (const auto field = root.Field("use")) job.kind = ReadKind(*field);
  ReadPictures(root, job);
  if (const auto field = root.Field("frames")) job.frames = ReadFrames(*field);
  if (const auto field = root.Field("start")) job.start = field->Whole("a frame, a whole number of 32 bits");
  if (const auto field = root.Field("time")) job.time = field->Number();
  if (const auto field = root.Field("duration")) job.duration = field->Number();
  if (const auto field = root.Field("field")) job.field = ReadFieldChoice(*field);
  if (const auto field = root.Field("roi")) job.roi = ReadRegion(*field);
  if (const auto field = root.Field("outside")) job.outside = ReadOutside(*field);
  if (const auto field = root.Field("project")) ReadProject(*field, job);
  if (const auto field = root.Field("proxy")) job.proxy = field->NumberPair("[sx, sy], two factors");
  if (const auto field = root.Field("premultiply")) {
    if (field->Text("\"around\"") != "around") field->FailExpected("\"around\"");
    job.premultipliesAround = true;
  }
  job.linear = ReadSwitch(root, "linear");
  job.steady = ReadSwitch(root, "steady");
  if (const auto field = root.Field("properties")) job.properties = ReadProperties(*field);
  return job;
}

}  // namespace

Job ParseJob(std::string_view text, const std::filesystem::path& folder) {
  const nlohmann::json document = ParseJson(text);
  Job job = ReadJob(JsonPlace(document));
  job.folder = folder;
  return job;
}

Job ReadJobFile(const std::filesystem::path& path) {
  const std::string text = ReadTextFile(path, "job file");
  try {
    const std::filesystem::path folder = path.parent_path();
    return ParseJob(text, folder.empty() ? "." : folder);
  } catch (const Failure& failure) {
    Refuse(failure.Code(), Utf8Of(path), failure.what());
  }
}

}  // namespace vblur::host
