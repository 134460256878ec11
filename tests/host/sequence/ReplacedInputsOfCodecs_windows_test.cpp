// What the system's codecs do not write takes the place of no input.
#include "host/files/OutputFile.h"
#include "tests/host/sequence/ReplacedInputsTest.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

class ReplacedInputsOfCodecs : public ReplacedInputs {
 protected:
  // Each change is refused that makes one file of the other, which a run of another name writes.
  void ExpectKeptOrAlike(const std::string& name) {
    const PictureReport before = ReportPicture(folder_.path() / name);
    options_.lossy = true;
    ASSERT_EQ(Render(name, "copy-" + name).failed, 0);
    options_.lossy = false;
    const PictureReport copy = ReportPicture(folder_.path() / ("copy-" + name));
    std::string lost;
    if (before.info.IsGrey() && !copy.info.IsGrey()) lost += "grey (red, green and blue are written)";
    if (before.compression != copy.compression) {
      lost +=
          (lost.empty() ? "" : ", ") + ("compression " + before.compression) + " (" + copy.compression + " is written)";
    }
    if (before.info.format == "jpeg" && !HasQuality()) lost += "quality (the system's codec has one of its own)";
    if (lost.empty()) {
      EXPECT_EQ(Render(name, name).failed, 0);
    } else {
      ExpectKept(name, lost);
    }
  }

  // Whether files differ of which different qualities are asked for.
  bool HasQuality() const {
    HostImage image;
    image.Reset(8, 4, 64, 64);
    FillRandom(image, 0, 255, 1);
    std::vector<std::string> files;
    for (const std::int32_t quality : {20, 95}) {
      OutputOptions options;
      options.overwrite = true;
      options.storage.quality = quality;
      PictureWriter().WriteBeside(folder_.path() / "quality.jpg", image, nullptr, options).Commit();
      files.push_back(Bytes(folder_.path() / "quality.jpg"));
    }
    return files[0] != files[1];
  }

  void Copy(const std::string& name) {
    std::filesystem::copy_file(std::filesystem::path(VBLUR_PICTURES_FOLDER) / name, folder_.path() / name);
  }
};

TEST_F(ReplacedInputsOfCodecs, KeepTheirCompression) {
  for (const char* name : {"rgb8-packbits.tif", "rgba8-zip.tif", "grey8-none.tif"}) {
    Copy(name);
    ExpectKeptOrAlike(name);
  }
}

TEST_F(ReplacedInputsOfCodecs, KeepTheirQuality) {
  Copy("rgb.jpg");
  ExpectKeptOrAlike("rgb.jpg");
}

}  // namespace
}  // namespace vblur::host
