#include "filter.h"

#include <algorithm>
#include <map>

#include "arithmetic.h"
#include "box.h"
#include "copy.h"
#include "exact_box.h"

namespace model {
namespace {

/// Lines and pictures of this many values count as refused memory.
constexpr std::int64_t kTooMany = std::int64_t{1} << 31;

struct Span {
  std::int64_t begin;
  std::int64_t end;
};

/// Consecutive computed values and the coordinate of the first.
struct Stretch {
  std::int64_t begin = 0;
  std::vector<std::int32_t> values;
};

/// The boxes along one line: the same for all lines of a pass.
struct LinePlan {
  Depth depth = Depth::Eight;
  float radius = 0.0f;
  Box box{};
  int boxes = 3;
  Span buffer{};         ///< coordinates that a line buffer holds
  Span window{};         ///< coordinates of the results
  int edge = kColour;    ///< what lies beyond a buffer
  bool lastFits = true;  ///< the last box produces the window only; if false, it too may produce the whole buffer
};

LinePlan PlanLine(Depth depth, float size, int boxes, int lineLength, int writeOrigin, int edge) {
  LinePlan plan;
  plan.depth = depth;
  plan.radius = size;
  plan.box = MakeBox(size);
  plan.boxes = boxes;
  const std::int64_t margin = MarginOf(plan.box, boxes);
  plan.buffer.begin = writeOrigin - margin;
  plan.buffer.end = plan.buffer.begin + lineLength + 2 * margin;
  plan.edge = edge;
  return plan;
}

bool HasMemory(const LinePlan& plan) {
  const std::int64_t length = plan.buffer.end - plan.buffer.begin;
  return length >= 0 && length < kTooMany;
}

std::vector<std::int32_t> BoxAlong(const LineSource& source, Span span, const LinePlan& plan) {
  if (span.begin >= span.end) return {};
  return plan.depth == Depth::Float ? ExactBoxLine(source, span.begin, span.end, plan.radius)
                                    : BoxLine(source, span.begin, span.end, plan.box);
}

Span OrWhole(Span wanted, Span buffer) {
  return wanted.begin < buffer.begin || wanted.end > buffer.end ? buffer : wanted;
}

/// A line buffer after one box: zero where the box produced nothing, read through the edge method beyond its ends.
LineSource Buffered(const LineSource& source, Span wanted, const LinePlan& plan, std::int32_t outside) {
  const Span span = OrWhole(wanted, plan.buffer);
  const std::vector<std::int32_t> values = BoxAlong(source, span, plan);
  const auto length = static_cast<std::size_t>(plan.buffer.end - plan.buffer.begin);
  std::vector<std::int32_t> buffer(length, 0);
  for (std::size_t i = 0; i < values.size(); ++i)
    buffer[static_cast<std::size_t>(span.begin - plan.buffer.begin) + i] = values[i];
  Axis axis = WholeAxis(static_cast<int>(length));
  axis.edge = plan.edge;
  return [buffer, axis, outside, start = plan.buffer.begin](std::int64_t x) {
    const std::optional<int> index = Lookup(axis, x - start);
    return index ? buffer[static_cast<std::size_t>(*index)] : outside;
  };
}

/// Each box produces what the next one reads beyond the window.
Stretch Boxes(const LineSource& source, const LinePlan& plan, std::int32_t outside) {
  const std::int64_t reach = std::int64_t{plan.box.d} + plan.box.r;
  const Span window = plan.window;
  LineSource last = Buffered(source, {window.begin - 2 * reach - 2, window.end + 2 * reach + 2}, plan, outside);
  if (plan.boxes == 3) last = Buffered(last, {window.begin - reach - 1, window.end + reach + 1}, plan, outside);
  const Span span = plan.lastFits ? window : OrWhole(window, plan.buffer);
  return {span.begin, BoxAlong(last, span, plan)};
}

/// Filters rows of the intermediate along x, each row of the input once.
void FilterRows(const Picture& input, Picture& between, const LinePlan& plan, Span rows, Depth depth, int channel) {
  const auto c = static_cast<std::size_t>(channel);
  std::map<std::optional<int>, Stretch> known;
  for (std::int64_t y = rows.begin; y < rows.end; ++y) {
    const std::optional<int> inputRow = Lookup(input.y, y - input.y.origin);
    const auto source = [&](std::int64_t x) { return At(input, x, y)[c]; };
    if (known.count(inputRow) == 0) known[inputRow] = Boxes(source, plan, input.outside[c]);
    const Stretch& stretch = known[inputRow];
    const std::int64_t row = y - between.y.writeOrigin;
    for (std::size_t i = 0; i < stretch.values.size(); ++i) {
      const std::int64_t column = stretch.begin + static_cast<std::int64_t>(i) - between.x.writeOrigin;
      // A buffer may be longer than the row; what lies beyond the row is dropped.
      if (column < 0 || column >= between.x.size) continue;
      Stored(between, static_cast<int>(column), static_cast<int>(row))[c] = Narrow(depth, stretch.values[i]);
    }
  }
}

void FilterColumns(const Picture& between, Picture& output, const LinePlan& plan, Span columns, Depth depth,
                   int channel) {
  const auto c = static_cast<std::size_t>(channel);
  for (std::int64_t x = columns.begin; x < columns.end; ++x) {
    const auto source = [&](std::int64_t y) { return At(between, x, y)[c]; };
    const Stretch stretch = Boxes(source, plan, between.outside[c]);
    for (std::size_t i = 0; i < stretch.values.size(); ++i) {
      const std::int64_t y = stretch.begin + static_cast<std::int64_t>(i);
      Target(output, static_cast<int>(x), static_cast<int>(y))[c] = Narrow(depth, stretch.values[i]);
    }
  }
}

/// The picture between the passes extends m rows beyond the output, above and below. None if it has no rows or counts
/// as refused memory.
std::optional<Picture> MakeIntermediate(const Picture& input, const Picture& output, int lineLengthY, std::int64_t m) {
  const std::int64_t height = lineLengthY + 2 * m;
  if (height <= 0 || height * output.x.size >= kTooMany) return std::nullopt;
  Picture between =
      Blank(WholeAxis(output.x.size, output.x.writeOrigin, input.x.edge),
            WholeAxis(static_cast<int>(height), static_cast<int>(output.y.writeOrigin - m), input.y.edge));
  between.outside = input.outside;
  return between;
}

}  // namespace

bool Filter(const Picture& input, Picture& output, const FilterSettings& settings) {
  if (IsEmpty(output)) return true;
  const Window window = Settle(settings.window, output);
  const float limit = static_cast<float>(std::max(output.x.size, output.y.size)) * 3.0f;
  float sizeX = settings.sizeX / std::max(settings.aspect, 0.001f);
  float sizeY = settings.sizeY;
  if (sizeX > limit) sizeX = limit;
  if (sizeY > limit) sizeY = limit;
  if (settings.depth == Depth::Float) {
    if (!(sizeX >= 0.0f)) sizeX = 0.0f;
    if (!(sizeY >= 0.0f)) sizeY = 0.0f;
  }
  if (sizeX == 0.0f && sizeY == 0.0f) {
    CopyPicture(input, output, window);
    return true;
  }

  const int lineLengthX = std::max(input.x.size, output.x.size);
  const int lineLengthY = std::max(input.y.size, output.y.size);
  const std::int64_t m = Truncate((sizeY + 2.0f) * static_cast<float>(settings.boxes));
  std::optional<Picture> between = MakeIntermediate(input, output, lineLengthY, m);
  if (!between) return false;

  LinePlan alongX = PlanLine(settings.depth, sizeX, settings.boxes, lineLengthX, output.x.writeOrigin, input.x.edge);
  alongX.window = {window.x1, std::int64_t{window.x2} + 1};
  alongX.lastFits = false;
  LinePlan alongY = PlanLine(settings.depth, sizeY, settings.boxes, lineLengthY, output.y.writeOrigin, input.y.edge);
  alongY.window = {window.y1, std::int64_t{window.y2} + 1};
  if (!HasMemory(alongX) || !HasMemory(alongY)) return false;

  const Span rows{window.y1 - m, window.y2 + m + 1};
  const Span columns{window.x1, std::int64_t{window.x2} + 1};
  for (int channel = 0; channel < 4; ++channel) {
    if (!settings.channels[static_cast<std::size_t>(channel)]) continue;
    FilterRows(input, *between, alongX, rows, settings.depth, channel);
    FilterColumns(*between, output, alongY, columns, settings.depth, channel);
  }
  return true;
}

}  // namespace model
