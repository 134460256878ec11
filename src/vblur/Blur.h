// Blurs and sharpens pictures in memory, in one call. The bits are those of the effect V_Blur for the same settings
// without mix-back, whatever the machine and the number of threads; the time does not grow with the size of the blur.
// C99 and, below it, C++17; link libvblur (CMake: find_package(VBlur), VBlur::vblur).
//
//   #include <vblur/Blur.h>
//
//   vblur::Settings settings;
//   settings.sizeX = settings.sizeY = 12.0;  // pixels
//   const vblur::Result done = vblur::blur({before, vblur::Format::RGBA8, width, height},
//                                          {after, vblur::Format::RGBA8, width, height}, settings);
//   if (!done) std::puts(done.message.c_str());
//
// Installed as vblur/Blur.h and as vblur/blur.h. On a file system that ignores case the two are one file, so both hold
// both languages; the guard below lets one source include both.
#ifndef VBLUR_BLUR_H
#define VBLUR_BLUR_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#if __cplusplus < 201703L && (!defined(_MSVC_LANG) || _MSVC_LANG < 201703L)
#error "vblur/Blur.h needs C++17 or later"
#endif
extern "C" {
#endif

// What a call returns. A call that refuses its arguments writes nothing; one that is interrupted or runs out of memory
// leaves the result partly written.
enum { VBLUR_DONE = 0, VBLUR_WRONG_ARGUMENT = 1, VBLUR_NO_MEMORY = 2, VBLUR_INTERRUPTED = 3 };

// Four components each, in the order red, green, blue, alpha. S2_14 are int16_t in which 16384 is 1.0; they range from
// -2.0 to just under 2.0. F32 are floats in which 1.0 is full; those that are filtered count from -65504 to 65504, the
// largest half: infinities and what lies beyond count as these, a NaN as 0. Results are not limited. Alpha is a
// component like the others: it is neither multiplied in nor divided out.
enum { VBLUR_RGBA_8 = 0, VBLUR_RGBA_S2_14 = 1, VBLUR_RGBA_F32 = 2 };

// What is filtered; the other components of the result are the source's. GREY is red, filtered and copied to all three
// colours. LUMINANCE to V convert the colours to YUV and back, which loses their lowest bit, but not that of floats.
enum {
  VBLUR_RGB = 0,
  VBLUR_RGBA = 1,
  VBLUR_GREY = 2,
  VBLUR_RED = 3,
  VBLUR_GREEN = 4,
  VBLUR_BLUE = 5,
  VBLUR_ALPHA = 6,
  VBLUR_LUMINANCE = 7,
  VBLUR_CHROMA = 8,
  VBLUR_U = 9,
  VBLUR_V = 10
};

// What the filter reads beyond an edge of the source: the outside colour, the pixel at the edge, the picture mirrored
// (the pixel at the edge counts twice), the picture tiled.
enum { VBLUR_EDGE_COLOUR = 0, VBLUR_EDGE_REPEAT = 1, VBLUR_EDGE_REFLECT = 2, VBLUR_EDGE_WRAP = 3 };

// A picture in the caller's memory. The library keeps no pointer to it after a call.
typedef struct vblur_picture {
  void* pixels;    // row 0; of a source it is only read; on a multiple of the bytes of a component
  int32_t format;  // VBLUR_RGBA_8 to VBLUR_RGBA_F32, the same for source and result
  int32_t width;   // pixels, 1 to 16777216
  int32_t height;  // rows, 1 to 16777216
  // Bytes from a row to the next. Below 0 when row 0 is the last in memory; 0: rows follow each other without a gap.
  ptrdiff_t stride;
} vblur_picture;

// The settings of a call. vblur_settings_init sets the defaults. Later versions add fields at the end; struct_size is
// the size of the caller's struct: fields beyond it have their defaults, so a binding may declare the first few only.
typedef struct vblur_settings {
  uint32_t struct_size;
  int32_t channels;  // VBLUR_RGBA
  // The size of the blur along each axis, in pixels, 0 or more: 10. The result is close to a Gaussian with a standard
  // deviation of a little over a third of it. Fractions count; 0 on both axes copies. Clamped to nine times the longer
  // side of the picture.
  double size_x;
  double size_y;
  int32_t edge_x;      // VBLUR_EDGE_REFLECT
  int32_t edge_y;      // VBLUR_EDGE_REFLECT
  int32_t outside[4];  // for VBLUR_EDGE_COLOUR, in the scale of the components: 0, 0, 0, 0; not of VBLUR_RGBA_F32
  // Non-zero: only this part of the result is computed, from all of the source. It must lie in the picture.
  // With VBLUR_RGB and VBLUR_LUMINANCE to VBLUR_V alpha is copied outside of it as well.
  int32_t has_region;
  int32_t region_x;
  int32_t region_y;
  int32_t region_width;
  int32_t region_height;
  // Non-zero: the call runs on its own thread only, concurrently with calls on other threads. 0: it uses the
  // library's threads, one call after the other.
  int32_t on_this_thread;
  // Called about once per row, by several threads at once; a non-zero result ends the call. NULL: none. It must
  // neither throw nor call vblur_set_threads.
  int32_t (*interrupt)(void* context);
  void* interrupt_context;
  float outside_f32[4];  // as `outside`, of VBLUR_RGBA_F32: 0, 0, 0, 0
} vblur_settings;

// Fills the first struct_size bytes, which is sizeof(vblur_settings) or less, with the defaults named above.
void vblur_settings_init(vblur_settings* settings, size_t struct_size);

// Thread-safe for results that share no pixel (nor alpha, see region). Source and result have one size and one format.
// To blur in place, give the same picture twice; sharpening, and VBLUR_GREY, need a separate result. Otherwise the two
// may be in one memory if they share no pixel and have the same stride, or strides that differ in sign only. Returns
// one of the codes above.
int32_t vblur_blur(const vblur_picture* source, const vblur_picture* result, const vblur_settings* settings);
// Unsharp masking: twice the source less the blurred source, clamped to the range of the format; floats are not
// clamped. It doubles the loss of a conversion to YUV too.
int32_t vblur_sharpen(const vblur_picture* source, const vblur_picture* result, const vblur_settings* settings);

// The error of this thread's last call: what was wrong, where, and what was expected. Empty after a success; never
// null. Valid until the thread's next call.
const char* vblur_last_error(void);

// How many threads a call uses, 1 to 1024; 0, as at first, means as many as the machine has processors. For the whole
// process; waits for calls in progress. The pixels do not depend on it. A process that forks after a call has no
// threads in the child: set on_this_thread there.
int32_t vblur_set_threads(int32_t count);

// "major.minor.patch"
const char* vblur_version(void);

#ifdef __cplusplus
}  // extern "C"

#include <array>
#include <functional>
#include <optional>
#include <string>

// The same in C++, compiled into the caller: no type of the standard library is part of the library's ABI.
namespace vblur {

enum class Code : std::int32_t {
  Done = VBLUR_DONE,
  WrongArgument = VBLUR_WRONG_ARGUMENT,
  NoMemory = VBLUR_NO_MEMORY,
  Interrupted = VBLUR_INTERRUPTED,
};

enum class Format : std::int32_t { RGBA8 = VBLUR_RGBA_8, RGBAS2_14 = VBLUR_RGBA_S2_14, RGBAF32 = VBLUR_RGBA_F32 };

enum class Channels : std::int32_t {
  RGB = VBLUR_RGB,
  RGBA = VBLUR_RGBA,
  Grey = VBLUR_GREY,
  Red = VBLUR_RED,
  Green = VBLUR_GREEN,
  Blue = VBLUR_BLUE,
  Alpha = VBLUR_ALPHA,
  Luminance = VBLUR_LUMINANCE,
  Chroma = VBLUR_CHROMA,
  U = VBLUR_U,
  V = VBLUR_V,
};

enum class Edge : std::int32_t {
  Colour = VBLUR_EDGE_COLOUR,
  Repeat = VBLUR_EDGE_REPEAT,
  Reflect = VBLUR_EDGE_REFLECT,
  Wrap = VBLUR_EDGE_WRAP,
};

// As vblur_picture.
struct Picture {
  void* pixels = nullptr;
  Format format = Format::RGBA8;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::ptrdiff_t stride = 0;
};

struct ConstPicture {
  const void* pixels = nullptr;
  Format format = Format::RGBA8;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::ptrdiff_t stride = 0;
};

struct Region {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

// As vblur_settings.
struct Settings {
  double sizeX = 10.0;
  double sizeY = 10.0;
  Channels channels = Channels::RGBA;
  Edge edgeX = Edge::Reflect;
  Edge edgeY = Edge::Reflect;
  std::array<std::int32_t, 4> outside{};
  std::optional<Region> region;
  bool onThisThread = false;
  // True ends the call. Called by several threads at once.
  std::function<bool()> interrupt;
  std::array<float, 4> outsideF32{};
};

struct [[nodiscard]] Result {
  Code code = Code::Done;
  std::string message;  // as vblur_last_error

  explicit operator bool() const { return code == Code::Done; }
};

namespace detail {

using Call = std::int32_t (*)(const vblur_picture*, const vblur_picture*, const vblur_settings*);

inline vblur_settings plainSettings(const Settings& settings) {
  vblur_settings plain;
  vblur_settings_init(&plain, sizeof(plain));
  plain.channels = static_cast<std::int32_t>(settings.channels);
  plain.size_x = settings.sizeX;
  plain.size_y = settings.sizeY;
  plain.edge_x = static_cast<std::int32_t>(settings.edgeX);
  plain.edge_y = static_cast<std::int32_t>(settings.edgeY);
  for (std::size_t i = 0; i < settings.outside.size(); ++i)
    plain.outside[i] = settings.outside[i];
  for (std::size_t i = 0; i < settings.outsideF32.size(); ++i)
    plain.outside_f32[i] = settings.outsideF32[i];
  if (settings.region) {
    plain.has_region = 1;
    plain.region_x = settings.region->x;
    plain.region_y = settings.region->y;
    plain.region_width = settings.region->width;
    plain.region_height = settings.region->height;
  }
  plain.on_this_thread = settings.onThisThread ? 1 : 0;
  if (settings.interrupt) {
    plain.interrupt_context = const_cast<std::function<bool()>*>(&settings.interrupt);
    plain.interrupt = [](void* context) noexcept -> std::int32_t {
      return (*static_cast<const std::function<bool()>*>(context))() ? 1 : 0;
    };
  }
  return plain;
}

inline Result run(Call call, const ConstPicture& source, const Picture& result, const Settings& settings) {
  const vblur_picture from{const_cast<void*>(source.pixels), static_cast<std::int32_t>(source.format), source.width,
                           source.height, source.stride};
  const vblur_picture to{result.pixels, static_cast<std::int32_t>(result.format), result.width, result.height,
                         result.stride};
  const vblur_settings plain = plainSettings(settings);
  const auto code = static_cast<Code>(call(&from, &to, &plain));
  return {code, code == Code::Done ? std::string() : std::string(vblur_last_error())};
}

}  // namespace detail

inline Result blur(const ConstPicture& source, const Picture& result, const Settings& settings = {}) {
  return detail::run(&vblur_blur, source, result, settings);
}

inline Result sharpen(const ConstPicture& source, const Picture& result, const Settings& settings = {}) {
  return detail::run(&vblur_sharpen, source, result, settings);
}

inline Result setThreads(std::int32_t count) {
  const auto code = static_cast<Code>(vblur_set_threads(count));
  return {code, code == Code::Done ? std::string() : std::string(vblur_last_error())};
}

}  // namespace vblur

#endif  // __cplusplus
#endif  // VBLUR_BLUR_H
