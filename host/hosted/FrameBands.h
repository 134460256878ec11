// Frames rendered in horizontal bands, one after the other: what the effect needs beside its pictures is then that of a
// band. The pixels are those of a frame rendered whole.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// Whether two pictures have the same size and the same pixel origin.
bool LieAlike(const HostImage& input, const HostImage& output);

// The entry of Channels that the job's effect renders at its time; empty for a number without one.
std::string_view ChannelsOf(const Job& job);

// Whether bands give the pixels of the whole; without pictures: for an input that lies as the output does, and a region
// that lies within the output.
bool BandsServe(const Job& job, const FramePictures& pictures);
bool BandsServe(const Job& job);

// Whether bands are rendered into a picture of their own.
bool BandsAreApart(const Job& job);

// The rows of a band: all rows unless the picture is large.
std::int32_t BandRows(std::int64_t pictureBytes, std::int32_t height);

// The job's `Blur` at a time.
double BlurAt(const Job& job, double time);

// The most rows of a band at a time, where bands serve, and how far the filter reads around it; no reach for a picture
// that is rendered at once.
struct BandSize {
  std::int64_t rows = 0;
  std::int64_t reach = 0;
};
BandSize MostOfBand(const Job& job, double time, std::int64_t pictureBytes, std::int64_t height);

// As HostedEffect::RenderFrame, in bands from the lowest up: the first of `rows` rows, the others of more where the
// filter reaches far. Ends at the first result that is not 0, and when `afterBand`, called after each, returns false.
// `region` is the frame's, as the effect counts it. With as many rows as the output has, or where bands do not serve,
// renders it at once; otherwise leaves the effect with the region of the last band.
HRESULT RenderInBands(HostedEffect& effect, const Job& job, const FramePictures& pictures, IDSEffectHost& host,
                      double time, std::int32_t field, const std::optional<Region>& region, std::int32_t rows,
                      const std::function<bool()>& afterBand);

// Called around each band of a frame that is rendered while its input is read and its output written.
struct BandSteps {
  // Before a band: returns when the input's rows from `bottom` up are there.
  std::function<void(std::int32_t bottom)> before;
  // After it, and at the end: the output's rows from `bottom` up are complete. False ends the frame.
  std::function<bool(std::int32_t bottom)> after;
};

// Whether a job's frames can be rendered so: each row of the output comes from rows of the first input near it.
bool BandsFollowInput(const Job& job);

// As RenderInBands, of frames, for jobs whose bands follow the input: from the highest band down. A low picture, one
// whose filter reaches far, and one that lies otherwise than its input is rendered when all of the input is there.
HRESULT RenderDownward(HostedEffect& effect, const Job& job, const FramePictures& pictures, IDSEffectHost& host,
                       double time, const BandSteps& steps);

}  // namespace vblur::host
