// What the program says and takes otherwise on each platform, since its picture library is another.
#pragma once

#include <string>
#include <vector>

namespace vblur::cli {

#ifdef _WIN32
inline const std::string kExtensions = "png tif tiff jpg jpeg jpe bmp";
// A file of each format.
inline const std::vector<std::string> kFormats{"png", "jpg", "tif", "bmp"};
// One that stores 16 bits a channel.
inline const std::string kDeepFormat = "tif";
inline const std::vector<std::string> kExtensionsWithMetadata{".tif"};
inline const std::vector<std::string> kTypes{"uint8", "uint16"};
inline const std::string kServerFile = "none.dll";
inline const std::string kCutPng = "the picture is damaged or cut short (its header says more than the file holds)";
inline const std::string kNoPicture = "not a picture, or one of another format, expected one of png, tif, jpg, bmp";
inline const std::string kNoPng = kNoPicture;
inline constexpr const char* kTemporaryFolder = "TMP";
// A start of a program takes long enough under Wine.
inline constexpr bool kShortRuns = false;
#else
inline const std::string kExtensions = "png jpg jpeg jpe tif tiff exr dpx webp tga bmp ppm sgi rgba rgb hdr";
inline const std::vector<std::string> kFormats{"png", "jpg", "tif", "exr", "dpx", "webp",
                                               "tga", "bmp", "ppm", "sgi", "hdr"};
inline const std::string kDeepFormat = "exr";
inline const std::vector<std::string> kExtensionsWithMetadata{".tif", ".exr", ".dpx"};
inline const std::vector<std::string> kTypes{"uint8", "uint16", "half", "float"};
inline const std::string kServerFile = "none.so";
inline const std::string kCutPng = "the picture is damaged or cut short (Read error: hit end of file)";
inline const std::string kNoPicture = "not a picture, or a damaged one (unknown format)";
inline const std::string kNoPng = "not a picture, or a damaged one (Not a PNG file)";
inline constexpr const char* kTemporaryFolder = "TMPDIR";
inline constexpr bool kShortRuns = true;
#endif

}  // namespace vblur::cli
