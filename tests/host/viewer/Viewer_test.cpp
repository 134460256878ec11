#include "host/viewer/Viewer.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/support/host/RecordingTool.h"

namespace vblur::host {
namespace {

using Calls = std::vector<std::string>;

IUnknown* AsLayer(const ComPtr<RecordingTool>& tool) {
  return static_cast<IViewerLayer*>(tool.get());
}

std::uintptr_t Push(const ComPtr<Viewer>& viewer, IViewerLayer* tool) {
  std::uintptr_t context = 0;
  EXPECT_EQ(VWControllerPushContext(kVWInteractiveContext, tool, viewer.get(), false, false, 0.0, &context), kOk);
  EXPECT_NE(context, 0u);
  return context;
}

tagVWPENEVENT Pen(double x, double y, std::int32_t button = 1) {
  return {button, x, y};
}

TEST(Viewer, LinksAToolToTheViewerFirstAndUnlinksItTheOtherWayRound) {
  const auto viewer = Viewer::Make();
  const auto edited = MakeEdited();
  const auto tool = MakeTool();
  edited->PutCurve(Edited::kSize, {{{0.0, 10.0}, {10.0, 20.0}}});
  tool->readFirst = Edited::kSize;
  viewer->SetTime(4.0);
  viewer->Edit(edited.get());
  const std::uintptr_t context = Push(viewer, tool.get());
  EXPECT_EQ(tool->Taken(), (Calls{"tool: link viewer", "tool: link operator"}));
  EXPECT_EQ(tool->readAtLink, 14.0) << "a binding reads at the viewer's time as soon as it is linked";
  EXPECT_EQ(tool->Window(), viewer->Window());
  EXPECT_EQ(viewer->ToolCount(), 1u);
  EXPECT_EQ(VWControllerRemoveContext(context), kOk);
  EXPECT_EQ(tool->Taken(), (Calls{"tool: unlink operator", "tool: unlink viewer"}));
  EXPECT_EQ(tool->Window(), nullptr);
  EXPECT_EQ(VWControllerRemoveContext(context), kWrongArgument);
  EXPECT_EQ(viewer->ToolCount(), 0u);
  edited->PutValue(Edited::kAspect, DSVariant::Of(1.0));
  EXPECT_EQ(tool->Taken(), Calls{});
  viewer->Edit(nullptr);
}

TEST(Viewer, KeepsNoToolThatCannotBeLinked) {
  const auto viewer = Viewer::Make();
  const auto edited = MakeEdited();
  viewer->Edit(edited.get());
  std::uintptr_t context = 7;
  const auto push = [&](IUnknown* tool, std::int32_t kind = kVWInteractiveContext) {
    return VWControllerPushContext(kind, tool, viewer.get(), false, false, 0.0, &context);
  };
  const auto tool = MakeTool();
  tool->failingViewer = true;
  EXPECT_EQ(push(AsLayer(tool)), kFailed);
  EXPECT_EQ(tool->Taken(), (Calls{"tool: link viewer"}));
  EXPECT_EQ(context, 0u);
  tool->failingViewer = false;
  tool->failingOperator = true;
  EXPECT_EQ(push(AsLayer(tool)), kFailed);
  EXPECT_EQ(tool->Taken(), (Calls{"tool: link viewer", "tool: link operator", "tool: unlink viewer"}));
  EXPECT_EQ(push(AsLayer(tool), 18), kWrongArgument);
  EXPECT_EQ(push(edited.get()), kNoInterface);
  EXPECT_EQ(push(nullptr), kNullPointer);
  EXPECT_EQ(VWControllerPushContext(19, AsLayer(tool), nullptr, false, false, 0.0, &context), kNullPointer);
  EXPECT_EQ(VWControllerPushContext(19, AsLayer(tool), viewer.get(), false, false, 0.0, nullptr), kNullPointer);
  const auto unshown = MakeEdited();
  EXPECT_EQ(VWControllerPushContext(19, AsLayer(tool), unshown.get(), false, false, 0.0, &context), kNoInterface);
  EXPECT_EQ(VWControllerRemoveContext(0), kWrongArgument);
  EXPECT_EQ(viewer->RemoveContext(0), kWrongArgument);
  EXPECT_EQ(viewer->ToolCount(), 0u);
}

TEST(Viewer, TakesAToolOverTheObjectThatItShows) {
  const auto viewer = Viewer::Make();
  const auto edited = MakeEdited();
  const auto tool = MakeTool();
  std::uintptr_t context = 0;
  const auto push = [&] {
    return VWControllerPushContext(kVWInteractiveContext, AsLayer(tool), edited.get(), false, false, 0.0, &context);
  };
  EXPECT_EQ(push(), kNoInterface);
  viewer->Edit(edited.get());
  EXPECT_EQ(push(), kOk);
  EXPECT_EQ(viewer->ToolCount(), 1u);
  EXPECT_EQ(VWControllerRemoveContext(context), kOk);
  {
    const auto later = Viewer::Make();
    later->Edit(edited.get());
    EXPECT_EQ(push(), kOk);
    EXPECT_EQ(later->ToolCount(), 1u) << "the viewer that came last";
    EXPECT_EQ(VWControllerRemoveContext(context), kOk);
  }
  EXPECT_EQ(push(), kOk);
  EXPECT_EQ(viewer->ToolCount(), 1u) << "the other is gone";
  EXPECT_EQ(VWControllerRemoveContext(context), kOk);
  viewer->Edit(nullptr);
  EXPECT_EQ(push(), kNoInterface);
}

TEST(Viewer, HandlesOfTwoViewersAreNotMixedUp) {
  const auto first = Viewer::Make();
  const auto second = Viewer::Make();
  const auto tool = MakeTool();
  const auto other = MakeTool();
  const std::uintptr_t ofFirst = Push(first, tool.get());
  const std::uintptr_t ofSecond = Push(second, other.get());
  EXPECT_NE(ofFirst, ofSecond);
  EXPECT_EQ(VWControllerRemoveContext(ofSecond), kOk);
  EXPECT_EQ(first->ToolCount(), 1u);
  EXPECT_EQ(second->ToolCount(), 0u);
  EXPECT_EQ(VWControllerRemoveContext(ofFirst), kOk);
}

TEST(Viewer, MayBeDestroyedBeforeAPushedTool) {
  const auto tool = MakeTool();
  std::uintptr_t context = 0;
  {
    const auto viewer = Viewer::Make();
    context = Push(viewer, tool.get());
    viewer->Clear();
  }
  EXPECT_EQ(tool->Window(), nullptr);
  EXPECT_EQ(tool->Redraw(), kOk);
  EXPECT_EQ(VWControllerRemoveContext(context), kWrongArgument);
}

TEST(Viewer, RelinksItsToolsToWhatIsEdited) {
  const auto viewer = Viewer::Make();
  const auto tool = MakeTool();
  Push(viewer, tool.get());
  EXPECT_EQ(tool->Taken(), (Calls{"tool: link viewer"}));
  EXPECT_EQ(tool->Read(Edited::kSize), -99.0);
  EXPECT_EQ(tool->Write(Edited::kSize, 1.0), kFailed);
  {
    const auto edited = MakeEdited();
    viewer->Edit(edited.get());
    EXPECT_EQ(tool->Taken(), (Calls{"tool: link operator"}));
    EXPECT_EQ(tool->Read(Edited::kSize), 5.0);
    viewer->Edit(edited.get());
    EXPECT_EQ(tool->Taken(), Calls{});
    const auto second = MakeEdited();
    second->size = 6.0;
    viewer->Edit(second.get());
    EXPECT_EQ(tool->Taken(), (Calls{"tool: unlink operator", "tool: link operator"}));
    EXPECT_EQ(tool->Read(Edited::kSize), 6.0);
    edited->PutValue(Edited::kSize, DSVariant::Of(1.0));
    EXPECT_EQ(tool->Taken(), Calls{});
    viewer->Edit(nullptr);
  }
  EXPECT_EQ(tool->Taken(), (Calls{"tool: unlink operator"}));
  EXPECT_EQ(tool->Read(Edited::kSize), -99.0);
  viewer->Clear();
}

// Two tools on one viewer that keep their calls in one list.
class ViewerOfTwoTools : public ::testing::Test {
 protected:
  ViewerOfTwoTools() {
    Push(viewer, low.get());
    context = Push(viewer, top.get());
    calls.clear();
  }
  ~ViewerOfTwoTools() override { viewer->Clear(); }

  const ComPtr<Viewer> viewer = Viewer::Make();
  Calls calls;
  const ComPtr<RecordingTool> low = MakeTool("low", &calls);
  const ComPtr<RecordingTool> top = MakeTool("top", &calls);
  // That of the top tool.
  std::uintptr_t context = 0;
};

TEST_F(ViewerOfTwoTools, TakesThePenFromAToolThatThrows) {
  top->takesPen = true;
  top->onUp = [] { throw std::runtime_error("refused"); };
  viewer->PenDown(Pen(1, 2));
  EXPECT_THROW(viewer->PenUp(Pen(1, 2)), std::runtime_error);
  top->takesPen = false;
  calls.clear();
  viewer->PenMove(Pen(3, 4));
  EXPECT_EQ(calls, (Calls{"top: move 1 3 4", "low: move 1 3 4"}));
}

TEST_F(ViewerOfTwoTools, OffersThePenFromTheTopDown) {
  EXPECT_EQ(viewer->PenMove(Pen(1, 2, 0)), kFalse);
  EXPECT_EQ(std::exchange(calls, {}), (Calls{"top: move 0 1 2", "low: move 0 1 2"}));
  low->takesPen = true;
  EXPECT_EQ(viewer->PenDown(Pen(3, 4)), kOk);
  EXPECT_EQ(std::exchange(calls, {}), (Calls{"top: down 1 3 4", "low: down 1 3 4"}));
  EXPECT_TRUE(viewer->IsInteracting());
  // The top tool would take it, but the pen belongs to the tool that took the press.
  top->takesPen = true;
  EXPECT_EQ(viewer->PenMove(Pen(5, 6)), kOk);
  EXPECT_EQ(viewer->PenUp(Pen(7, 8)), kOk);
  EXPECT_EQ(std::exchange(calls, {}), (Calls{"low: move 1 5 6", "low: up 1 7 8"}));
  EXPECT_FALSE(viewer->IsInteracting());
  EXPECT_EQ(viewer->PenMove(Pen(9, 9)), kOk);
  EXPECT_EQ(std::exchange(calls, {}), (Calls{"top: move 1 9 9"}));
}

TEST_F(ViewerOfTwoTools, AToolRemovedInADragReleasesThePen) {
  low->takesPen = top->takesPen = true;
  viewer->PenDown(Pen(1, 1));
  viewer->SetTime(3.0);
  calls.clear();
  EXPECT_EQ(VWControllerRemoveContext(context), kOk);
  EXPECT_FALSE(viewer->IsInteracting());
  EXPECT_EQ(viewer->CurrentTime(), 3.0);
  viewer->PenMove(Pen(2, 2));
  EXPECT_EQ(calls, (Calls{"low: time 3", "top: unlink viewer", "low: move 1 2 2"}));
}

TEST(Viewer, HoldsTheTimeBackDuringADrag) {
  const auto viewer = Viewer::Make();
  const auto edited = MakeEdited();
  edited->PutCurve(Edited::kSize, {{{0.0, 10.0}}});
  const auto tool = MakeTool();
  tool->takesPen = true;
  tool->onUp = [&] { tool->Write(Edited::kSize, 40.0); };
  viewer->Edit(edited.get());
  Push(viewer, tool.get());
  viewer->SetTime(2.0);
  viewer->PenDown(Pen(0, 0));
  tool->Taken();
  viewer->SetTime(8.0);
  viewer->SetTime(9.0);
  EXPECT_EQ(viewer->CurrentTime(), 2.0);
  EXPECT_EQ(tool->Taken(), Calls{});
  viewer->PenUp(Pen(0, 0));
  EXPECT_EQ(viewer->CurrentTime(), 9.0);
  EXPECT_EQ(tool->Taken(), (Calls{"tool: up 1 0 0", "tool: changed a curve", "tool: time 9"}));
  EXPECT_EQ(edited->Curve(Edited::kSize)->keys, (std::vector<DSCurveKey>{{0.0, 10.0}, {2.0, 40.0}}));
  viewer->SetTime(9.0);
  EXPECT_EQ(tool->Taken(), Calls{}) << "the same time again is no change";
  viewer->Clear();
}

TEST_F(ViewerOfTwoTools, RendersFromTheLowestUpAndTracksInvalidation) {
  struct NoSurface : IVWSurface {
    HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE&) override { return kFailed; }
    HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE&) override { return kFailed; }
  } surface;
  EXPECT_TRUE(viewer->IsInvalid());
  viewer->Render(surface);
  EXPECT_EQ(calls, (Calls{"low: render", "top: render"}));
  EXPECT_FALSE(viewer->IsInvalid());
  EXPECT_EQ(top->Redraw(), kOk);
  EXPECT_TRUE(viewer->IsInvalid());
  viewer->Render(surface);
  EXPECT_FALSE(InvalidateRect(nullptr, nullptr, false));
  EXPECT_EQ(viewer->InvalidateLayer(nullptr, nullptr), kNullPointer);
  EXPECT_FALSE(viewer->IsInvalid());
}

TEST(Viewer, TracesTheCallsBothWays) {
  Calls lines;
  CallTrace trace([&](const std::string& line) { lines.push_back(line.substr(0, line.find(" ("))); });
  const auto viewer = Viewer::Make(&trace);
  const auto tool = MakeTool();
  tool->takesPen = true;
  const std::uintptr_t context = Push(viewer, tool.get());
  viewer->PenDown(Pen(1.5, 2));
  viewer->PenUp(Pen(1.5, 2));
  tool->Redraw();
  VWControllerRemoveContext(context);
  EXPECT_EQ(lines,
            (Calls{"tool.OnLinkToViewer() = 0x00000000", "viewer.BeginInteraction(button 1, 1.5, 2) = 0x00000000",
                   "tool.OnPenDown(button 1, 1.5, 2) = 0x00000000", "viewer.EndInteraction() = 0x00000000",
                   "tool.OnPenUp(button 1, 1.5, 2) = 0x00000000", "viewer.InvalidateLayer(all) = 0x00000000",
                   "tool.OnUnlinkFromViewer() = 0x00000000"}));
}

}  // namespace
}  // namespace vblur::host
