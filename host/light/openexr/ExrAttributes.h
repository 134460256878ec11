// Attributes of OpenEXR files by the names of the full picture library.
#pragma once

#include <optional>

#include <ImfHeader.h>

#include "host/light/LightMetadata.h"

namespace vblur::host {

// The full library's name for a compression.
const char* NameOfExrCompression(Imf::Compression compression);
Imf::Compression ExrCompressionOf(const std::string& name);

// All that the full library gives of a header, in its order. Nothing where it has an attribute that may mean more.
std::optional<LightAttributes> ReadExrAttributes(const Imf::Header& header);

// Whether these attributes, which pass to an OpenEXR file, are written here as the full library writes them.
bool ArePlainForExr(const LightAttributes& attributes);
// Of such ones, those that files of the format have, by its names.
void PutExrAttributes(const LightAttributes& attributes, Imf::Header& header);
// The level of lossy compression where the header has that: the full library always writes its own. Other files keep
// that of their source.
void PutExrLevel(Imf::Header& header);

}  // namespace vblur::host
