#include "host/drawing/KernelPlot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>

#include "host/drawing/PlotFrame.h"
#include "host/properties/PropertyText.h"

namespace vblur::host {

namespace {

constexpr Colour kPageGround{0.125f, 0.125f, 0.125f};
constexpr Colour kPlotGround{0.085f, 0.085f, 0.085f};
constexpr Colour kGrid{0.2f, 0.2f, 0.2f};
constexpr Colour kAxis{0.5f, 0.5f, 0.5f};
constexpr Colour kMeasured{0.29f, 0.56f, 0.85f};
constexpr Colour kGaussian{1.0f, 0.68f, 0.2f};
constexpr Colour kBright{0.93f, 0.93f, 0.93f};
constexpr Colour kDim{0.72f, 0.72f, 0.72f};

constexpr TextStyle kPlotTitle{24, kBright, TextWeight::Bold, TextAlign::Left};
constexpr TextStyle kPlotHead{15, kDim, TextWeight::Regular, TextAlign::Left};
constexpr TextStyle kSection{16, kBright, TextWeight::Bold, TextAlign::Left};
constexpr TextStyle kName{15, kDim, TextWeight::Regular, TextAlign::Left};
constexpr TextStyle kValue{15, kBright, TextWeight::Regular, TextAlign::Right};
constexpr TextStyle kTickX{14, kDim, TextWeight::Regular, TextAlign::Centre};
constexpr TextStyle kTickY{14, kDim, TextWeight::Regular, TextAlign::Right};
constexpr TextStyle kLegend{15, kBright, TextWeight::Regular, TextAlign::Left};

constexpr std::int32_t kWidth = 1640;
constexpr std::int32_t kHeight = 1000;
constexpr std::int32_t kPlotMargin = 28;
constexpr std::int32_t kTop = 150;          // of pictures and plots
constexpr std::int32_t kPictureSide = 410;  // the room for the response
constexpr std::int32_t kTableWidth = 440;
constexpr std::int32_t kPlotX = 570;
constexpr std::int32_t kPlotWidth = kWidth - kPlotMargin - kPlotX;
constexpr std::int32_t kSmooth = 4;  // the factor by which plots are drawn larger, for antialiasing

[[gnu::format(printf, 1, 2)]] std::string Print(const char* format, ...) {
  std::array<char, 128> text{};
  va_list values;
  va_start(values, format);
  std::vsnprintf(text.data(), text.size(), format, values);
  va_end(values);
  return text.data();
}

void DrawTitle(Canvas& canvas, const KernelReport& report, const TextPainter& text) {
  text.Paint(canvas, kPlotMargin, kPlotMargin + kPlotTitle.size,
             "Impulse response at Blur " + FormatNumber(report.blur), kPlotTitle);
  std::string how = "Measured at " + std::to_string(report.depth) + " bits a component. " +
                    (report.depth == 32 ? "The effect rendered edges, which, differentiated, are the response."
                                        : "A single bright pixel would be rounded away; so the effect rendered edges "
                                          "of different heights, and their "
                                          "mean, differentiated, is the response.") +
                    " The profile is of " + std::to_string(KernelProfile::kEdges) +
                    " vertical edges at an Aspect of 100 (no blur along y), the picture of " +
                    std::to_string(report.picture.corners) + " corners.";
  if (report.depth == 8)
    how += " At 8 bits each of the six boxes rounds to one of 256 steps, which makes the curve rough.";
  std::int32_t y = kPlotMargin + 58;
  for (const std::string& line : text.Wrap(how, kPlotHead, kWidth - 2 * kPlotMargin)) {
    text.Paint(canvas, kPlotMargin, y, line, kPlotHead);
    y += 21;
  }
}

void DrawResponse(Canvas& canvas, const KernelReport& report, const TextPainter& text) {
  const KernelPicture& picture = report.picture;
  const std::int32_t square = std::max(1, kPictureSide / picture.cells);
  const std::int32_t side = square * picture.cells;
  const std::int32_t left = kPlotMargin;
  const double peak = picture.Peak();
  for (std::int32_t row = 0; row < picture.cells; ++row) {
    for (std::int32_t column = 0; column < picture.cells; ++column) {
      const auto at = static_cast<std::size_t>(row * picture.cells + column);
      const auto grey = static_cast<float>(std::clamp(picture.weights[at] / peak, 0.0, 1.0));
      canvas.FillBox(left + column * square, kTop + side - (row + 1) * square, square, square, {grey, grey, grey});
    }
  }
  canvas.Frame(left, kTop, side, side, kAxis);
  const std::int32_t pixels = picture.cells * picture.cellPixels;
  std::vector<std::string> lines = {Print("%d x %d pixels, enlarged", pixels, pixels),
                                    Print("black is 0, white %.3g of the impulse", peak)};
  if (picture.cellPixels > 1) {
    lines[0] =
        Print("%d x %d pixels, a square the mean of %d x %d", pixels, pixels, picture.cellPixels, picture.cellPixels);
  }
  std::int32_t y = kTop + side + 24;
  for (const std::string& line : lines) {
    text.Paint(canvas, kPlotMargin, y, line, kPlotHead);
    y += 21;
  }
}

void DrawNumbers(Canvas& canvas, const KernelReport& report, const TextPainter& text) {
  std::int32_t y = kTop + kPictureSide + 96;
  for (const KernelNumber& number : KernelNumbers(report)) {
    text.Paint(canvas, kPlotMargin, y, number.name, kName);
    text.Paint(canvas, kPlotMargin + kTableWidth, y, number.value, kValue);
    canvas.FillBox(kPlotMargin, y + 7, kTableWidth, 1, kGrid);
    y += 26;
  }
}

std::int32_t Pixel(double position) {
  return static_cast<std::int32_t>(std::lround(position));
}

void DrawGrid(Canvas& large, const PlotFrame& frame) {
  for (const double tick : TicksOf(frame.across, 13))
    large.FillBox(Pixel(frame.PixelX(tick)) - kSmooth / 2, 0, kSmooth, frame.height, kGrid);
  for (const double tick : TicksOf(frame.up, 8))
    large.FillBox(0, Pixel(frame.PixelY(tick)) - kSmooth / 2, frame.width, kSmooth, kGrid);
}

// One bar a pixel of the response, from 0 up or down.
template <typename Value>
void DrawBars(Canvas& large, const PlotFrame& frame, Value value) {
  const auto first = static_cast<std::int32_t>(std::ceil(frame.across.low));
  const auto last = static_cast<std::int32_t>(std::floor(frame.across.high));
  const double pixelWidth = frame.PixelX(1.0) - frame.PixelX(0.0);
  const double gap = pixelWidth >= 6.0 * kSmooth ? pixelWidth * 0.12 : 0.0;
  for (std::int32_t x = first; x <= last; ++x) {
    const std::int32_t left = Pixel(frame.PixelX(x - 0.5) + gap);
    const std::int32_t right = Pixel(frame.PixelX(x + 0.5) - gap);
    const std::int32_t zero = Pixel(frame.PixelY(0.0));
    const std::int32_t end = Pixel(frame.PixelY(value(x)));
    large.FillBox(left, std::min(zero, end), right - left, std::abs(end - zero), kMeasured);
  }
}

void DrawAxes(Canvas& canvas, const PlotFrame& frame, const std::string& up, const TextPainter& text) {
  canvas.Frame(frame.x, frame.y, frame.width, frame.height, kAxis);
  const auto across = TicksOf(frame.across, 13);
  for (const double tick : across) {
    const std::int32_t x = Pixel(frame.PixelX(tick));
    canvas.FillBox(x, frame.y + frame.height, 1, 6, kAxis);
    text.Paint(canvas, x, frame.y + frame.height + 22, TickText(tick, across[1] - across[0]), kTickX);
  }
  const auto upTicks = TicksOf(frame.up, 8);
  for (const double tick : upTicks) {
    const std::int32_t y = Pixel(frame.PixelY(tick));
    canvas.FillBox(frame.x - 6, y, 6, 1, kAxis);
    text.Paint(canvas, frame.x - 11, y + 5, TickText(tick, upTicks[1] - upTicks[0]), kTickY);
  }
  text.Paint(canvas, frame.x, frame.y - 12, up, kSection);
}

void DrawLegend(Canvas& canvas, const PlotFrame& frame, const TextPainter& text) {
  const std::int32_t x = frame.x + frame.width - 330;
  const std::int32_t y = frame.y + 20;
  canvas.FillBox(x - 14, y - 10, 330, 64, kPlotGround);
  canvas.FillBox(x, y, 26, 14, kMeasured);
  text.Paint(canvas, x + 38, y + 13, "the effect, one bar a pixel", kLegend);
  canvas.FillBox(x, y + 33, 26, 3, kGaussian);
  text.Paint(canvas, x + 38, y + 40, "Gaussian of the same variance", kLegend);
}

void DrawProfile(Canvas& canvas, const KernelReport& report, const Gaussian& gaussian, PlotRange across,
                 const TextPainter& text) {
  PlotFrame frame{kPlotX, kTop, kPlotWidth, 500, across, {}};
  frame.up = {0.0, 1.1 * std::max(report.profile.Peak(), gaussian.peak)};
  const PlotFrame enlarged = frame.Enlarged(kSmooth);
  Canvas large(enlarged.width, enlarged.height, kPlotGround);
  DrawGrid(large, enlarged);
  DrawBars(large, enlarged, [&](std::int32_t x) { return report.profile.At(x); });
  std::vector<CanvasPoint> curve;
  if (gaussian.sigma <= 0.0)
    curve = {{enlarged.PixelX(0.0), enlarged.PixelY(0.0)}, {enlarged.PixelX(0.0), enlarged.PixelY(gaussian.peak)}};
  for (std::int32_t x = 0; gaussian.sigma > 0.0 && x <= enlarged.width; x += kSmooth) {
    const double value = across.low + (across.high - across.low) * x / enlarged.width;
    curve.push_back({static_cast<double>(x), enlarged.PixelY(gaussian.At(value))});
  }
  large.Curve(curve, 2 * kSmooth + 2, kGaussian);
  canvas.Reduced(frame.x, frame.y, large, kSmooth);
  DrawAxes(canvas, frame, "Profile along x: weight of a pixel against its distance in pixels", text);
  DrawLegend(canvas, frame, text);
}

void DrawDifference(Canvas& canvas, const KernelReport& report, const Gaussian& gaussian, PlotRange across,
                    const TextPainter& text) {
  const double percent = 100.0 / report.profile.Peak();
  const double largest = std::abs(LargestDifference(report.profile, gaussian).value) * percent;
  const double limit = std::max(1.15 * largest, 0.01);
  const PlotFrame frame{kPlotX, kTop + 500 + 84, kPlotWidth, kHeight - kTop - 500 - 84 - 56, across, {-limit, limit}};
  const PlotFrame enlarged = frame.Enlarged(kSmooth);
  Canvas large(enlarged.width, enlarged.height, kPlotGround);
  DrawGrid(large, enlarged);
  DrawBars(large, enlarged, [&](std::int32_t x) { return (report.profile.At(x) - gaussian.At(x)) * percent; });
  canvas.Reduced(frame.x, frame.y, large, kSmooth);
  DrawAxes(canvas, frame, "The effect less the Gaussian, in percent of the peak", text);
}

}  // namespace

std::vector<KernelNumber> KernelNumbers(const KernelReport& report) {
  const BlurSizeFacts& facts = report.facts;
  const BoxNumbers box = BoxNumbersOf(facts);
  const KernelProfile& profile = report.profile;
  const KernelDifference largest = LargestDifference(profile, GaussianFor(profile, facts.sigma));
  const bool isFloat = report.depth == 32;
  const double taps = 2.0 * facts.boxRadius + 1.0;
  const double halfOfGaussian = 2.0 * std::sqrt(2.0 * std::log(2.0)) * facts.sigma;
  return {{"Size (Blur)", FormatNumber(report.blur)},
          {"Radius of each of 3 boxes an axis", Print("%.4f px", facts.boxRadius)},
          {"r, whole taps each side", std::to_string(box.wholeRadius)},
          {"Fraction, end taps",
           isFloat ? Print("%.4f", box.fraction) : Print("%.4f (%d / 16384)", box.fraction, box.fractionQ14)},
          {"Scale of a box", isFloat ? Print("1 / %.4f", taps) : Print("%d / 16384", box.scaleQ14)},
          {"Sigma", Print("%.4f px", facts.sigma)},
          {"Sigma, measured", Print("%.4f px", profile.Sigma())},
          {"Width at half maximum", Print("%.3f px", profile.WidthAtHalf())},
          {"  of the Gaussian", Print("%.3f px", halfOfGaussian)},
          {"Sum of the profile", Print("%.5f", profile.Sum())},
          {"Gain of a flat area", Print("%.5f", facts.flatGain)},
          {"Gain of a flat area, measured", Print("%.5f", report.picture.Sum())},
          {"Most off the Gaussian",
           Print("%+.2f %% of the peak, at x = %d", 100.0 * largest.value / profile.Peak(), largest.x)}};
}

void DrawKernel(const KernelReport& report, const TextPainter& text, HostImage& into) {
  const Gaussian gaussian = GaussianFor(report.profile, report.facts.sigma);
  const double reach = 1.2 * report.blur + 3.5;
  Canvas canvas(kWidth, kHeight, kPageGround);
  DrawTitle(canvas, report, text);
  DrawResponse(canvas, report, text);
  DrawNumbers(canvas, report, text);
  DrawProfile(canvas, report, gaussian, {-reach, reach}, text);
  DrawDifference(canvas, report, gaussian, {-reach, reach}, text);
  canvas.CopyTo(into);
}

}  // namespace vblur::host
