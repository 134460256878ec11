#include "host/sequence/Progress.h"

#include <algorithm>
#include <cmath>

#include <nlohmann/json.hpp>

#include "host/base/Descriptors.h"
#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"

namespace vblur::host {

namespace {

using Json = nlohmann::ordered_json;

const char* StatusName(FrameStatus status) {
  switch (status) {
    case FrameStatus::Done: return "done";
    case FrameStatus::Skipped: return "skipped";
    case FrameStatus::Failed: break;
  }
  return "failed";
}

std::string Text(const Json& object) {
  return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json Seconds(const StageTimes& times) {
  return {{"read", times.read}, {"render", times.render}, {"write", times.write}};
}

// The source needed beyond the output.
std::string Overscan(const std::optional<InputOverscan>& overscan) {
  if (!overscan) return {};
  char text[120];
  std::snprintf(text, sizeof text, ", input overscan %.6g %.6g %.6g %.6g (left, right, bottom, top)", overscan->left,
                overscan->right, overscan->bottom, overscan->top);
  return text;
}

std::string Memory(const std::optional<FrameMemoryFacts>& memory) {
  if (!memory) return {};
  constexpr double kMebi = 1024.0 * 1024.0;
  const double pictures = static_cast<double>(memory->pictures) / kMebi;
  const double own = static_cast<double>(memory->own) / kMebi;
  char text[120];
  std::snprintf(text, sizeof text, ", memory %.1f MiB (%.1f pictures, %.1f beside them)", pictures + own, pictures,
                own);
  return text;
}

std::string FrameLine(const FrameResult& result) {
  char times[120];
  std::snprintf(times, sizeof times, " (read %.3f s, render %.3f s, write %.3f s)", result.seconds.read,
                result.seconds.render, result.seconds.write);
  const std::string frame = "frame " + std::to_string(result.frame);
  switch (result.status) {
    case FrameStatus::Done:
      return frame + ": " + OutputName(result.file) + times + Overscan(result.overscan) + Memory(result.memory);
    case FrameStatus::Skipped: return frame + ": " + Utf8Of(result.file) + " exists, skipped";
    case FrameStatus::Failed: break;
  }
  return "vblur: " + result.message;
}

std::string SummaryLine(const RenderSummary& summary) {
  const double wall = std::max(summary.wallSeconds, 1e-9);
  char line[240];
  std::snprintf(line, sizeof line,
                "%lld done, %lld skipped, %lld failed in %.2f s (%.2f frames/s); reading %.2f s, rendering %.2f s, "
                "writing %.2f s",
                static_cast<long long>(summary.done), static_cast<long long>(summary.skipped),
                static_cast<long long>(summary.failed), summary.wallSeconds, static_cast<double>(summary.done) / wall,
                summary.seconds.read, summary.seconds.render, summary.seconds.write);
  return line;
}

std::string SummaryJson(const RenderSummary& summary) {
  const double wall = std::max(summary.wallSeconds, 1e-9);
  const BeyondRange& beyond = summary.beyond;
  return Text({{"event", "end"},
               {"done", summary.done},
               {"skipped", summary.skipped},
               {"failed", summary.failed},
               {"exit", static_cast<int>(summary.code)},
               {"wall", summary.wallSeconds},
               {"framesPerSecond", static_cast<double>(summary.done) / wall},
               {"seconds", Seconds(summary.seconds)},
               {"limited", beyond.count},
               {"notNumbers", beyond.notNumbers}});
}

void PutLine(std::FILE* stream, const std::string& line) {
  std::fprintf(stream, "%s\n", line.c_str());
  Flush(stream);
}

}  // namespace

std::string FormatDuration(double seconds) {
  const auto whole = static_cast<long long>(std::ceil(std::clamp(seconds, 0.0, 1e9)));
  char text[40];
  if (whole >= 3600) {
    std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
  }
  return text;
}

std::string ProgressJsonLine(const FrameResult& result) {
  Json object = {{"event", "frame"},
                 {"frame", result.frame},
                 {"file", Utf8Of(result.file)},
                 {"status", StatusName(result.status)},
                 {"seconds", Seconds(result.seconds)}};
  if (result.overscan) {
    const InputOverscan& overscan = *result.overscan;
    object["inputOverscan"] = {overscan.left, overscan.right, overscan.bottom, overscan.top};
  }
  if (result.memory) object["memory"] = {{"pictures", result.memory->pictures}, {"own", result.memory->own}};
  if (result.status == FrameStatus::Failed) {
    object["exit"] = static_cast<int>(result.code);
    object["message"] = result.message;
  }
  return Text(object);
}

void Progress::OnStart(std::int64_t frames, std::int32_t framesInFlight) {
  frames_ = frames;
  start_ = std::chrono::steady_clock::now();
  if (style_ == ProgressStyle::Json)
    PutLine(stream_, Text({{"event", "start"}, {"frames", frames}, {"framesInFlight", framesInFlight}}));
  if (style_ == ProgressStyle::Lines && frames > 1) {
    PutLine(stream_, std::to_string(frames) + " frames, " + std::to_string(framesInFlight) + " at a time");
  }
}

void Progress::OnFrame(const FrameResult& result) {
  ++finished_;
  if (result.status == FrameStatus::Done) ++rendered_;
  if (result.status != FrameStatus::Failed) lastFile_ = OutputName(result.file);
  if (style_ == ProgressStyle::Json) return PutLine(stream_, ProgressJsonLine(result));
  if (result.status == FrameStatus::Failed || style_ == ProgressStyle::Lines) {
    ClearBar();
    PutLine(stream_, FrameLine(result));
  }
  if (style_ == ProgressStyle::Bar) DrawBar(result.frame);
}

void Progress::OnWarning(std::int32_t frame, const std::string& text) {
  if (quiet_) return;
  if (style_ == ProgressStyle::Json) {
    return PutLine(stream_, Text({{"event", "warning"}, {"frame", frame}, {"message", text}}));
  }
  ClearBar();
  // File names may hold line breaks.
  std::string line = "vblur: " + text;
  std::replace_if(
      line.begin(), line.end(), [](unsigned char c) { return c < ' ' || c == 127; }, ' ');
  PutLine(stream_, line);
}

void Progress::DrawBar(std::int32_t frame) {
  using namespace std::chrono;
  constexpr auto kPause = milliseconds(100);
  constexpr int kCells = 24;
  const auto now = steady_clock::now();
  if (now - drawn_ < kPause && finished_ < frames_) return;
  drawn_ = now;
  const double elapsed = std::max(duration<double>(now - start_).count(), 1e-9);
  const double rate = static_cast<double>(rendered_) / elapsed;
  const auto left = static_cast<double>(frames_ - finished_);
  const auto filled = static_cast<int>(finished_ * kCells / std::max<std::int64_t>(frames_, 1));
  const std::string bar =
      std::string(static_cast<std::size_t>(filled), '#') + std::string(static_cast<std::size_t>(kCells - filled), '.');
  std::fprintf(stream_, "\r[%s] %lld/%lld  frame %d  %.2f frames/s  %s left\033[K", bar.c_str(),
               static_cast<long long>(finished_), static_cast<long long>(frames_), frame, rate,
               rate > 0 ? FormatDuration(left / rate).c_str() : "?");
  Flush(stream_);
}

void Progress::ClearBar() {
  if (style_ == ProgressStyle::Bar) std::fputs("\r\033[K", stream_);
}

void Progress::Finish(const RenderSummary& summary) {
  if (style_ == ProgressStyle::Json) return PutLine(stream_, SummaryJson(summary));
  ClearBar();
  constexpr std::int32_t kFloats = 32;
  const std::string beyond = FormatBeyond(summary.beyond, LimitsOf(kFloats));
  if (!quiet_ && !beyond.empty()) PutLine(stream_, "vblur: input: " + beyond);
  if (style_ == ProgressStyle::Lines || (style_ == ProgressStyle::Bar && frames_ > 1)) {
    PutLine(stream_, SummaryLine(summary));
  } else if (style_ == ProgressStyle::Bar && summary.done == 1) {
    char seconds[40];
    std::snprintf(seconds, sizeof seconds, "%.2f s", summary.wallSeconds);
    PutLine(stream_, lastFile_ + ": done in " + seconds);
  } else if (style_ == ProgressStyle::Bar && summary.skipped == 1) {
    PutLine(stream_, lastFile_ + ": exists, skipped");
  }
}

}  // namespace vblur::host
