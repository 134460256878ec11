#include <algorithm>
#include <string>

#include <nlohmann/json.hpp>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
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

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

Json ImageToJson(const ImageRecord& image) {
  Json json;
  json["file"] = image.file;
  if (image.position) json["position"] = *image.position;
  if (image.size) json["size"] = *image.size;
  if (image.origin != ImageRecord{}.origin) json["origin"] = image.origin;
  if (!image.layer.empty()) json["layer"] = image.layer;
  return json;
}

Json MaskToJson(const MaskRecord& mask) {
  Json json = ImageToJson(mask);
  if (mask.offset != MaskRecord{}.offset) json["offset"] = mask.offset;
  if (!mask.channel.empty()) json["channel"] = mask.channel;
  return json;
}

Json OutputToJson(const OutputRecord& output) {
  Json json = ImageToJson(output);
  if (output.width) json["width"] = *output.width;
  if (output.height) json["height"] = *output.height;
  if (output.renumber) json["renumber"] = *output.renumber;
  if (output.initial) json["initial"] = *output.initial;
  if (output.storage.format) json["format"] = *output.storage.format;
  if (output.storage.type) json["type"] = NameOf(*output.storage.type);
  if (output.storage.compression) json["compression"] = *output.storage.compression;
  if (output.storage.quality) json["quality"] = *output.storage.quality;
  return json;
}

Json KindToJson(EffectKind kind) {
  const auto found = std::ranges::find(job_fields::kKinds, kind, [](const auto& entry) { return entry.second; });
  if (found != job_fields::kKinds.end()) return found->first;
  return static_cast<std::int32_t>(kind);
}

Json FieldToJson(FieldChoice field) {
  if (field == FieldChoice::Both) return "both";
  return static_cast<std::int32_t>(field);
}

Json FramesToJson(const FrameList& frames) {
  if (frames.IsWhole()) return {frames.First(), frames.Last()};
  return FormatFrames(frames);
}

Json ProjectToJson(const ProjectSizes& project) {
  return {{"userSize", project.user}, {"worldSize", project.world}};
}

Json JobToJson(const Job& job) {
  Json json;
  json["version"] = 1;
  if (job.depth) json["depth"] = *job.depth;
  if (job.kind) json["use"] = KindToJson(*job.kind);
  if (job.input) json["input"] = ImageToJson(*job.input);
  if (job.input2) json["input2"] = ImageToJson(*job.input2);
  if (job.mask) json["mask"] = MaskToJson(*job.mask);
  json["output"] = OutputToJson(job.output);
  if (job.frames) json["frames"] = FramesToJson(*job.frames);
  if (job.start) json["start"] = *job.start;
  if (job.time != 0.0) json["time"] = job.time;
  if (job.duration) json["duration"] = *job.duration;
  if (job.field != FieldChoice::Frame) json["field"] = FieldToJson(job.field);
  if (job.roi) json["roi"] = {job.roi->x, job.roi->y, job.roi->width, job.roi->height};
  if (job.outside) json["outside"] = *job.outside == OutsideChoice::Keep ? "keep" : "clear";
  if (job.projectUnreadable) {
    json["project"] = nullptr;
  } else if (job.project) {
    json["project"] = ProjectToJson(*job.project);
  }
  if (job.proxy != Job{}.proxy) json["proxy"] = job.proxy;
  if (job.premultipliesAround) json["premultiply"] = "around";
  if (job.linear) json["linear"] = true;
  if (job.steady) json["steady"] = true;
  if (!job.properties.Settings().empty()) json["properties"] = PropertiesToJson(job.properties);
  return json;
}

// A file name relative to `from`, made relative to `to`. Only leading `..` steps are resolved: later ones may pass
// through links.
std::string Rebased(const std::string& file, fs::path from, const fs::path& to) {
  const fs::path name = PathOf(file);
  // On Windows a name may begin at the root of a drive that it does not name.
  if (name.has_root_path() || IsStandardStream(name)) return file;
  auto part = name.begin();
  for (; part != name.end() && (*part == ".." || *part == "."); ++part) {
    if (*part == "..") from = from.parent_path();
  }
  fs::path rebased = PathOf(FramePattern::Escaped(Utf8Of(from.lexically_relative(to))));
  if (rebased == ".") rebased.clear();
  for (; part != name.end(); ++part)
    rebased /= *part;
  // With slashes, which every system reads.
  return Utf8Of(fs::path(rebased.generic_string<fs::path::value_type>()));
}

fs::path FolderOf(const fs::path& path) {
  return path.parent_path().empty() ? fs::path(".") : path.parent_path();
}

void Rebase(Job& job, const fs::path& folder) {
  const fs::path from = fs::weakly_canonical(fs::absolute(job.folder));
  const fs::path to = fs::weakly_canonical(fs::absolute(folder));
  if (from != to) {
    if (job.input) job.input->file = Rebased(job.input->file, from, to);
    if (job.input2) job.input2->file = Rebased(job.input2->file, from, to);
    if (job.mask) job.mask->file = Rebased(job.mask->file, from, to);
    job.output.file = Rebased(job.output.file, from, to);
    if (job.output.initial) job.output.initial = Rebased(*job.output.initial, from, to);
  }
  job.folder = folder;
}

}  // namespace

std::string FormatJob(const Job& job) {
  CheckValues(job);
  try {
    return LayoutJson(JobToJson(job));
  } catch (const nlohmann::json::type_error&) {
    throw Failure(ExitCode::WrongUsage, "a file name is not UTF-8, expected one that a job file can hold");
  }
}

std::unique_ptr<OutputFileCommit> WriteJobFileBeside(const Job& job, const fs::path& path) {
  Job rebased = job;
  Rebase(rebased, FolderOf(path));
  return WriteTextBeside(FormatJob(rebased), path, "job file");
}

void WriteJobFile(const Job& job, const fs::path& path) {
  WriteJobFileBeside(job, path)->Commit();
}

}  // namespace vblur::host
