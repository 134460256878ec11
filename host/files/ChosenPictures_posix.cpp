#include "host/files/ChosenPictures.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/Utf8.h"
#include "host/files/OutputFormat.h"
#include "host/files/StandardInput.h"

namespace vblur::host {

namespace {

// A picture of the light library, whose place the full one takes where its rows turn out damaged: it says of what.
class ReplaceableSource final : public PictureSource {
 public:
  ReplaceableSource(std::filesystem::path path, ReadChoice choice, std::unique_ptr<PictureSource> light,
                    PictureLibrary& (*full)())
      : path_(std::move(path)), choice_(std::move(choice)), source_(std::move(light)), full_(full) {
    atOnce_ = source_->RowsAtOnce();
  }

  const PictureInfo& Info() const override { return source_->Info(); }
  std::int32_t RowsAtOnce() const override { return atOnce_; }
  ReadPicture Facts() override { return source_->Facts(); }
  bool KnowsFacts() const override { return source_->KnowsFacts(); }

  void ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) override {
    if (isFull_) return source_->ReadRows(first, count, samples);
    try {
      source_->ReadRows(first, count, samples);
    } catch (const Failure&) {
      Replace(first, count, samples);
    }
  }

 private:
  // Every row is read once, from the top on: those before `first` again, into the same memory.
  void Replace(std::int32_t first, std::int32_t count, std::byte* samples) {
    auto other = full_().Open(path_, choice_);
    isFull_ = true;
    for (std::int32_t row = 0; row < first; row += count)
      other->ReadRows(row, std::min(count, first - row), samples);
    other->ReadRows(first, count, samples);
    // The rows hold on to what is known of the first one.
    light_ = std::exchange(source_, std::move(other));
  }

  std::filesystem::path path_;
  ReadChoice choice_;
  std::unique_ptr<PictureSource> source_;
  std::unique_ptr<PictureSource> light_;
  PictureLibrary& (*full_)();
  std::int32_t atOnce_ = 1;
  bool isFull_ = false;
};

bool Lists(std::string_view format) {
  return std::ranges::find(kLightFormats, format) != kLightFormats.end();
}

// "plain PNG, JPEG and TIFF files alone".
std::string KnownFiles() {
  std::string list;
  for (std::size_t i = 0; i < kLightFormats.size(); ++i) {
    std::string name(kLightFormats[i] == "openexr" ? "exr" : kLightFormats[i]);
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    list += (i == 0 ? "" : i + 1 < kLightFormats.size() ? ", " : " and ") + name;
  }
  return "plain " + list + " files alone";
}

std::string FirstBytes(const std::filesystem::path& path) {
  std::string bytes(4, '\0');
  std::ifstream(FileToOpen(path), std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

// Which format's reader the full library asks first: that of the name, which may take the file for its own, and for a
// name without an extension the one that knows the file by its first bytes. Empty: none of the light library's.
std::string_view FormatToRead(const std::filesystem::path& path) {
  struct Beginning {
    std::string_view format;
    std::string_view bytes;
  };
  constexpr Beginning kBeginnings[] = {{"png", "\x89PNG"},
                                       {"jpeg", "\xff\xd8\xff"},
                                       {"tiff", std::string_view("II*\0", 4)},
                                       {"tiff", std::string_view("MM\0*", 4)},
                                       {"openexr", "\x76\x2f\x31\x01"},
                                       {"dpx", "SDPX"},
                                       {"dpx", "XPDS"}};
  std::string extension = Utf8Of(path.extension());
  std::ranges::transform(extension, extension.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (extension.empty()) {
    const std::string bytes = FirstBytes(path);
    const auto* known =
        std::ranges::find_if(kBeginnings, [&](const Beginning& each) { return bytes.starts_with(each.bytes); });
    return known != std::end(kBeginnings) ? known->format : std::string_view();
  }
  for (const OutputFormat& format : OutputFormats()) {
    std::istringstream names{std::string(format.extensions)};
    for (std::string name; names >> name;) {
      if (extension == '.' + name) return format.name;
    }
  }
  return {};
}

}  // namespace

LightPictures* ChosenPictures::LightFor(const std::filesystem::path& path) const {
  const std::string_view format = FormatToRead(path);
  return Lists(format) ? &light_(format) : nullptr;
}

std::unique_ptr<PictureSource> ChosenPictures::Open(const std::filesystem::path& path, const ReadChoice& choice) {
  LightPictures* const light = LightFor(path);
  auto source = light != nullptr ? light->Open(path, choice) : nullptr;
  if (source && full_ != nullptr) return std::make_unique<ReplaceableSource>(path, choice, std::move(source), full_);
  if (source) return source;
  if (full_ == nullptr) RefuseToRead(path, "the light picture library reads " + KnownFiles());
  return full_().Open(path, choice);
}

std::vector<std::string> ChosenPictures::Write(const PictureToWrite& picture, const StopTest& stop) {
  if (Lists(picture.format.name)) {
    LightPictures& light = light_(picture.format.name);
    if (light.Writes(picture)) return light.Write(picture, stop);
  }
  if (full_ == nullptr) RefuseToWrite(picture.target, "the light picture library writes " + KnownFiles());
  picture.WaitForAll();
  return full_().Write(picture, stop);
}

PictureReport ChosenPictures::Report(const std::filesystem::path& path, const ReadChoice& choice) {
  if (LightPictures* const light = LightFor(path)) {
    if (auto report = light->Report(path, choice)) return *std::move(report);
  }
  if (full_ == nullptr) RefuseToRead(path, "the light picture library reads " + KnownFiles());
  return full_().Report(path, choice);
}

void ChosenPictures::Scale(const HostImage& from, HostImage& to) {
  if (full_ == nullptr) Refuse(ExitCode::CannotRead, "picture library", "the light one does not scale pictures");
  full_().Scale(from, to);
}

}  // namespace vblur::host
