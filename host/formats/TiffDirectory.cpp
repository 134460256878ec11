#include "host/formats/TiffDirectory.h"

#include <cstddef>
#include <fstream>
#include <limits>
#include <string>
#include <string_view>

#include "host/formats/FileBytes.h"

namespace vblur::host {

namespace {

constexpr std::size_t kEntryBytes = 12;
constexpr std::size_t kInEntry = 4;  // values of so many bytes need no place of their own

std::string TakeAt(std::fstream& file, std::int64_t at, std::size_t count) {
  std::string bytes(count, '\0');
  file.seekg(at);
  file.read(bytes.data(), static_cast<std::streamsize>(count));
  return bytes;
}

void AppendLittle(std::string& bytes, std::uint64_t number, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    bytes.push_back(static_cast<char>(number >> 8 * i & 0xFF));
}

}  // namespace

bool AddTiffTags(const std::filesystem::path& file, const std::map<std::uint16_t, TiffTag>& tags) {
  std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
  const std::string head = TakeAt(stream, 0, 8);
  if (!stream || std::string_view(head).substr(0, 4) != std::string_view("II*\0", 4)) return false;
  const std::int64_t directory = Little32(head, 4);
  const auto count = static_cast<std::size_t>(Little16(TakeAt(stream, directory, 2), 0));
  const std::string old = TakeAt(stream, directory + 2, count * kEntryBytes + 4);
  if (!stream) return false;
  std::map<std::uint16_t, std::string> entries;
  for (std::size_t at = 0; at < count * kEntryBytes; at += kEntryBytes)
    entries[static_cast<std::uint16_t>(Little16(old, at))] = old.substr(at, kEntryBytes);
  stream.seekp(0, std::ios::end);
  const auto end = static_cast<std::uint64_t>(stream.tellp());
  // Places are even.
  std::string added(end % 2, '\0');
  for (const auto& [number, tag] : tags) {
    std::string& entry = entries[number];
    entry.clear();
    AppendLittle(entry, number, 2);
    AppendLittle(entry, tag.type, 2);
    AppendLittle(entry, tag.count, 4);
    if (tag.bytes.size() <= kInEntry) {
      entry += tag.bytes + std::string(kInEntry - tag.bytes.size(), '\0');
      continue;
    }
    AppendLittle(entry, end + added.size(), 4);
    added += tag.bytes + std::string(tag.bytes.size() % 2, '\0');
  }
  const std::uint64_t place = end + added.size();
  AppendLittle(added, entries.size(), 2);
  for (const auto& [number, entry] : entries)
    added += entry;
  added += old.substr(count * kEntryBytes);
  if (end + added.size() > std::numeric_limits<std::uint32_t>::max()) return false;
  std::string begin;
  AppendLittle(begin, place, 4);
  stream.write(added.data(), static_cast<std::streamsize>(added.size()));
  stream.seekp(4);
  stream.write(begin.data(), static_cast<std::streamsize>(begin.size()));
  stream.close();
  return !stream.fail();
}

}  // namespace vblur::host
