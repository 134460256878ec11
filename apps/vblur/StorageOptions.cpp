#include "apps/vblur/StorageOptions.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "apps/vblur/OptionText.h"
#include "host/base/Failure.h"
#include "host/files/OutputFormat.h"

namespace vblur::cli {

namespace {

constexpr std::string_view kPremultiply[] = {"around"};

// The formats of the picture library, by their first extensions.
template <typename Has>
std::string FormatsThat(const Has& has, const std::string& separator) {
  std::string all;
  for (const host::OutputFormat& format : host::OutputFormats()) {
    if (has(format)) all.append(all.empty() ? "" : separator).append(host::FirstExtension(format));
  }
  return all;
}

std::string TypeForm() {
  std::vector<std::string_view> names;
  for (std::size_t type = 0; type < host::kSampleTypeNames.size(); ++type) {
    const bool isWritten = std::ranges::any_of(host::OutputFormats(), [&](const host::OutputFormat& format) {
      return format.types.Has(static_cast<host::SampleType>(type));
    });
    if (isWritten) names.push_back(host::kSampleTypeNames[type]);
  }
  return ChoiceForm(names);
}

}  // namespace

void StorageChanges::ApplyTo(host::Job& job) const {
  host::OutputStorage& stored = job.output.storage;
  if (storage.format) stored.format = storage.format;
  if (storage.type) stored.type = storage.type;
  if (storage.compression) stored.compression = storage.compression;
  if (storage.quality) stored.quality = storage.quality;
  if (premultipliesAround) job.premultipliesAround = true;
  if (linear) job.linear = true;
  if (steady) job.steady = true;
}

void AddStorageOptions(CLI::App& app, StorageChanges& changes) {
  const auto add = [&](const char* name, const std::string& form, const std::string& help, const auto& set) {
    AddTextOption(app, name, form, help, set)->group("Output");
  };
  add("--format", "EXT",
      "Format of OUTPUT, by an extension: " + FormatsThat([](const auto&) { return true; }, ", ") +
          " [that of its name; of -, that of the input, or png]",
      [&](const std::string& text) {
        host::FormatOfExtension("--format", text);
        changes.storage.format = text;
      });
  add("--type", TypeForm(), "Type of the samples in OUTPUT [that of the input's]", [&](const std::string& text) {
    changes.storage.type = static_cast<host::SampleType>(ParseChoice("--type", text, host::kSampleTypeNames));
  });
  add("--compression", "NAME", "Compression of OUTPUT, such as zip [that of an input of the same format]",
      [&](const std::string& text) { changes.storage.compression = text; });
  add("--quality", "1-100",
      "Quality of a file of " + FormatsThat([](const auto& format) { return format.hasQuality; }, " or "),
      [&](const std::string& text) { changes.storage.quality = ParseWhole("--quality", text); });
  add("--premultiply", "around",
      "Multiply straight colours by alpha before the render, and divide them after it, in floats",
      [&](const std::string& text) {
        ParseChoice("--premultiply", text, kPremultiply);
        changes.premultipliesAround = true;
      });
  app.add_flag("--linear", changes.linear,
               "Render colours of sRGB in linear light, in floats; mixes and crop colours are linear then, too")
      ->group("Output");
  app.add_flag("--steady", changes.steady,
               "Render in floats and convert once at the end: flat areas keep their value at every size")
      ->group("Output");
}

}  // namespace vblur::cli
