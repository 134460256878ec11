// The tags of a TIFF file, a BigTIFF file too, or of a block of Exif data, which is laid out alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
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

  static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

  // Of bytes that outlive it.
  static Source SourceIn(std::string_view bytes);

  // The first directory. Tags whose bytes would make more than `mostBytes` with those before them come without.
  explicit TiffTags(const Source& source, std::size_t mostBytes = kMostBytes);
  // The directory that a tag of the first one leads to; empty where it has none.
  static TiffTags BehindTag(const Source& source, std::uint16_t leads);
  // How many directories lead to one another from the first on, each once, up to 65535; 0 for what is no TIFF file.
  static std::int32_t CountDirectories(const Source& source);

  bool IsTiff() const { return isTiff_; }
  bool IsBig() const { return isBig_; }
  bool Has(std::uint16_t tag) const { return tags_.contains(tag); }
  const std::map<std::uint16_t, TiffTag>& All() const { return tags_; }
  // Whole numbers; empty for other types and for tags that are not there.
  std::vector<std::int64_t> Numbers(std::uint16_t tag) const;
  std::int64_t Number(std::uint16_t tag, std::int64_t otherwise) const;
  // Whole numbers and fractions, of either sign; empty for others. A fraction by 0 is 0.
  std::vector<double> Values(std::uint16_t tag) const;
  // A fraction or a whole number; 0: none.
  double Fraction(std::uint16_t tag) const;
  // To its first zero.
  std::string Text(std::uint16_t tag) const;
  // Whether more of a text stands behind that zero: it may be several strings. Blanks are none.
  bool HasFurtherText(std::uint16_t tag) const;
  std::string Bytes(std::uint16_t tag) const;
  // The tag with its bytes in the order of files that begin with "II"; nothing where not all of them are there.
  std::optional<TiffTag> InLittleOrder(std::uint16_t tag) const;

 private:
  TiffTags() = default;

  // Of a head; nothing where it is none, or has no directory.
  std::optional<std::int64_t> ReadHead(const Source& source);
  void ReadDirectory(const Source& source, std::int64_t directory, std::size_t mostBytes);
  std::int64_t Value(const std::string& bytes, std::size_t at, std::size_t count) const;
  // Of a place in the file, and of a count.
  std::size_t PlaceBytes() const { return isLarge_ ? 8 : 4; }
  std::size_t EntryBytes() const { return 4 + 2 * PlaceBytes(); }
  // Of the number of entries that a directory begins with.
  std::size_t NumberBytes() const { return isLarge_ ? 8 : 2; }

  bool isTiff_ = false;
  bool isBig_ = false;
  bool isLarge_ = false;  // BigTIFF
  std::map<std::uint16_t, TiffTag> tags_;
};

}  // namespace vblur::host
