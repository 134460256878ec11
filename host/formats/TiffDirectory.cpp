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

void Append(std::string& bytes, std::uint64_t number, std::size_t count, bool isBig) {
  for (std::size_t i = 0; i < count; ++i)
    bytes.push_back(static_cast<char>(number >> 8 * (isBig ? count - 1 - i : i) & 0xFF));
}

// What is written behind the end, and where in the file the directory in it stands.
struct NewDirectory {
  std::string bytes;
  std::uint64_t place = 0;
};

// `old` has the entries of the directory before, and the place of the next one.
NewDirectory MakeDirectory(const std::string& old, std::uint64_t end, const std::map<std::uint16_t, TiffTag>& tags,
                           bool isBig) {
  const std::size_t oldEnd = old.size() - 4;
  std::map<std::uint16_t, std::string> entries;
  for (std::size_t at = 0; at < oldEnd; at += kEntryBytes)
    entries[static_cast<std::uint16_t>(isBig ? Big16(old, at) : Little16(old, at))] = old.substr(at, kEntryBytes);
  // Places are even.
  NewDirectory made{std::string(end % 2, '\0')};
  for (const auto& [number, tag] : tags) {
    std::string& entry = entries[number];
    entry.clear();
    Append(entry, number, 2, isBig);
    Append(entry, tag.type, 2, isBig);
    Append(entry, tag.count, 4, isBig);
    if (tag.bytes.size() <= kInEntry) {
      entry += tag.bytes + std::string(kInEntry - tag.bytes.size(), '\0');
      continue;
    }
    Append(entry, end + made.bytes.size(), 4, isBig);
    made.bytes += tag.bytes + std::string(tag.bytes.size() % 2, '\0');
  }
  made.place = end + made.bytes.size();
  Append(made.bytes, entries.size(), 2, isBig);
  for (const auto& [number, entry] : entries)
    made.bytes += entry;
  made.bytes += old.substr(oldEnd);
  return made;
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
  stream.seekp(0, std::ios::end);
  const auto end = static_cast<std::uint64_t>(stream.tellp());
  const NewDirectory made = MakeDirectory(old, end, tags, false);
  if (end + made.bytes.size() > std::numeric_limits<std::uint32_t>::max()) return false;
  std::string begin;
  Append(begin, made.place, 4, false);
  stream.write(made.bytes.data(), static_cast<std::streamsize>(made.bytes.size()));
  stream.seekp(4);
  stream.write(begin.data(), static_cast<std::streamsize>(begin.size()));
  stream.close();
  return !stream.fail();
}

std::string WithTiffTags(const std::string& block, const std::map<std::uint16_t, TiffTag>& tags) {
  const std::string before = block.empty() ? std::string("II*\0\x08\0\0\0\0\0\0\0\0\0", 14) : block;
  const bool isBig = before.starts_with("MM");
  if (before.size() < 8) return {};
  const auto directory = static_cast<std::size_t>(isBig ? Big32(before, 4) : Little32(before, 4));
  if (directory + 2 > before.size()) return {};
  const auto count = static_cast<std::size_t>(isBig ? Big16(before, directory) : Little16(before, directory));
  const std::size_t length = count * kEntryBytes + 4;
  std::string old = before.substr(directory + 2, length);
  // Some leave out that there is no next directory.
  if (old.size() + 4 < length) return {};
  old.resize(length);
  const NewDirectory made = MakeDirectory(old, before.size(), tags, isBig);
  std::string begin;
  Append(begin, made.place, 4, isBig);
  return before.substr(0, 4) + begin + before.substr(8) + made.bytes;
}

}  // namespace vblur::host
