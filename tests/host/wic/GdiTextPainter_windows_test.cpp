#include "host/wic/GdiTextPainter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <gtest/gtest.h>

#include "host/drawing/KernelPlot.h"
#include "host/files/OutputFile.h"
#include "host/studies/DrawingLibrary.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

constexpr TextStyle kStyle{16, {1.0f, 1.0f, 1.0f}, TextWeight::Regular, TextAlign::Left};

TEST(GdiTextPainter, WrapsAtSpacesWithinTheWidth) {
  const GdiTextPainter text;
  const std::string words = "one two three four five six seven";
  const auto lines = text.Wrap(words, kStyle, 90);
  EXPECT_GT(lines.size(), 2u);
  std::string joined;
  for (const std::string& line : lines) {
    EXPECT_LE(text.Width(line, kStyle), 90);
    joined += (joined.empty() ? "" : " ") + line;
  }
  EXPECT_EQ(joined, words);
  EXPECT_EQ(text.Wrap("unbreakable", kStyle, 5), std::vector<std::string>{"unbreakable"});
}

// The columns that hold ink, from the first to the last, and its greys.
struct Ink {
  std::int32_t first = 1000;
  std::int32_t last = -1;
  bool hasGreys = false;
  bool hasColours = false;
};

Ink InkOf(const HostImage& image) {
  Ink ink;
  for (std::int32_t i = 0; i < image.Width() * image.Height(); ++i) {
    const auto at = static_cast<std::size_t>(i) * 4;
    const std::int32_t value = Component(image, at);
    ink.hasColours = ink.hasColours || value != Component(image, at + 1) || value != Component(image, at + 2);
    ink.hasGreys = ink.hasGreys || (value > 40 && value < 215);
    if (value == 0) continue;
    ink.first = std::min(ink.first, i % image.Width());
    ink.last = std::max(ink.last, i % image.Width());
  }
  return ink;
}

TEST(GdiTextPainter, AlignsAtTheGivenPlaceInSmoothGreys) {
  const GdiTextPainter text;
  const auto paint = [&](TextAlign align) {
    Canvas canvas(300, 40, {});
    TextStyle style = kStyle;
    style.align = align;
    text.Paint(canvas, 150, 25, "HOHOH", style);
    HostImage image;
    canvas.CopyTo(image);
    return InkOf(image);
  };
  const Ink left = paint(TextAlign::Left);
  EXPECT_GE(left.first, 150);
  EXPECT_LE(left.first, 154);
  EXPECT_TRUE(left.hasGreys);
  EXPECT_FALSE(left.hasColours);
  const Ink right = paint(TextAlign::Right);
  EXPECT_LE(right.last, 151);
  EXPECT_GE(right.last, 146);
  const Ink centre = paint(TextAlign::Centre);
  EXPECT_NEAR((centre.first + centre.last) / 2.0, 150.0, 2.0);
  EXPECT_EQ(left.last - left.first, centre.last - centre.first);
}

TEST(GdiTextPainter, TextBeyondTheCanvasIsCut) {
  const GdiTextPainter text;
  Canvas canvas(20, 10, {});
  for (const std::int32_t at : {-40, -5, 0, 15, 60})
    text.Paint(canvas, at, at, "WWW \u00e4\u65e5", kStyle);
}

TEST(GdiTextPainter, APlotOfAKernelIsDrawn) {
  KernelReport report;
  report.blur = 2.0;
  report.profile.reach = 4;
  report.picture.cells = 9;
  for (std::int32_t x = -4; x <= 4; ++x)
    report.profile.weights.push_back(std::exp(-x * x / 5.0) / 4.0);
  for (const double row : report.profile.weights) {
    for (const double column : report.profile.weights)
      report.picture.weights.push_back(row * column);
  }
  report.facts.sigma = 1.6;
  HostImage plot;
  TheDrawingLibrary().RequireText();
  TheDrawingLibrary().DrawKernel(report, plot);
  ASSERT_EQ(plot.Width(), 1640);
  EXPECT_TRUE(InkOf(plot).hasGreys);
  const ScratchFolder folder;
  PictureWriter().Write(folder.path() / "plot.png", plot, nullptr, false);
  HostImage read;
  PictureReader().ReadColour(folder.path() / "plot.png", 8, read);
  EXPECT_EQ(Components(read), Components(plot));
  if (const char* const kept = std::getenv("VBLUR_KEEP_PLOT")) PictureWriter().Write(kept, plot, nullptr, true);
}

}  // namespace
}  // namespace vblur::host
