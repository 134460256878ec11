// Reports the progress of a render: a bar on a terminal, a line or a JSON object for each frame, or nothing; and
// warnings, in every style.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

#include "host/sequence/SequenceRenderer.h"

namespace vblur::host {

enum class ProgressStyle {
  None,   // failures only
  Bar,    // one line, redrawn at most ten times a second, and failures
  Lines,  // a line for each frame and one at the end
  Json,   // an object for each frame and one at the end, nothing else
};

class Progress : public RenderObserver {
 public:
  Progress(std::FILE* stream, ProgressStyle style) : stream_(stream), style_(style) {}

  // No warnings.
  void BeQuiet() { quiet_ = true; }

  void OnStart(std::int64_t frames, std::int32_t framesInFlight) override;
  void OnWarning(std::int32_t frame, const std::string& text) override;
  void OnFrame(const FrameResult& result) override;
  // After the last frame.
  void Finish(const RenderSummary& summary);

 private:
  void DrawBar(std::int32_t frame);
  void ClearBar();

  std::FILE* stream_;
  ProgressStyle style_;
  bool quiet_ = false;
  std::int64_t frames_ = 0;
  std::int64_t finished_ = 0;
  std::int64_t rendered_ = 0;  // neither skipped nor failed
  std::string lastFile_;       // that did not fail
  std::chrono::steady_clock::time_point start_;
  std::chrono::steady_clock::time_point drawn_;
};

// "0:07", "12:40", "1:02:03".
std::string FormatDuration(double seconds);

// A JSON object on one line. Control characters and bytes that are not UTF-8 are replaced.
std::string ProgressJsonLine(const FrameResult& result);

}  // namespace vblur::host
