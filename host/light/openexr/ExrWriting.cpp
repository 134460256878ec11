#include "host/light/openexr/ExrWriting.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <exception>
#include <future>
#include <memory>
#include <new>
#include <optional>

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfOutputFile.h>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
#include "host/files/ComponentRows.h"
#include "host/files/OutputPixels.h"
#include "host/files/OutputWindows.h"
#include "host/light/LightMetadata.h"
#include "host/light/WrittenFile.h"
#include "host/light/openexr/ExrAttributes.h"
#include "host/light/openexr/ExrPacking.h"
#include "host/light/openexr/ExrThreads.h"

namespace vblur::host {

namespace {

// The file as the library writes it. Errors are told by the file.
class ExrStream final : public Imf::OStream {
 public:
  explicit ExrStream(WrittenFile& file) : OStream(""), file_(file) {}

  void write(const char bytes[], int count) override {
    file_.Put(reinterpret_cast<const unsigned char*>(bytes), static_cast<std::size_t>(count));
    place_ += static_cast<std::uint64_t>(count);
  }
  std::uint64_t tellp() override { return place_; }
  void seekp(std::uint64_t place) override {
    file_.Seek(place);
    place_ = place;
  }

 private:
  WrittenFile& file_;
  std::uint64_t place_ = 0;
};

struct ExrChannel {
  const char* name = "";
  ComponentChannel made;
  std::size_t place = 0;  // in a pixel, in bytes
};

Imath::Box2i BoxOf(const FileWindow& window) {
  return {{window.x, window.y}, {static_cast<int>(window.Right() - 1), static_cast<int>(window.Bottom() - 1)}};
}

// What a file of the picture consists of.
class ExrPlan {
 public:
  explicit ExrPlan(const PictureToWrite& picture)
      : picture_(picture),
        source_(DescribeSource(picture)),
        pixels_(ChooseOutputPixels(picture, source_)),
        windows_(ChooseOutputWindows(picture, Info())) {
    ChooseChannels();
  }

  const PictureInfo* Info() const { return picture_.metadata != nullptr ? &picture_.metadata->info : nullptr; }
  const OutputWindows& Windows() const { return windows_; }
  const std::vector<ExrChannel>& Channels() const { return channels_; }
  std::size_t PixelBytes() const { return pixelBytes_; }
  // Once, behind the last row.
  std::vector<std::string> Notes() {
    NoteLosses(picture_, source_, pixels_);
    return std::move(pixels_.notes);
  }

  Imf::Header Header() const {
    // Higher levels hardly make files smaller.
    constexpr int kZipLevel = 4;
    Imf::Header header(BoxOf(windows_.display), BoxOf(windows_.data));
    for (const ExrChannel& channel : channels_) {
      const bool isHalf = channel.made.type == SampleType::Half;
      header.channels().insert(channel.name, Imf::Channel(isHalf ? Imf::HALF : Imf::FLOAT));
    }
    header.compression() =
        ExrCompressionOf(OutputCompressionOf(source_ ? *source_ : PictureReport{}, picture_.format, picture_.storage));
    header.zipCompressionLevel() = kZipLevel;
    PutExrAttributes(PassedAttributes(picture_.metadata, pixels_.layout, picture_.format.name), header);
    PutExrLevel(header);
    return header;
  }

 private:
  void ChooseChannels() {
    const bool isGrey = IsGrey(pixels_.layout);
    constexpr std::array<const char*, 4> kNames{"R", "G", "B", "A"};
    for (const int component : {0, 1, 2, 3}) {
      if (component == 3 ? !HasAlpha(pixels_.layout) : isGrey && component > 0) continue;
      const char* const name = isGrey && component == 0 ? "Y" : kNames[static_cast<std::size_t>(component)];
      const SampleType type = TypeOf(component);
      channels_.push_back({name, {component, type}, pixelBytes_});
      pixelBytes_ += SampleBytes(type);
    }
  }

  // That of the source's channel, or one for all.
  SampleType TypeOf(int component) const {
    if (!source_ || picture_.storage.type) return pixels_.type;
    const ChannelChoice& choice = source_->info.choice;
    const int at = std::array{choice.red, choice.green, choice.blue, choice.alpha}[static_cast<std::size_t>(component)];
    if (at < 0) return pixels_.type;
    return NearestType(picture_.format, TypeFor(source_->info.all[static_cast<std::size_t>(at)].type));
  }

  const PictureToWrite& picture_;
  std::optional<PictureReport> source_;
  OutputPixels pixels_;
  OutputWindows windows_;
  std::vector<ExrChannel> channels_;
  std::size_t pixelBytes_ = 0;
};

// Writes one picture into one file.
class Writing {
 public:
  Writing(const PictureToWrite& picture, const StopTest& stop)
      : picture_(picture),
        plan_(picture),
        made_(picture, plan_.Info(), plan_.Windows().data, plan_.Windows().picture, plan_.PixelBytes()),
        file_(picture, stop),
        stream_(file_) {}

  void Write() {
    try {
      WriteRows();
    } catch (const Failure&) {
      throw;
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      file_.Require(false, error.what());
    }
    file_.Close();
    Check();
  }

  std::vector<std::string> Notes() {
    const SampleType type = plan_.Channels().front().made.type;
    const std::string held = type == SampleType::Float ? "0 and above, which openexr files hold" : LimitsOf(type);
    const std::string clipped = FormatBeyond(beyond_, held);
    std::vector<std::string> notes = plan_.Notes();
    if (!clipped.empty()) notes.push_back(OutputName(picture_.target) + ": " + clipped);
    return notes;
  }

 private:
  using Rows = std::vector<std::byte>;

  void Check() const { file_.Require(true, ""); }

  void WriteRows() {
    const Imf::Header header = plan_.Header();
    const std::int32_t height = plan_.Windows().data.height;
    const ExrRows all{header.compression(), made_.RowBytes(), height};
    const std::int32_t threads = ThreadsFor(all, picture_.threads);
    const std::int32_t atOnce = RowsAtOnce(all, threads);
    // In this thread where the system has no other.
    constexpr auto kAny = std::launch::async | std::launch::deferred;
    Imf::OutputFile output(stream_, header, UseExrThreads(threads));
    Check();
    Rows rows = Make(0, std::min(atOnce, height));
    for (std::int32_t first = 0; first < height; first += atOnce) {
      const std::int32_t next = first + atOnce;
      // The next ones are made while these are packed.
      auto following = std::async(threads > 1 ? kAny : std::launch::deferred,
                                  [&] { return next < height ? Make(next, std::min(atOnce, height - next)) : Rows(); });
      Pack(rows, first, std::min(atOnce, height - first), output);
      Check();
      rows = following.get();
    }
  }

  Rows Make(std::int32_t first, std::int32_t count) {
    Rows rows(made_.RowBytes() * static_cast<std::size_t>(count));
    for (std::int32_t row = 0; row < count; ++row) {
      std::byte* const samples = rows.data() + made_.RowBytes() * static_cast<std::size_t>(row);
      for (const ExrChannel& channel : plan_.Channels()) {
        made_.Put(channel.made, first + row, samples + channel.place);
        made_.AddBeyond(channel.made, first + row, beyond_);
      }
    }
    return rows;
  }

  void Pack(Rows& rows, std::int32_t first, std::int32_t count, Imf::OutputFile& output) const {
    const FileWindow& data = plan_.Windows().data;
    Imf::FrameBuffer frame;
    for (const ExrChannel& channel : plan_.Channels()) {
      const bool isHalf = channel.made.type == SampleType::Half;
      frame.insert(channel.name,
                   Imf::Slice::Make(isHalf ? Imf::HALF : Imf::FLOAT, rows.data() + channel.place,
                                    {data.x, data.y + first}, data.width, count, plan_.PixelBytes(), made_.RowBytes()));
    }
    output.setFrameBuffer(frame);
    output.writePixels(count);
  }

  const PictureToWrite& picture_;
  ExrPlan plan_;
  ComponentRows made_;
  BeyondRange beyond_;
  WrittenFile file_;
  ExrStream stream_;
};

}  // namespace

bool IsPlainExr(const PictureToWrite& picture) {
  if (picture.storage.quality) return false;
  if (picture.metadata == nullptr) return true;
  const PictureInfo& source = picture.metadata->info;
  if (picture.metadata->Light() == nullptr || !source.passing.empty()) return false;
  const ChannelChoice& choice = source.choice;
  const bool lacksColours = std::min({choice.red, choice.green, choice.blue}) < 0;
  const bool isInLayer = source.FirstColour().name.find('.') != std::string::npos;
  if (lacksColours || isInLayer) return false;
  return ArePlainForExr(PassedAttributes(picture.metadata, PixelLayout::Rgb, picture.format.name));
}

std::vector<std::string> WriteExr(const PictureToWrite& picture, const StopTest& stop) {
  Writing writing(picture, stop);
  writing.Write();
  return writing.Notes();
}

}  // namespace vblur::host
