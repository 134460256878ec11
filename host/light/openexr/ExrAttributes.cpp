#include "host/light/openexr/ExrAttributes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>

#include <ImfChromaticitiesAttribute.h>
#include <ImfFloatAttribute.h>
#include <ImfIntAttribute.h>
#include <ImfMatrixAttribute.h>
#include <ImfRationalAttribute.h>
#include <ImfStringAttribute.h>
#include <ImfTimeCodeAttribute.h>
#include <ImfVecAttribute.h>

#include "host/base/NameMatch.h"
#include "host/files/AttributeNames.h"
#include "host/light/MeantNames.h"

namespace vblur::host {

namespace {

// Attributes that mean more than their values, in files and to the full library.
struct KnownAttribute {
  std::string_view inFile;
  std::string_view name;
  std::string_view type;
};

constexpr std::array<KnownAttribute, 16> kKnown = {{{"owner", "Copyright", "string"},
                                                    {"capDate", "DateTime", "string"},
                                                    {"comments", "ImageDescription", "string"},
                                                    {"name", "name", "string"},
                                                    {"Exif:ImageHistory", "Exif:ImageHistory", "string"},
                                                    {"pixelAspectRatio", "PixelAspectRatio", "float"},
                                                    {"xDensity", "XResolution", "float"},
                                                    {"ResolutionUnit", "ResolutionUnit", "string"},
                                                    {"Orientation", "Orientation", "int"},
                                                    {"chunkCount", "openexr:chunkCount", "int"},
                                                    {"dwaCompressionLevel", "openexr:dwaCompressionLevel", "float"},
                                                    {"timeCode", "smpte:TimeCode", "timecode"},
                                                    {"framesPerSecond", "framesPerSecond", "rational"},
                                                    {"chromaticities", "chromaticities", "float[8]"},
                                                    {"screenWindowCenter", "screenWindowCenter", "float2"},
                                                    {"screenWindowWidth", "screenWindowWidth", "float"}}};

// What the header says of pixels, which is told elsewhere.
constexpr std::string_view kOfPixels[] = {"channels",  "compression", "dataWindow", "displayWindow",
                                          "lineOrder", "tiles",       "type"};

// Further names that the format or the full library has a use for.
constexpr std::string_view kUsed[] = {"description",        "expTime",   "keyCode",         "tiledesc",
                                      "maxSamplesPerPixel", "envmap",    "version",         "preview",
                                      "deepImageState",     "multiView", "cameraTransform", "acesImageContainerFlag",
                                      "colorInteropID"};

// Types of attributes that pass by their own name.
constexpr std::string_view kPlainTypes[] = {"string", "int",      "float",  "float2",
                                            "vector", "matrix33", "matrix", "rational"};

template <std::size_t count>
bool Lists(const std::string_view (&names)[count], std::string_view name) {
  return std::ranges::any_of(names, [&](std::string_view each) { return EqualIgnoringCase(each, name); });
}

bool IsPlainName(std::string_view name) {
  constexpr std::size_t kLongest = 255;
  const bool isPrintable = IsPrintableText(name) && name.find(':') == std::string_view::npos;
  const bool isKnown = std::ranges::any_of(kKnown, [&](const KnownAttribute& each) {
    return EqualIgnoringCase(each.inFile, name) || EqualIgnoringCase(each.name, name);
  });
  return !name.empty() && name.size() <= kLongest && isPrintable && !isKnown && !Lists(kOfPixels, name) &&
         !Lists(kUsed, name) && !IsMeantName(name);
}

template <typename Value>
Value ValueOf(const PictureAttribute& attribute) {
  Value value;
  static_assert(std::is_trivially_copyable_v<Value>);
  std::memcpy(&value, attribute.value.data(), sizeof value);
  return value;
}

float FloatAt(const PictureAttribute& attribute, std::size_t place) {
  float value = 0.0f;
  std::memcpy(&value, attribute.value.data() + place * sizeof value, sizeof value);
  return value;
}

// The numbers of a value, one behind the other.
template <typename Number>
requires std::is_arithmetic_v<Number> Number NumbersOf(Number value) {
  return value;
}
std::array<float, 2> NumbersOf(const Imath::V2f& v) {
  return {v.x, v.y};
}
std::array<float, 3> NumbersOf(const Imath::V3f& v) {
  return {v.x, v.y, v.z};
}
template <std::size_t side>
std::array<float, side * side> NumbersOf(const float (&rows)[side][side]) {
  std::array<float, side * side> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i)
    numbers[i] = rows[i / side][i % side];
  return numbers;
}
auto NumbersOf(const Imath::M33f& m) {
  return NumbersOf(m.x);
}
auto NumbersOf(const Imath::M44f& m) {
  return NumbersOf(m.x);
}
std::array<float, 8> NumbersOf(const Imf::Chromaticities& c) {
  return {c.red.x, c.red.y, c.green.x, c.green.y, c.blue.x, c.blue.y, c.white.x, c.white.y};
}

// Takes the value where the attribute has this class.
template <typename Attribute>
bool Take(const Imf::Attribute& attribute, const char* type, PictureAttribute& taken) {
  const auto* const typed = dynamic_cast<const Attribute*>(&attribute);
  if (typed == nullptr) return false;
  taken.type = type;
  taken.value = BytesOf(NumbersOf(typed->value()));
  return true;
}

bool TakeText(const Imf::Attribute& attribute, PictureAttribute& taken) {
  const auto* const text = dynamic_cast<const Imf::StringAttribute*>(&attribute);
  if (text == nullptr) return false;
  taken.type = "string";
  taken.value = text->value();
  return taken.value.find('\0') == std::string::npos;
}

bool TakeTime(const Imf::Attribute& attribute, PictureAttribute& taken) {
  const auto* const time = dynamic_cast<const Imf::TimeCodeAttribute*>(&attribute);
  if (time == nullptr) return false;
  taken.type = "timecode";
  taken.value = BytesOf(std::array<std::uint32_t, 2>{time->value().timeAndFlags(), time->value().userData()});
  return true;
}

bool TakeFraction(const Imf::Attribute& attribute, PictureAttribute& taken) {
  const auto* const fraction = dynamic_cast<const Imf::RationalAttribute*>(&attribute);
  if (fraction == nullptr) return false;
  taken.type = "rational";
  taken.value =
      BytesOf(std::array<std::uint32_t, 2>{static_cast<std::uint32_t>(fraction->value().n), fraction->value().d});
  return fraction->value().d >> 31 == 0;
}

bool TakeValue(const Imf::Attribute& attribute, PictureAttribute& taken) {
  return TakeText(attribute, taken) || TakeTime(attribute, taken) || TakeFraction(attribute, taken) ||
         Take<Imf::IntAttribute>(attribute, "int", taken) || Take<Imf::FloatAttribute>(attribute, "float", taken) ||
         Take<Imf::V2fAttribute>(attribute, "float2", taken) || Take<Imf::V3fAttribute>(attribute, "vector", taken) ||
         Take<Imf::M33fAttribute>(attribute, "matrix33", taken) ||
         Take<Imf::M44fAttribute>(attribute, "matrix", taken) ||
         Take<Imf::ChromaticitiesAttribute>(attribute, "float[8]", taken);
}

// Some have infinities and what is no number.
bool HasFiniteFloats(const PictureAttribute& attribute) {
  const bool isOfFloats =
      attribute.type.starts_with("float") || attribute.type.starts_with("matrix") || attribute.type == "vector";
  for (std::size_t place = 0; isOfFloats && place < attribute.value.size() / sizeof(float); ++place) {
    if (!std::isfinite(FloatAt(attribute, place))) return false;
  }
  return true;
}

bool IsSound(const PictureAttribute& attribute) {
  constexpr std::int32_t kOrientations = 8;
  if (attribute.name == "Orientation") {
    const auto orientation = ValueOf<std::int32_t>(attribute);
    return orientation >= 1 && orientation <= kOrientations;
  }
  if (attribute.name == "ResolutionUnit") {
    constexpr std::string_view kUnits[] = {"none", "in", "inch"};
    return std::ranges::find(kUnits, std::string_view(attribute.value)) != std::end(kUnits);
  }
  if (attribute.name == "XResolution" || attribute.name == "YResolution") {
    const auto pixels = ValueOf<float>(attribute);
    return pixels > 0.0f && HasFiniteFloats(attribute);
  }
  return HasFiniteFloats(attribute);
}

// Known by its name, its type and its value, or plain.
bool IsPlain(const PictureAttribute& attribute) {
  const auto* const known = std::ranges::find(kKnown, std::string_view(attribute.name), &KnownAttribute::name);
  if (known != kKnown.end()) return attribute.type == known->type && IsSound(attribute);
  return IsPlainName(attribute.name) && Lists(kPlainTypes, attribute.type) && HasFiniteFloats(attribute);
}

// By the name of the full library. Nothing for one that is left to it.
std::optional<PictureAttribute> Read(const std::string& inFile, const Imf::Attribute& attribute) {
  PictureAttribute taken;
  if (!TakeValue(attribute, taken)) return std::nullopt;
  const auto* const known = std::ranges::find(kKnown, std::string_view(inFile), &KnownAttribute::inFile);
  taken.name = known != kKnown.end() ? std::string(known->name) : inFile;
  const bool isNamedAlike = known == kKnown.end() && !IsPlainName(inFile);
  if (isNamedAlike || !IsPlain(taken)) return std::nullopt;
  return taken;
}

// The full library adds the number of pixels down from that across and the shape of a pixel, and the unit, which takes
// the place of another.
LightAttributes WithResolution(const LightAttributes& attributes) {
  const float x = attributes.Number("XResolution", 0.0f);
  if (x == 0.0f) return attributes;
  LightAttributes all;
  for (const PictureAttribute& each : attributes.All())
    all.Add(each.name, each.type, each.name == "ResolutionUnit" ? "in" : each.value);
  const float aspect = attributes.Number("PixelAspectRatio", 0.0f);
  all.AddFloat("YResolution", x * (aspect != 0.0f ? aspect : 1.0f));
  if (attributes.Find("ResolutionUnit") == nullptr) all.AddText("ResolutionUnit", "in");
  return all;
}

constexpr std::array<std::string_view, 10> kCompressions = {"none",  "rle", "zips", "zip",  "piz",
                                                            "pxr24", "b44", "b44a", "dwaa", "dwab"};

// What other files have and these have not.
bool IsLeftOut(std::string_view name) {
  return name == "ICCProfile" || name.starts_with("oiio:") || name == "YResolution";
}

// The shape of a pixel that the full library makes of the two resolutions; 0: it makes none.
float AspectOfResolution(const LightAttributes& attributes) {
  const float x = attributes.Number("XResolution", 0.0f);
  const float y = attributes.Number("YResolution", 0.0f);
  return x != 0.0f && y != 0.0f ? x / y : 0.0f;
}

void Put(const std::string& inFile, const PictureAttribute& attribute, Imf::Header& header) {
  const auto put = [&](const Imf::Attribute& value) { header.insert(inFile, value); };
  const std::string& type = attribute.type;
  if (type == "string") put(Imf::StringAttribute(attribute.value));
  if (type == "int") put(Imf::IntAttribute(ValueOf<std::int32_t>(attribute)));
  if (type == "float") put(Imf::FloatAttribute(ValueOf<float>(attribute)));
  const auto at = [&](std::size_t place) { return FloatAt(attribute, place); };
  if (type == "float2") put(Imf::V2fAttribute({at(0), at(1)}));
  if (type == "vector") put(Imf::V3fAttribute({at(0), at(1), at(2)}));
  if (type == "matrix33") put(Imf::M33fAttribute({at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8)}));
  if (type == "matrix") {
    Imath::M44f matrix;
    for (int i = 0; i < 16; ++i)
      matrix[i / 4][i % 4] = at(static_cast<std::size_t>(i));
    put(Imf::M44fAttribute(matrix));
  }
  if (type == "float[8]") {
    put(Imf::ChromaticitiesAttribute(
        Imf::Chromaticities({at(0), at(1)}, {at(2), at(3)}, {at(4), at(5)}, {at(6), at(7)})));
  }
  if (type == "rational") {
    const auto parts = ValueOf<std::array<std::uint32_t, 2>>(attribute);
    put(Imf::RationalAttribute(Imf::Rational(static_cast<int>(parts[0]), static_cast<int>(parts[1]))));
  }
  if (type == "timecode") {
    const auto words = ValueOf<std::array<std::uint32_t, 2>>(attribute);
    put(Imf::TimeCodeAttribute(Imf::TimeCode(words[0], words[1])));
  }
}

}  // namespace

const char* NameOfExrCompression(Imf::Compression compression) {
  return kCompressions[static_cast<std::size_t>(compression)].data();
}

Imf::Compression ExrCompressionOf(const std::string& name) {
  const auto* const found = std::ranges::find(kCompressions, std::string_view(name));
  return static_cast<Imf::Compression>(found - kCompressions.begin());
}

std::optional<LightAttributes> ReadExrAttributes(const Imf::Header& header) {
  // Together they fit all formats.
  constexpr std::size_t kMostBytes = 50000;
  LightAttributes attributes;
  attributes.AddText("oiio:ColorSpace", "Linear");
  attributes.AddText("compression", NameOfExrCompression(header.compression()));
  std::size_t bytes = 0;
  for (auto each = header.begin(); each != header.end(); ++each) {
    const std::string inFile = each.name();
    if (std::ranges::find(kOfPixels, std::string_view(inFile)) != std::end(kOfPixels)) continue;
    auto read = Read(inFile, each.attribute());
    // Two of a name are one, and which of them is the full library's choice.
    if (!read || attributes.Find(read->name) != nullptr) return std::nullopt;
    bytes += read->name.size() + read->value.size();
    const bool isEmpty = read->IsText() && read->value.empty();
    if (!isEmpty) attributes.Add(std::move(read->name), std::move(read->type), std::move(read->value));
  }
  if (bytes > kMostBytes || (header.hasName() && header.name().empty())) return std::nullopt;
  attributes = WithResolution(attributes);
  if (header.hasName()) attributes.AddText("oiio:subimagename", header.name());
  attributes.AddWhole("oiio:subimages", 1);
  return attributes;
}

bool ArePlainForExr(const LightAttributes& attributes) {
  // The library refuses others.
  constexpr float kLeast = 1e-6f;
  constexpr float kMost = 1e6f;
  const float made = AspectOfResolution(attributes);
  const float aspect = attributes.Number("PixelAspectRatio", made != 0.0f ? made : 1.0f);
  if (!(aspect >= kLeast && aspect <= kMost)) return false;
  return std::ranges::all_of(attributes.All(), [](const PictureAttribute& each) {
    if (each.name == "YResolution") return each.type == "float" && IsSound(each);
    return IsLeftOut(each.name) || IsPlain(each);
  });
}

void PutExrAttributes(const LightAttributes& attributes, Imf::Header& header) {
  const float made = AspectOfResolution(attributes);
  if (made != 0.0f && attributes.Find("PixelAspectRatio") == nullptr) header.pixelAspectRatio() = made;
  for (const PictureAttribute& each : attributes.All()) {
    if (IsLeftOut(each.name)) continue;
    const auto* const known = std::ranges::find(kKnown, std::string_view(each.name), &KnownAttribute::name);
    Put(known != kKnown.end() ? std::string(known->inFile) : each.name, each, header);
  }
}

void PutExrLevel(Imf::Header& header) {
  constexpr float kUsual = 45.0f;
  const Imf::Compression compression = header.compression();
  if (compression == Imf::DWAA_COMPRESSION || compression == Imf::DWAB_COMPRESSION)
    header.insert("dwaCompressionLevel", Imf::FloatAttribute(kUsual));
}

}  // namespace vblur::host
