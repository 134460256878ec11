// Reads plain PNG files.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// As LightPictures::Open and LightPictures::Report.
std::unique_ptr<PictureSource> OpenPng(const std::filesystem::path& path, const ReadChoice& choice);
std::optional<PictureReport> ReportPng(const std::filesystem::path& path, const ReadChoice& choice);

}  // namespace vblur::host
