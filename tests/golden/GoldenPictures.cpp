#include "tests/golden/GoldenPictures.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/jobs/JobFile.h"
#include "host/sequence/SequenceRenderer.h"
#include "tests/golden/GoldenJobs.h"
#include "tests/support/TestServer.h"

namespace vblur::golden {
namespace {

namespace fs = std::filesystem;

class SilentObserver : public host::RenderObserver {
 public:
  void OnStart(std::int64_t, std::int32_t) override {}
  void OnWarning(std::int32_t, const std::string&) override {}
  void OnFrame(const host::FrameResult& result) override {
    if (result.status == host::FrameStatus::Failed) failure = result.message;
  }
  std::string failure;
};

void RenderJob(host::Job job, const fs::path& output) {
  job.output.file = fs::absolute(output).string();
  host::ExecuteContext context;
  SilentObserver observer;
  const host::RenderSummary summary = RenderSequence(job, MakeEffect, {.overwrite = true}, context, observer);
  if (summary.code != host::ExitCode::Done) throw host::Failure(summary.code, observer.failure);
}

// To look at; floats in the steps of 16 bits.
std::int32_t ValueAt(const host::HostImage& image, std::int32_t x, std::int32_t y, std::int32_t component) {
  const std::int32_t at = 4 * x + component;
  switch (image.Depth()) {
    case 8: return reinterpret_cast<const std::uint8_t*>(image.Row(y))[at];
    case 16: return reinterpret_cast<const std::int16_t*>(image.Row(y))[at];
    default: return host::FromSample<std::int16_t>(reinterpret_cast<const float*>(image.Row(y))[at]);
  }
}

std::size_t CountDifferences(const host::HostImage& a, const host::HostImage& b) {
  if (a.Width() != b.Width() || a.Height() != b.Height()) return static_cast<std::size_t>(a.Width()) * 4;
  std::size_t count = 0;
  const std::size_t bytes = a.PixelBytes() / 4;
  for (std::size_t at = 0; at < a.ByteCount(); at += bytes)
    count += std::memcmp(a.Row(0) + at, b.Row(0) + at, bytes) != 0 ? 1 : 0;
  return count;
}

// Three panels side by side, each pixel an opaque block.
class Triptych {
 public:
  static constexpr std::int32_t kZoom = 6;

  Triptych(std::int32_t width, std::int32_t height) : width_(width) {
    image_.Reset(8, 4, 3 * width * kZoom, height * kZoom);
    image_.Clear();
  }

  void Set(std::int32_t panel, std::int32_t x, std::int32_t y, const std::array<std::int32_t, 3>& colour) {
    for (std::int32_t j = 0; j < kZoom; ++j) {
      auto* row = reinterpret_cast<std::uint8_t*>(image_.Row(y * kZoom + j)) + 4 * (panel * width_ + x) * kZoom;
      for (std::int32_t i = 0; i < kZoom; ++i, row += 4) {
        for (std::size_t c = 0; c < 3; ++c)
          row[c] = static_cast<std::uint8_t>(std::clamp(colour[c], 0, 255));
        row[3] = 255;
      }
    }
  }

  const host::HostImage& image() const { return image_; }

 private:
  std::int32_t width_;
  host::HostImage image_;
};

void DrawChange(const host::HostImage& before, const host::HostImage& after, const fs::path& path) {
  const std::int32_t width = std::min(before.Width(), after.Width());
  const std::int32_t height = std::min(before.Height(), after.Height());
  const std::int32_t shift = after.Depth() == 8 ? 0 : 6;
  Triptych triptych(width, height);
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      std::array<std::int32_t, 3> old{}, now{}, difference{};
      for (std::size_t c = 0; c < 3; ++c) {
        old[c] = ValueAt(before, x, y, static_cast<std::int32_t>(c));
        now[c] = ValueAt(after, x, y, static_cast<std::int32_t>(c));
        // Visible for a difference of one step, brighter for larger ones.
        difference[c] = old[c] == now[c] ? 0 : 64 + (std::abs(old[c] - now[c]) << 2 >> shift);
        old[c] >>= shift;
        now[c] >>= shift;
      }
      triptych.Set(0, x, y, old);
      triptych.Set(1, x, y, now);
      triptych.Set(2, x, y, difference);
    }
  }
  host::PictureWriter().Write(path, triptych.image(), nullptr, true);
}

GoldenResult CompareOne(const fs::path& jobFile, const fs::path& changes, bool update) {
  const host::Job job = host::ReadJobFile(jobFile);
  GoldenResult result;
  result.name = jobFile.stem().string();
  const fs::path extension = fs::path(job.output.file).extension();
  const fs::path expected = jobFile.parent_path() / "expected" / (result.name + extension.string());
  const fs::path rendered = changes / (result.name + extension.string());
  RenderJob(job, rendered);

  const std::int32_t depth = job.depth == 32 ? 32 : extension == ".exr" ? 16 : 8;
  host::HostImage before, after;
  host::PictureReader().ReadColour(rendered, depth, after);
  result.isNew = !fs::exists(expected);
  if (!result.isNew) {
    host::PictureReader().ReadColour(expected, depth, before);
    result.componentsThatDiffer = CountDifferences(before, after);
  }
  if (result.componentsThatDiffer != 0) {
    result.picture = changes / (result.name + ".change.png");
    DrawChange(before, after, result.picture);
  }
  if (update && !result.equal()) {
    fs::create_directories(expected.parent_path());
    fs::copy_file(rendered, expected, fs::copy_options::overwrite_existing);
  }
  return result;
}

}  // namespace

std::vector<GoldenResult> CompareGoldenPictures(const fs::path& folder, const fs::path& changes, bool update) {
  const std::vector<fs::path> jobs = GoldenJobs(folder);
  fs::create_directories(changes);
  std::vector<GoldenResult> results;
  results.reserve(jobs.size());
  for (const fs::path& job : jobs)
    results.push_back(CompareOne(job, changes, update));
  return results;
}

}  // namespace vblur::golden
