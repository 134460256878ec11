// The tags of a TIFF file or of a block of Exif data, which is laid out alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vblur::host {

struct TiffTag {
  std::uint16_t type = 0;
  std::uint64_t count = 0;
  std::string bytes{};  // in the order of the file

  friend bool operator==(const TiffTag&, const TiffTag&) = default;
};

class TiffTags {
 public:
  // Gives `count` bytes from a place on, fewer at the end.
  using Source = std::function<std::string(std::int64_t at, std::size_t count)>;

  // The first directory, or that of a tag. Tags of more bytes than `mostBytes` come without their bytes.
  explicit TiffTags(Source source, std::size_t mostBytes = std::size_t{16} << 20);

  bool IsTiff() const { return isTiff_; }
  bool IsBig() const { return isBig_; }
  bool Has(std::uint16_t tag) const { return tags_.contains(tag); }
  const std::map<std::uint16_t, TiffTag>& All() const { return tags_; }
  // Whole numbers; empty for other types and for tags that are not there.
  std::vector<std::int64_t> Numbers(std::uint16_t tag) const;
  std::int64_t Number(std::uint16_t tag, std::int64_t otherwise) const;
  // A fraction or a whole number; 0: none.
  double Fraction(std::uint16_t tag) const;
  // To its first zero.
  std::string Text(std::uint16_t tag) const;
  std::string Bytes(std::uint16_t tag) const;
  // The tag with its bytes in the order of files that begin with "II"; nothing where not all of them are there.
  std::optional<TiffTag> InLittleOrder(std::uint16_t tag) const;

 private:
  std::int64_t Value(const std::string& bytes, std::size_t at, std::size_t count) const;

  bool isTiff_ = false;
  bool isBig_ = false;
  std::map<std::uint16_t, TiffTag> tags_;
};

}  // namespace vblur::host
