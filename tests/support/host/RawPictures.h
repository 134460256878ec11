// Picture files of exactly given samples, for the tests of reading and writing.
#pragma once

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace vblur::host {

// The least that a colour profile consists of, with one tag.
inline std::vector<unsigned char> MakeProfile(const char* colours) {
  std::vector<unsigned char> profile(160, 0);
  const auto put = [&](std::size_t at, const std::string& bytes) {
    std::copy(bytes.begin(), bytes.end(), profile.begin() + static_cast<std::ptrdiff_t>(at));
  };
  profile[3] = 160;
  profile[8] = 2;
  put(12, "mntr");
  put(16, colours);
  put(20, "XYZ ");
  put(36, "acsp");
  const unsigned char white[12] = {0, 0, 0xf6, 0xd6, 0, 1, 0, 0, 0, 0, 0xd3, 0x2d};
  std::copy(white, white + 12, profile.begin() + 68);
  profile[131] = 1;
  put(132, "cprt");
  profile[139] = 144;
  profile[143] = 16;
  put(144, "text");
  return profile;
}

// A file of exactly these samples, top row first, as the picture library writes them.
template <typename Sample>
void WriteRaw(const std::filesystem::path& path, const std::string& format, OIIO::ImageSpec spec,
              const std::vector<Sample>& samples) {
  spec.attribute("oiio:UnassociatedAlpha", 1);
  auto writer = OIIO::ImageOutput::create(format);
  if (!writer || !writer->open(path.string(), spec) ||
      !writer->write_image(OIIO::BaseTypeFromC<Sample>::value, samples.data()) || !writer->close()) {
    throw std::runtime_error("cannot write " + path.string());
  }
}

}  // namespace vblur::host
