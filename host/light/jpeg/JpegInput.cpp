#include "host/light/jpeg/JpegInput.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "host/formats/ExifBlock.h"
#include "host/light/ExifDecoding.h"

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
  jpeg_.client_data = &errors_;
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
  attributes_.AddText("oiio:ColorSpace", "sRGB");
  if (!TakeExif()) return false;
  if (!plain_.description.empty()) attributes_.Set("ImageDescription", "string", plain_.description);
  return TakeResolution() && TakeProfile();
}

bool JpegInput::TakeExif() {
  const ExifFacts facts = FactsOfExif(plain_.exif);
  if (!facts.isExif) return plain_.exif.empty() || !facts.isDamaged;
  auto decoded = DecodeExif(plain_.exif);
  if (!decoded) return false;
  unread_ = std::move(decoded->unread);
  for (const PictureAttribute& each : decoded->attributes.All())
    attributes_.Add(each.name, each.type, each.value);
  return true;
}

// The numbers of the file's head go before those of Exif data, whose unit names theirs.
bool JpegInput::TakeResolution() {
  constexpr const char* kUnits[] = {"none", "in", "cm"};
  const float xOfExif = attributes_.Number("XResolution", 0.0f);
  const float yOfExif = attributes_.Number("YResolution", 0.0f);
  const auto unitOfExif = static_cast<std::size_t>(attributes_.Number("ResolutionUnit", 0.0f));
  const bool isSilent = jpeg_.density_unit == 0 && jpeg_.X_density == 1 && jpeg_.Y_density == 1;
  const bool isOfHead = jpeg_.saw_JFIF_marker != 0 && !isSilent;
  const bool isOfExif = xOfExif != 0.0f || yOfExif != 0.0f || unitOfExif != 0;
  if (!isOfHead && !isOfExif) return true;
  const float x = isOfHead ? jpeg_.X_density : xOfExif;
  const float y = isOfHead ? jpeg_.Y_density : yOfExif;
  // Of smaller numbers the full library makes an aspect of the pixels.
  constexpr float kLeast = 10.0f;
  if (jpeg_.density_unit > 2 || x < kLeast || y < kLeast) return false;
  attributes_.Set("XResolution", "float", BytesOf(x));
  attributes_.Set("YResolution", "float", BytesOf(y));
  if (isOfHead && x != y) attributes_.Set("PixelAspectRatio", "float", BytesOf(y / x));
  const bool namesUnit = x == xOfExif && jpeg_.density_unit == 0 && unitOfExif >= 1 && unitOfExif <= 3;
  attributes_.Set("ResolutionUnit", "string", kUnits[namesUnit ? unitOfExif - 1 : jpeg_.density_unit]);
  return true;
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
