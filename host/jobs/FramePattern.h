// A file name that stands for one picture or for a sequence: "shot.%04d.exr", "shot.####.exr", "shot.@@@@.exr".
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vblur::host {

// The frame number is written %d, %0Nd (N up to 32) or as # or @, one for each digit: two or more, or a single one
// behind ., _ or - and before a dot, as in shot.#.exr; any other single one is literal. So is a percent sign
// that begins nothing of these, as in 50%.png; %% stands for one in any case, %# and %@ for marks.
class FramePattern {
 public:
  // What parts names of folders and files.
  static constexpr const char* kSeparators = std::filesystem::path::preferred_separator == '/' ? "/" : "/\\:";

  // Throws Failure (wrong usage) for a pattern with more than one number, a NUL character, and a name that is too long
  // for a file.
  explicit FramePattern(std::string pattern);

  // What to add to the message that a file is missing: "; %4d is no frame number, expected %04d" for a name with a
  // width but no zero before it, else nothing.
  static std::string Advice(std::string_view fileName);

  // The pattern without a number whose file name is this one.
  static std::string Escaped(std::string_view fileName);

  bool HasNumber() const { return width_ >= 0; }
  // The file name of a frame. Numbers are padded with zeros to the pattern's width, the sign in
  // front ("-005" for -5 at width 4, as printf does); a pattern without a number gives the same name
  // for every frame.
  std::string FileName(std::int32_t frame) const;
  const std::string& Text() const { return pattern_; }
  // Of a pattern with a number: the frame whose file name this is, if it is one.
  std::optional<std::int32_t> FrameOf(const std::string& fileName) const;
  // Of a pattern with a number: the frames whose files exist, rising. Relative names start from `folder`.
  std::vector<std::int32_t> FramesOnDisk(const std::filesystem::path& folder) const;

 private:
  void SetWidth(int width);
  void CheckLengths() const;

  std::string pattern_;
  std::string head_;
  std::string tail_;
  int width_ = -1;  // characters of the number, its sign included; -1 without one
};

}  // namespace vblur::host
