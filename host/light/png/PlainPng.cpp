#include "host/light/png/PlainPng.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "host/formats/FileBytes.h"
#include "host/formats/PngHead.h"

namespace vblur::host {

namespace {

constexpr std::string_view kSignature("\x89PNG\r\n\x1a\n", 8);
constexpr std::string_view kTexts[] = {"tEXt", "zTXt", "iTXt"};

bool IsText(std::string_view name) {
  return std::ranges::find(kTexts, name) != std::end(kTexts);
}

// Larger files are read no sooner by a light library.
bool HasUsualHeader(std::string_view data) {
  constexpr std::int64_t kMostSide = 32768;
  constexpr std::int64_t kMostBytes = std::int64_t{1} << 30;
  if (data.size() != 13) return false;
  const std::int64_t width = Big32(data, 0);
  const std::int64_t height = Big32(data, 4);
  constexpr std::int64_t kMostOfPixel = 8;
  const bool isLarge = width > kMostSide || height > kMostSide || width * height * kMostOfPixel > kMostBytes;
  return width > 0 && height > 0 && !isLarge && data.substr(10) == std::string_view("\0\0\0", 3);
}

// Of values that both libraries take alike.
bool IsUsual(std::string_view name, std::string_view data) {
  constexpr std::int64_t kLinear = 100000;
  if (name == "IHDR") return HasUsualHeader(data);
  if (name == "gAMA") {
    if (data.size() != 4) return false;
    const std::int64_t gamma = Big32(data, 0);
    return gamma == kLinear || (gamma > kLinear * 3 / 10 && gamma < kLinear * 9 / 10);
  }
  if (name == "pHYs") {
    constexpr std::int64_t kMostPixels = 1'000'000;
    const auto isUsual = [](std::int64_t pixels) { return pixels > 0 && pixels <= kMostPixels; };
    return data.size() == 9 && isUsual(Big32(data, 0)) && isUsual(Big32(data, 4)) && Byte(data, 8) <= 1;
  }
  // The full library's own files have it; it takes other places as a window.
  if (name == "oFFs") return data == std::string_view("\0\0\0\0\0\0\0\0\0", 9);
  if (name == "eXIf") {
    // What JPEG files hold, whose segments are no longer.
    constexpr std::size_t kMostExif = 0xffff;
    return data.size() <= kMostExif && !data.starts_with("Exif");
  }
  // Of the last two neither library takes anything.
  constexpr std::string_view kOthers[] = {"PLTE", "tRNS", "sRGB", "cHRM", "iCCP", "tIME", "IEND", "bKGD", "sBIT"};
  return std::ranges::find(kOthers, name) != std::end(kOthers);
}

class Chunks {
 public:
  explicit Chunks(const std::filesystem::path& file) : file_(file, std::ios::binary) {}

  bool ArePlain() {
    if (ReadAt(file_, 0, kSignature.size()) != kSignature) return false;
    for (std::int64_t at = kSignature.size();;) {
      const std::string head = ReadAt(file_, at, 8);
      if (head.size() < 8) return false;
      const std::int64_t length = Big32(head, 0);
      const std::string name = head.substr(4);
      if (name == "IDAT") {
        // Their checksums are looked at as they are decoded.
        isBehind_ = true;
      } else if (!IsPlain(name, length, at)) {
        return false;
      }
      if (name == "IEND") return isBehind_;
      at += length + 12;
    }
  }

 private:
  bool IsPlain(const std::string& name, std::int64_t length, std::int64_t at) {
    constexpr std::int64_t kLongest = std::int64_t{4} << 20;
    constexpr std::size_t kMost = 100;
    if (length > kLongest || seen_.size() > kMost) return false;
    const std::string chunk = ReadAt(file_, at, static_cast<std::size_t>(length) + 12);
    if (static_cast<std::int64_t>(chunk.size()) != length + 12 || !IsIntactPngChunk(chunk)) return false;
    if (seen_.empty() != (name == "IHDR")) return false;
    const bool isRepeated = std::ranges::find(seen_, name) != seen_.end();
    seen_.push_back(name);
    if (IsText(name)) return true;
    if (isBehind_ && name != "IEND") return false;
    return !isRepeated && IsUsual(name, std::string_view(chunk).substr(8, static_cast<std::size_t>(length)));
  }

  std::ifstream file_;
  std::vector<std::string> seen_;
  bool isBehind_ = false;
};

}  // namespace

bool IsPlainPngFile(const std::filesystem::path& file) {
  return Chunks(file).ArePlain();
}

}  // namespace vblur::host
