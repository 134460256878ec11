#include "host/light/dpx/PlainDpx.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <string_view>
#include <system_error>

#include "host/files/AttributeNames.h"
#include "host/formats/DpxHeader.h"

namespace vblur::host {

namespace {

constexpr std::string_view kColours[] = {"User defined",
                                         "Printing density",
                                         "Linear",
                                         "Logarithmic",
                                         "Unspecified video",
                                         "SMPTE 274M",
                                         "ITU-R 709-4",
                                         "ITU-R 601-5 system B or G",
                                         "ITU-R 601-5 system M",
                                         "NTSC composite video",
                                         "PAL composite video",
                                         "Z depth linear",
                                         "Z depth homogeneous",
                                         "ADX"};

constexpr std::string_view kSignals[] = {"Undefined", "NTSC", "PAL", "PAL-M", "SECAM"};

struct NumberedSignal {
  std::uint32_t number;
  std::string_view name;
};
constexpr NumberedSignal kWideSignals[] = {{50, "YCbCr ITU-R 601-5 525i, 4:3"},
                                           {51, "YCbCr ITU-R 601-5 625i, 4:3"},
                                           {100, "YCbCr ITU-R 601-5 525i, 16:9"},
                                           {101, "YCbCr ITU-R 601-5 625i, 16:9"},
                                           {150, "YCbCr 1050i, 16:9"},
                                           {151, "YCbCr 1125i, 16:9 (SMPTE 274M)"},
                                           {152, "YCbCr 1250i, 16:9"},
                                           {153, "YCbCr 1125i, 16:9 (SMPTE 240M)"},
                                           {200, "YCbCr 525p, 16:9"},
                                           {201, "YCbCr 625p, 16:9"},
                                           {202, "YCbCr 750p, 16:9 (SMPTE 296M)"},
                                           {203, "YCbCr 1125p, 16:9 (SMPTE 274M)"}};

std::string NameOfColours(std::uint32_t number) {
  return std::string(number < std::size(kColours) ? kColours[number] : "Undefined");
}

std::string NameOfSignal(std::uint32_t number) {
  if (number < std::size(kSignals)) return std::string(kSignals[number]);
  const auto* found = std::ranges::find(kWideSignals, number, &NumberedSignal::number);
  if (found != std::end(kWideSignals)) return std::string(found->name);
  return "Undefined " + std::to_string(number);
}

// What is not in the header, or would be larger than the full library takes, is as if it were 0.
bool IsNone(std::uint32_t number) {
  return number == 0 || number > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max());
}

// Perforations of a frame, by the name of a film format.
std::int32_t PerforationsOf(std::string_view format) {
  if (format.starts_with("2kvv") || format.starts_with("4kvv")) return 8;
  return format.starts_with("2k3perf") || format.starts_with("4k3perf") ? 3 : 4;
}

// Reads one header.
class Reading {
 public:
  Reading(const DpxHeader& header, PlainDpx& dpx) : header_(header), dpx_(dpx) {}

  bool IsPlain() { return HasPlainPixels() && HasPlainPlace() && TakeFields(); }

 private:
  bool HasPlainPixels() {
    constexpr std::uint32_t kMostSide = 1 << 20;
    const std::uint32_t width = header_.Whole(dpx::kWidth);
    const std::uint32_t height = header_.Whole(dpx::kHeight);
    if (width < 1 || height < 1 || width > kMostSide || height > kMostSide) return false;
    dpx_.width = static_cast<std::int32_t>(width);
    dpx_.height = static_cast<std::int32_t>(height);
    const std::uint32_t descriptor = header_.Byte(dpx::kDescriptor);
    if (descriptor != dpx::kGrey && descriptor != dpx::kRgb && descriptor != dpx::kRgba) return false;
    dpx_.channels = descriptor == dpx::kGrey ? 1 : descriptor == dpx::kRgb ? 3 : 4;
    return header_.Half(dpx::kElements) == 1 && header_.Half(dpx::kOrientation) == 0 &&
           header_.Whole(dpx::kSign) == 0 && header_.Half(dpx::kEncoding) == 0 && HasPlainPacking();
  }

  bool HasPlainPacking() {
    dpx_.packing.bits = static_cast<int>(header_.Byte(dpx::kBits));
    dpx_.packing.isBigEndian = header_.IsBigEndian();
    const std::uint32_t packing = header_.Half(dpx::kPacking);
    dpx_.packing.isFilled = packing == 1;
    dpx_.packing.isReversed = dpx_.channels == 1;
    const bool isKnown =
        dpx_.packing.bits == 8 || dpx_.packing.bits == 10 || dpx_.packing.bits == 12 || dpx_.packing.bits == 16;
    return isKnown && packing <= 1;
  }

  bool HasPlainPlace() const {
    const std::uint32_t padding = header_.Whole(dpx::kLinePadding);
    const auto isOwn = [&](std::size_t place, std::int32_t side) {
      const std::uint32_t number = header_.Whole(place);
      return IsNone(number) || number == static_cast<std::uint32_t>(side);
    };
    return padding == 0 && header_.Begin() >= dpx::kFilmHeader && IsNone(header_.Whole(dpx::kOffsetX)) &&
           IsNone(header_.Whole(dpx::kOffsetY)) && isOwn(dpx::kOriginalWidth, dpx_.width) &&
           isOwn(dpx::kOriginalHeight, dpx_.height);
  }

  bool TakeFields() {
    dpx_.attributes.AddWhole("oiio:BitsPerSample", dpx_.packing.bits);
    dpx_.attributes.AddWhole("Orientation", 1);
    return std::ranges::all_of(DpxFields(), [&](const DpxField& field) { return !header_.Has(field) || Take(field); });
  }

  bool Take(const DpxField& field) {
    const std::string name(field.name);
    switch (field.kind) {
      case DpxKind::Text: return TakeText(field);
      case DpxKind::Time: return TakeTime(field);
      case DpxKind::Whole:
        if (const std::uint32_t number = header_.Whole(field.place); number != dpx::kUndefined)
          dpx_.attributes.Add(name, "uint", BytesOf(number));
        return true;
      case DpxKind::Float:
        if (const float number = header_.Float(field.place); !std::isnan(number))
          dpx_.attributes.AddFloat(name, number);
        return true;
      case DpxKind::Byte:
        if (const std::uint32_t number = header_.Byte(field.place); number != 0xff)
          dpx_.attributes.AddWhole(name, static_cast<std::int32_t>(number));
        return true;
      case DpxKind::Coded: return TakeCode(field);
    }
    return false;
  }

  bool TakeText(const DpxField& field) {
    const std::string_view bytes = header_.Field(field);
    if (bytes.front() == '\0' || bytes.front() == '\xff') return true;
    const std::size_t end = bytes.find('\0');
    if (end == std::string_view::npos) return false;
    const std::string_view text = bytes.substr(0, end);
    dpx_.attributes.AddText(std::string(field.name), std::string(text));
    return IsPrintableText(text);
  }

  // "2026:11:23:12:00:00" as "2026:11:23 12:00:00".
  bool TakeTime(const DpxField& field) {
    constexpr std::size_t kDate = 10;
    constexpr std::size_t kTime = 19;
    std::string text(header_.Field(field).substr(0, kTime));
    if (text.front() == '\0') return true;
    text[kDate] = ' ';
    dpx_.attributes.AddText(std::string(field.name), text);
    return IsPrintableText(text);
  }

  bool TakeCode(const DpxField& field) {
    const std::string name(field.name);
    if (field.place == dpx::kTransfer) return TakeTransfer();
    if (field.place == dpx::kColorimetric)
      dpx_.attributes.AddText(name, NameOfColours(header_.Byte(field.place)));
    else if (field.place == dpx::kDescriptor)
      dpx_.attributes.AddText(name, dpx_.channels == 1 ? "Luma" : dpx_.channels == 3 ? "RGB" : "RGBA");
    else if (field.place == dpx::kPacking)
      dpx_.attributes.AddText(name, dpx_.packing.isFilled ? "Filled, method A" : "Packed");
    else if (field.place == dpx::kPixelAspect)
      TakePixelAspect();
    else if (field.place == dpx::kTimeCode)
      TakeTimeCode(field);
    else if (field.place == dpx::kSignal)
      TakeSignal();
    else
      return TakeKeyCode(field);
    return true;
  }

  // A gamma of its own has a say in what is linear.
  bool TakeTransfer() {
    const std::uint32_t transfer = header_.Byte(dpx::kTransfer);
    const float gamma = header_.Float(dpx::kGamma);
    const std::string name = NameOfColours(transfer);
    if (name == "User defined" && gamma != 0.0f && !std::isnan(gamma)) return false;
    if (name == "Linear") dpx_.attributes.AddText("oiio:ColorSpace", "Linear");
    if (name == "Logarithmic") dpx_.attributes.AddText("oiio:ColorSpace", "KodakLog");
    if (name == "ITU-R 709-4") dpx_.attributes.AddText("oiio:ColorSpace", "Rec709");
    dpx_.attributes.AddText("dpx:Transfer", name);
    return true;
  }

  void TakePixelAspect() {
    const std::uint32_t down = header_.Whole(dpx::kPixelAspect + 4);
    const auto across = static_cast<float>(header_.Whole(dpx::kPixelAspect));
    dpx_.attributes.AddFloat("PixelAspectRatio", down == 0 ? 1.0f : across / static_cast<float>(down));
  }

  // The last sign tells whether frames are dropped.
  void TakeTimeCode(const DpxField& field) {
    const std::uint32_t code = header_.Whole(dpx::kTimeCode);
    if (code == dpx::kUndefined) return;
    if (field.name == "smpte:TimeCode") {
      dpx_.attributes.Add("smpte:TimeCode", "timecode", std::string(header_.Field(field)));
      return;
    }
    constexpr std::uint32_t kDropsFrames = 0x40;
    std::string text = ShownTimeCode(code);
    if ((code & kDropsFrames) != 0) text[text.rfind(':')] = ';';
    dpx_.attributes.AddText("dpx:TimeCode", text);
  }

  // Digits of the maker, the kind of film, the place in perforations, the prefix and the count.
  bool TakeKeyCode(const DpxField& field) {
    constexpr std::size_t kFormat = 1680;
    constexpr std::int32_t kPerforationsOfCount = 64;
    const std::string code(header_.Field(field));
    if (code.front() == '\0') return true;
    if (!std::ranges::all_of(code, [](char c) { return c >= '0' && c <= '9'; })) return false;
    if (field.name == "dpx:FilmEdgeCode") {
      dpx_.attributes.AddText("dpx:FilmEdgeCode", code);
      return true;
    }
    const auto number = [&](std::size_t place, std::size_t digits) { return std::stoi(code.substr(place, digits)); };
    const std::string_view format = std::string_view(header_.Bytes()).substr(kFormat, 32);
    const std::array<std::int32_t, 7> numbers{number(0, 2), number(2, 2),           number(6, 6),        number(12, 4),
                                              number(4, 2), PerforationsOf(format), kPerforationsOfCount};
    dpx_.attributes.Add("smpte:KeyCode", "keycode", BytesOf(numbers));
    return true;
  }

  void TakeSignal() {
    const std::uint32_t signal = header_.Byte(dpx::kSignal);
    if (signal != 0xff) dpx_.attributes.AddText("dpx:Signal", NameOfSignal(signal));
  }

  const DpxHeader& header_;
  PlainDpx& dpx_;
};

// What a program keeps for itself, between the header and the pixels. False for more than outputs have.
bool TakeUserData(const std::filesystem::path& file, const DpxHeader& header, PlainDpx& dpx) {
  const std::uint32_t bytes = header.Whole(dpx::kUserBytes);
  if (bytes == 0 || bytes == dpx::kUndefined) return true;
  if (bytes > dpx::kMostUserBytes || dpx::kHeaderBytes + bytes > header.Begin()) return false;
  std::ifstream stream(file, std::ios::binary);
  std::string data = ReadAt(stream, dpx::kHeaderBytes, bytes);
  const bool isWhole = data.size() == bytes;
  dpx.attributes.AddBytes("dpx:UserData", std::move(data));
  return isWhole;
}

}  // namespace

std::optional<PlainDpx> PlainDpxOf(const std::filesystem::path& file) {
  const auto header = DpxHeader::Of(file);
  PlainDpx dpx;
  if (!header || !Reading(*header, dpx).IsPlain()) return std::nullopt;
  std::error_code error;
  const auto length = static_cast<std::int64_t>(std::filesystem::file_size(file, error));
  dpx.begin = header->Begin();
  dpx.header = header->Bytes();
  if (!TakeUserData(file, *header, dpx)) return std::nullopt;
  if (error || length < dpx.begin + static_cast<std::int64_t>(dpx.RowBytes()) * dpx.height) return std::nullopt;
  return dpx;
}

}  // namespace vblur::host
