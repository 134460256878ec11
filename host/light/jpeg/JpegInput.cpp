#include "host/light/jpeg/JpegInput.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "host/light/ExifDecoding.h"
#include "host/light/IptcTexts.h"

namespace vblur::host {

JpegInput::~JpegInput() {
  jpeg_destroy_decompress(&jpeg_);
  if (file_ != nullptr) std::fclose(file_);
}

std::unique_ptr<JpegInput> JpegInput::Open(const std::filesystem::path& file) {
  auto plain = PlainJpegOf(file);
  if (!plain) return nullptr;
  std::unique_ptr<JpegInput> input(new JpegInput(*std::move(plain)));
  input->file_ = std::fopen(file.c_str(), "rb");
  if (input->file_ == nullptr || !input->ReadHeader() || !input->TakeMetadata()) return nullptr;
  return input->errors_.message.empty() ? std::move(input) : nullptr;
}

bool JpegInput::ReadHeader() {
  constexpr unsigned kMost = 0xffff;
  jpeg_.client_data = &errors_;
  jpeg_.err = errors_.Use();
  if (setjmp(errors_.place) != 0) return false;
  jpeg_create_decompress(&jpeg_);
  jpeg_stdio_src(&jpeg_, file_);
  jpeg_save_markers(&jpeg_, JPEG_APP0 + 2, kMost);
  jpeg_read_header(&jpeg_, TRUE);
  return true;
}

bool JpegInput::Start() {
  if (setjmp(errors_.place) != 0) return false;
  jpeg_start_decompress(&jpeg_);
  return jpeg_.output_components == jpeg_.num_components && errors_.message.empty();
}

// In the order of the full library.
bool JpegInput::TakeMetadata() {
  auto exif = DecodeExif(plain_.exif);
  if (!exif) return false;
  attributes_.AddText("oiio:ColorSpace", "sRGB");
  // The comment is the description where Exif data have none.
  const std::string described = exif->attributes.Text("ImageDescription");
  const std::string& words = described.empty() ? plain_.description : described;
  if (plain_.isDescribedFirst) attributes_.AddText("ImageDescription", words);
  attributes_.Merge(exif->attributes);
  if (!words.empty()) attributes_.Set("ImageDescription", "string", words);
  if (!plain_.iptc.empty() && !TakeIptcSegment(plain_.iptc, attributes_)) return false;
  unread_ = std::move(exif->unread);
  return TakeResolution(exif->attributes) && TakeProfile();
}

// The numbers of the file's head go before those of Exif data.
bool JpegInput::TakeResolution(const LightAttributes& ofExif) {
  const bool isSilent = jpeg_.density_unit == 0 && jpeg_.X_density == 1 && jpeg_.Y_density == 1;
  const bool isOfHead = jpeg_.saw_JFIF_marker != 0 && !isSilent;
  const bool isOfExif = ofExif.Find("XResolution") != nullptr || ofExif.Find("YResolution") != nullptr ||
                        ofExif.Find("ResolutionUnit") != nullptr;
  if (!isOfHead && !isOfExif) return true;
  const float x = isOfHead ? jpeg_.X_density : ofExif.Number("XResolution", 0.0f);
  const float y = isOfHead ? jpeg_.Y_density : ofExif.Number("YResolution", 0.0f);
  // Of smaller numbers the full library makes an aspect of the pixels.
  constexpr float kLeast = 10.0f;
  if (jpeg_.density_unit > 2 || x < kLeast || y < kLeast) return false;
  attributes_.Set("XResolution", "float", BytesOf(x));
  attributes_.Set("YResolution", "float", BytesOf(y));
  if (isOfHead && x != y) attributes_.Set("PixelAspectRatio", "float", BytesOf(y / x));
  attributes_.Set("ResolutionUnit", "string", kResolutionUnits[jpeg_.density_unit]);
  return NameResolutionUnit(ofExif, attributes_);
}

bool JpegInput::TakeProfile() {
  JOCTET* profile = nullptr;
  unsigned length = 0;
  const bool hasSegments = jpeg_.marker_list != nullptr;
  const bool isRead = jpeg_read_icc_profile(&jpeg_, &profile, &length) != 0;
  if (isRead) attributes_.AddBytes("ICCProfile", {reinterpret_cast<const char*>(profile), length});
  std::free(profile);
  return isRead == hasSegments;
}

std::int32_t JpegInput::RowsAtOnce() const {
  constexpr std::int32_t kBytes = 1 << 20;
  return std::clamp(kBytes / (Width() * Channels()), 1, Height());
}

bool JpegInput::ReadRows(std::int32_t /*first*/, std::int32_t count, std::byte* samples) {
  const auto bytes = static_cast<std::size_t>(Width()) * static_cast<std::size_t>(Channels());
  if (setjmp(errors_.place) != 0) return false;
  for (std::int32_t row = 0; row < count; ++row) {
    JSAMPROW to = reinterpret_cast<JSAMPROW>(samples + static_cast<std::size_t>(row) * bytes);
    if (jpeg_read_scanlines(&jpeg_, &to, 1) != 1) return false;
  }
  // It fills in what is missing, and says so.
  return errors_.message.empty();
}

}  // namespace vblur::host
