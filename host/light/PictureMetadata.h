// Metadata of a picture file as it is passed on to outputs.
#pragma once

#include <string>
#include <vector>

#include "host/files/PictureInfo.h"

namespace vblur::host {

// What a file holds beside its pixels, by the names and in the order of the full picture library.
struct PictureAttribute {
  std::string name;
  std::string type;   // as the full library reads it: "string", "float", "int", "rational", "uint8[560]"
  std::string value;  // a text in UTF-8, else the bytes of its numbers

  bool IsText() const { return type == "string"; }
};

// Two picture libraries make them, and each takes those of the other.
struct PictureMetadata {
  virtual ~PictureMetadata() = default;
  // Null for all but what the light library has read.
  virtual const std::vector<PictureAttribute>* Light() const { return nullptr; }

  PictureInfo info;
  // The file declares premultiplied colours. Values are unchanged, and the output declares the same.
  bool associatedAlpha = false;
};

}  // namespace vblur::host
