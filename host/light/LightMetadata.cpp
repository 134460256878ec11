#include "host/light/LightMetadata.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "host/base/NameMatch.h"
#include "host/files/ColourProfile.h"

namespace vblur::host {

namespace {

// As the full library prints numbers.
std::string TextOf(float number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", static_cast<double>(number));
  return text;
}

// Not one of zeros and blanks alone, which no output gets.
bool Passes(const std::string& text) {
  return text.find_first_not_of(std::string(" \0", 2)) != std::string::npos;
}

// Lists what a file has in the order of the full library.
class Attributes {
 public:
  explicit Attributes(PictureReport& report) : report_(report) {}

  void Add(const std::string& name, const std::string& value, MetadataGroup group, bool isText) {
    report_.attributes.emplace_back(name, value);
    report_.metadata.Add(group);
    if (!isText) report_.beyondText.Add(group);
  }

 private:
  PictureReport& report_;
};

MetadataGroup GroupOfText(const std::string& name) {
  constexpr const char* kTexts[] = {"Artist", "Copyright", "DateTime", "ImageDescription", "Software"};
  const bool isKnown = std::ranges::any_of(kTexts, [&](const char* each) { return EqualIgnoringCase(each, name); });
  return isKnown ? MetadataGroup::Text : MetadataGroup::Other;
}

}  // namespace

PictureReport DescribePicture(const PictureMetadata& metadata) {
  const PngMetadata& png = *metadata.Png();
  PictureReport report;
  report.info = metadata.info;
  Attributes attributes(report);
  if (!png.profile.empty()) {
    attributes.Add("ICCProfile", std::to_string(png.profile.size()) + " bytes", MetadataGroup::Profile, false);
    report.profileFits = LayoutsOfProfile(png.profile);
  }
  for (const auto& [name, text] : png.texts) {
    attributes.Add(name, text, GroupOfText(name), true);
    if (GroupOfText(name) != MetadataGroup::Other) continue;
    report.others.push_back(name);
    if (!Passes(text)) continue;
    report.lacking["png"].keptOthers.push_back(name);
    if (name == "DocumentName") report.lacking["tiff"].keptOthers.push_back(name);
  }
  if (png.pixelsX == 0) return report;
  constexpr auto kResolution = MetadataGroup::Resolution;
  attributes.Add("ResolutionUnit", png.isInMetres ? "inch" : "none", kResolution, true);
  attributes.Add("XResolution", TextOf(png.ResolutionX()), kResolution, false);
  attributes.Add("YResolution", TextOf(png.ResolutionY()), kResolution, false);
  if (png.PixelAspect() > 0.0f)
    attributes.Add("PixelAspectRatio", TextOf(png.PixelAspect()), MetadataGroup::PixelAspect, false);
  return report;
}

}  // namespace vblur::host
