#include "host/pictures/FontFilePainter.h"

#include <array>

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

constexpr TextStyle kStyle{16, {1.0f, 1.0f, 1.0f}, TextWeight::Regular, TextAlign::Left};

TEST(FontFilePainter, WithoutTheFontThePackageIsNamed) {
  const ScratchFolder folder;
  const std::array<std::filesystem::path, 2> folders = {folder.path(), folder.path() / "none"};
  const auto failure = CaughtFailure([&] { FontFilePainter{folders}; });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
  EXPECT_EQ(std::string(failure->what()), "DejaVuSans.ttf: cannot find this font in " + folders[0].string() + ", " +
                                              folders[1].string() +
                                              "; install the package fonts-dejavu-core (elsewhere dejavu-sans-fonts)");
}

TEST(FontFilePainter, AFileThatIsNoFontIsRefused) {
  const ScratchFolder folder;
  folder.Write("DejaVuSans.ttf", "no font");
  folder.Write("DejaVuSans-Bold.ttf", "no font");
  const std::array<std::filesystem::path, 1> folders = {folder.path()};
  const auto failure = CaughtFailure([&] { FontFilePainter{folders}; });
  ASSERT_TRUE(failure);
  EXPECT_NE(std::string(failure->what()).find("cannot draw text with this font"), std::string::npos);
}

TEST(FontFilePainter, WrapsAtSpacesWithinTheWidth) {
  const FontFilePainter text;
  const std::string words = "one two three four five six seven";
  const auto lines = text.Wrap(words, kStyle, 90);
  EXPECT_GT(lines.size(), 2u);
  std::string joined;
  for (const std::string& line : lines) {
    EXPECT_LE(text.Width(line, kStyle), 90);
    joined += (joined.empty() ? "" : " ") + line;
  }
  EXPECT_EQ(joined, words);
  EXPECT_EQ(text.Wrap("", kStyle, 90).size(), 0u);
  EXPECT_EQ(text.Wrap("unbreakable", kStyle, 5), std::vector<std::string>{"unbreakable"});
}

// The columns that hold ink, from the first to the last.
std::pair<std::int32_t, std::int32_t> InkOf(const HostImage& image) {
  std::pair<std::int32_t, std::int32_t> ink{image.Width(), -1};
  for (std::int32_t i = 0; i < image.Width() * image.Height(); ++i) {
    if (Component(image, static_cast<std::size_t>(i) * 4) == 0) continue;
    ink.first = std::min(ink.first, i % image.Width());
    ink.second = std::max(ink.second, i % image.Width());
  }
  return ink;
}

TEST(FontFilePainter, AlignsAtTheGivenPlace) {
  const FontFilePainter text;
  const auto paint = [&](TextAlign align) {
    Canvas canvas(300, 40, {});
    TextStyle style = kStyle;
    style.align = align;
    text.Paint(canvas, 150, 25, "HHHH", style);
    HostImage image;
    canvas.CopyTo(image);
    return InkOf(image);
  };
  const auto left = paint(TextAlign::Left);
  EXPECT_GE(left.first, 150);
  EXPECT_LE(left.first, 153);
  const auto right = paint(TextAlign::Right);
  EXPECT_LE(right.second, 150);
  EXPECT_GE(right.second, 146);
  const auto centre = paint(TextAlign::Centre);
  EXPECT_NEAR((centre.first + centre.second) / 2.0, 150.0, 2.0);
  EXPECT_EQ(left.second - left.first, centre.second - centre.first);
}

}  // namespace
}  // namespace vblur::host
