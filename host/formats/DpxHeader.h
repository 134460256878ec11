// The header of a DPX file (SMPTE 268M): its fields, by the names that the full picture library gives them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "host/formats/FileBytes.h"

namespace vblur::host {

enum class DpxKind {
  Text,   // up to a zero
  Time,   // "2026:11:23:12:00:00" and a time zone
  Whole,  // 32 bits
  Float,
  Byte,
  Coded,  // numbers that stand for something else
};

struct DpxField {
  std::string_view name;
  DpxKind kind;
  std::size_t place;
  std::size_t bytes;
};

// In the order of the full picture library.
std::span<const DpxField> DpxFields();

// Where fields lie: of how the pixels of the first element are stored, and others that no name is enough for.
namespace dpx {
inline constexpr std::size_t kBegin = 4;
inline constexpr std::size_t kVersion = 8;
inline constexpr std::size_t kFileBytes = 16;
inline constexpr std::size_t kDittoKey = 20;
inline constexpr std::size_t kUserBytes = 32;
inline constexpr std::size_t kFileName = 36;
inline constexpr std::size_t kFileNameBytes = 100;
inline constexpr std::size_t kCreator = 160;
inline constexpr std::size_t kCreatorBytes = 100;
inline constexpr std::size_t kEncryptKey = 660;
inline constexpr std::size_t kOrientation = 768;
inline constexpr std::size_t kElements = 770;
inline constexpr std::size_t kWidth = 772;
inline constexpr std::size_t kHeight = 776;
inline constexpr std::size_t kSign = 780;
inline constexpr std::size_t kDescriptor = 800;
inline constexpr std::size_t kTransfer = 801;
inline constexpr std::size_t kColorimetric = 802;
inline constexpr std::size_t kBits = 803;
inline constexpr std::size_t kPacking = 804;
inline constexpr std::size_t kEncoding = 806;
inline constexpr std::size_t kElementBegin = 808;
inline constexpr std::size_t kLinePadding = 812;
inline constexpr std::size_t kOffsetX = 1408;
inline constexpr std::size_t kOffsetY = 1412;
inline constexpr std::size_t kOriginalWidth = 1424;
inline constexpr std::size_t kOriginalHeight = 1428;
inline constexpr std::size_t kPixelAspect = 1628;
inline constexpr std::size_t kFilmHeader = 1664;
inline constexpr std::size_t kTelevisionHeader = 1920;
inline constexpr std::size_t kTimeCode = 1920;
inline constexpr std::size_t kUserBits = 1924;
inline constexpr std::size_t kSignal = 1930;
inline constexpr std::size_t kGamma = 1948;
inline constexpr std::size_t kHeaderBytes = 2048;
// What a program keeps for itself stands behind the header; outputs have no more of it.
inline constexpr std::uint32_t kMostUserBytes = 1 << 20;

inline constexpr std::uint32_t kUndefined = 0xffffffff;
// Descriptors: what a pixel consists of.
inline constexpr std::uint32_t kGrey = 6;
inline constexpr std::uint32_t kRgb = 50;
inline constexpr std::uint32_t kRgba = 51;
}  // namespace dpx

// Its numbers are kept in the order of little-endian files.
class DpxHeader {
 public:
  // Nothing for a file that does not begin with a whole one. The headers for film and television are undefined in files
  // whose pixels begin before them.
  static std::optional<DpxHeader> Of(const std::filesystem::path& file);
  // Of one element with nothing defined, for a file whose pixels begin at `begin`.
  explicit DpxHeader(std::uint32_t begin);
  // Of the bytes of another.
  explicit DpxHeader(std::string bytes) : bytes_(std::move(bytes)) {}

  const std::string& Bytes() const { return bytes_; }
  // In the file that it was read from.
  bool IsBigEndian() const { return isBig_; }

  std::uint32_t Whole(std::size_t place) const { return static_cast<std::uint32_t>(Little32(bytes_, place)); }
  std::uint32_t Half(std::size_t place) const { return static_cast<std::uint32_t>(Little16(bytes_, place)); }
  std::uint32_t Byte(std::size_t place) const { return static_cast<std::uint32_t>(host::Byte(bytes_, place)); }
  float Float(std::size_t place) const;
  // Its bytes.
  std::string_view Field(const DpxField& field) const {
    return std::string_view(bytes_).substr(field.place, field.bytes);
  }
  // Where the pixels begin in the file.
  std::uint32_t Begin() const;
  // Whether the file has this field: those for film and television may be missing.
  bool Has(const DpxField& field) const;

  void SetWhole(std::size_t place, std::uint32_t number);
  void SetHalf(std::size_t place, std::uint32_t number);
  void SetByte(std::size_t place, std::uint32_t number) { bytes_[place] = static_cast<char>(number); }
  void SetFloat(std::size_t place, float number);
  // Cut to what the field holds beside a zero at its end.
  void SetText(std::size_t place, std::size_t bytes, std::string_view text);

  // The width of a pixel by its height, as the first of its approximating fractions that is this float; 1 for one that
  // is not within 1/10000 to 10000.
  void SetPixelAspect(float aspect);

  // What a source says of its picture: all but how its pixels are stored.
  void TakeFieldsOf(const DpxHeader& source);

 private:
  std::string bytes_;
  bool isBig_ = false;
};

}  // namespace vblur::host
