#include "host/files/ChosenPictures.h"

#include <algorithm>
#include <utility>

#include "host/base/Failure.h"

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

}  // namespace

std::unique_ptr<PictureSource> ChosenPictures::Open(const std::filesystem::path& path, const ReadChoice& choice) {
  auto source = light_().Open(path, choice);
  if (source && full_ != nullptr) return std::make_unique<ReplaceableSource>(path, choice, std::move(source), full_);
  if (source) return source;
  if (full_ == nullptr) RefuseToRead(path, "the light picture library reads plain PNG files alone");
  return full_().Open(path, choice);
}

std::vector<std::string> ChosenPictures::Write(const PictureToWrite& picture, const StopTest& stop) {
  if (light_().Writes(picture)) return light_().Write(picture, stop);
  if (full_ == nullptr) RefuseToWrite(picture.target, "the light picture library writes plain PNG files alone");
  return full_().Write(picture, stop);
}

PictureReport ChosenPictures::Report(const std::filesystem::path& path, const ReadChoice& choice) {
  if (auto report = light_().Report(path, choice)) return *std::move(report);
  if (full_ == nullptr) RefuseToRead(path, "the light picture library reads plain PNG files alone");
  return full_().Report(path, choice);
}

void ChosenPictures::Scale(const HostImage& from, HostImage& to) {
  if (full_ == nullptr) Refuse(ExitCode::CannotRead, "picture library", "the light one does not scale pictures");
  full_().Scale(from, to);
}

}  // namespace vblur::host
