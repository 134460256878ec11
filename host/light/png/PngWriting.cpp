#include "host/light/png/PngWriting.h"

#include <algorithm>
#include <bit>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <utility>

#include <png.h>

#include "host/formats/PngHead.h"
#include "host/light/IptcTexts.h"
#include "host/light/LightMetadata.h"
#include "host/light/LightRows.h"
#include "host/light/MeantNames.h"
#include "host/light/WrittenFile.h"
#include "host/light/png/PngExif.h"
#include "host/light/png/PngStretches.h"
#include "host/light/png/PngTextNames.h"

namespace vblur::host {

namespace {

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// "2026:11:23 12:00:00".
bool IsDate(const std::string& text) {
  constexpr std::string_view kForm = "0000:00:00 00:00:00";
  return std::ranges::equal(text, kForm,
                            [](char c, char form) { return form == '0' ? c >= '0' && c <= '9' : c == form; });
}

// By the name of the unit: 0 for none. Nothing for one that is not known here.
std::optional<float> UnitsInMetre(std::string_view unit) {
  if (unit == "inch" || unit == "in") return 100.0f / 2.54f;
  if (unit == "cm") return 100.0f;
  return unit == "none" ? std::optional(0.0f) : std::nullopt;
}

// What is written here as the full library writes it.
bool IsPlain(const LightAttributes& attributes) {
  const float x = attributes.Number("XResolution", 0.0f);
  for (const PictureAttribute& each : attributes.All()) {
    const std::string& name = each.name;
    if (name == "ICCProfile") continue;
    if (name == "XResolution" || name == "YResolution" || name == "ResolutionUnit") {
      const bool isUnit = name != "ResolutionUnit" || (each.IsText() && UnitsInMetre(each.value).has_value());
      if (!(x > 0.0f) || !isUnit) return false;
    } else if (name == "PixelAspectRatio") {
      if (!(attributes.Number(name, 0.0f) > 0.0f)) return false;
    } else if (name == "Orientation") {
      if (attributes.Number(name, 0.0f) != 1.0f) return false;
    } else if (name == "DateTime") {
      if (!IsDate(each.value)) return false;
    } else if (each.IsText() ? !IsPlainKeyword(name) && !IsIptcText(name) : !IsNotedName(name)) {
      return false;
    }
  }
  return true;
}

int ColourTypeOf(PixelLayout layout) {
  switch (layout) {
    case PixelLayout::Grey: return PNG_COLOR_TYPE_GRAY;
    case PixelLayout::GreyAlpha: return PNG_COLOR_TYPE_GRAY_ALPHA;
    case PixelLayout::Rgb: return PNG_COLOR_TYPE_RGB;
    case PixelLayout::Rgba: break;
  }
  return PNG_COLOR_TYPE_RGB_ALPHA;
}

// Writes one picture into one file.
class Writing {
 public:
  Writing(const PictureToWrite& picture, const StopTest& stop)
      : picture_(picture),
        rows_(picture),
        exif_(*TakePngExif(picture, PassedAttributes(picture.metadata, rows_.Layout(), "png"))),
        attributes_(exif_.others),
        file_(picture, stop) {
    write_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, OnError, OnWarning);
    if (write_ != nullptr) info_ = png_create_info_struct(write_);
    if (info_ == nullptr) throw std::bad_alloc();
  }
  ~Writing() { png_destroy_write_struct(&write_, &info_); }
  Writing(const Writing&) = delete;
  Writing& operator=(const Writing&) = delete;

  void Write() {
    MakeTexts();
    MakeChunks();
    Check(PutHead());
    const PngRows rows{rows_.Height(), rows_.RowBytes(), rows_.PixelBytes()};
    if (IsLargePng(rows)) {
      PutLarge(rows);
    } else {
      PutRows();
    }
    file_.Close();
    Check(true);
  }

  std::vector<std::string> Notes() { return rows_.Notes(); }

 private:
  void Check(bool done) const { file_.Require(done, message_); }

  // Those of ASCII, which libpng borrows.
  void MakeTexts() {
    for (const auto& [name, type, text] : attributes_.All()) {
      if (type != "string" || name == "DateTime" || name == "ResolutionUnit") continue;
      const std::string keyword = KeywordOfName(name);
      if (IsAscii(text)) {
        keywords_.push_back(keyword);
        plain_.push_back(text);
      } else {
        // Behind the keyword: not compressed, no language, no translated keyword.
        std::string data = keyword;
        data.append(5, '\0').append(text);
        late_ += PngChunk("iTXt", data);
      }
    }
    for (std::size_t i = 0; i < plain_.size(); ++i) {
      png_text text{};
      text.compression = PNG_TEXT_COMPRESSION_NONE;
      text.key = keywords_[i].data();
      text.text = plain_[i].data();
      text.text_length = plain_[i].size();
      texts_.push_back(text);
    }
  }

  // What follows the header as it is.
  void MakeChunks() {
    if (picture_.metadata == nullptr) return;
    const PictureInfo& source = picture_.metadata->info;
    chunks_ = source.colourChunks;
    // A profile takes the place of the name of a colour space.
    constexpr std::size_t kSrgbChunk = 13;
    const auto srgb = chunks_.find("sRGB");
    if (!attributes_.Profile().empty() && srgb != std::string::npos) chunks_.erase(srgb - 4, kSrgbChunk);
    chunks_ += exif_.chunk + late_ + source.lateTexts;
  }

  bool PutHead() {
    if (setjmp(png_jmpbuf(write_)) != 0) return false;
    png_set_write_fn(write_, this, OnBytes, nullptr);
    png_set_compression_level(write_, kLevel);
    png_set_compression_strategy(write_, kStrategy);
    png_set_IHDR(write_, info_, static_cast<png_uint_32>(rows_.Width()), static_cast<png_uint_32>(rows_.Height()),
                 static_cast<int>(8 * SampleBytes(rows_.Type())), ColourTypeOf(rows_.Layout()), PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_oFFs(write_, info_, 0, 0, PNG_OFFSET_PIXEL);
    PutMetadata();
    png_write_info(write_, info_);
    if (std::endian::native == std::endian::little && SampleBytes(rows_.Type()) == 2) png_set_swap(write_);
    return true;
  }

  void PutMetadata() {
    if (const std::string profile = attributes_.Profile(); !profile.empty()) {
      png_set_iCCP(write_, info_, "Embedded Profile", 0, reinterpret_cast<png_const_bytep>(profile.data()),
                   static_cast<png_uint_32>(profile.size()));
    }
    PutResolution();
    PutTime();
    if (!texts_.empty()) png_set_text(write_, info_, texts_.data(), static_cast<int>(texts_.size()));
  }

  // The resolution of the full library's files: it goes through floats.
  void PutResolution() {
    const float aspect = attributes_.Number("PixelAspectRatio", 0.0f);
    // What it writes where there is an aspect alone.
    constexpr float kOfAspect = 100.0f;
    const float x = attributes_.Number("XResolution", aspect > 0.0f ? kOfAspect : 0.0f);
    if (x == 0.0f) return;
    const float inMetre = UnitsInMetre(attributes_.Text("ResolutionUnit")).value_or(0.0f);
    const bool hasUnit = inMetre > 0.0f;
    const float scale = hasUnit ? inMetre : 1.0f;
    // Where the two differ, it takes the second from the aspect.
    const float y = aspect > 0.0f ? x * aspect : attributes_.Number("YResolution", x);
    png_set_pHYs(write_, info_, static_cast<png_uint_32>(x * scale), static_cast<png_uint_32>(y * scale),
                 hasUnit ? PNG_RESOLUTION_METER : PNG_RESOLUTION_UNKNOWN);
  }

  void PutTime() {
    const std::string date = attributes_.Text("DateTime");
    if (date.empty()) return;
    unsigned parts[6] = {};
    std::sscanf(date.c_str(), "%4u:%2u:%2u %2u:%2u:%2u", &parts[0], &parts[1], &parts[2], &parts[3], &parts[4],
                &parts[5]);
    png_time time;
    time.year = static_cast<png_uint_16>(parts[0]);
    time.month = static_cast<png_byte>(parts[1]);
    time.day = static_cast<png_byte>(parts[2]);
    time.hour = static_cast<png_byte>(parts[3]);
    time.minute = static_cast<png_byte>(parts[4]);
    time.second = static_cast<png_byte>(parts[5]);
    png_set_tIME(write_, info_, &time);
  }

  void PutRows() {
    std::vector<std::byte> row(rows_.RowBytes());
    for (std::int32_t y = 0; y < rows_.Height(); ++y) {
      rows_.Make(y, row.data());
      Check(PutRow(row.data()));
    }
    Check(PutEnd());
  }

  // What libpng would write behind its head, by all the threads that are allowed.
  void PutLarge(const PngRows& rows) {
    const bool isSwapped = std::endian::native == std::endian::little && SampleBytes(rows_.Type()) == 2;
    PackPngRows(
        rows, kLevel, picture_.threads,
        [&](std::int32_t row, std::byte* samples) {
          rows_.Make(row, samples);
          if (!isSwapped) return;
          for (std::size_t i = 0; i + 1 < rows.bytes; i += 2)
            std::swap(samples[i], samples[i + 1]);
        },
        [&](const std::string& packed) { PutChunk("IDAT", packed); });
    PutChunk("IEND", "");
  }

  void PutChunk(const std::string& name, const std::string& data) {
    const std::string chunk = PngChunk(name, data);
    Put(reinterpret_cast<const unsigned char*>(chunk.data()), chunk.size());
    Check(true);
  }

  bool PutRow(const std::byte* row) {
    if (setjmp(png_jmpbuf(write_)) != 0) return false;
    png_write_row(write_, reinterpret_cast<png_const_bytep>(row));
    return true;
  }

  bool PutEnd() {
    if (setjmp(png_jmpbuf(write_)) != 0) return false;
    png_write_end(write_, nullptr);
    return true;
  }

  static void OnBytes(png_structp png, png_bytep bytes, std::size_t count) {
    static_cast<Writing*>(png_get_io_ptr(png))->Put(bytes, count);
  }
  void Put(const unsigned char* bytes, std::size_t count) {
    // Behind the signature and the header.
    constexpr std::size_t kHead = 33;
    const bool wasHead = written_ < kHead;
    file_.Put(bytes, count);
    written_ += count;
    if (wasHead && written_ >= kHead) file_.Put(reinterpret_cast<const unsigned char*>(chunks_.data()), chunks_.size());
  }

  static void OnError(png_structp png, png_const_charp message) {
    OnWarning(png, message);
    png_longjmp(png, 1);
  }
  static void OnWarning(png_structp png, png_const_charp message) {
    static_cast<Writing*>(png_get_error_ptr(png))->message_ = message;
  }

  // Higher compression levels hardly make files smaller.
  static constexpr int kLevel = 4;
  static constexpr int kStrategy = 0;  // the usual one

  const PictureToWrite& picture_;
  LightRows rows_;
  PngExif exif_;
  const LightAttributes& attributes_;
  WrittenFile file_;
  png_structp write_ = nullptr;
  png_infop info_ = nullptr;
  std::vector<std::string> keywords_;
  std::vector<std::string> plain_;
  std::vector<png_text> texts_;
  std::string late_;
  std::string chunks_;
  std::size_t written_ = 0;
  std::string message_;
};

}  // namespace

bool IsPlainPng(const PictureToWrite& picture) {
  if (!IsOfLightRows(picture)) return false;
  const auto exif = TakePngExif(picture, PassedAttributes(picture.metadata, PixelLayout::Rgb, "png"));
  return exif && IsPlain(exif->others);
}

std::vector<std::string> WritePng(const PictureToWrite& picture, const StopTest& stop) {
  Writing writing(picture, stop);
  writing.Write();
  return writing.Notes();
}

}  // namespace vblur::host
