// What is written with the imaging component, and what it tells of it.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {

using Notes = std::vector<std::string>;

inline const std::string kQualityLoss = ", quality (the system's codec has one of its own)";
inline const std::string kQualityNote = "output: the system's codec has no choice of quality, written with its own";

class PictureWriting : public testing::Test {
 protected:
  // Components of 16 bits that come back from samples of 16 bits as they were: 0 to full.
  void MakePicture(std::int32_t depth, std::int32_t width, std::int32_t height, unsigned seed) {
    image_.Reset(depth, 4, width, height);
    FillRandom(image_, 0, depth == 8 ? 255 : 16384, seed);
  }

  Notes Write(const std::filesystem::path& path, const OutputStorage& storage = {},
              const PictureMetadata* metadata = nullptr) {
    OutputOptions options;
    options.overwrite = true;
    options.sync = false;
    options.storage = storage;
    auto written = PictureWriter().WriteBeside(path, image_, metadata, options);
    written.Commit();
    Notes notes = written.Notes();
    if (storage.quality) return notes;
    // Of every JPEG file where the codec is like that.
    std::erase(notes, kQualityNote);
    for (std::string& note : notes) {
      if (const std::size_t at = note.find(kQualityLoss); at != std::string::npos) note.erase(at, kQualityLoss.size());
    }
    std::erase(notes, "output: lost: quality (the system's codec has one of its own)");
    return notes;
  }

  // The components of a file, and of the picture with a full alpha where the file has none.
  void ExpectSame(const std::filesystem::path& path) {
    HostImage read;
    const ReadPicture facts = PictureReader().ReadColour(path, image_.Depth(), read);
    ASSERT_EQ(read.Width(), image_.Width());
    ASSERT_EQ(read.Height(), image_.Height());
    const std::int32_t full = image_.Depth() == 8 ? 255 : 16384;
    for (std::size_t i = 0; i < ComponentCount(read); ++i) {
      const bool isOpaque = i % 4 == 3 && !facts.info.HasAlpha();
      ASSERT_EQ(Component(read, i), isOpaque ? full : Component(image_, i)) << i;
    }
  }

  ScratchFolder folder_;
  HostImage image_;
};

}  // namespace vblur::host
