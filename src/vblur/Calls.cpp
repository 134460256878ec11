// The functions that the library exports.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <string>
#include <type_traits>

#include "blur/FuzzChannels.h"
#include "blur/FuzzSampler.h"
#include "image/HvThreads.h"
#include "vblur/CallCheck.h"

namespace vblur {
namespace {

// A fixed buffer: reporting an error allocates nothing.
thread_local char lastError[512] = "";

std::int32_t refuse(std::int32_t code, const char* message) {
  std::snprintf(lastError, sizeof(lastError), "%s", message);
  return code;
}

std::int32_t done() {
  lastError[0] = '\0';
  return VBLUR_DONE;
}

// Calls hold it shared; vblur_set_threads takes it exclusively.
std::shared_mutex& threadsMutex() {
  static std::shared_mutex mutex;
  return mutex;
}

// The interrupt reason.
constexpr std::int32_t kAsked = 10000;

// What the filter of a format sums in.
template <class Pixel>
using AccumOf = std::conditional_t<Pixel::kIntegral, Ri, Rf>;

template <class Pixel>
void wrap(HvTexture<Pixel, AccumOf<Pixel>>& texture, const vblur_picture& picture) {
  texture.wrap(picture.width, picture.height, picture.pixels);
  texture.stride = strideOf(picture);
}

template <class Pixel>
Pixel outsideOf(const vblur_settings& settings) {
  Pixel pixel{};
  for (int c = 0; c < Pixel::kComponents; ++c) {
    if constexpr (Pixel::kIntegral) {
      pixel[c] = static_cast<typename Pixel::Component>(settings.outside[c]);
    } else {
      pixel[c] = settings.outside_f32[c];
    }
  }
  return pixel;
}

// The radius of one box. A size beyond the filter's limit is the limit, before anything else is computed from it.
float radiusOf(double size, const vblur_picture& picture) {
  const auto longer = static_cast<float>(std::max(picture.width, picture.height));
  return std::min(static_cast<float>(std::min(size, 1e9)) / 3.0f, longer * 3.0f);
}

template <class Pixel>
void filter(const vblur_picture& from, const vblur_picture& to, const vblur_settings& settings, FuzzMethod method,
            HvInterruptRecord& record) {
  HvTexture<Pixel, AccumOf<Pixel>> source;
  HvTexture<Pixel, AccumOf<Pixel>> result;
  wrap<Pixel>(source, from);
  wrap<Pixel>(result, to);
  source.setEdgeMethods(settings.edge_x, settings.edge_y);
  source.setOutsideColour(outsideOf<Pixel>(settings));

  FuzzSampler<Pixel, AccumOf<Pixel>, Pixel::kMax> sampler;
  sampler.method = method;
  sampler.mode = fuzzModeOf(settings.channels);
  sampler.sizeX = radiusOf(settings.size_x, to);
  sampler.sizeY = radiusOf(settings.size_y, to);
  sampler.interrupt = &record;
  if (settings.on_this_thread != 0) sampler.flags |= Imager::kOneThread;
  if (settings.has_region != 0) {
    sampler.setWindow(settings.region_x, settings.region_y, settings.region_x + settings.region_width - 1,
                      settings.region_y + settings.region_height - 1);
  }
  sampler.process(&source, &result);
}

std::int32_t ask(void* context, HvStateWord* state) {
  const auto& settings = *static_cast<const vblur_settings*>(context);
  if (settings.interrupt(settings.interrupt_context) == 0) return 0;
  *state = kAsked;
  return 1;
}

std::int32_t call(const vblur_picture* source, const vblur_picture* result, const vblur_settings* given,
                  FuzzMethod method) {
  vblur_settings settings{};
  std::string wrong = readSettings(given, settings);
  // Both write to the result before they have read all of the source.
  const bool mayBeInPlace = method == kFuzzBlur && settings.channels != VBLUR_GREY;
  if (wrong.empty()) wrong = checkPictures(source, result, mayBeInPlace);
  if (wrong.empty()) wrong = checkSettings(settings, *result);
  if (!wrong.empty()) return refuse(VBLUR_WRONG_ARGUMENT, wrong.c_str());

  HvInterruptRecord record;
  if (settings.interrupt != nullptr) record.arm(&settings, &ask);
  const std::shared_lock lock(threadsMutex());
  if (source->format == VBLUR_RGBA_8) {
    filter<R8>(*source, *result, settings, method, record);
  } else if (source->format == VBLUR_RGBA_S2_14) {
    filter<R16>(*source, *result, settings, method, record);
  } else {
    filter<Rf>(*source, *result, settings, method, record);
  }
  if (record.interrupted == 0) return done();
  if (record.state == HvInterruptRecord::kOutOfMemoryReason) throw std::bad_alloc();
  return refuse(VBLUR_INTERRUPTED, "interrupted: settings.interrupt asked for it");
}

// No exception leaves the library: the caller may be C.
std::int32_t guarded(const vblur_picture* source, const vblur_picture* result, const vblur_settings* settings,
                     FuzzMethod method) noexcept {
  try {
    return call(source, result, settings, method);
  } catch (const std::bad_alloc&) {
    return refuse(VBLUR_NO_MEMORY, "no memory for the picture between the passes: expected about the source's size");
  }
}

}  // namespace
}  // namespace vblur

extern "C" {

void vblur_settings_init(vblur_settings* settings, size_t struct_size) {
  vblur_settings all{};
  all.struct_size = static_cast<std::uint32_t>(struct_size < sizeof(all) ? struct_size : sizeof(all));
  all.channels = VBLUR_RGBA;
  all.size_x = 10.0;
  all.size_y = 10.0;
  all.edge_x = VBLUR_EDGE_REFLECT;
  all.edge_y = VBLUR_EDGE_REFLECT;
  if (settings != nullptr) std::memcpy(settings, &all, all.struct_size);
}

int32_t vblur_blur(const vblur_picture* source, const vblur_picture* result, const vblur_settings* settings) {
  return vblur::guarded(source, result, settings, vblur::kFuzzBlur);
}

int32_t vblur_sharpen(const vblur_picture* source, const vblur_picture* result, const vblur_settings* settings) {
  return vblur::guarded(source, result, settings, vblur::kFuzzSharpen);
}

const char* vblur_last_error(void) {
  return vblur::lastError;
}

int32_t vblur_set_threads(int32_t count) {
  if (count < 0 || count > vblur::kMostThreads) {
    return vblur::refuse(VBLUR_WRONG_ARGUMENT, ("threads: " + std::to_string(count) + ": expected 0 to 1024").c_str());
  }
  const std::unique_lock lock(vblur::threadsMutex());
  vblur::HvSetThreadCount(count);
  return vblur::done();
}

const char* vblur_version(void) {
  return VBLUR_VERSION;
}

}  // extern "C"
