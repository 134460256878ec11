// FFmpeg's filters on the same pixels, given as planes: no conversion is measured.
extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
#include <libavutil/log.h>
#include <libavutil/pixdesc.h>
}

#include <cmath>
#include <memory>
#include <string>

#include "bench/Pictures.h"

namespace vblur::bench {

namespace {

template <class Pixel>
constexpr AVPixelFormat kFormat = sizeof(ComponentOf<Pixel>) == 1   ? AV_PIX_FMT_GBRAP
                                  : sizeof(ComponentOf<Pixel>) == 2 ? AV_PIX_FMT_GBRAP16
                                                                    : AV_PIX_FMT_GBRAPF32;

struct FreeFrame {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
using Frame = std::unique_ptr<AVFrame, FreeFrame>;

struct FreeGraph {
  void operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
};

template <class Component>
Component* rowOf(const AVFrame& frame, int plane, std::int32_t y) {
  return reinterpret_cast<Component*>(frame.data[plane] + static_cast<std::ptrdiff_t>(y) * frame.linesize[plane]);
}

// The source, once: green, blue, red and alpha.
template <class Pixel>
const AVFrame& planarSource(const Size& size) {
  using Component = ComponentOf<Pixel>;
  static const Frame frame = [&] {
    Frame made(av_frame_alloc());
    made->format = kFormat<Pixel>;
    made->width = size.width;
    made->height = size.height;
    if (av_frame_get_buffer(made.get(), 0) < 0) return Frame();
    constexpr int kPlanes[] = {1, 2, 0, 3};
    for (int plane = 0; plane < 4; ++plane) {
      for (std::int32_t y = 0; y < size.height; ++y) {
        for (std::int32_t x = 0; x < size.width; ++x)
          rowOf<Component>(*made, plane, y)[x] = (*pictures<Pixel>(size).source.at(x, y))[kPlanes[plane]];
      }
    }
    return made;
  }();
  return *frame;
}

class Chain {
 public:
  Chain(const AVFrame& source, const std::string& filters, std::int32_t threads) : graph_(avfilter_graph_alloc()) {
    graph_->nb_threads = threads;
    const std::string size = std::to_string(source.width) + "x" + std::to_string(source.height);
    const std::string text = "buffer@in=video_size=" + size +
                             ":pix_fmt=" + av_get_pix_fmt_name(static_cast<AVPixelFormat>(source.format)) +
                             ":time_base=1/25:pixel_aspect=1/1," + filters + ",buffersink@out";
    AVFilterInOut* inputs = nullptr;
    AVFilterInOut* outputs = nullptr;
    ready_ = avfilter_graph_parse2(graph_.get(), text.c_str(), &inputs, &outputs) >= 0 &&
             avfilter_graph_config(graph_.get(), nullptr) >= 0;
    avfilter_inout_free(&inputs);
    avfilter_inout_free(&outputs);
    if (!ready_) return;
    in_ = avfilter_graph_get_filter(graph_.get(), "buffer@in");
    out_ = avfilter_graph_get_filter(graph_.get(), "buffersink@out");
    ready_ = in_ != nullptr && out_ != nullptr;
  }

  bool isReady() const { return ready_; }

  // Null on failure.
  Frame filter(const AVFrame& source) {
    Frame in(av_frame_clone(&source));
    in->pts = time_++;
    if (av_buffersrc_add_frame(in_, in.get()) < 0) return {};
    Frame out(av_frame_alloc());
    if (av_buffersink_get_frame(out_, out.get()) < 0) return {};
    return out;
  }

 private:
  std::unique_ptr<AVFilterGraph, FreeGraph> graph_;
  AVFilterContext* in_ = nullptr;
  AVFilterContext* out_ = nullptr;
  std::int64_t time_ = 0;
  bool ready_ = false;
};

template <class Pixel>
void measure(benchmark::State& state, const std::string& filters, PeerShape shape, std::int32_t threads, float radius) {
  const Size size;
  const AVFrame& source = planarSource<Pixel>(size);
  likenessOfOurs<Pixel>(size, radius);
  Chain chain(source, filters, threads);
  if (!chain.isReady()) return state.SkipWithError("no such filters");
  Frame result;
  for (auto _ : state) {
    result.reset();
    result = chain.filter(source);
    if (result == nullptr) return state.SkipWithError("no picture");
  }
  if (result->format != source.format) return state.SkipWithError("another format");
  const auto green = [&](std::int32_t x, std::int32_t y) {
    return static_cast<double>(rowOf<ComponentOf<Pixel>>(*result, 0, y)[x]);
  };
  checkPeer<Pixel>(state, size, radius, shape, likenessOf(size, radius, green));
}

template <class Pixel>
void addCases(const Plan& plan) {
  for (const float radius : plan.peerRadii()) {
    const std::string whole = std::to_string(std::lround(radius));
    const std::string average = "avgblur=" + whole;
    const auto add = [&](const char* peer, PeerShape shape, const std::string& filters) {
      for (const std::int32_t threads : {1, 2}) {
        addCase(CaseName("peer")
                    .with("peer", peer)
                    .with("depth", 8 * static_cast<std::int32_t>(sizeof(ComponentOf<Pixel>)))
                    .with("radius", static_cast<double>(radius))
                    .with("threads", threads)
                    .with(Size()),
                [=](benchmark::State& state) { measure<Pixel>(state, filters, shape, threads, radius); });
      }
    };
    // The default of one recursive step per axis, which is the fastest: a two-sided exponential.
    add("FFmpeg gblur", PeerShape::HeavyTails, "gblur=sigma=" + std::to_string(sigmaOfRadius(radius)));
    // The others have no floats.
    if (radius < 1.0f || !Pixel::kIntegral) continue;
    add("FFmpeg boxblur", PeerShape::Gaussian, "boxblur=luma_radius=" + whole + ":luma_power=3");
    add("FFmpeg 3 x avgblur", PeerShape::Gaussian, average + "," + average + "," + average);
  }
}

}  // namespace

void addLibavfilterCases(const Plan& plan) {
  av_log_set_level(AV_LOG_ERROR);
  benchmark::AddCustomContext("libavfilter",
                              std::to_string(avfilter_version() >> 16) + " of FFmpeg " + av_version_info());
  addCases<R8>(plan);
  addCases<R16>(plan);
  addCases<Rf>(plan);
}

}  // namespace vblur::bench
