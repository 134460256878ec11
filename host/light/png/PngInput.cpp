#include "host/light/png/PngInput.h"

#include <algorithm>
#include <bit>
#include <csetjmp>
#include <cstdio>

#include "host/formats/PictureTexts.h"
#include "host/light/ExifDecoding.h"
#include "host/light/png/PlainPng.h"
#include "host/light/png/PngTextNames.h"

namespace vblur::host {

// Between a setjmp and the calls of libpng that it guards no object is made that has to be destroyed.

void PngInput::OnError(png_structp png, png_const_charp message) {
  OnWarning(png, message);
  png_longjmp(png, 1);
}

void PngInput::OnWarning(png_structp png, png_const_charp message) {
  static_cast<PngInput*>(png_get_error_ptr(png))->message_ = message;
}

PngInput::~PngInput() {
  if (png_ != nullptr) png_destroy_read_struct(&png_, &info_, nullptr);
  if (file_ != nullptr) std::fclose(file_);
}

std::unique_ptr<PngInput> PngInput::Open(const std::filesystem::path& file) {
  if (!IsPlainPngFile(file)) return nullptr;
  std::unique_ptr<PngInput> input(new PngInput);
  input->file_ = std::fopen(file.c_str(), "rb");
  if (input->file_ == nullptr) return nullptr;
  input->png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, input.get(), OnError, OnWarning);
  if (input->png_ == nullptr) return nullptr;
  input->info_ = png_create_info_struct(input->png_);
  const bool isRead = input->info_ != nullptr && input->ReadHeader();
  if (!isRead || !input->message_.empty() || !input->TakeMetadata()) return nullptr;
  return input;
}

bool PngInput::ReadHeader() {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  png_init_io(png_, file_);
  png_read_info(png_, info_);
  png_set_expand(png_);
  if (std::endian::native == std::endian::little) png_set_swap(png_);
  double gamma = 0.0;
  const bool hasGamma = png_get_gAMA(png_, info_, &gamma) != 0;
  int intent = 0;
  const bool isSrgb = png_get_sRGB(png_, info_, &intent) != 0;
  isLinear_ = hasGamma && !isSrgb && gamma == 1.0;
  png_read_update_info(png_, info_);
  width_ = static_cast<std::int32_t>(png_get_image_width(png_, info_));
  height_ = static_cast<std::int32_t>(png_get_image_height(png_, info_));
  channels_ = png_get_channels(png_, info_);
  bits_ = png_get_bit_depth(png_, info_);
  return true;
}

std::size_t PngInput::RowBytes() const {
  return png_get_rowbytes(png_, info_);
}

std::int32_t PngInput::RowsAtOnce() const {
  constexpr std::size_t kBytes = std::size_t{1} << 20;
  return static_cast<std::int32_t>(std::clamp<std::size_t>(kBytes / RowBytes(), 1, static_cast<std::size_t>(height_)));
}

bool PngInput::TakeMetadata() {
  png_charp name = nullptr;
  int packing = 0;
  png_bytep profile = nullptr;
  png_uint_32 length = 0;
  if (png_get_iCCP(png_, info_, &name, &packing, &profile, &length) != 0) {
    attributes_.AddBytes("ICCProfile", {reinterpret_cast<const char*>(profile), length});
    // A profile has a say in what is linear.
    if (isLinear_) return false;
  }
  if (!TakeTime() || !TakeTexts()) return false;
  TakeResolution();
  return true;
}

void PngInput::TakeResolution() {
  png_uint_32 pixelsX = 0;
  png_uint_32 pixelsY = 0;
  int unit = 0;
  if (png_get_pHYs(png_, info_, &pixelsX, &pixelsY, &unit) == 0) return;
  constexpr float kMetresInInch = 2.54f / 100.0f;
  const bool isInMetres = unit == PNG_RESOLUTION_METER;
  const float scale = isInMetres ? kMetresInInch : 1.0f;
  attributes_.AddText("ResolutionUnit", isInMetres ? "inch" : "none");
  attributes_.AddFloat("XResolution", static_cast<float>(pixelsX) * scale);
  attributes_.AddFloat("YResolution", static_cast<float>(pixelsY) * scale);
  if (pixelsX != pixelsY)
    attributes_.AddFloat("PixelAspectRatio", static_cast<float>(pixelsY) / static_cast<float>(pixelsX));
}

bool PngInput::TakeExif(const LightAttributes& fields) {
  attributes_.Merge(fields);
  return NameResolutionUnit(fields, attributes_);
}

bool PngInput::TakeTexts() {
  // Together they fit all formats.
  constexpr std::size_t kMostBytes = 50000;
  std::size_t bytes = 0;
  png_textp texts = nullptr;
  int count = 0;
  png_get_text(png_, info_, &texts, &count);
  for (int i = 0; i < count; ++i) {
    const std::string keyword = texts[i].key;
    if (!IsPlainKeyword(keyword)) return false;
    const std::string text = TextAsUtf8(texts[i].text != nullptr ? texts[i].text : "");
    const std::string named = NameOfKeyword(keyword);
    // Two of a name are one, and which of them is the full library's choice.
    if (attributes_.Find(named) != nullptr) return false;
    bytes += text.size();
    attributes_.AddText(named, text);
  }
  return bytes <= kMostBytes;
}

bool PngInput::TakeTime() {
  png_timep time = nullptr;
  if (png_get_tIME(png_, info_, &time) == 0) return true;
  constexpr int kYears = 1000;
  const bool isDate = time->year >= kYears && time->year < 10 * kYears && time->month >= 1 && time->month <= 12 &&
                      time->day >= 1 && time->day <= 31 && time->hour <= 23 && time->minute <= 59 && time->second <= 59;
  char text[32];
  std::snprintf(text, sizeof text, "%04d:%02d:%02d %02d:%02d:%02d", time->year, time->month, time->day, time->hour,
                time->minute, time->second);
  attributes_.AddText("DateTime", text);
  return isDate;
}

bool PngInput::ReadRows(std::int32_t /*first*/, std::int32_t count, std::byte* samples) {
  const std::size_t bytes = RowBytes();
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  for (std::int32_t row = 0; row < count; ++row)
    png_read_row(png_, reinterpret_cast<png_bytep>(samples + static_cast<std::size_t>(row) * bytes), nullptr);
  return true;
}

}  // namespace vblur::host
