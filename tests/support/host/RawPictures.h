// Picture files of exactly given samples, for the tests of reading and writing.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace vblur::host {

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
