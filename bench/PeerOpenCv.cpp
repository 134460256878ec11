// OpenCV on the same pixels: a Gaussian of equal sigma for the smallest sizes, three box filters for the others.
#include <algorithm>
#include <cmath>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/Pictures.h"

namespace vblur::bench {

namespace {

template <class Pixel>
cv::Mat matOf(const typename Pictures<Pixel>::Texture& texture) {
  constexpr std::size_t kBytes = sizeof(ComponentOf<Pixel>);
  const int type = kBytes == 1 ? CV_8UC4 : kBytes == 2 ? CV_16SC4 : CV_32FC4;
  return cv::Mat(texture.height(), texture.width(), type, texture.data, static_cast<std::size_t>(texture.stride));
}

template <class Pixel, class Filter>
void measure(benchmark::State& state, std::int32_t threads, float radius, const Filter& filter) {
  const Size size;
  Pictures<Pixel>& all = pictures<Pixel>(size);
  const cv::Mat source = matOf<Pixel>(all.source);
  cv::Mat between = matOf<Pixel>(all.between);
  cv::Mat result = matOf<Pixel>(all.result);
  likenessOfOurs<Pixel>(size, radius);
  clear(all.result);
  cv::setNumThreads(threads);
  for (auto _ : state)
    filter(source, between, result);
  cv::setNumThreads(1);
  const auto green = [&](std::int32_t x, std::int32_t y) { return static_cast<double>(all.result.at(x, y)->green); };
  checkPeer<Pixel>(state, size, radius, PeerShape::Gaussian, likenessOf(size, radius, green));
}

template <class Pixel>
void gaussian(benchmark::State& state, std::int32_t threads, float radius) {
  const double sigma = sigmaOfRadius(radius);
  measure<Pixel>(state, threads, radius, [&](const cv::Mat& source, cv::Mat&, cv::Mat& result) {
    cv::GaussianBlur(source, result, cv::Size(0, 0), sigma, sigma, cv::BORDER_REFLECT);
  });
}

// Boxes of a whole radius: the nearest.
template <class Pixel>
void threeBoxes(benchmark::State& state, std::int32_t threads, float radius) {
  const int taps = 2 * static_cast<int>(std::lround(radius)) + 1;
  measure<Pixel>(state, threads, radius, [&](const cv::Mat& source, cv::Mat& between, cv::Mat& result) {
    const auto box = [&](const cv::Mat& from, cv::Mat& to) {
      cv::boxFilter(from, to, -1, cv::Size(taps, taps), cv::Point(-1, -1), true, cv::BORDER_REFLECT);
    };
    box(source, result);
    box(result, between);
    box(between, result);
  });
}

template <class Pixel>
void addCases(const Plan& plan) {
  constexpr float kLargestGaussian = 10.0f;
  for (const float radius : plan.peerRadii()) {
    for (const std::int32_t threads : {1, 2}) {
      const auto name = [&](const char* filter) {
        return CaseName("peer")
            .with("peer", filter)
            .with("depth", 8 * static_cast<std::int32_t>(sizeof(ComponentOf<Pixel>)))
            .with("radius", static_cast<double>(radius))
            .with("threads", threads)
            .with(Size());
      };
      if (radius <= kLargestGaussian) {
        addCase(name("OpenCV GaussianBlur"), [=](benchmark::State& state) { gaussian<Pixel>(state, threads, radius); });
      }
      if (radius >= 1.0f) {
        addCase(name("OpenCV 3 x boxFilter"),
                [=](benchmark::State& state) { threeBoxes<Pixel>(state, threads, radius); });
      }
    }
  }
}

}  // namespace

void addOpenCvCases(const Plan& plan) {
  benchmark::AddCustomContext("OpenCV", cv::getVersionString());
  addCases<R8>(plan);
  addCases<R16>(plan);
  addCases<Rf>(plan);
}

}  // namespace vblur::bench
