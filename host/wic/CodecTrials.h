// Trials of the component's codecs with a picture in memory. Each throws std::runtime_error where the picture is not
// written or read at all, for want of memory or whatever else: that says nothing of what the codec does.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/wic/CodecTraits.h"
#include "host/wic/ImagingFactory.h"

namespace vblur::host {

// By OutputFormat::name, as in all of these: whether samples of 16 bits come back with their bytes the other way round.
bool TrySwap(std::string_view format);
// As TiffSamplesOf.
std::optional<TiffSamples> TryTiffSamples(bool isBig, bool isWhiteLeast);
// Whether a low quality makes a shorter file than a high one.
bool TryQuality(std::string_view format);
// The compression of a file for which one of none, lzw and zip is asked.
std::string TryTiffCompression(const std::string& asked);
// Whether pictures of such pixels are written without becoming others.
bool TryForm(std::string_view format, const ::GUID& form);

}  // namespace vblur::host
