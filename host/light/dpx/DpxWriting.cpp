#include "host/light/dpx/DpxWriting.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"
#include "host/files/AttributeNames.h"
#include "host/formats/DpxHeader.h"
#include "host/light/InOrder.h"
#include "host/light/LightMetadata.h"
#include "host/light/LightRows.h"
#include "host/light/WrittenFile.h"
#include "host/light/dpx/DpxPacking.h"

namespace vblur::host {

namespace {

// Where most writers begin the pixels: at a multiple of this.
constexpr std::uint32_t kPage = 8192;

// The bytes that a program has put behind the header of a source.
std::string UserDataOf(const PictureToWrite& picture) {
  if (picture.metadata == nullptr || picture.metadata->info.format != "dpx") return {};
  for (const PictureAttribute& each : *picture.metadata->Light()) {
    if (each.name == "dpx:UserData") return each.value;
  }
  return {};
}

std::uint32_t BeginBehind(const std::string& userData) {
  return static_cast<std::uint32_t>((dpx::kHeaderBytes + userData.size() + kPage - 1) / kPage * kPage);
}

const DpxField* FieldOf(const std::string& name) {
  const auto fields = DpxFields();
  const auto found = std::ranges::find(fields, name, &DpxField::name);
  return found != fields.end() ? &*found : nullptr;
}

// Of a source of another format: whether all that a DPX file holds of it is written here as the full library writes it.
bool IsPlain(const PictureAttribute& attribute) {
  const DpxField* const field = FieldOf(attribute.name);
  if (field == nullptr) return true;
  constexpr std::size_t kTimeBytes = 19;
  switch (field->kind) {
    case DpxKind::Text:
      return attribute.IsText() && attribute.value.size() < field->bytes && IsPrintableText(attribute.value);
    case DpxKind::Time: return attribute.IsText() && attribute.value.size() == kTimeBytes;
    default: break;
  }
  if (attribute.name == "PixelAspectRatio") return attribute.type == "float";
  return attribute.name == "smpte:TimeCode" && attribute.type == "timecode";
}

void Put(const PictureAttribute& attribute, DpxHeader& header) {
  const DpxField* const field = FieldOf(attribute.name);
  if (field == nullptr) return;
  if (field->kind == DpxKind::Text) header.SetText(field->place, field->bytes, attribute.value);
  if (field->kind == DpxKind::Time) {
    constexpr std::size_t kDate = 10;
    std::string time = attribute.value + 'Z';
    time[kDate] = ':';
    header.SetText(field->place, field->bytes, time);
  }
  if (field->place == dpx::kTimeCode) {
    std::uint32_t words[2];
    std::memcpy(words, attribute.value.data(), sizeof words);
    header.SetWhole(dpx::kTimeCode, words[0]);
    header.SetWhole(dpx::kUserBits, words[1]);
  }
}

// Writes one picture into one file.
class Writing {
 public:
  Writing(const PictureToWrite& picture, const StopTest& stop)
      : picture_(picture),
        rows_(picture),
        packing_(PackingFor(rows_)),
        userData_(UserDataOf(picture)),
        header_(BeginBehind(userData_)),
        file_(picture, stop) {}

  void Write() {
    PutHeader();
    PutRows();
    file_.Close();
    file_.Require(true, "");
  }

  std::vector<std::string> Notes() { return rows_.Notes(); }

 private:
  // Three samples of 10 bits in a word, where a pixel has so many, and 12 bits without a gap: many readers know no
  // other.
  static DpxPacking PackingFor(const LightRows& rows) {
    DpxPacking packing;
    packing.bits = rows.Type() == SampleType::Unsigned8    ? 8
                   : rows.Type() == SampleType::Unsigned10 ? 10
                   : rows.Type() == SampleType::Unsigned12 ? 12
                                                           : 16;
    packing.isFilled = packing.bits != 12 && !(packing.bits == 10 && IsGrey(rows.Layout()));
    return packing;
  }

  std::size_t SamplesOfRow() const { return rows_.RowBytes() / SampleBytes(rows_.Type()); }

  std::size_t PackedBytes(std::int32_t rows) const {
    return packing_.RowBytes(SamplesOfRow()) * static_cast<std::size_t>(rows);
  }

  void PutHeader() {
    const std::size_t bytes = header_.Begin() + PackedBytes(rows_.Height());
    header_.SetWhole(dpx::kFileBytes, static_cast<std::uint32_t>(bytes));
    const std::string name = IsStandardStream(picture_.target) ? "" : Utf8Of(picture_.target.filename());
    header_.SetText(dpx::kFileName, dpx::kFileNameBytes, name);
    for (const auto& [place, side] :
         {std::pair{dpx::kWidth, rows_.Width()}, std::pair{dpx::kHeight, rows_.Height()},
          std::pair{dpx::kOriginalWidth, rows_.Width()}, std::pair{dpx::kOriginalHeight, rows_.Height()}})
      header_.SetWhole(place, static_cast<std::uint32_t>(side));
    const PixelLayout layout = rows_.Layout();
    header_.SetByte(dpx::kDescriptor, IsGrey(layout) ? dpx::kGrey : HasAlpha(layout) ? dpx::kRgba : dpx::kRgb);
    header_.SetByte(dpx::kBits, static_cast<std::uint32_t>(packing_.bits));
    header_.SetHalf(dpx::kPacking, packing_.isFilled ? 1 : 0);
    PutMetadata();
    header_.SetWhole(dpx::kUserBytes, static_cast<std::uint32_t>(userData_.size()));
    std::string head = header_.Bytes() + userData_;
    head.resize(header_.Begin());
    file_.Put(reinterpret_cast<const unsigned char*>(head.data()), head.size());
  }

  struct Packed {
    std::vector<std::byte> bytes;
    BeyondRange beyond;
  };
  Packed Pack(std::int32_t first, std::int32_t count) const {
    Packed packed{std::vector<std::byte>(PackedBytes(count)), {}};
    std::vector<std::byte> samples(rows_.RowBytes());
    for (std::int32_t row = 0; row < count; ++row) {
      rows_.Make(first + row, samples.data(), packed.beyond);
      packing_.Pack(samples.data(), packed.bytes.data() + PackedBytes(row), SamplesOfRow());
    }
    return packed;
  }

  void PutRows() {
    constexpr std::size_t kBytes = std::size_t{1} << 20;
    const std::int32_t height = rows_.Height();
    const auto stretch = static_cast<std::int32_t>(
        std::clamp<std::size_t>(kBytes / PackedBytes(1), 1, static_cast<std::size_t>(height)));
    InOrder<Packed> packed(picture_.threads, [this](const Packed& part) {
      rows_.AddBeyond(part.beyond);
      file_.Put(reinterpret_cast<const unsigned char*>(part.bytes.data()), part.bytes.size());
      file_.Require(true, "");
    });
    for (std::int32_t row = 0; row < height; row += stretch) {
      const std::int32_t count = std::min(stretch, height - row);
      packed.Add([this, row, count] { return Pack(row, count); });
    }
    packed.Finish();
  }

  void PutMetadata() {
    if (picture_.metadata == nullptr) return;
    const PictureInfo& source = picture_.metadata->info;
    if (!source.dpxHeader.empty()) {
      header_.TakeFieldsOf(DpxHeader(source.dpxHeader));
      return;
    }
    const LightAttributes attributes = PassedAttributes(picture_.metadata, rows_.Layout(), "dpx");
    for (const PictureAttribute& attribute : attributes.All())
      Put(attribute, header_);
    header_.SetPixelAspect(attributes.Number("PixelAspectRatio", 1.0f));
  }

  const PictureToWrite& picture_;
  LightRows rows_;
  DpxPacking packing_;
  std::string userData_;
  DpxHeader header_;
  WrittenFile file_;
};

}  // namespace

bool IsPlainDpx(const PictureToWrite& picture) {
  // Of a file, whose bytes its header counts in 32 bits.
  constexpr std::int64_t kMostBytes = std::int64_t{1} << 31;
  constexpr std::int64_t kMostOfPixel = 8;
  const HostImage& image = picture.image;
  if (std::int64_t{image.Width()} * image.Height() * kMostOfPixel > kMostBytes) return false;
  if (picture.part != nullptr || !IsOfLightRows(picture)) return false;
  if (picture.metadata == nullptr || !picture.metadata->info.dpxHeader.empty()) return true;
  return std::ranges::all_of(PassedAttributes(picture.metadata, PixelLayout::Rgb, "dpx").All(), IsPlain);
}

std::vector<std::string> WriteDpx(const PictureToWrite& picture, const StopTest& stop) {
  Writing writing(picture, stop);
  writing.Write();
  return writing.Notes();
}

}  // namespace vblur::host
