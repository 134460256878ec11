#include "host/pictures/PictureFileLength.h"

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "host/files/PictureInfo.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class PictureFileLength : public testing::Test {
 protected:
  std::string Make(const std::string& name, const std::string& format, const OIIO::ImageSpec& spec) const {
    const auto path = folder_.path() / name;
    const auto count = static_cast<std::size_t>(spec.width * spec.height * spec.nchannels);
    WriteRaw(path, format, spec, std::vector<float>(count, 0.5f));
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  void ExpectShort(const std::string& bytes) const {
    const auto path = folder_.Write("cut", bytes);
    EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(path); })->what(),
              path.string() +
                  ": cannot read: the picture is damaged or cut short (its header says more than the file holds)");
  }

  ScratchFolder folder_;
};

// Their reader leaves the pixels behind the end as they were.
TEST_F(PictureFileLength, PackedDpxFilesAreRefusedWhereverTheirPixelsEnd) {
  constexpr std::size_t kPixels = 8192;
  for (const int bits : {10, 12}) {
    for (const int channels : {1, 3, 4}) {
      SCOPED_TRACE(std::to_string(bits) + " bits, " + std::to_string(channels) + " channels");
      OIIO::ImageSpec spec(5, 2, channels, OIIO::TypeDesc::UINT16);
      spec.attribute("oiio:BitsPerSample", bits);
      const std::string bytes = Make("whole.dpx", "dpx", spec);
      for (std::size_t size = kPixels; size < bytes.size(); ++size)
        ExpectShort(bytes.substr(0, size));
      ReadPictureInfo(folder_.path() / "whole.dpx");
    }
  }
}

// Memory is taken for all of it when the file is opened.
TEST_F(PictureFileLength, UserDataOfADpxFileEndsWithinIt) {
  std::string bytes = Make("whole.dpx", "dpx", OIIO::ImageSpec(5, 2, 3, OIIO::TypeDesc::UINT8));
  ExpectShort(bytes.replace(32, 4, "\xf0\xff\xff\xff"));
  ReadPictureInfo(folder_.Write("undefined.dpx", bytes.replace(32, 4, 4, '\xff')));
}

TEST_F(PictureFileLength, AnElementWithoutAPlaceBeginsWhereThePictureDoes) {
  OIIO::ImageSpec spec(5, 2, 3, OIIO::TypeDesc::UINT16);
  spec.attribute("oiio:BitsPerSample", 10);
  std::string bytes = Make("whole.dpx", "dpx", spec);
  bytes.replace(808, 4, 4, '\xff');
  ReadPictureInfo(folder_.Write("undefined.dpx", bytes));
  ExpectShort(bytes.substr(0, bytes.size() - 1));
}

}  // namespace
}  // namespace vblur::host
