#include "host/light/jpeg/JpegWriting.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "host/base/Failure.h"
#include "host/light/LightRows.h"
#include "host/light/WrittenFile.h"
#include "host/light/jpeg/JpegErrors.h"
#include "host/light/jpeg/JpegHead.h"

namespace vblur::host {

namespace {

// Hands libjpeg's bytes to a file.
class Destination : public jpeg_destination_mgr {
 public:
  explicit Destination(WrittenFile& file) : jpeg_destination_mgr{}, file_(file) {
    init_destination = [](j_compress_ptr jpeg) { Of(jpeg).Begin(); };
    empty_output_buffer = [](j_compress_ptr jpeg) -> boolean {
      Of(jpeg).file_.Put(Of(jpeg).bytes_.data(), kBytes);
      Of(jpeg).Begin();
      return TRUE;
    };
    term_destination = [](j_compress_ptr jpeg) {
      Of(jpeg).file_.Put(Of(jpeg).bytes_.data(), kBytes - Of(jpeg).free_in_buffer);
    };
  }

 private:
  static constexpr std::size_t kBytes = std::size_t{1} << 16;

  static Destination& Of(j_compress_ptr jpeg) { return *static_cast<Destination*>(jpeg->dest); }
  void Begin() {
    next_output_byte = bytes_.data();
    free_in_buffer = kBytes;
  }

  WrittenFile& file_;
  std::array<JOCTET, kBytes> bytes_{};
};

const JOCTET* BytesOf(const std::string& text) {
  return reinterpret_cast<const JOCTET*>(text.data());
}

// Writes one picture into one file.
class Writing {
 public:
  Writing(const PictureToWrite& picture, const StopTest& stop)
      : picture_(picture),
        rows_(picture),
        head_(*JpegHeadOf(picture, rows_.Layout())),
        file_(picture, stop),
        destination_(file_) {
    const std::int32_t most = picture.format.mostPixels;
    if (std::max(rows_.Width(), rows_.Height()) > most)
      RefuseToWrite(picture.target, "a picture of this format has at most " + std::to_string(most) + " pixels a side");
  }
  ~Writing() { jpeg_destroy_compress(&jpeg_); }
  Writing(const Writing&) = delete;
  Writing& operator=(const Writing&) = delete;

  void Write() {
    Check(Begin());
    std::vector<std::byte> row(rows_.RowBytes());
    for (std::int32_t y = 0; y < rows_.Height(); ++y) {
      rows_.Make(y, row.data());
      Check(PutRow(row.data()));
    }
    Check(End());
    file_.Close();
    Check(true);
  }

  std::vector<std::string> Notes() { return rows_.Notes(); }

 private:
  void Check(bool done) const { file_.Require(done, errors_.message); }

  bool Begin() {
    constexpr int kUsualQuality = 98;
    jpeg_.client_data = &errors_;
    jpeg_.err = errors_.Use();
    if (setjmp(errors_.place) != 0) return false;
    jpeg_create_compress(&jpeg_);
    jpeg_.dest = &destination_;
    const bool isGrey = IsGrey(rows_.Layout());
    jpeg_.image_width = static_cast<JDIMENSION>(rows_.Width());
    jpeg_.image_height = static_cast<JDIMENSION>(rows_.Height());
    jpeg_.input_components = isGrey ? 1 : 3;
    jpeg_.in_color_space = isGrey ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&jpeg_);
    jpeg_set_quality(&jpeg_, picture_.storage.quality.value_or(kUsualQuality), TRUE);
    // Colours are as sharp as their brightness.
    for (int component = 0; component < jpeg_.num_components; ++component)
      jpeg_.comp_info[component].h_samp_factor = jpeg_.comp_info[component].v_samp_factor = 1;
    jpeg_.density_unit = head_.unit;
    jpeg_.X_density = head_.x;
    jpeg_.Y_density = head_.y;
    jpeg_start_compress(&jpeg_, TRUE);
    PutHead();
    return true;
  }

  void PutHead() {
    constexpr int kExif = JPEG_APP0 + 1;
    constexpr int kIptc = JPEG_APP0 + 13;
    const std::string_view exif("Exif\0\0", 6);
    if (head_.isSourcesExif) PutSegment(kExif, exif, head_.exif);
    if (!head_.comment.empty()) PutSegment(JPEG_COM, "", head_.comment);
    if (!head_.isSourcesExif) PutSegment(kExif, exif, head_.exif);
    if (!head_.iptc.empty()) PutSegment(kIptc, "", head_.iptc);
    if (!head_.profile.empty())
      jpeg_write_icc_profile(&jpeg_, BytesOf(head_.profile), static_cast<unsigned>(head_.profile.size()));
  }

  void PutSegment(int marker, std::string_view begin, const std::string& data) {
    segment_.assign(begin).append(data);
    jpeg_write_marker(&jpeg_, marker, BytesOf(segment_), static_cast<unsigned>(segment_.size()));
  }

  bool PutRow(std::byte* row) {
    if (setjmp(errors_.place) != 0) return false;
    JSAMPROW from = reinterpret_cast<JSAMPROW>(row);
    return jpeg_write_scanlines(&jpeg_, &from, 1) == 1;
  }

  bool End() {
    if (setjmp(errors_.place) != 0) return false;
    jpeg_finish_compress(&jpeg_);
    return true;
  }

  const PictureToWrite& picture_;
  LightRows rows_;
  JpegHead head_;
  std::string segment_;
  WrittenFile file_;
  Destination destination_;
  JpegErrors errors_;
  jpeg_compress_struct jpeg_{};
};

}  // namespace

bool IsPlainJpeg(const PictureToWrite& picture) {
  return picture.part == nullptr && IsOfLightRows(picture) && JpegHeadOf(picture, PixelLayout::Rgb).has_value();
}

std::vector<std::string> WriteJpeg(const PictureToWrite& picture, const StopTest& stop) {
  Writing writing(picture, stop);
  writing.Write();
  return writing.Notes();
}

}  // namespace vblur::host
