#include "host/hosted/FrameBands.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <optional>
#include <string_view>

#include "host/jobs/JobCheck.h"
#include "properties/PropertyTable.h"

namespace vblur::host {

bool LieAlike(const HostImage& input, const HostImage& output) {
  const DSPixelPair in = input.HostOrigin();
  const DSPixelPair out = output.HostOrigin();
  return input.Width() == output.Width() && input.Height() == output.Height() && in.x == out.x && in.y == out.y;
}

namespace {

double ValueOf(const Job& job, PropertyId id) {
  return job.properties.ValueAt(PropertyOf(id).guid, job.time);
}

std::string_view EntryOf(const Job& job, PropertyId id) {
  const double entry = ValueOf(job, id);
  const auto& names = PropertyOf(id).entries;
  const bool isListed = entry >= 0.0 && entry < static_cast<double>(names.size());
  return isListed ? std::string_view(names[static_cast<std::size_t>(entry)]) : std::string_view();
}

}  // namespace

std::string_view ChannelsOf(const Job& job) {
  return EntryOf(job, PropertyId::Channels);
}

namespace {

// The other choices copy or convert the whole output, whatever the region.
bool StaysInRegion(const Job& job) {
  constexpr std::string_view kStaying[] = {"RGBA", "Red", "Green", "Blue", "Alpha"};
  return std::ranges::find(kStaying, ChannelsOf(job)) != std::end(kStaying);
}

// Brightness and tones are filtered in a picture of the output's size, where what lies below its first row is its last.
bool WrapsOutput(const Job& job) {
  return !StaysInRegion(job) && ChannelsOf(job) != "RGB" && EntryOf(job, PropertyId::YEdgeMethod) == "Wrap";
}

}  // namespace

bool BandsServe(const Job& job) {
  // A mix of two clips takes whole pictures in any case.
  if (ResolveKind(job) == EffectKind::Transition || WrapsOutput(job)) return false;
  if (!job.roi || StaysInRegion(job)) return true;
  // What is written around the region is replaced by the input.
  return job.input && !job.output.initial && job.outside != OutsideChoice::Clear;
}

bool BandsServe(const Job& job, const FramePictures& pictures) {
  return BandsServe(job) && (pictures.input == nullptr || LieAlike(*pictures.input, *pictures.output));
}

bool BandsAreApart(const Job& job) {
  // Blanking clears the first and the last row of a region.
  return !StaysInRegion(job) || ValueOf(job, PropertyId::BlankCropped) != 0.0;
}

std::int32_t BandRows(std::int64_t pictureBytes, std::int32_t height) {
  // Smaller pictures render faster whole.
  constexpr std::int64_t kLargeBytes = std::int64_t{256} << 20;
  constexpr std::int32_t kBands = 64;
  if (pictureBytes < kLargeBytes) return height;
  // An even number: every band has as many rows of each field.
  return std::max(height / kBands / 2 * 2, 2) + 2;
}

namespace {

// What a band of its own holds beyond the reach of the filter, and what blanking clears of it. Even: a band begins with
// the same field as the output.
constexpr std::int32_t kBeyondReach = 16;
constexpr std::int32_t kBlanked = 2;

}  // namespace

double BlurAt(const Job& job, double time) {
  return job.properties.ValueAt(PropertyOf(PropertyId::Blur).guid, time);
}

bool BandsFollowInput(const Job& job) {
  const bool readsOneInput = job.input && !job.input2 && !job.output.initial;
  // What lies beyond the crop comes from its edge, however far that is.
  const bool crops = ValueOf(job, PropertyId::CropBottom) != PropertyOf(PropertyId::CropBottom).defaultValue ||
                     ValueOf(job, PropertyId::CropTop) != PropertyOf(PropertyId::CropTop).defaultValue;
  return readsOneInput && !crops && !job.roi && job.field == FieldChoice::Frame && BandsServe(job) &&
         EntryOf(job, PropertyId::YEdgeMethod) != "Wrap";
}

BandSize MostOfBand(const Job& job, double time, std::int64_t pictureBytes, std::int64_t height) {
  const BandSize whole{height, 0};
  const std::int64_t rows = BandRows(pictureBytes, static_cast<std::int32_t>(height));
  if (rows >= height) return whole;
  // As the effect computes it, but for the aspect, which only narrows it.
  const double reach =
      1.0 + std::max(0.0, BlurAt(job, time)) * std::abs(job.proxy[1]) * (job.field == FieldChoice::Frame ? 1.0 : 2.0);
  if (!(reach < static_cast<double>(height))) return whole;
  const std::int64_t around = static_cast<std::int64_t>(reach) + kBeyondReach + 2 * kBlanked;
  const BandSize band{std::max(rows, 2 * around), around};
  return band.rows + 2 * band.reach < height ? band : whole;
}

namespace {

// The rows of the output in its region; none for a region beside it.
HostRows RowsIn(const HostImage& output, const std::optional<Region>& region) {
  if (!region) return {0, output.Height()};
  if (region->x >= output.Width() || std::int64_t{region->x} + region->width <= 0) return {};
  const auto row = [&](std::int64_t y) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(y, 0, output.Height()));
  };
  return {row(region->y), row(std::int64_t{region->y} + region->height)};
}

// The part of a region in these of its rows. Its first and last rows have what lies below and above the picture.
Region RegionOfRows(const Region& whole, HostRows all, HostRows rows) {
  const std::int64_t bottom = rows.begin == all.begin ? whole.y : rows.begin;
  const std::int64_t top = rows.end == all.end ? std::int64_t{whole.y} + whole.height : rows.end;
  return {whole.x, static_cast<std::int32_t>(bottom), whole.width, static_cast<std::int32_t>(top - bottom)};
}

// Copies rows, counted in `tall`, to and from a picture that holds its rows from `from` on.
void CopyRows(const HostImage& tall, HostImage& part, HostRows rows, std::int32_t from) {
  std::memcpy(part.Row(rows.begin - from), tall.Row(rows.begin),
              tall.RowBytes() * static_cast<std::size_t>(rows.Count()));
}
void CopyRowsBack(const HostImage& part, HostImage& tall, HostRows rows, std::int32_t from) {
  std::memcpy(tall.Row(rows.begin), part.Row(rows.begin - from),
              tall.RowBytes() * static_cast<std::size_t>(rows.Count()));
}

// Renders bands of one frame.
class BandRenderer {
 public:
  BandRenderer(HostedEffect& effect, const FramePictures& pictures, IDSEffectHost& host, double time,
               std::int32_t field)
      : effect_(effect), pictures_(pictures), host_(host), time_(time), field_(field) {}

  HRESULT Render(const std::optional<Region>& region) {
    effect_.PutRegion(region);
    return effect_.RenderFrame(pictures_, host_, time_, field_);
  }

  // Into a picture of its own, with the rows that the filter reads around it and those that blanking clears.
  HRESULT RenderApart(const Region& region, HostRows all, HostRows rows) {
    HostImage& output = *pictures_.output;
    const std::int32_t reach = Reach();
    const auto [blanked, held] = Around(rows, all);
    own_.Reset(output.Depth(), output.Components(), output.Width(), held.Count());
    ImageRecord record;
    record.origin = {output.HostOrigin().x, output.HostOrigin().y + held.begin};
    own_.Place(record);
    CopyRows(output, own_, held, held.begin);
    FramePictures pictures = pictures_;
    pictures.output = &own_;
    Region band = RegionOfRows(region, all, blanked);
    // Without an input, regions count from the corner of the picture that is rendered into.
    if (pictures_.input == nullptr) band.y -= held.begin;
    effect_.PutRegion(band);
    const HRESULT result = effect_.RenderFrame(pictures, host_, time_, field_);
    if (!reachIsSettled_) {
      // Until an effect has rendered, it answers for the field of the frame before.
      reachIsSettled_ = true;
      overscan_.reset();
      reach_.reset();
      if (Reach() > reach) return RenderApart(region, all, rows);
    }
    // The ends of a field's region are rounded, so that rows beyond them are rendered too.
    constexpr std::int32_t kRounded = 2;
    if (field_ != 0 && rows.begin == all.begin) rows.begin = std::max(0, rows.begin - kRounded);
    if (field_ != 0 && rows.end == all.end) rows.end = std::min(output.Height(), rows.end + kRounded);
    CopyRowsBack(own_, output, rows, held.begin);
    return result;
  }

  // The rows of bands that are rendered downward; nothing where so few would have little to overlap.
  std::optional<std::int32_t> RowsDownward(bool apart) {
    const std::int32_t height = pictures_.output->Height();
    const std::int32_t most = BandRows(static_cast<std::int64_t>(pictures_.output->ByteCount()), height);
    // A picture of its own has the rows around a band to fill too.
    const std::int32_t bands = apart ? 8 : 16;
    constexpr std::int32_t kLeast = 32;
    const std::int32_t rows = std::max({std::min(most, height / bands), kLeast, LeastRows()});
    return rows <= height / 4 ? std::optional(rows) : std::nullopt;
  }

  HRESULT RenderDownward(std::int32_t rows, bool apart, const BandSteps& steps) {
    const HostImage& output = *pictures_.output;
    const Region whole{0, 0, output.Width(), output.Height()};
    // Only an effect that has rendered fields answers for one until it has rendered again.
    reachIsSettled_ = true;
    HRESULT result = kOk;
    for (HostRows band{output.Height(), output.Height()}; band.begin > 0;) {
      band = {std::max(0, band.begin - rows), band.begin};
      steps.before(apart ? Around(band, output.AllRows()).held.begin
                         : std::max(0, band.begin - Reach() - kBeyondReach));
      result = apart ? RenderApart(whole, output.AllRows(), band)
                     : Render(Region{0, band.begin, output.Width(), band.Count()});
      if (result != kOk || !steps.after(band.begin)) break;
    }
    return result;
  }

  bool CanBeApart() {
    const HostImage& output = *pictures_.output;
    // The filter limits each of its three boxes by three times the longer side of the picture that it writes: the width
    // suffices here.
    const double reach = std::max(std::abs(Overscan().left), std::abs(Overscan().right));
    // Rows of a field are halved toward 0.
    return reach <= 9.0 * output.Width() && (field_ == 0 || output.HostOrigin().y >= 0);
  }

  // Bands overlap by what the filter reads beyond them: kept below half of its work.
  std::int32_t LeastRows() { return 2 * Reach(); }

 private:
  const InputOverscan& Overscan() {
    if (!overscan_) overscan_ = effect_.MeasureOverscan(pictures_, host_, time_, field_);
    return *overscan_;
  }

  // What a picture of their own holds for rows of `all`, and which of it are rendered.
  struct OwnRows {
    HostRows blanked;
    HostRows held;
  };
  OwnRows Around(HostRows rows, HostRows all) {
    const auto widened = [](HostRows within, HostRows to, std::int32_t by) {
      return HostRows{std::max(to.begin, within.begin - by), std::min(to.end, within.end + by)};
    };
    OwnRows own;
    own.blanked = widened(rows, all, kBlanked);
    own.held = widened(own.blanked, pictures_.output->AllRows(), Reach() + kBeyondReach);
    own.held.begin = own.held.begin / 2 * 2;
    return own;
  }

  // The farthest that the filter reads above and below a pixel, in rows of the picture; even.
  std::int32_t Reach() {
    if (reach_) return *reach_;
    const InputOverscan& overscan = Overscan();
    // Sizes below zero reach as far.
    const double rows = std::ceil(std::max(std::abs(overscan.bottom), std::abs(overscan.top)));
    // The effect counts rows of a field.
    const std::int32_t step = field_ == 0 ? 1 : 2;
    const std::int32_t height = pictures_.output->Height();
    // One that is no number is as far as can be.
    const std::int32_t reach = rows < height ? static_cast<std::int32_t>(rows) : height;
    reach_ = (reach * step + 1) / 2 * 2;
    return *reach_;
  }

  HostedEffect& effect_;
  const FramePictures& pictures_;
  IDSEffectHost& host_;
  double time_;
  std::int32_t field_;
  std::optional<InputOverscan> overscan_;
  std::optional<std::int32_t> reach_;
  bool reachIsSettled_ = false;
  HostImage own_;
};

}  // namespace

HRESULT RenderInBands(HostedEffect& effect, const Job& job, const FramePictures& pictures, IDSEffectHost& host,
                      double time, std::int32_t field, const std::optional<Region>& region, std::int32_t rows,
                      const std::function<bool()>& afterBand) {
  const HostImage& output = *pictures.output;
  BandRenderer renderer(effect, pictures, host, time, field);
  const auto renderWhole = [&] {
    const HRESULT result = renderer.Render(region);
    afterBand();
    return result;
  };
  const HostRows all = RowsIn(output, region);
  const bool apart = BandsAreApart(job);
  // A low region of a large picture is a band: the effect's own pictures are as tall as the one that it writes.
  const bool isWhole = rows >= (apart && all.Count() > 0 ? output.Height() : all.Count());
  if (isWhole || !BandsServe(job, pictures) || (apart && !renderer.CanBeApart())) {
    return renderWhole();
  }
  const Region whole = region.value_or(Region{0, 0, output.Width(), output.Height()});
  // A picture of their own makes up for half of them.
  if (apart) rows = std::max(rows / 4 * 2, 2);
  rows = std::max(rows, renderer.LeastRows());
  // Bands would hold as much as the whole.
  if (rows + renderer.LeastRows() + 2 * (kBeyondReach + kBlanked) >= output.Height()) return renderWhole();
  HRESULT result = kOk;
  for (HostRows band{all.begin, all.begin}; band.end < all.end;) {
    // Bands end with a row of the second field.
    band = {band.end, std::min((band.end + rows) / 2 * 2, all.end)};
    result = apart ? renderer.RenderApart(whole, all, band) : renderer.Render(RegionOfRows(whole, all, band));
    if (!afterBand() || result != kOk) break;
  }
  return result;
}

HRESULT RenderDownward(HostedEffect& effect, const Job& job, const FramePictures& pictures, IDSEffectHost& host,
                       double time, const BandSteps& steps) {
  constexpr std::int32_t kFrame = 0;
  const HostImage& output = *pictures.output;
  if (BandsServe(job, pictures)) {
    BandRenderer renderer(effect, pictures, host, time, kFrame);
    const bool apart = BandsAreApart(job);
    // Rendering what lies around bands of floats again takes longer than waiting for their files.
    constexpr std::int32_t kFloats = 32;
    const bool pays = !apart || (output.Depth() != kFloats && renderer.CanBeApart());
    const auto rows = pays ? renderer.RowsDownward(apart) : std::nullopt;
    if (rows) return renderer.RenderDownward(*rows, apart, steps);
  }
  steps.before(0);
  bool goesOn = true;
  const auto afterBand = [&] { return goesOn = steps.after(output.Height()); };
  const std::int32_t rows = BandRows(static_cast<std::int64_t>(output.ByteCount()), output.Height());
  const HRESULT result = RenderInBands(effect, job, pictures, host, time, kFrame, std::nullopt, rows, afterBand);
  if (result == kOk && goesOn) steps.after(0);
  return result;
}

}  // namespace vblur::host
