// A picture file opened with the imaging component.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/wic/FileMetadata.h"
#include "host/wic/FileStream.h"
#include "host/wic/PixelForms.h"

namespace vblur::host {

struct OpenedPicture {
  PictureMetadata metadata;
  ComPtr<FileStream> stream;
  ComPtr<IWICBitmapFrameDecode> frame;
  PixelForm form;
  std::vector<std::uint32_t> palette;  // 0xAARRGGBB
  // Of samples of 16 bits: the least value is white in the file, and the codec gives it so.
  bool turnsValues = false;
  bool swapsBytes = false;  // the codec gives their bytes the wrong way round
};

// Opens the first picture of a file that RequirePictureFile accepts. Throws as ReadPictureInfo does.
OpenedPicture OpenPictureFile(const std::filesystem::path& path, const ReadChoice& choice);

// Of pixels that the codec does not give.
[[noreturn]] void RefusePixels(const std::filesystem::path& path, const FileHeader& header, ::HRESULT error);

}  // namespace vblur::host
