// Fuzzer of the overlay and the property pages: random actions of user and host on pens, pages, properties, curves,
// times, histories, viewers, effects, tools and widgets, in any order. Checks only that nothing crashes and that
// nothing is left at the end; run it under the address and undefined behaviour sanitizers.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "effect/Blur.h"
#include "host/viewer/Viewer.h"
#include "overlay/HvT2DAxisGroup.h"
#include "platform/ComPtr.h"
#include "tests/fuzz/LinkedServer.h"
#include "tests/fuzz/OddNumber.h"
#include "tests/fuzz/PageFuzz.h"
#include "tests/support/Random.h"

namespace vblur::test {

class OverlayFuzz {
 public:
  explicit OverlayFuzz(std::uint64_t seed);
  ~OverlayFuzz();
  OverlayFuzz(const OverlayFuzz&) = delete;
  OverlayFuzz& operator=(const OverlayFuzz&) = delete;

  void Step();

  // Count per action.
  const std::map<std::string, std::int64_t>& counts() const { return counts_; }

 private:
  struct Action;

  static constexpr std::size_t kEffects = 3;
  static constexpr std::size_t kViewers = 2;
  static constexpr std::size_t kWidgets = 12;

  int Roll(int below) { return random_.within(0, below - 1); }
  bool Chance(int in) { return random_.oneIn(in); }
  double Between(float low, float high) { return static_cast<double>(random_.between(low, high)); }
  double Number() { return OddNumber(random_); }
  // Usually near a ring, a line or a handle, sometimes anywhere.
  HvPoint Place();
  tagVWPENEVENT Pen();
  // Kept: what it is told of may close the last page over it.
  ComPtr<HvTInteract> SomeTool();
  Blur* SomeEffect() { return effects_[static_cast<std::size_t>(Roll(kEffects))].get(); }
  host::Viewer& SomeViewer() { return *viewers_[static_cast<std::size_t>(Roll(kViewers))]; }

  void MakeEffect();
  void DropEffect();
  void CloneEffect();
  void DropViewer();
  void Edit();
  void OpenPage();
  void ClosePage();
  void ShowPage();
  void HideControls();
  void PenOnViewer();
  void PenOnTool();
  void NestedPen();
  void PutValue();
  void PutCurve();
  void Notify();
  void ChangeTime();
  void MoveSource();
  void Paint();
  void KeepTool();
  void LinkTool();
  void MakeWidget();
  void DropWidget();
  void MoveWidget();
  void UsePages();

  LinkedServer server_;
  Random random_;
  std::array<ComPtr<host::Viewer>, kViewers> viewers_;
  std::array<ComPtr<Blur>, kEffects> effects_;
  // Keep tools alive beyond their effects.
  std::array<ComPtr<HvTInteract>, 2> kept_;
  std::array<std::unique_ptr<HvTObject>, kWidgets> widgets_;
  std::unique_ptr<PageFuzz> pages_;
  std::map<std::string, std::int64_t> counts_;
};

}  // namespace vblur::test
