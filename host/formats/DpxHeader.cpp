#include "host/formats/DpxHeader.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <limits>

namespace vblur::host {

namespace {

using Kind = DpxKind;

constexpr DpxField kFields[] = {
    {"dpx:Transfer", Kind::Coded, dpx::kTransfer, 1},
    {"dpx:Colorimetric", Kind::Coded, dpx::kColorimetric, 1},
    {"Copyright", Kind::Text, 460, 200},
    {"Software", Kind::Text, dpx::kCreator, dpx::kCreatorBytes},
    {"DocumentName", Kind::Text, 260, 200},
    {"DateTime", Kind::Time, 136, 24},
    {"ImageDescription", Kind::Text, 820, 32},
    {"PixelAspectRatio", Kind::Coded, dpx::kPixelAspect, 8},
    {"dpx:ImageDescriptor", Kind::Coded, dpx::kDescriptor, 1},
    {"dpx:EncryptKey", Kind::Whole, dpx::kEncryptKey, 4},
    {"dpx:DittoKey", Kind::Whole, dpx::kDittoKey, 4},
    {"dpx:LowData", Kind::Whole, 784, 4},
    {"dpx:LowQuantity", Kind::Float, 788, 4},
    {"dpx:HighData", Kind::Whole, 792, 4},
    {"dpx:HighQuantity", Kind::Float, 796, 4},
    {"dpx:EndOfLinePadding", Kind::Whole, dpx::kLinePadding, 4},
    {"dpx:EndOfImagePadding", Kind::Whole, 816, 4},
    {"dpx:XScannedSize", Kind::Float, 1636, 4},
    {"dpx:YScannedSize", Kind::Float, 1640, 4},
    {"dpx:FramePosition", Kind::Whole, 1712, 4},
    {"dpx:SequenceLength", Kind::Whole, 1716, 4},
    {"dpx:HeldCount", Kind::Whole, 1720, 4},
    {"dpx:FrameRate", Kind::Float, 1724, 4},
    {"dpx:ShutterAngle", Kind::Float, 1728, 4},
    {"dpx:Version", Kind::Text, dpx::kVersion, 8},
    {"dpx:Format", Kind::Text, 1680, 32},
    {"dpx:FrameId", Kind::Text, 1732, 32},
    {"dpx:SlateInfo", Kind::Text, 1764, 100},
    {"dpx:SourceImageFileName", Kind::Text, 1432, 100},
    {"dpx:InputDevice", Kind::Text, 1556, 32},
    {"dpx:InputDeviceSerialNumber", Kind::Text, 1588, 32},
    {"dpx:Interlace", Kind::Byte, 1928, 1},
    {"dpx:FieldNumber", Kind::Byte, 1929, 1},
    {"dpx:HorizontalSampleRate", Kind::Float, 1932, 4},
    {"dpx:VerticalSampleRate", Kind::Float, 1936, 4},
    {"dpx:TemporalFrameRate", Kind::Float, 1940, 4},
    {"dpx:TimeOffset", Kind::Float, 1944, 4},
    {"dpx:BlackLevel", Kind::Float, 1952, 4},
    {"dpx:BlackGain", Kind::Float, 1956, 4},
    {"dpx:BreakPoint", Kind::Float, 1960, 4},
    {"dpx:WhiteLevel", Kind::Float, 1964, 4},
    {"dpx:IntegrationTimes", Kind::Float, 1968, 4},
    {"dpx:Packing", Kind::Coded, dpx::kPacking, 2},
    {"smpte:KeyCode", Kind::Coded, dpx::kFilmHeader, 16},
    {"smpte:TimeCode", Kind::Coded, dpx::kTimeCode, 8},
    {"dpx:TimeCode", Kind::Coded, dpx::kTimeCode, 4},
    {"dpx:UserBits", Kind::Whole, dpx::kUserBits, 4},
    {"dpx:SourceDateTime", Kind::Time, 1532, 24},
    {"dpx:FilmEdgeCode", Kind::Coded, dpx::kFilmHeader, 16},
    {"dpx:Signal", Kind::Coded, dpx::kSignal, 1},
};

// `count` numbers from a place on.
struct Numbers {
  std::size_t place;
  std::size_t count;
};
constexpr std::size_t kElement = 780;
constexpr std::size_t kElementBytes = 72;
constexpr std::size_t kNumbersOfElement = 40;
constexpr std::size_t kMostElements = 8;
constexpr std::size_t kMiddle = 1416;
constexpr std::size_t kBorder = 1620;
constexpr Numbers kWholes[] = {{0, 2},    {16, 5},   {660, 1},  {772, 2},  {1408, 6},
                               {1628, 4}, {1712, 5}, {1920, 2}, {1932, 10}};
constexpr Numbers kHalves[] = {{768, 2}, {kBorder, 4}};
constexpr Numbers kWholesOfElement[] = {{0, 5}, {28, 3}};
constexpr Numbers kHalvesOfElement[] = {{24, 2}};

void Turn(std::string& bytes, std::span<const Numbers> all, std::size_t size, std::size_t from = 0) {
  for (const Numbers& numbers : all) {
    for (std::size_t i = 0; i < numbers.count; ++i) {
      const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(from + numbers.place + i * size);
      std::reverse(begin, begin + static_cast<std::ptrdiff_t>(size));
    }
  }
}

void TurnAll(std::string& bytes) {
  Turn(bytes, kWholes, 4);
  Turn(bytes, kHalves, 2);
  for (std::size_t i = 0; i < kMostElements; ++i) {
    Turn(bytes, kWholesOfElement, 4, kElement + i * kElementBytes);
    Turn(bytes, kHalvesOfElement, 2, kElement + i * kElementBytes);
  }
}

// What an output has of its own.
constexpr std::string_view kOfStorage[] = {"dpx:ImageDescriptor", "dpx:Packing", "dpx:EndOfLinePadding",
                                           "dpx:EndOfImagePadding", "dpx:Version"};
// Fields that the full library does not name: the middle of a scan, its border, and the gamma of a signal.
constexpr DpxField kUnnamed[] = {
    {"", Kind::Coded, kMiddle, 8}, {"", Kind::Coded, kBorder, 8}, {"", Kind::Coded, dpx::kGamma, 4}};

// The end of the headers in a file whose pixels begin there.
std::size_t FirstUndefined(std::size_t begin) {
  if (begin >= dpx::kHeaderBytes) return dpx::kHeaderBytes;
  return begin >= dpx::kTelevisionHeader ? dpx::kTelevisionHeader : dpx::kFilmHeader;
}

}  // namespace

std::span<const DpxField> DpxFields() {
  return kFields;
}

std::optional<DpxHeader> DpxHeader::Of(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string bytes = ReadAt(stream, 0, dpx::kHeaderBytes);
  const bool isBig = bytes.starts_with("SDPX");
  if (bytes.size() < dpx::kFilmHeader || (!isBig && !bytes.starts_with("XPDS"))) return std::nullopt;
  const std::size_t read = bytes.size();
  bytes.resize(dpx::kHeaderBytes);
  if (isBig) TurnAll(bytes);
  DpxHeader header(std::move(bytes));
  header.isBig_ = isBig;
  const std::size_t known = FirstUndefined(header.Begin());
  if (read < known) return std::nullopt;
  header.bytes_.replace(known, std::string::npos, DpxHeader(0).bytes_, known);
  return header;
}

DpxHeader::DpxHeader(std::uint32_t begin) : bytes_(dpx::kHeaderBytes, '\0') {
  // By its type: all bits set, or no number.
  for (const DpxField& field : kFields) {
    if (field.kind == DpxKind::Whole) SetWhole(field.place, dpx::kUndefined);
    if (field.kind == DpxKind::Float) SetFloat(field.place, std::numeric_limits<float>::quiet_NaN());
    if (field.kind == DpxKind::Byte) SetByte(field.place, 0xff);
  }
  for (const std::size_t place : {kMiddle, kMiddle + 4, dpx::kGamma})
    SetFloat(place, std::numeric_limits<float>::quiet_NaN());
  SetWhole(dpx::kTimeCode, dpx::kUndefined);
  SetByte(dpx::kTransfer, 0xff);
  for (std::size_t i = 1; i < kMostElements; ++i)
    bytes_.replace(kElement + i * kElementBytes, kNumbersOfElement, std::string(kNumbersOfElement, '\xff'));
  bytes_.replace(0, 4, "XPDS");
  SetText(dpx::kVersion, 8, "V2.0");
  SetWhole(dpx::kBegin, begin);
  SetWhole(dpx::kElementBegin, begin);
  SetWhole(dpx::kDittoKey, 1);
  SetWhole(24, dpx::kFilmHeader);
  SetWhole(28, dpx::kHeaderBytes - dpx::kFilmHeader);
  SetHalf(dpx::kElements, 1);
  SetWhole(dpx::kLinePadding, 0);
  SetWhole(dpx::kLinePadding + 4, 0);
  SetWhole(dpx::kPixelAspect, 1);
  SetWhole(dpx::kPixelAspect + 4, 1);
}

float DpxHeader::Float(std::size_t place) const {
  return std::bit_cast<float>(Whole(place));
}

std::uint32_t DpxHeader::Begin() const {
  // An element without a place of its own begins where the picture does.
  const std::uint32_t begin = Whole(dpx::kElementBegin);
  return begin == 0 || begin == dpx::kUndefined ? Whole(dpx::kBegin) : begin;
}

bool DpxHeader::Has(const DpxField& field) const {
  return field.place < FirstUndefined(Begin());
}

void DpxHeader::SetWhole(std::size_t place, std::uint32_t number) {
  SetHalf(place, number);
  SetHalf(place + 2, number >> 16);
}

void DpxHeader::SetHalf(std::size_t place, std::uint32_t number) {
  SetByte(place, number & 0xff);
  SetByte(place + 1, number >> 8 & 0xff);
}

void DpxHeader::SetFloat(std::size_t place, float number) {
  SetWhole(place, std::bit_cast<std::uint32_t>(number));
}

void DpxHeader::SetText(std::size_t place, std::size_t bytes, std::string_view text) {
  std::string field(text.substr(0, bytes - 1));
  field.resize(bytes);
  bytes_.replace(place, bytes, field);
}

void DpxHeader::SetPixelAspect(float aspect) {
  constexpr float kMost = 10000.0f;
  // Of the continued fraction, and the one before.
  std::int64_t across[] = {1, 0};
  std::int64_t down[] = {0, 1};
  double rest = static_cast<double>(aspect);
  const auto isReached = [&] {
    return down[0] != 0 && static_cast<float>(across[0]) / static_cast<float>(down[0]) == aspect;
  };
  const bool isUsual = aspect >= 1.0f / kMost && aspect <= kMost;
  while (isUsual && !isReached()) {
    const auto whole = static_cast<std::int64_t>(rest);
    across[1] = std::exchange(across[0], whole * across[0] + across[1]);
    down[1] = std::exchange(down[0], whole * down[0] + down[1]);
    rest = 1.0 / (rest - static_cast<double>(whole));
  }
  SetWhole(dpx::kPixelAspect, isUsual ? static_cast<std::uint32_t>(across[0]) : 1);
  SetWhole(dpx::kPixelAspect + 4, isUsual ? static_cast<std::uint32_t>(down[0]) : 1);
}

void DpxHeader::TakeFieldsOf(const DpxHeader& source) {
  const auto take = [&](const DpxField& field) { bytes_.replace(field.place, field.bytes, source.Field(field)); };
  for (const DpxField& field : kFields) {
    if (std::ranges::find(kOfStorage, field.name) == std::end(kOfStorage)) take(field);
  }
  std::ranges::for_each(kUnnamed, take);
}

}  // namespace vblur::host
