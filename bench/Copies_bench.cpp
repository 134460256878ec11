// The lower bound: plain copies of a picture's bytes on the same thread pool, compared with the copying and filling
// processors.
#include <algorithm>
#include <string>
#include <utility>

#include "bench/Pictures.h"
#include "image/HvCpu.h"
#include "image/HvImgFiller.h"
#include "image/HvRGBCopySampler.h"
#include "image/SimpleCopySampler.h"

namespace vblur::bench {

namespace {

// The memory traffic of a two-pass filter: read the source, write and read an intermediate, write a result.
template <class Pixel>
void fourCopies(benchmark::State& state, std::int32_t threads, const Size& size) {
  useThreads(threads);
  Pictures<Pixel>& all = pictures<Pixel>(size);
  clear(all.result);
  SimpleCopySampler<Pixel, FilterAccum<Pixel>> copy;
  for (auto _ : state) {
    copy.process(&all.source, &all.between);
    copy.process(&all.between, &all.result);
  }
  if (hashOf(all.result) != hashOf(all.source)) state.SkipWithError("a wrong copy");
}

// The memory traffic of a mix in place: read two pictures, write one.
template <class Pixel>
void copySourceAndResult(benchmark::State& state, const Size& size) {
  useThreads(1);
  Pictures<Pixel>& all = pictures<Pixel>(size);
  static typename Pictures<Pixel>::Texture target(size.width, size.height);
  clear(target);
  SimpleCopySampler<Pixel, FilterAccum<Pixel>> copy;
  for (auto _ : state) {
    copy.process(&all.source, &all.between);
    copy.process(&all.result, &target);
  }
  if (hashOf(all.between) != hashOf(all.source) || hashOf(target) != hashOf(all.result)) {
    state.SkipWithError("a wrong copy");
  }
}

enum class RowForm { Copy, Mirror, CopyRgb, MirrorRgb, Fill, Blank, Clear };

constexpr std::pair<RowForm, const char*> kRowForms[] = {
    {RowForm::Copy, "copy"},           {RowForm::Mirror, "mirrored"},
    {RowForm::CopyRgb, "copy of RGB"}, {RowForm::MirrorRgb, "mirrored RGB"},
    {RowForm::Fill, "fill"},           {RowForm::Blank, "fill outside"},
    {RowForm::Clear, "clear"},
};

// One picture into another: one read, one write.
template <class Pixel>
void copyPicture(HvTexture<Pixel, Rf>& from, HvTexture<Pixel, Rf>& to, RowForm form) {
  const bool mirrored = form == RowForm::Mirror || form == RowForm::MirrorRgb;
  // Shifted by its width, so that the target reads its reflection.
  from.setOrigin(mirrored ? from.width() : 0, 0);
  HvRGBCopySampler<Pixel, Rf> copy;
  copy.channels = form == RowForm::CopyRgb || form == RowForm::MirrorRgb ? 7 : 15;
  copy.process(&from, &to);
}

template <class Pixel>
void fillPicture(HvTexture<Pixel, Rf>& picture, RowForm form) {
  HvImgFiller<Pixel, Rf> filler;
  filler.colourIsZero = form == RowForm::Clear;
  filler.colour = Pixel{{10, 20, 30, 40}};
  // With fillOutside every row is filled; otherwise rows are copies of the first.
  filler.fillOutside = form == RowForm::Blank;
  filler.left = filler.right = picture.width() / 2;
  filler.top = picture.height();
  filler.process(&picture);
}

template <class Pixel>
void moveRows(benchmark::State& state, RowForm form, const std::string& level, const std::string& picture) {
  useThreads(1);
  Pictures<Pixel>& all = pictures<Pixel>(Size());
  HvTexture<Pixel, Rf> source;
  HvTexture<Pixel, Rf> result;
  source.share(all.source);
  result.share(all.result);
  const auto render = [&] {
    if (form >= RowForm::Fill) {
      fillPicture(result, form);
    } else {
      copyPicture(source, result, form);
    }
  };
  const std::uint64_t expected = hashByTwin(picture, result, render);
  HvSetCpuLevel(level);
  clear(result);
  for (auto _ : state)
    render();
  HvSetCpuLevel("native");
  if (hashOf(result) != expected) state.SkipWithError("the picture differs from the twin's");
}

template <class Pixel>
void addRowCases() {
  for (const auto& [form, name] : kRowForms) {
    for (const char* level : {"twin", "AVX2", "native"}) {
      const auto& levels = HvCpuLevels();
      if (std::find(levels.begin(), levels.end(), level) == levels.end()) continue;
      CaseName picture("rows");
      picture.with("depth", 8 * static_cast<std::int32_t>(sizeof(ComponentOf<Pixel>))).with("way", name).with(Size());
      CaseName row = picture;
      row.with("threads", 1).with("level", level);
      addCase(row, [=, way = form, text = picture.text()](benchmark::State& state) {
        moveRows<Pixel>(state, way, level, text);
      });
    }
  }
}

template <class Pixel>
void addFourCopies(const Plan& plan) {
  const std::int32_t depth = 8 * static_cast<std::int32_t>(sizeof(ComponentOf<Pixel>));
  for (const Size& size : plan.sizes()) {
    for (const std::int32_t threads : {1, 2}) {
      addCase(CaseName("copies").with("depth", depth).with("threads", threads).with(size),
              [=](benchmark::State& state) { fourCopies<Pixel>(state, threads, size); });
    }
  }
}

template <class Pixel>
void addWholeCopies(const Plan& plan) {
  const std::int32_t depth = 8 * static_cast<std::int32_t>(sizeof(ComponentOf<Pixel>));
  addFourCopies<Pixel>(plan);
  addCase(CaseName("copyboth").with("depth", depth).with("threads", 1).with(Size()),
          [](benchmark::State& state) { copySourceAndResult<Pixel>(state, Size()); });
}

template <class Pixel>
void addCases(const Plan& plan) {
  addWholeCopies<Pixel>(plan);
  addRowCases<Pixel>();
}

}  // namespace

void addCopyCases(const Plan& plan) {
  addCases<R8>(plan);
  addCases<R16>(plan);
  addWholeCopies<Rf>(plan);
}

}  // namespace vblur::bench
