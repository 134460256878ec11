// The fields of Exif data: their numbers, their names, and how their values are stored.
#pragma once

#include <cstdint>
#include <string_view>

namespace vblur::host {

// The directories of a block of Exif data. Picture and Camera share their numbers, those of Place are its own.
enum class ExifPart : std::uint8_t { Picture, Camera, Place };

// The fields of a directory that say where another one lies.
inline constexpr std::uint16_t kExifDirectory = 0x8769;
inline constexpr std::uint16_t kPlaceDirectory = 0x8825;
inline constexpr std::uint16_t kInteroperability = 0xa005;
// What cameras note for themselves.
inline constexpr std::uint16_t kMakerNote = 0x927c;

// By the number that files have.
enum class ExifType : std::uint8_t {
  None = 0,  // how pixels are stored, where directories lie, and tables: not given
  Byte = 1,
  Text = 2,
  Short = 3,
  Long = 4,
  Fraction = 5,
  Bytes = 7,
  SignedFraction = 10
};

struct ExifTag {
  ExifPart part = ExifPart::Picture;
  std::uint16_t number = 0;
  std::string_view name{};  // as OpenImageIO calls it, such as "FNumber" or "GPS:Latitude"
  ExifType type = ExifType::None;
  std::uint8_t count = 1;  // of values; 0: any
};

// Null for none. Cameras have the fields of pictures, too, and some programs the other way round.
const ExifTag* FindExifTag(ExifPart part, std::uint16_t number);
// In upper or lower case.
const ExifTag* FindExifTag(std::string_view name);
// The name of a field that OpenImageIO gives; empty for others: those that are not known, and comments and notes in
// forms of their own.
std::string_view NameOfExifTag(ExifPart part, std::uint16_t number);

// Whether a field is about how the picture's samples were stored, or the version of the fields.
bool IsExifOfStorage(ExifPart part, std::uint16_t number);

}  // namespace vblur::host
