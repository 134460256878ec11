#include "host/drawing/ContactSheet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "host/files/Sample.h"

namespace vblur::host {

namespace {

constexpr Colour kBackground{0.125f, 0.125f, 0.125f};
constexpr Colour kOutline{0.3f, 0.3f, 0.3f};
constexpr Colour kTick{0.95f, 0.7f, 0.25f};

constexpr TextStyle kTitle{24, {0.95f, 0.95f, 0.95f}, TextWeight::Bold, TextAlign::Left};
constexpr TextStyle kHead{15, {0.75f, 0.75f, 0.75f}, TextWeight::Regular, TextAlign::Left};
constexpr TextStyle kLabel{16, {0.93f, 0.93f, 0.93f}, TextWeight::Regular, TextAlign::Centre};
constexpr TextStyle kNote{13, {0.62f, 0.62f, 0.62f}, TextWeight::Regular, TextAlign::Centre};

constexpr std::int32_t kMargin = 28;
constexpr std::int32_t kGap = 18;
constexpr std::int32_t kTitleHeight = 40;
constexpr std::int32_t kHeadLine = 22;
constexpr std::int32_t kLabelHeight = 26;
constexpr std::int32_t kNoteHeight = 18;
// The heading of a sheet of small panels needs some room.
constexpr std::int32_t kLeastWidth = 640;

double MeanAlpha(const HostImage& picture) {
  double sum = 0.0;
  std::vector<float> row(static_cast<std::size_t>(picture.Width()) * 4);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    WriteColourRow(picture.Row(y), picture.Depth(), row.data(), SampleKind::Float, 4, row.size() / 4);
    for (std::size_t i = 3; i < row.size(); i += 4)
      sum += static_cast<double>(row[i]);
  }
  return sum / (static_cast<double>(picture.Width()) * picture.Height());
}

// Text about alpha that the panels do not show.
std::string NoteOf(const SheetPlan& plan, const SheetPanel& panel, double meanAlpha) {
  if (plan.showsAlpha) return panel.note;
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "mean alpha %.1f %%", std::abs(meanAlpha) < 0.0005 ? 0.0 : 100.0 * meanAlpha);
  return panel.note + (panel.note.empty() ? "" : ", ") + text.data();
}

bool HasNotes(const SheetPlan& plan) {
  return !plan.showsAlpha ||
         std::any_of(plan.panels.begin(), plan.panels.end(), [](const auto& panel) { return !panel.note.empty(); });
}

std::int32_t CellWidth(const SheetPlan& plan, std::int32_t panelWidth, const TextPainter& text) {
  std::int32_t width = panelWidth;
  for (const SheetPanel& panel : plan.panels)
    width = std::max({width, text.Width(panel.label, kLabel), text.Width(NoteOf(plan, panel, 1.0), kNote)});
  return width;
}

// The crop as small marks around a picture, off its pixels.
void DrawCropTicks(Canvas& canvas, SheetPoint at, const HostImage& picture, const SheetPanel& panel) {
  constexpr std::int32_t kLength = 7;
  const auto edge = [&](PropertyId id, std::int32_t size) {
    const double part = panel.properties.ValueAt(PropertyOf(id).guid, panel.time) / 100.0;
    return static_cast<std::int32_t>(std::lround(std::clamp(part, 0.0, 1.0) * size));
  };
  for (const PropertyId id : {PropertyId::CropLeft, PropertyId::CropRight}) {
    const std::int32_t x = at.x + edge(id, picture.Width());
    canvas.FillBox(x, at.y - kLength - 1, 1, kLength, kTick);
    canvas.FillBox(x, at.y + picture.Height() + 1, 1, kLength, kTick);
  }
  for (const PropertyId id : {PropertyId::CropBottom, PropertyId::CropTop}) {
    const std::int32_t y = at.y + picture.Height() - edge(id, picture.Height());
    canvas.FillBox(at.x - kLength - 1, y, kLength, 1, kTick);
    canvas.FillBox(at.x + picture.Width() + 1, y, kLength, 1, kTick);
  }
}

AlphaView AlphaViewOf(const SheetPlan& plan, const SheetPictures& pictures) {
  if (!plan.showsAlpha) return AlphaView::Ignored;
  return pictures.associatedAlpha ? AlphaView::Associated : AlphaView::Straight;
}

void DrawHead(Canvas& canvas, const SheetPlan& plan, const SheetLayout& layout, const TextPainter& text) {
  text.Paint(canvas, kMargin, kMargin + kTitle.size, plan.title, kTitle);
  std::int32_t y = kMargin + kTitleHeight;
  for (const std::string& line : layout.head) {
    text.Paint(canvas, kMargin, y + kHead.size, line, kHead);
    y += kHeadLine;
  }
}

void DrawLabels(Canvas& canvas, const SheetPlan& plan, const SheetPanel& panel, SheetPoint at,
                const HostImage& rendered, const TextPainter& text) {
  const std::int32_t middle = at.x + rendered.Width() / 2;
  const std::int32_t below = at.y + rendered.Height() + kLabelHeight - 6;
  text.Paint(canvas, middle, below, panel.label, kLabel);
  text.Paint(canvas, middle, below + kNoteHeight, NoteOf(plan, panel, MeanAlpha(rendered)), kNote);
}

}  // namespace

SheetLayout LayOutSheet(const SheetPlan& plan, const SheetPictures& pictures, const TextPainter& text) {
  SheetLayout layout;
  const auto count = static_cast<std::int32_t>(plan.panels.size());
  const std::int32_t rows = (count + plan.columns - 1) / plan.columns;
  layout.cellWidth = CellWidth(plan, pictures.input.Width(), text);
  const std::int32_t gridWidth = plan.columns * layout.cellWidth + (plan.columns - 1) * kGap;
  const std::int32_t inner = std::max(gridWidth, kLeastWidth);
  for (const std::string* line : {&pictures.caption, &plan.settings, &plan.hint}) {
    const auto lines = text.Wrap(*line, kHead, inner);
    layout.head.insert(layout.head.end(), lines.begin(), lines.end());
  }
  const std::int32_t top = kMargin + kTitleHeight + kHeadLine * static_cast<std::int32_t>(layout.head.size()) + kGap;
  const std::int32_t cellHeight = pictures.input.Height() + kLabelHeight + (HasNotes(plan) ? kNoteHeight : 0);
  const std::int32_t inset = (layout.cellWidth - pictures.input.Width()) / 2;
  for (std::int32_t i = 0; i < count; ++i) {
    layout.panels.push_back(
        {kMargin + i % plan.columns * (layout.cellWidth + kGap) + inset, top + i / plan.columns * (cellHeight + kGap)});
  }
  layout.width = inner + 2 * kMargin;
  layout.height = top + rows * (cellHeight + kGap) - kGap + kMargin;
  return layout;
}

void RenderPanel(const SheetPlan& plan, const SheetPanel& panel, const SheetPictures& pictures,
                 const EffectFactory& makeEffect, ExecuteContext& context, HostImage& into) {
  if (panel.isInput) {
    into.Reset(pictures.input.Depth(), 4, pictures.input.Width(), pictures.input.Height());
    std::memcpy(into.FirstPixel(), pictures.input.FirstPixel(), into.ByteCount());
    return;
  }
  Job job;
  job.kind = plan.use;
  job.time = panel.time;
  job.duration = plan.duration;
  job.properties = panel.properties;
  const bool two = plan.use == EffectKind::Transition;
  RenderInMemory(makeEffect, job,
                 {.output = &into, .input = &pictures.input, .input2 = two ? &pictures.input2 : nullptr}, context);
}

void DrawSheet(const SheetPlan& plan, const SheetPictures& pictures, const TextPainter& text,
               const EffectFactory& makeEffect, ExecuteContext& context, HostImage& sheet) {
  const SheetLayout layout = LayOutSheet(plan, pictures, text);
  Canvas canvas(layout.width, layout.height, kBackground);
  DrawHead(canvas, plan, layout, text);
  HostImage rendered;
  for (std::size_t i = 0; i < plan.panels.size(); ++i) {
    const SheetPoint at = layout.panels[i];
    RenderPanel(plan, plan.panels[i], pictures, makeEffect, context, rendered);
    canvas.Frame(at.x, at.y, rendered.Width(), rendered.Height(), kOutline);
    canvas.Picture(at.x, at.y, rendered, AlphaViewOf(plan, pictures));
    if (plan.kind == SheetKind::Edges) DrawCropTicks(canvas, at, rendered, plan.panels[i]);
    DrawLabels(canvas, plan, plan.panels[i], at, rendered, text);
  }
  canvas.CopyTo(sheet);
}

}  // namespace vblur::host
