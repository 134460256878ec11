// A render job: pictures, properties and frames. Made from options or from a job file, rendered by SequenceRenderer.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "host/jobs/FrameList.h"
#include "host/jobs/OutputStorage.h"
#include "host/properties/PropertyStore.h"

namespace vblur::host {

// The kinds of use, numbered as the effect numbers them.
enum class EffectKind : std::int32_t { Filter = 1, Source = 2, Generator = 3, Paint = 4, Transition = 5, Other = 7 };

enum class FieldChoice : std::int32_t { Frame = 0, First = 1, Second = 2, Both = 3 };

// What the output holds outside the region: the input, or nothing.
enum class OutsideChoice : std::int32_t { Keep = 0, Clear = 1 };

// A picture or a sequence of pictures, and its position.
struct ImageRecord {
  // A file name or a pattern (%04d, ####), as the user wrote it; relative to Job::folder.
  std::string file;
  // World units; absent: the origin, and the size in pixels.
  std::optional<std::array<double, 2>> position;
  std::optional<std::array<double, 2>> size;
  std::array<std::int32_t, 2> origin{0, 0};

  // Of an input: the layer that is taken from its files; empty: the channels that are in none.
  std::string layer{};

  friend bool operator==(const ImageRecord&, const ImageRecord&) = default;
};

struct MaskRecord : ImageRecord {
  std::array<std::int32_t, 2> offset{0, 0};  // relative to the first input, in pixels
  // Empty: the first channel, or alpha where that is the only one that varies.
  std::string channel{};

  friend bool operator==(const MaskRecord&, const MaskRecord&) = default;
};

struct OutputRecord : ImageRecord {
  // In pixels; absent: that of the first input.
  std::optional<std::int32_t> width;
  std::optional<std::int32_t> height;
  // A picture that the output holds before the render; absent: all components zero.
  std::optional<std::string> initial;
  OutputStorage storage{};
  // The number that the frame `start` is written with, and the others from there; absent: each its own.
  std::optional<std::int32_t> renumber{};

  friend bool operator==(const OutputRecord&, const OutputRecord&) = default;
};

// x and y of the lower left pixel, width and height, row 0 at the bottom.
struct Region {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  friend bool operator==(const Region&, const Region&) = default;
};

struct ProjectSizes {
  std::array<double, 2> user{0.0, 0.0};
  std::array<double, 2> world{0.0, 0.0};

  friend bool operator==(const ProjectSizes&, const ProjectSizes&) = default;
};

struct Job {
  // The folder that relative file names start from.
  std::filesystem::path folder = ".";
  // 8, 16 or 32 bits a component, 32 as floats; absent: 8 when the first input holds unsigned 8-bit samples, 32 when it
  // holds halves or floats, else 16.
  std::optional<std::int32_t> depth;
  // Absent: a transition when there is a second input, painted when there is a mask, else a filter.
  std::optional<EffectKind> kind;
  std::optional<ImageRecord> input;
  std::optional<ImageRecord> input2;
  std::optional<MaskRecord> mask;
  OutputRecord output;
  // Absent: one frame, without a number in its file names.
  std::optional<FrameList> frames;
  // The frame that `time` is the time of: frame n has time + (n - start). Absent: the first of `frames`.
  std::optional<std::int32_t> start;
  double time = 0.0;
  // Absent: the number of frames from first to last.
  std::optional<double> duration;
  FieldChoice field = FieldChoice::Frame;
  std::optional<Region> roi;
  // Absent: the input where it has the output's size and place and the output has no initial picture.
  std::optional<OutsideChoice> outside;
  // The four content properties; absent: the output's size in pixels.
  std::optional<ProjectSizes> project;
  bool projectUnreadable = false;
  std::array<double, 2> proxy{1.0, 1.0};
  // Straight colours are multiplied by alpha after reading, and divided by it after the render.
  bool premultipliesAround = false;
  // Colours of the sRGB transfer function are in linear light while they are rendered.
  bool linear = false;
  // Rendered in floats, whatever the depth, and converted once at the end: flat areas keep their value at every size.
  bool steady = false;

  // The depth that is asked for, or the one that the job is rendered with whatever is asked: products of alpha, and
  // light, lose steps where there are steps.
  std::optional<std::int32_t> RenderDepth() const {
    constexpr std::int32_t kFloats = 32;
    return steady || linear || premultipliesAround ? kFloats : depth;
  }
  PropertyStore properties;

  friend bool operator==(const Job&, const Job&) = default;
};

}  // namespace vblur::host
