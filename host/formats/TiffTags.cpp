#include "host/formats/TiffTags.h"

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

namespace vblur::host {

namespace {

// By type: the bytes of one value; 0 for types that there are not.
std::size_t SizeOf(std::int64_t type) {
  constexpr std::size_t kSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
  return type > 0 && type < static_cast<std::int64_t>(std::size(kSizes)) ? kSizes[type] : 0;
}

}  // namespace

TiffTags::Source TiffTags::SourceIn(std::string_view bytes) {
  return [bytes](std::int64_t at, std::size_t count) {
    const bool isIn = at >= 0 && static_cast<std::size_t>(at) < bytes.size();
    return std::string(isIn ? bytes.substr(static_cast<std::size_t>(at), count) : std::string_view());
  };
}

std::optional<std::int64_t> TiffTags::ReadHead(const Source& source) {
  const std::string head = source(0, 8);
  if (head.size() < 8) return std::nullopt;
  isBig_ = head.starts_with("MM");
  if (!isBig_ && !head.starts_with("II")) return std::nullopt;
  constexpr std::int64_t kSmall = 42;
  constexpr std::int64_t kLarge = 43;
  const std::int64_t form = Value(head, 2, 2);
  if (form != kSmall && form != kLarge) return std::nullopt;
  isLarge_ = form == kLarge;
  const std::string begin = source(static_cast<std::int64_t>(PlaceBytes()), PlaceBytes());
  if (begin.size() < PlaceBytes()) return std::nullopt;
  isTiff_ = true;
  return Value(begin, 0, PlaceBytes());
}

TiffTags::TiffTags(const Source& source, std::size_t mostBytes) {
  if (const auto first = ReadHead(source)) ReadDirectory(source, *first, mostBytes);
}

TiffTags TiffTags::BehindTag(const Source& source, std::uint16_t leads) {
  TiffTags tags(source);
  const std::int64_t place = tags.Number(leads, 0);
  tags.tags_.clear();
  if (place > 0) tags.ReadDirectory(source, place, kMostBytes);
  return tags;
}

std::int32_t TiffTags::CountDirectories(const Source& source) {
  constexpr std::size_t kMost = 0xffff;
  TiffTags tags;
  std::set<std::int64_t> places;
  std::int64_t place = tags.ReadHead(source).value_or(0);
  while (place > 0 && places.size() < kMost && !places.contains(place)) {
    const std::string number = source(place, tags.NumberBytes());
    if (number.size() < tags.NumberBytes()) break;
    places.insert(place);
    const std::int64_t entries = tags.Value(number, 0, number.size());
    // Longer than any file.
    if (entries < 0 || entries > std::numeric_limits<std::int32_t>::max()) break;
    const auto length =
        static_cast<std::int64_t>(tags.NumberBytes() + tags.EntryBytes() * static_cast<std::size_t>(entries));
    if (place > std::numeric_limits<std::int64_t>::max() - length) break;
    const std::string next = source(place + length, tags.PlaceBytes());
    place = next.size() < tags.PlaceBytes() ? 0 : tags.Value(next, 0, next.size());
  }
  return static_cast<std::int32_t>(places.size());
}

void TiffTags::ReadDirectory(const Source& source, std::int64_t directory, std::size_t mostBytes) {
  const std::size_t place = PlaceBytes();
  const std::size_t numberBytes = NumberBytes();
  const std::string number = source(directory, numberBytes);
  if (number.size() < numberBytes) return;
  constexpr std::int64_t kMostEntries = 0xffff;
  const auto count = static_cast<std::size_t>(std::clamp<std::int64_t>(Value(number, 0, numberBytes), 0, kMostEntries));
  const std::size_t entry = EntryBytes();
  std::size_t left = mostBytes;
  const std::string entries = source(directory + static_cast<std::int64_t>(numberBytes), count * entry);
  for (std::size_t at = 0; at + entry <= entries.size(); at += entry) {
    const std::size_t size = SizeOf(Value(entries, at + 2, 2));
    TiffTag tag{static_cast<std::uint16_t>(Value(entries, at + 2, 2)),
                static_cast<std::uint64_t>(Value(entries, at + 4, place))};
    // A count of 64 bits may be any.
    const std::uint64_t bytes = tag.count > mostBytes + place ? tag.count : tag.count * size;
    const std::size_t value = at + 4 + place;
    if (bytes <= place) {
      tag.bytes = entries.substr(value, static_cast<std::size_t>(bytes));
    } else if (bytes <= left) {
      // Many may claim the same bytes of a file.
      left -= static_cast<std::size_t>(bytes);
      tag.bytes = source(Value(entries, value, place), static_cast<std::size_t>(bytes));
    }
    tags_.emplace(static_cast<std::uint16_t>(Value(entries, at, 2)), std::move(tag));
  }
}

std::int64_t TiffTags::Value(const std::string& bytes, std::size_t at, std::size_t count) const {
  std::int64_t value = 0;
  for (std::size_t i = 0; i < count; ++i)
    value = value << 8 | static_cast<unsigned char>(bytes[at + (isBig_ ? i : count - 1 - i)]);
  return value;
}

std::vector<std::int64_t> TiffTags::Numbers(std::uint16_t tag) const {
  const auto found = tags_.find(tag);
  if (found == tags_.end()) return {};
  const std::uint16_t type = found->second.type;
  constexpr std::uint16_t kByte = 1;
  constexpr std::uint16_t kShort = 3;
  constexpr std::uint16_t kLong = 4;
  constexpr std::uint16_t kLong8 = 16;
  if (type != kByte && type != kShort && type != kLong && type != kLong8) return {};
  const std::size_t size = SizeOf(type);
  std::vector<std::int64_t> numbers;
  const std::string& bytes = found->second.bytes;
  for (std::size_t at = 0; at + size <= bytes.size(); at += size)
    numbers.push_back(Value(bytes, at, size));
  return numbers;
}

std::int64_t TiffTags::Number(std::uint16_t tag, std::int64_t otherwise) const {
  const auto numbers = Numbers(tag);
  return numbers.empty() ? otherwise : numbers.front();
}

std::vector<double> TiffTags::Values(std::uint16_t tag) const {
  const auto found = tags_.find(tag);
  if (found == tags_.end()) return {};
  const std::uint16_t type = found->second.type;
  constexpr std::uint16_t kSignedByte = 6;
  constexpr std::uint16_t kSignedFraction = 10;
  const bool isFraction = type == 5 || type == kSignedFraction;
  const bool isSigned = type == kSignedByte || type == 8 || type == 9 || type == kSignedFraction;
  if (!isFraction && !isSigned && type != 1 && type != 3 && type != 4) return {};
  const std::size_t size = isFraction ? 4 : SizeOf(type);
  const std::string& bytes = found->second.bytes;
  std::vector<double> numbers;
  for (std::size_t at = 0; at + size <= bytes.size(); at += size) {
    const std::int64_t value = Value(bytes, at, size);
    const std::int64_t beyond = std::int64_t{1} << 8 * size;
    numbers.push_back(static_cast<double>(isSigned && 2 * value >= beyond ? value - beyond : value));
  }
  if (!isFraction) return numbers;
  std::vector<double> values;
  for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
    values.push_back(numbers[i + 1] == 0.0 ? 0.0 : numbers[i] / numbers[i + 1]);
  return values;
}

double TiffTags::Fraction(std::uint16_t tag) const {
  constexpr std::uint16_t kFraction = 5;
  const auto found = tags_.find(tag);
  if (found == tags_.end() || found->second.type != kFraction || found->second.bytes.size() < 8)
    return static_cast<double>(Number(tag, 0));
  const std::int64_t below = Value(found->second.bytes, 4, 4);
  return below == 0 ? 0.0 : static_cast<double>(Value(found->second.bytes, 0, 4)) / static_cast<double>(below);
}

std::string TiffTags::Text(std::uint16_t tag) const {
  constexpr std::uint16_t kText = 2;
  const auto found = tags_.find(tag);
  if (found == tags_.end() || found->second.type != kText) return {};
  return found->second.bytes.substr(0, found->second.bytes.find('\0'));
}

bool TiffTags::HasFurtherText(std::uint16_t tag) const {
  constexpr std::string_view kNothing(" \0", 2);
  return Bytes(tag).find_first_not_of(kNothing, Text(tag).size()) != std::string::npos && All().at(tag).type == 2;
}

std::optional<TiffTag> TiffTags::InLittleOrder(std::uint16_t tag) const {
  const auto found = tags_.find(tag);
  if (found == tags_.end()) return std::nullopt;
  TiffTag result = found->second;
  if (result.bytes.empty() || result.bytes.size() != result.count * SizeOf(result.type)) return std::nullopt;
  // Fractions are two numbers.
  const bool isFraction = result.type == 5 || result.type == 10;
  const std::size_t number = isFraction ? 4 : SizeOf(result.type);
  for (auto at = result.bytes.begin(); isBig_ && at != result.bytes.end(); at += static_cast<std::ptrdiff_t>(number))
    std::reverse(at, at + static_cast<std::ptrdiff_t>(number));
  return result;
}

std::string TiffTags::Bytes(std::uint16_t tag) const {
  const auto found = tags_.find(tag);
  return found == tags_.end() ? std::string() : found->second.bytes;
}

}  // namespace vblur::host
