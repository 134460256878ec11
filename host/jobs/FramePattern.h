// A file name that stands for one picture or for a sequence: "shot.%04d.exr", "shot.####.exr".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vblur::host {

// The frame number is written %d, %0Nd (N up to 32) or as two or more #, one for each digit; a single #
// is itself. %% is a percent sign and %# a #, where they would be read as a number.
class FramePattern {
 public:
  // Throws Failure (wrong usage) for a pattern with more than one number, or a % that begins neither a
  // frame number nor %% nor %#.
  explicit FramePattern(std::string pattern);

  // The pattern without a number whose file name is this one.
  static std::string Escaped(std::string_view fileName);

  bool HasNumber() const { return width_ >= 0; }
  // The file name of a frame. Numbers are padded with zeros to the pattern's width, the sign in
  // front ("-005" for -5 at width 4, as printf does); a pattern without a number gives the same name
  // for every frame.
  std::string FileName(std::int32_t frame) const;
  const std::string& Text() const { return pattern_; }

 private:
  void SetWidth(int width);

  std::string pattern_;
  std::string head_;
  std::string tail_;
  int width_ = -1;  // characters of the number, its sign included; -1 without one
};

}  // namespace vblur::host
