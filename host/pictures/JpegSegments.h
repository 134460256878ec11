// Segments of JPEG files before their pixels.
#pragma once

#include <istream>
#include <string>
#include <vector>

namespace vblur::host {

struct JpegFacts {
  // Kinds of metadata that the reader passes over, each once: a comment beside another description, further pictures
  // and signed histories.
  std::vector<std::string> unread;
  // Exif data as it is stored; empty: none.
  std::string exif;
};

// From behind the file's first two bytes.
JpegFacts FactsOfJpeg(std::istream& file);

// The bytes of a JPEG file with this Exif data for all that it has. Exif data of more bytes than a segment holds, and
// bytes that are no JPEG file, leave it as it is.
std::string WithExif(std::string file, const std::string& exif);

}  // namespace vblur::host
