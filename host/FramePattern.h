// A file name that stands for one picture or for a sequence: "shot.%04d.exr", "shot.####.exr".
#pragma once

#include <cstdint>
#include <string>

namespace vblur::host {

class FramePattern {
 public:
  // Throws Failure (wrong usage) for a pattern with more than one number, or a % that is neither a
  // frame number nor %%.
  explicit FramePattern(std::string pattern);

  bool hasNumber() const { return width_ >= 0; }
  // The file name of a frame. Numbers are padded with zeros to the pattern's width, the sign in
  // front ("-005" for -5 at width 4, as printf does); a pattern without a number gives the same name
  // for every frame.
  std::string FileName(std::int32_t frame) const;
  const std::string& text() const { return pattern_; }

 private:
  std::string pattern_;
  std::string head_;
  std::string tail_;
  int width_ = -1;  // digits of the number; -1 without one
};

}  // namespace vblur::host
