// Blocks of Exif data as cameras write them, field by field.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace vblur::host {

struct Field {
  int number = 0;
  int type = 3;
  std::size_t count = 1;
  std::vector<std::uint64_t> values{};  // a fraction is two
  std::string text{};
};

inline Field Text(int number, const std::string& text) {
  return {number, 2, text.size() + 1, {}, text + '\0'};
}
inline Field Short(int number, std::uint64_t value) {
  return {number, 3, 1, {value}};
}
inline Field Long(int number, std::uint64_t value) {
  return {number, 4, 1, {value}};
}
inline Field Fraction(int number, std::uint64_t above, std::uint64_t below) {
  return {number, 5, 1, {above, below}};
}
inline Field Bytes(int number, const std::string& bytes, int type = 7) {
  return {number, type, bytes.size(), {}, bytes};
}

using Fields = std::vector<Field>;

// A block of Exif data with the directories of a picture, of its camera and of its place.
class ExifTestBlock {
 public:
  explicit ExifTestBlock(bool isBig) : isBig_(isBig), bytes_(isBig ? "MM" : "II") {
    Put(42, 2);
    Put(8, 4);
  }

  std::string Build(Fields picture, const Fields& camera, const Fields& place) {
    const std::size_t cameraAt = 8 + Size(picture.size() + !camera.empty() + !place.empty());
    const std::size_t placeAt = cameraAt + (camera.empty() ? 0 : Size(camera.size()));
    if (!camera.empty()) picture.push_back(Long(0x8769, cameraAt));
    if (!place.empty()) picture.push_back(Long(0x8825, placeAt));
    valuesAt_ = placeAt + (place.empty() ? 0 : Size(place.size()));
    for (const Fields* fields : {static_cast<const Fields*>(&picture), &camera, &place})
      if (!fields->empty()) Add(*fields);
    return bytes_ + values_;
  }

 private:
  static std::size_t Size(std::size_t fields) { return 2 + 12 * fields + 4; }
  std::string Number(std::uint64_t value, std::size_t count) const {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
      bytes += static_cast<char>(value >> 8 * (isBig_ ? count - 1 - i : i) & 0xff);
    return bytes;
  }
  void Put(std::uint64_t value, std::size_t count) { bytes_ += Number(value, count); }

  void Add(const Fields& fields) {
    constexpr std::size_t kSizes[] = {0, 1, 1, 2, 4, 4, 1, 1, 2, 4, 4, 4, 8};
    Put(fields.size(), 2);
    for (const Field& field : fields) {
      std::string value = field.text;
      for (const std::uint64_t number : field.values)
        value += Number(number, kSizes[field.type]);
      Put(static_cast<std::uint64_t>(field.number), 2);
      Put(static_cast<std::uint64_t>(field.type), 2);
      Put(field.count, 4);
      if (value.size() > 4) {
        Put(valuesAt_ + values_.size(), 4);
        values_ += value;
      } else {
        value.resize(4, '\0');
        bytes_ += value;
      }
    }
    Put(0, 4);
  }

  bool isBig_;
  std::string bytes_;
  std::string values_;
  std::size_t valuesAt_ = 0;
};

inline const Fields kPicture = {Text(0x010e, "A picture"),
                                Text(0x010f, "A maker"),
                                Text(0x0110, "M-1"),
                                Short(0x0112, 6),
                                Fraction(0x011a, 300, 1),
                                Fraction(0x011b, 300, 1),
                                Short(0x0128, 2),
                                Text(0x0131, "Firmware 1.0"),
                                Text(0x0132, "2026:11:23 12:00:00"),
                                Text(0x013b, "Me"),
                                Short(0x0213, 1),
                                Text(0x8298, "Us")};
inline const Fields kCamera = {Fraction(0x829a, 1, 250),
                               Fraction(0x829d, 28, 10),
                               Short(0x8822, 2),
                               Short(0x8827, 400),
                               Short(0x8830, 2),
                               Bytes(0x9000, "0231"),
                               Text(0x9003, "2026:11:23 12:00:01"),
                               Text(0x9010, "+01:00"),
                               Bytes(0x9101, std::string("\1\2\3\0", 4)),
                               {0x9201, 10, 1, {7965784, 1000000}},
                               Fraction(0x9202, 2970854, 1000000),
                               {0x9204, 10, 1, {0xfffffffd, 3}},
                               Short(0x9207, 5),
                               Short(0x9209, 16),
                               Fraction(0x920a, 50, 1),
                               Bytes(0x927c, "notes of the camera"),
                               Bytes(0x9286, "ASCII\0\0\0hello"),
                               Text(0x9291, "42"),
                               Bytes(0xa000, "0100"),
                               Short(0xa001, 1),
                               Long(0xa002, 37),
                               Short(0xa003, 29),
                               Fraction(0xa20e, 5000, 1),
                               Bytes(0xa300, "\3"),
                               Short(0xa402, 0),
                               {0xa432, 5, 4, {24, 1, 70, 1, 28, 10, 28, 10}},
                               Text(0xa434, "24-70mm f/2.8"),
                               Text(0xa431, "0012345"),
                               Short(0xbabe, 1)};
inline const Fields kPlace = {Bytes(0x0000, std::string("\2\3\0\0", 4), 1),
                              Text(0x0001, "N"),
                              {0x0002, 5, 3, {52, 1, 31, 1, 1234, 100}},
                              Bytes(0x0005, std::string(1, '\0'), 1),
                              Fraction(0x0006, 345, 10),
                              Text(0x001d, "2026:11:23"),
                              Bytes(0x001b, "GPS"),
                              Short(0x0123, 4)};

// Of every fourth field, a few with values of any type.
inline Fields SomeOf(const Fields& from, std::mt19937& random) {
  constexpr int kText = 2;
  Fields fields;
  for (const Field& field : from) {
    if (random() % 4 != 0) continue;
    fields.push_back(field);
    if (random() % 16 != 0) continue;
    Field& other = fields.back();
    other.type = static_cast<int>(random() % 12) + 1;
    other.count = random() % 3 + 1;
    other.text.clear();
    other.values.assign(other.count * (other.type == 5 || other.type == 10 ? 2 : 1), random() % 100 + 1);
    if (other.type == kText) other = Text(other.number, std::string(other.count, 'x'));
  }
  return fields;
}

}  // namespace vblur::host
