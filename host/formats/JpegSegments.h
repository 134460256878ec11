// Segments of JPEG files before their pixels, and what stands behind the picture.
#pragma once

#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace vblur::host {

struct JpegFacts {
  // Kinds of data that the reader passes over, each once, such as a comment beside another description, further
  // pictures, and what stands behind them.
  std::vector<std::string> unread;
  // Exif data as it is stored; empty: none.
  std::string exif;
};

// From behind the file's first two bytes.
JpegFacts FactsOfJpeg(std::istream& file);

// More bytes than a JPEG file begins with before and in its Exif data.
constexpr std::size_t kJpegHead = std::size_t{1} << 17;

// The first bytes of a JPEG file with this Exif data for all that they hold. Exif data of more bytes than a segment
// holds leaves them as they are, and so do bytes of no JPEG file.
std::string WithExif(std::string head, const std::string& exif);

// The same with a colour profile, in as many segments as it needs, behind the segment that files begin with. One of
// more than 255 segments leaves them as they are.
std::string WithProfile(const std::string& head, const std::string& profile);

// The same with a comment and with IPTC data behind the segment that files begin with; empty: none. What a segment does
// not hold is left out.
std::string WithTexts(const std::string& head, const std::string& comment, const std::string& iptc);
// The most bytes of either, and of Exif data.
constexpr std::size_t kMostInSegment = 65000;

// The IPTC data of a segment (APP13), where they come first and have no name; empty: none.
std::string IptcOf(std::string_view data);

}  // namespace vblur::host
