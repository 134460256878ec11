#include "apps/vblur/StorageOptions.h"

#include "apps/vblur/OptionText.h"
#include "host/base/Failure.h"
#include "host/files/OutputFormat.h"

namespace vblur::cli {

namespace {

constexpr std::string_view kPremultiply[] = {"around"};

}  // namespace

void StorageChanges::ApplyTo(host::Job& job) const {
  host::OutputStorage& stored = job.output.storage;
  if (storage.format) stored.format = storage.format;
  if (storage.type) stored.type = storage.type;
  if (storage.compression) stored.compression = storage.compression;
  if (storage.quality) stored.quality = storage.quality;
  if (premultipliesAround) job.premultipliesAround = true;
  if (linear) job.linear = true;
}

void AddStorageOptions(CLI::App& app, StorageChanges& changes) {
  const auto add = [&](const char* name, const char* form, const char* help, const auto& set) {
    AddTextOption(app, name, form, help, set)->group("Output");
  };
  add("--format", "EXT", "Format of OUTPUT, such as png [that of its name; of -, that of the input, or png]",
      [&](const std::string& text) {
        host::FormatOfExtension("--format", text);
        changes.storage.format = text;
      });
  add("--type", "uint8|uint10|uint12|uint16|half|float", "Type of the samples in OUTPUT [that of the input's]",
      [&](const std::string& text) {
        changes.storage.type = static_cast<host::SampleType>(ParseChoice("--type", text, host::kSampleTypeNames));
      });
  add("--compression", "NAME", "Compression of OUTPUT, such as zip [that of an input of the same format]",
      [&](const std::string& text) { changes.storage.compression = text; });
  add("--quality", "1-100", "Quality of a JPEG or WebP file",
      [&](const std::string& text) { changes.storage.quality = ParseWhole("--quality", text); });
  add("--premultiply", "around", "Multiply straight colours by alpha before the render, and divide them after it",
      [&](const std::string& text) {
        ParseChoice("--premultiply", text, kPremultiply);
        changes.premultipliesAround = true;
      });
  app.add_flag("--linear", changes.linear,
               "Render colours of sRGB in linear light, at 16 bits; mixes and crop colours are linear then, too")
      ->group("Output");
}

}  // namespace vblur::cli
