#include "host/formats/TiffTags.h"

#include <algorithm>
#include <utility>

namespace vblur::host {

namespace {

// By type: the bytes of one value; 0 for types that there are not.
std::size_t SizeOf(std::int64_t type) {
  constexpr std::size_t kSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
  return type > 0 && type < static_cast<std::int64_t>(std::size(kSizes)) ? kSizes[type] : 0;
}

}  // namespace

TiffTags::TiffTags(Source source, std::size_t mostBytes) {
  const std::string head = source(0, 8);
  if (head.size() < 8) return;
  isBig_ = head.starts_with("MM");
  if (!isBig_ && !head.starts_with("II")) return;
  // The form with 64-bit places is another format.
  if (Value(head, 2, 2) != 42) return;
  isTiff_ = true;
  const std::int64_t directory = Value(head, 4, 4);
  const std::string number = source(directory, 2);
  if (number.size() < 2) return;
  constexpr std::size_t kEntry = 12;
  const std::string entries = source(directory + 2, static_cast<std::size_t>(Value(number, 0, 2)) * kEntry);
  for (std::size_t at = 0; at + kEntry <= entries.size(); at += kEntry) {
    const std::size_t size = SizeOf(Value(entries, at + 2, 2));
    TiffTag tag{static_cast<std::uint16_t>(Value(entries, at + 2, 2)),
                static_cast<std::uint64_t>(Value(entries, at + 4, 4))};
    const std::uint64_t bytes = tag.count * size;
    if (bytes <= 4) {
      tag.bytes = entries.substr(at + 8, static_cast<std::size_t>(bytes));
    } else if (bytes <= mostBytes) {
      tag.bytes = source(Value(entries, at + 8, 4), static_cast<std::size_t>(bytes));
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
  if (type != kByte && type != kShort && type != kLong) return {};
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
