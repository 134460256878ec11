#include "host/formats/ExifBlock.h"

#include <algorithm>
#include <cstddef>

#include "host/formats/ExifTags.h"

namespace vblur::host {

namespace {

constexpr std::size_t kEntry = 12;

// Places count from the block's begin. Numbers beyond its end are 0 and are not written.
class ExifBlock {
 public:
  explicit ExifBlock(std::string bytes) : bytes_(std::move(bytes)), isBig_(bytes_.starts_with("MM")) {}

  std::size_t Number(std::size_t at, std::size_t count) const {
    if (!Has(at, count)) return 0;
    std::size_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
      value = value << 8 | static_cast<unsigned char>(bytes_[at + (isBig_ ? i : count - 1 - i)]);
    return value;
  }

  void Put(std::size_t at, std::size_t count, std::size_t value) {
    if (!Has(at, count)) return;
    for (std::size_t i = 0; i < count; ++i)
      bytes_[at + (isBig_ ? count - 1 - i : i)] = static_cast<char>(value >> 8 * i & 0xff);
  }

  // False: there are no such bytes.
  bool Clear(std::size_t at, std::size_t count) {
    if (!Has(at, count)) return false;
    std::fill_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at), count, '\0');
    return true;
  }

  std::string Text(std::size_t at, std::size_t count) const {
    if (!Has(at, count)) return {};
    const std::string text = bytes_.substr(at, count);
    return text.substr(0, text.find('\0'));
  }

  std::size_t FirstDirectory() const { return Number(4, 4); }
  // Where the place of the next directory stands.
  std::size_t NextPlace(std::size_t directory) const { return directory + 2 + kEntry * Number(directory, 2); }

  // Where a directory has the entry of a tag; 0: it has none, or there is no directory.
  std::size_t Entry(std::size_t directory, std::size_t tag) const {
    const std::size_t end = directory == 0 ? 0 : NextPlace(directory);
    for (std::size_t at = directory + 2; at < end; at += kEntry) {
      if (Number(at, 2) == tag && Has(at, kEntry)) return at;
    }
    return 0;
  }

  // The tags of a directory's entries, as far as the block holds them.
  std::vector<std::size_t> Tags(std::size_t directory) const {
    std::vector<std::size_t> tags;
    const std::size_t end = directory == 0 ? 0 : NextPlace(directory);
    for (std::size_t at = directory + 2; at < end && Has(at, kEntry); at += kEntry)
      tags.push_back(Number(at, 2));
    return tags;
  }

  // The number that an entry holds, or that its value lies at.
  std::size_t ValueOf(std::size_t entry) const { return entry == 0 ? 0 : Number(entry + 8, ValueBytes(entry)); }

  void PutValue(std::size_t entry, std::size_t value) {
    if (entry == 0) return;
    const std::size_t bytes = ValueBytes(entry);
    // 0: not known.
    Put(entry + 8, bytes, value >> 8 * bytes != 0 ? 0 : value);
  }

  // The entry of a directory's orientation, if that is none of 1 to 8; else 0.
  std::size_t WrongOrientation(std::size_t directory) const {
    constexpr std::size_t kOrientation = 0x0112;
    const std::size_t entry = Entry(directory, kOrientation);
    if (entry == 0) return 0;
    const std::size_t type = Number(entry + 2, 2);
    const bool isNumber = (type == kByte || type == kShort || type == kLong) && Number(entry + 4, 4) == 1;
    return isNumber && ValueOf(entry) >= 1 && ValueOf(entry) <= 8 ? 0 : entry;
  }

  void PutShort(std::size_t entry, std::size_t value) {
    Put(entry + 2, 2, kShort);
    Put(entry + 4, 4, 1);
    Put(entry + 8, 2, value);
    Put(entry + 10, 2, 0);
  }

  const std::string& Bytes() const { return bytes_; }

 private:
  static constexpr std::size_t kByte = 1;
  static constexpr std::size_t kShort = 3;
  static constexpr std::size_t kLong = 4;

  std::size_t ValueBytes(std::size_t entry) const {
    const std::size_t type = Number(entry + 2, 2);
    return type == kByte ? 1 : type == kShort ? 2 : 4;
  }
  bool Has(std::size_t at, std::size_t count) const { return at <= bytes_.size() && bytes_.size() - at >= count; }

  std::string bytes_;
  bool isBig_;
};

}  // namespace

ExifFacts FactsOfExif(std::string_view block) {
  constexpr std::size_t kDescription = 0x010e;
  const ExifBlock exif{std::string(block)};
  const std::size_t first = exif.FirstDirectory();
  ExifFacts facts;
  const bool begins =
      block.starts_with(std::string_view("II*\0", 4)) || block.starts_with(std::string_view("MM\0*", 4));
  facts.isDamaged = !begins || exif.NextPlace(first) > block.size();
  if (!begins || exif.Number(first, 2) == 0) return facts;
  facts.isExif = true;
  facts.mayPass = !ExifForOutput(std::string(block), 1, 1).empty();
  facts.hasMakerNote = exif.Entry(exif.ValueOf(exif.Entry(first, kExifDirectory)), kMakerNote) != 0;
  if (const std::size_t entry = exif.Entry(first, kDescription); entry != 0) {
    const std::size_t length = exif.Number(entry + 4, 4);
    facts.description = exif.Text(length <= 4 ? entry + 8 : exif.ValueOf(entry), length);
  }
  if (const std::size_t entry = exif.WrongOrientation(first); entry != 0) facts.wrongOrientation = exif.ValueOf(entry);
  return facts;
}

std::vector<ExifField> FieldsOfExif(std::string_view block) {
  const ExifBlock exif{std::string(block)};
  const std::size_t first = exif.FirstDirectory();
  std::vector<ExifField> fields;
  const auto add = [&](std::size_t directory, bool isGps) {
    for (const std::size_t tag : exif.Tags(directory)) {
      const bool leadsOn = !isGps && (tag == kExifDirectory || tag == kPlaceDirectory);
      if (!leadsOn) fields.push_back({isGps, tag});
    }
  };
  add(first, false);
  add(exif.ValueOf(exif.Entry(first, kExifDirectory)), false);
  add(exif.ValueOf(exif.Entry(first, kPlaceDirectory)), true);
  std::ranges::sort(fields);
  fields.erase(std::unique(fields.begin(), fields.end()), fields.end());
  return fields;
}

std::string ExifForOutput(std::string block, std::int32_t width, std::int32_t height) {
  constexpr std::size_t kWidths[] = {0x0100, 0xa002};
  constexpr std::size_t kHeights[] = {0x0101, 0xa003};
  constexpr std::size_t kStrips = 0x0111;
  constexpr std::size_t kCopy = 0x0201;
  constexpr std::size_t kCopyLength = 0x0202;
  ExifBlock exif(std::move(block));
  const std::size_t first = exif.FirstDirectory();
  const std::size_t next = exif.NextPlace(first);
  if (const std::size_t second = exif.Number(next, 4); second != 0) {
    const std::size_t copy = exif.Entry(second, kCopy);
    const std::size_t length = exif.Entry(second, kCopyLength);
    if (exif.Entry(second, kStrips) != 0 || (copy == 0) != (length == 0)) return {};
    // Behind all directories, so that nothing else goes.
    const std::size_t begin = exif.ValueOf(copy);
    if (copy != 0 && (second < next || begin < exif.NextPlace(second) + 4)) return {};
    if (copy != 0 && !exif.Clear(begin, exif.ValueOf(length))) return {};
    exif.Put(next, 4, 0);
  }
  if (const std::size_t entry = exif.WrongOrientation(first); entry != 0) exif.PutShort(entry, 1);
  const std::size_t details = exif.ValueOf(exif.Entry(first, kExifDirectory));
  for (const std::size_t directory : {first, details}) {
    for (const std::size_t tag : kWidths)
      exif.PutValue(exif.Entry(directory, tag), static_cast<std::size_t>(width));
    for (const std::size_t tag : kHeights)
      exif.PutValue(exif.Entry(directory, tag), static_cast<std::size_t>(height));
  }
  return exif.Bytes();
}

}  // namespace vblur::host
