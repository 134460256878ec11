#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <set>

#include "host/Failure.h"
#include "host/FramePattern.h"
#include "host/JobCheck.h"
#include "host/JobFields.h"
#include "host/JobFile.h"
#include "host/JsonPlace.h"
#include "host/JsonText.h"
#include "host/PropertyText.h"

namespace vblur::host {

namespace {

constexpr std::string_view kImageExpected = "an image record such as {\"file\": \"plate.%04d.exr\"}";

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
  if (!file) JsonPlace(place.value(), JoinPath(place.path(), "file")).Fail("missing, expected a file name");
  image.file = ReadFileName(*file);
  if (const auto field = place.Field("position")) image.position = field->NumberPair("[x, y] in world units");
  if (const auto field = place.Field("size")) image.size = field->NumberPair("[width, height] in world units");
  if (const auto field = place.Field("origin")) image.origin = field->WholePair("[x, y] in whole pixels");
}

ImageRecord ReadInput(const JsonPlace& place) {
  place.RequireFields(job_fields::kImage, kImageExpected);
  ImageRecord image;
  ReadImage(place, image);
  return image;
}

MaskRecord ReadMask(const JsonPlace& place) {
  place.RequireFields(job_fields::kMask, kImageExpected);
  MaskRecord mask;
  ReadImage(place, mask);
  if (const auto field = place.Field("offset")) mask.offset = field->WholePair("[x, y] in whole pixels");
  return mask;
}

std::int32_t ReadPixelCount(const JsonPlace& place) {
  const std::int32_t count = place.Whole("a number of pixels, at least 1");
  if (count < 1) place.FailExpected("a number of pixels, at least 1");
  return count;
}

OutputRecord ReadOutput(const JsonPlace& place) {
  place.RequireFields(job_fields::kOutput, kImageExpected);
  OutputRecord output;
  ReadImage(place, output);
  if (const auto field = place.Field("width")) output.width = ReadPixelCount(*field);
  if (const auto field = place.Field("height")) output.height = ReadPixelCount(*field);
  if (const auto field = place.Field("initial")) output.initial = ReadFileName(*field);
  return output;
}

EffectKind ReadKind(const JsonPlace& place) {
  constexpr std::string_view kExpected =
      "\"filter\", \"paint\", \"transition\", \"generator\" or a kind from 1 to 5 or 7";
  if (place.value().is_string()) {
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
  if (place.value().is_string()) {
    if (place.Text(kExpected) != "both") place.FailExpected(kExpected);
    return FieldChoice::Both;
  }
  const std::int32_t number = place.Whole(kExpected);
  if (number < 0 || number > 2) place.FailExpected(kExpected);
  return static_cast<FieldChoice>(number);
}

std::int32_t ReadDepth(const JsonPlace& place) {
  const std::int32_t depth = place.Whole("8 or 16");
  if (depth != 8 && depth != 16) place.FailExpected("8 or 16");
  return depth;
}

FrameRange ReadFrames(const JsonPlace& place) {
  const auto [first, last] = place.WholePair("[first, last], two whole numbers of 32 bits");
  if (last < first) place.FailExpected("[first, last] with a last frame that is not before the first");
  return {first, last, 1};
}

Region ReadRegion(const JsonPlace& place) {
  constexpr std::string_view kExpected = "[x, y, width, height], whole numbers with width and height at least 1";
  place.RequireArray(4, kExpected);
  const Region region{place.Item(0).Whole(), place.Item(1).Whole(), place.Item(2).Whole(), place.Item(3).Whole()};
  if (region.width < 1 || region.height < 1) place.FailExpected(kExpected);
  return region;
}

void ReadProject(const JsonPlace& place, Job& job) {
  if (place.value().is_null()) {
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

Interpolation ReadInterpolation(const JsonPlace& place) {
  constexpr std::string_view kExpected = "\"linear\", \"hold\" or \"smooth\"";
  const auto interpolation = FindInterpolation(place.Text(kExpected));
  if (!interpolation) place.FailExpected(kExpected);
  return *interpolation;
}

Curve ReadCurve(const JsonPlace& place) {
  constexpr std::string_view kExpected = "{\"keys\": [[time, value], ...]}";
  place.RequireFields(job_fields::kCurve, kExpected);
  const auto keys = place.Field("keys");
  if (!keys) place.FailExpected(kExpected);
  if (!keys->value().is_array() || keys->value().empty()) keys->FailExpected("at least one [time, value]");
  Curve curve;
  if (const auto field = place.Field("interpolation")) curve.interpolation = ReadInterpolation(*field);
  for (std::size_t i = 0; i < keys->value().size(); ++i) {
    const JsonPlace item = keys->Item(i);
    const auto [time, value] = item.NumberPair("[time, value]");
    if (i > 0 && time <= curve.keys.back().time) {
      item.FailExpected("[time, value] with a time after " + FormatNumber(curve.keys.back().time));
    }
    curve.keys.push_back({time, value});
  }
  return curve;
}

// A value as one of the types that the property takes; nothing for any other value.
std::optional<double> ReadPlainValue(const Property& property, const nlohmann::json& value) {
  if (value.is_boolean() && property.control == PropertyControl::OnOff) return value.get<bool>() ? 1.0 : 0.0;
  if (value.is_string()) return FindEntry(property, value.get_ref<const std::string&>());
  if (!value.is_number() || !IsAllowed(property, value.get<double>())) return std::nullopt;
  return value.get<double>();
}

std::string ExpectedJson(const Property& property) {
  if (property.control == PropertyControl::OnOff) return "true or false, 1 or 0";
  if (property.isAnimated()) return ExpectedValue(property) + " or {\"keys\": [[time, value], ...]}";
  return ExpectedValue(property);
}

void ReadProperty(const JsonPlace& place, const Property& property, PropertyStore& store) {
  if (place.value().is_object()) {
    if (!property.isAnimated()) place.FailExpected(ExpectedJson(property) + " since the property is not animated");
    store.Set(property.guid, ReadCurve(place));
  } else if (const auto value = ReadPlainValue(property, place.value())) {
    store.Set(property.guid, *value);
  } else {
    place.FailExpected(ExpectedJson(property));
  }
}

PropertyStore ReadProperties(const JsonPlace& place) {
  if (!place.value().is_object()) place.FailExpected("an object of property names and values");
  PropertyStore store;
  std::set<PropertyId> seen;
  for (const auto& [name, value] : place.value().items()) {
    const JsonPlace item(value, JoinPath(place.path(), name));
    const Property* property = FindPropertyNamed(name);
    if (property == nullptr) place.Fail(UnknownProperty(name));
    if (!seen.insert(property->id).second) item.Fail("this property is there twice, expected it once");
    ReadProperty(item, *property, store);
  }
  return store;
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

Job ReadJob(const JsonPlace& root) {
  if (!root.value().is_object()) root.FailExpected("an object with the fields of a job");
  if (const auto field = root.Field("version"); field && field->value() != 1) field->FailExpected("version 1");
  root.RequireFields(job_fields::kJob, "");
  Job job;
  if (const auto field = root.Field("depth")) job.depth = ReadDepth(*field);
  if (const auto field = root.Field("use")) job.kind = ReadKind(*field);
  ReadPictures(root, job);
  if (const auto field = root.Field("frames")) job.frames = ReadFrames(*field);
  if (const auto field = root.Field("time")) job.time = field->Number();
  if (const auto field = root.Field("duration")) job.duration = field->Number();
  if (const auto field = root.Field("field")) job.field = ReadFieldChoice(*field);
  if (const auto field = root.Field("roi")) job.roi = ReadRegion(*field);
  if (const auto field = root.Field("project")) ReadProject(*field, job);
  if (const auto field = root.Field("proxy")) job.proxy = field->NumberPair("[sx, sy], two factors");
  if (const auto field = root.Field("properties")) job.properties = ReadProperties(*field);
  return job;
}

std::string ReadText(const std::filesystem::path& path) {
  constexpr std::size_t kLargest = std::size_t{16} << 20;
  const auto fail = [&](const std::string& reason) {
    throw Failure(ExitCode::CannotRead, path.string() + ": " + reason);
  };
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) fail("is a directory, expected a job file");
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) fail(std::string("cannot read the job file: ") + std::strerror(errno));
  std::string text;
  std::array<char, 65536> part;
  while (file.read(part.data(), part.size()) || file.gcount() > 0) {
    text.append(part.data(), static_cast<std::size_t>(file.gcount()));
    if (text.size() > kLargest) fail("larger than 16 MiB, expected a job file");
  }
  if (file.bad()) fail("cannot read the job file: the system reports an error");
  return text;
}

}  // namespace

Job ParseJob(std::string_view text, const std::filesystem::path& folder) {
  const nlohmann::json document = ParseJson(text);
  Job job = ReadJob(JsonPlace(document));
  job.folder = folder;
  return job;
}

Job ReadJobFile(const std::filesystem::path& path) {
  const std::string text = ReadText(path);
  try {
    const std::filesystem::path folder = path.parent_path();
    return ParseJob(text, folder.empty() ? "." : folder);
  } catch (const Failure& failure) {
    throw Failure(failure.code(), path.string() + ": " + failure.what());
  }
}

}  // namespace vblur::host
