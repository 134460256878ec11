// The viewer tool between host and widget tree.
#include "overlay/HvTInteract.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "overlay/HvTDsCircle.h"
#include "overlay/HvTRectangle.h"
#include "properties/ClassIds.h"
#include "tests/overlay/Hearer.h"
#include "tests/overlay/ToolWorld.h"

namespace vblur {
namespace {

using test::NewTool;
using test::TestProject;
using test::TestViewer;
using test::ToolWorld;

// A binding that records its calls.
class NotedBinding : public HvTDsObject {
 public:
  std::int32_t OnPropertyChange(const GUID& property, const DSVariant* value) override {
    changes.emplace_back(property, value == nullptr ? -1.0 : value->AsNumber());
    return concerned;
  }
  void OnTime(double time) override { times.push_back(time); }
  void Commit() override {}
  void Refresh() override { ++refreshes; }

  std::int32_t concerned = 0;
  int refreshes = 0;
  std::vector<std::pair<GUID, double>> changes;
  std::vector<double> times;
};

TEST(HvTInteract, FrameFollowsTheProject) {
  const TestProject project(720.0, 480.0, 768.0, 576.0);
  const auto tool = NewTool();
  EXPECT_EQ(tool->FrameWidth(), 600) << "480 * 720 / 576";
  EXPECT_EQ(tool->FrameHeight(), 480);
  EXPECT_EQ(tool->ViewScale(), 1.2f);
  EXPECT_EQ(tool->FrameCentre().Centre(), (HvPoint{300.0f, 240.0f}));
  EXPECT_EQ(tool->SrcCentre().Centre(), (HvPoint{300.0f, 240.0f}));
  EXPECT_EQ(tool->ViewOrigin(), (HvPoint{0.0f, 0.0f}));
  EXPECT_EQ(tool->ViewSize(), (HvPoint{600.0f, 480.0f}));
}

TEST(HvTInteract, FrameReadsTheFourSizesInOrder) {
  const TestProject project(720.0, 480.0, 768.0, 576.0);
  NewTool();
  EXPECT_EQ(project.asked, (std::vector<std::string>{"Project Frame User Size (X)", "Project Frame User Size (Y)",
                                                     "Project Frame World Size (X)", "Project Frame World Size (Y)"}));
}

TEST(HvTInteract, FrameTruncatesItsSizes) {
  const TestProject project(1001.9, 480.9, 1.0, 480.9);
  const auto tool = NewTool();
  EXPECT_EQ(tool->FrameWidth(), 1001);
  EXPECT_EQ(tool->FrameHeight(), 480);
  EXPECT_EQ(tool->ViewScale(), 1.0f) << "world height equals user height";
}

TEST(HvTInteract, FrameIsAStandardOneWithoutAProject) {
  const auto tool = NewTool();
  EXPECT_EQ(tool->FrameWidth(), 1920);
  EXPECT_EQ(tool->FrameHeight(), 1080);
  EXPECT_EQ(tool->ViewScale(), 1.0f);
}

TEST(HvTInteract, FrameDoesNotTakeSizesThatNoFrameHas) {
  const TestProject project(0.0, -5.0, 0.0, std::numeric_limits<double>::quiet_NaN());
  const auto tool = NewTool();
  EXPECT_EQ(tool->FrameWidth(), 1920);
  EXPECT_EQ(tool->FrameHeight(), 1080);
  EXPECT_EQ(tool->ViewScale(), 1.0f);
}

TEST(HvTInteract, IsReachedByItsClassId) {
  const auto tool = NewTool();
  void* found = nullptr;
  ASSERT_EQ(tool->QueryInterface(classes::kHvTInteract, &found), kOk);
  EXPECT_EQ(found, tool.get());
  tool->Release();
  EXPECT_EQ(tool->QueryInterface(classes::kHvTInteract, nullptr), kNullPointer);
  for (const GUID& iid : {IUnknown::kIid, IViewerLayer::kIid, IViewerEventSink::kIid, IDSPropertyNotifySink::kIid,
                          IDSTimeNotifySink::kIid}) {
    ComPtr<IUnknown> other;
    EXPECT_EQ(tool->QueryInterface(iid, other.Receive()), kOk);
  }
  ComPtr<IUnknown> none;
  EXPECT_EQ(tool->QueryInterface(IDSProperties::kIid, none.Receive()), kNoInterface);
}

TEST(HvTInteract, CountsInTheServer) {
  std::atomic<std::int32_t> locks = 0;
  HvTInteract::liveObjects = &locks;
  {
    const auto tool = NewTool();
    EXPECT_EQ(locks, 1);
  }
  EXPECT_EQ(locks, 0);
  HvTInteract::liveObjects = nullptr;
}

TEST(HvTInteract, HoldsItsGroupsInPaintOrder) {
  const auto tool = NewTool();
  std::vector<std::string> names;
  for (const auto* node = tool->Children().First(); node != nullptr; node = node->next)
    names.emplace_back(node->element->Name());
  EXPECT_EQ(names, (std::vector<std::string>{"Frame Centre", "Src Centre", "View Zero"}));
  EXPECT_EQ(tool->ViewZero().GroupFlags(), HvTGroup::kGreyBackground);
  EXPECT_TRUE(tool->FrameCentre().IsVisible());
}

TEST(HvTInteract, IsNeverHitByItsOwnNodes) {
  ToolWorld world;
  world.PenMove(200.0, 100.0);
  EXPECT_EQ(world.tool->Hover(), nullptr);
  EXPECT_EQ(world.tool->Hit(), nullptr);
}

class HvTInteractWithARing : public testing::Test {
 protected:
  HvTInteractWithARing() {
    circle_.SetParent(&world_.tool->FrameCentre());
    world_.viewer.invalidations = 0;
  }
  ~HvTInteractWithARing() override { circle_.Detach(); }

  ToolWorld world_;
  HvTCircle circle_{"ring", 50.0f};
};

TEST_F(HvTInteractWithARing, ReachesTheTreeInFramePixels) {
  const TestProject twice(200.0, 100.0, 400.0, 200.0);
  const auto tool = NewTool();
  EXPECT_EQ(tool->ViewScale(), 2.0f);
  tool->OnPenMove({0, 30.0, 50.0});
  EXPECT_EQ(tool->GetPenPos(), (HvPoint{15.0f, 25.0f}));
}

TEST_F(HvTInteractWithARing, TakesDownAndUpOfTheMainButtonAlone) {
  for (const std::int32_t button : {0, 2, 3}) {
    EXPECT_EQ(world_.tool->OnPenDown({button, 250.0, 100.0}), kFalse);
    EXPECT_EQ(world_.tool->OnPenUp({button, 250.0, 100.0}), kFalse);
  }
  EXPECT_FALSE(circle_.IsPressed());
  EXPECT_TRUE(world_.viewer.interactions.empty());
  EXPECT_EQ(world_.tool->OnPenDown({1, 250.0, 100.0}), kOk);
  EXPECT_TRUE(circle_.IsPressed());
  EXPECT_EQ(world_.tool->OnPenUp({1, 250.0, 100.0}), kOk);
  EXPECT_FALSE(circle_.IsPressed());
}

TEST_F(HvTInteractWithARing, TakesMovesWithAnyButton) {
  for (const std::int32_t button : {0, 1, 2, 7}) {
    EXPECT_EQ(world_.tool->OnPenMove({button, 250.0, 100.0 + button}), kOk);
    EXPECT_EQ(world_.tool->GetPenPos().y, 100.0f + static_cast<float>(button));
  }
  EXPECT_EQ(world_.viewer.interactions, std::vector<std::string>(4, "do"));
}

TEST_F(HvTInteractWithARing, NotifiesTheViewerOfAMoveThatChangesNothing) {
  world_.PenMove(3.0, 3.0);
  world_.viewer.interactions.clear();
  world_.viewer.invalidations = 0;
  world_.tool->Draw();
  world_.PenMove(3.0, 3.0);
  EXPECT_EQ(world_.viewer.interactions, std::vector<std::string>{"do"});
  EXPECT_EQ(world_.viewer.invalidations, 0);
}

TEST_F(HvTInteractWithARing, AsksForAPaintWhereTheTreeDoes) {
  world_.tool->Draw();
  world_.PenMove(250.0, 100.0);
  EXPECT_EQ(world_.tool->Hover(), &circle_);
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 1);
  world_.PenDown(250.0, 100.0);
  world_.PenMove(260.0, 100.0);
  world_.PenUp(260.0, 100.0);
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 3);
  EXPECT_EQ(circle_.Radius(), 60.0f);
  EXPECT_EQ(world_.viewer.interactions, (std::vector<std::string>{"do", "begin", "do", "end"}));
}

TEST_F(HvTInteractWithARing, FallsThroughWhileControlsAreHidden) {
  world_.tool->ShowControls(false);
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 1);
  EXPECT_EQ(world_.tool->OnPenMove({0, 250.0, 100.0}), kFalse);
  EXPECT_EQ(world_.tool->OnPenDown({1, 250.0, 100.0}), kFalse);
  EXPECT_EQ(world_.tool->OnPenUp({1, 250.0, 100.0}), kFalse);
  EXPECT_EQ(world_.tool->GetPenPos(), (HvPoint{0.0f, 0.0f}));
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 0);
  world_.tool->ShowControls(true);
  EXPECT_EQ(world_.tool->OnPenMove({0, 250.0, 100.0}), kOk);
}

// Pen events work after a listener of the widget threw on press and on release.
template <class Widget>
void ExpectToolHearsThePenAfterAListenerThrew(Widget& widget, HvPoint handle) {
  ToolWorld world;
  world.tool->AddObject(&widget);
  test::Hearer hearer(widget);
  hearer.whileHearing = [] { throw std::runtime_error("refused"); };
  const double x = static_cast<double>(handle.x);
  const double y = static_cast<double>(handle.y);
  EXPECT_THROW(world.PenDown(x, y), std::runtime_error);
  hearer.whileHearing = nullptr;
  world.PenUp(x, y);
  world.PenDown(x, y);
  EXPECT_TRUE(widget.IsPressed());
  hearer.whileHearing = [] { throw std::runtime_error("refused"); };
  world.viewer.interactions.clear();
  EXPECT_THROW(world.PenUp(x, y), std::runtime_error);
  EXPECT_EQ(world.viewer.interactions, std::vector<std::string>{"end"});
  EXPECT_FALSE(widget.IsPressed());
  hearer.whileHearing = nullptr;
  world.PenMove(x + 300.0, y);
  EXPECT_EQ(world.tool->Hover(), nullptr);
  world.PenMove(x, y);
  EXPECT_EQ(world.tool->Hover(), &widget);
  widget.Detach();
}

TEST(HvTInteract, TakesThePenAfterAListenerOfARingThrew) {
  HvTCircle ring("ring", 50.0f);
  ExpectToolHearsThePenAfterAListenerThrew(ring, {50.0f, 0.0f});
}

TEST(HvTInteract, TakesThePenAfterAListenerOfARectangleThrew) {
  HvTRectangle rectangle("rectangle", 10.0f, 10.0f, 60.0f, 40.0f);
  ExpectToolHearsThePenAfterAListenerThrew(rectangle, {10.0f, 25.0f});
}

TEST(HvTInteract, TakesThePenAfterAListenerOfAnAxisThrew) {
  HvT2DAxis axis("axis", HvT2DAxis::kTranslate);
  ExpectToolHearsThePenAfterAListenerThrew(axis, {0.0f, 0.0f});
  EXPECT_EQ(axis.Active(), static_cast<std::uint32_t>(HvT2DAxis::kTranslate)) << "hovered again";
}

TEST(HvTInteract, ViewRectMovesTheSourceCentre) {
  ToolWorld world;
  EXPECT_NE(world.tool->SetViewRect({10.0f, 20.0f}, {101.0f, 51.0f}), 0);
  EXPECT_EQ(world.tool->SrcCentre().Centre(), (HvPoint{60.5f, 45.5f}));
  EXPECT_EQ(world.tool->FrameCentre().Centre(), (HvPoint{200.0f, 100.0f}));
  EXPECT_EQ(world.viewer.TakeInvalidations(), 1);
}

TEST(HvTInteract, ViewRectStaysWithinAHundredth) {
  ToolWorld world;
  world.tool->SetViewRect({10.0f, 20.0f}, {100.0f, 50.0f});
  world.viewer.invalidations = 0;
  EXPECT_EQ(world.tool->SetViewRect({10.009f, 19.991f}, {100.009f, 49.991f}), 0);
  EXPECT_EQ(world.tool->ViewOrigin(), (HvPoint{10.0f, 20.0f}));
  EXPECT_EQ(world.tool->ViewSize(), (HvPoint{100.0f, 50.0f}));
  EXPECT_EQ(world.tool->SrcCentre().Centre(), (HvPoint{60.0f, 45.0f}));
  EXPECT_EQ(world.viewer.invalidations, 0);
  const auto differs = [&](HvPoint origin, HvPoint size) { return world.tool->RectDiffers(origin, size); };
  EXPECT_TRUE(differs({10.02f, 20.0f}, {100.0f, 50.0f}));
  EXPECT_TRUE(differs({10.0f, 19.98f}, {100.0f, 50.0f}));
  EXPECT_TRUE(differs({10.0f, 20.0f}, {100.02f, 50.0f}));
  EXPECT_TRUE(differs({10.0f, 20.0f}, {100.0f, 49.98f}));
}

TEST(HvTInteract, PropertiesAreRefusedWhileItIsNotLinked) {
  const auto tool = NewTool();
  EXPECT_FALSE(tool->Linked());
  EXPECT_FALSE(tool->ReadAnimated(test::kBlurId, 0.0));
  EXPECT_FALSE(tool->ReadIfAffected(test::kBlurId, test::kBlurId));
  EXPECT_FALSE(tool->WriteAnimated(test::kBlurId, 1.0));
}

TEST(HvTInteract, PropertiesAreReadAndWrittenOnTheOperator) {
  ToolWorld world;
  EXPECT_EQ(world.tool->ReadAnimated(test::kBlurId, -1.0), 10.0);
  EXPECT_FALSE(world.tool->ReadAnimated(GUID_NO_PROPERTY, -1.0));
  EXPECT_FALSE(world.tool->ReadAnimated(MakeGuid("{00000000-0000-0000-0000-0000000000B1}"), -1.0));
  EXPECT_TRUE(world.tool->WriteAnimated(test::kBlurId, 12.5));
  EXPECT_EQ(world.theOperator->values[0], 12.5);
  EXPECT_FALSE(world.tool->WriteAnimated(GUID_NO_PROPERTY, 1.0));
}

TEST(HvTInteract, PropertiesAreReadAtTheViewersTime) {
  ToolWorld world;
  world.theOperator->PutCurve(test::kBlurId, DSCurve{{{0.0, 0.0}, {10.0, 100.0}}});
  world.viewer.time = 5.0;
  EXPECT_EQ(world.tool->ReadAnimated(test::kBlurId, -1.0), 50.0);
  EXPECT_EQ(world.tool->ReadAnimated(test::kBlurId, 2.0), 20.0);
}

TEST(HvTInteract, PropertiesAreReadOnlyWhereAChangeConcernsThem) {
  ToolWorld world;
  EXPECT_EQ(world.tool->ReadIfAffected(test::kBlurId, test::kBlurId), 10.0);
  EXPECT_EQ(world.tool->ReadIfAffected(GUID_ALL_PROPERTIES, test::kBlurId), 10.0);
  EXPECT_FALSE(world.tool->ReadIfAffected(test::kAspectId, test::kBlurId));
  EXPECT_FALSE(world.tool->ReadIfAffected(GUID_ALL_PROPERTIES, GUID_NO_PROPERTY));
  EXPECT_FALSE(world.tool->ReadIfAffected(GUID_NO_PROPERTY, GUID_NO_PROPERTY));
}

TEST(HvTInteract, BindingsReadWhenTheyAreAdded) {
  ToolWorld world;
  world.tool->AddDsObject(nullptr);
  EXPECT_EQ(world.viewer.TakeInvalidations(), 0);
  NotedBinding binding;
  world.tool->AddDsObject(&binding);
  EXPECT_EQ(binding.Tool(), world.tool.get());
  EXPECT_EQ(binding.refreshes, 1);
  EXPECT_EQ(world.viewer.TakeInvalidations(), 1);
}

TEST(HvTInteract, AllBindingsAreNotifiedOfAChange) {
  ToolWorld world;
  NotedBinding first;
  NotedBinding second;
  world.tool->AddDsObject(&first);
  world.tool->AddDsObject(&second);
  world.viewer.invalidations = 0;
  world.theOperator->PutValue(test::kBlurId, DSVariant::Of(3.0));
  EXPECT_EQ(world.viewer.TakeInvalidations(), 0) << "a property that no widget shows costs nothing";
  first.concerned = 1;
  const DSVariant value = DSVariant::Of(4.0);
  EXPECT_EQ(world.tool->OnPropertyChanged(test::kBlurId, &value, 0), kOk);
  EXPECT_EQ(world.viewer.TakeInvalidations(), 1);
  EXPECT_EQ(first.changes, (std::vector<std::pair<GUID, double>>{{test::kBlurId, 3.0}, {test::kBlurId, 4.0}}));
  EXPECT_EQ(second.changes, first.changes);
}

TEST(HvTInteract, BindingsAreNotifiedOfTheTimeOnceThereIsAnOperator) {
  NotedBinding binding;
  const auto unlinked = NewTool();
  unlinked->AddDsObject(&binding);
  EXPECT_EQ(unlinked->OnOnTimeChange(2.0), kOk);
  EXPECT_TRUE(binding.times.empty());
  ToolWorld world;
  world.tool->AddDsObject(&binding);
  world.viewer.invalidations = 0;
  EXPECT_EQ(world.tool->OnOnTimeChange(2.5), kOk);
  EXPECT_EQ(binding.times, std::vector<double>{2.5});
  EXPECT_EQ(world.viewer.TakeInvalidations(), 1);
}

TEST(HvTInteract, BindingsMayBeDestroyedBeforeTheTool) {
  ToolWorld world;
  {
    NotedBinding binding;
    world.tool->AddDsObject(&binding);
  }
  world.theOperator->PutValue(test::kBlurId, DSVariant::Of(3.0));
  world.tool->OnOnTimeChange(1.0);
}

TEST(HvTInteract, BindingsMayOutliveTheTool) {
  NotedBinding binding;
  {
    const auto tool = NewTool();
    tool->AddDsObject(&binding);
  }
  EXPECT_EQ(binding.Tool(), nullptr);
}

TEST(HvTInteract, BindingsBelongToOneTool) {
  const auto first = NewTool();
  const auto second = NewTool();
  auto binding = std::make_unique<NotedBinding>();
  first->AddDsObject(binding.get());
  second->AddDsObject(binding.get());
  EXPECT_EQ(binding->Tool(), second.get());
  binding.reset();
}

TEST(HvTInteract, LinksFollowOperatorAndViewer) {
  const TestProject project(400.0, 200.0, 400.0, 200.0);
  const auto theOperator = ComPtr<test::TestOperator>::Own(new test::TestOperator());
  auto* const object = static_cast<IDSProperties*>(theOperator.get());
  TestViewer viewer;
  const auto tool = NewTool();
  EXPECT_EQ(tool->OnLinkToOperator(nullptr), kNullPointer);
  EXPECT_FALSE(tool->Linked());
  EXPECT_EQ(tool->OnLinkToOperator(object), kOk);
  EXPECT_TRUE(tool->Linked());
  EXPECT_EQ(tool->OnUnlinkFromOperator(), kOk);
  EXPECT_FALSE(tool->Linked());
  EXPECT_EQ(tool->OnLinkToViewer(&viewer), kOk);
  EXPECT_TRUE(tool->Linked());
  EXPECT_EQ(viewer.TakeInvalidations(), 1);
  EXPECT_EQ(tool->OnUnlinkFromViewer(), kOk);
  EXPECT_FALSE(tool->Linked());
  EXPECT_EQ(viewer.TakeInvalidations(), 1);
  EXPECT_EQ(viewer.window.Invalidations(), 1);
  EXPECT_EQ(tool->OnLinkToViewer(nullptr), kNullPointer);
  EXPECT_FALSE(tool->Linked());
}

TEST(HvTInteract, LinksThatFailUndoTheOneBefore) {
  ToolWorld world;
  TestViewer noOperator;
  EXPECT_EQ(world.tool->OnLinkToOperator(&noOperator), kNoInterface);
  EXPECT_FALSE(world.tool->Linked());
  world.viewer.invalidations = 0;
  NotedBinding binding;
  world.tool->AddDsObject(&binding);
  world.theOperator->PutValue(test::kBlurId, DSVariant::Of(3.0));
  EXPECT_TRUE(binding.changes.empty());
}

TEST(HvTInteract, EndsBeforeTheWidgetsOnIt) {
  HvTCircle circle("ring", 50.0f);
  {
    ToolWorld world;
    circle.SetParent(&world.tool->FrameCentre());
    world.PenMove(250.0, 100.0);
    EXPECT_EQ(world.tool->Hover(), &circle);
  }
  EXPECT_EQ(circle.Parent(), nullptr);
  EXPECT_EQ(circle.Manager(), nullptr);
}

TEST(HvTInteract, EndsAfterAWidgetThatThePenHolds) {
  ToolWorld world;
  {
    HvTCircle circle("ring", 50.0f);
    circle.SetParent(&world.tool->FrameCentre());
    world.PenMove(250.0, 100.0);
    world.PenDown(250.0, 100.0);
    circle.Detach();
  }
  EXPECT_EQ(world.tool->Hover(), nullptr);
  world.PenMove(255.0, 100.0);
  world.PenUp(255.0, 100.0);
  world.PenMove(200.0, 100.0);
}

}  // namespace
}  // namespace vblur
