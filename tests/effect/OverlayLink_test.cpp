// The overlay link: the tool lives from the first page to the last.
#include <thread>

#include <gtest/gtest.h>

#include "overlay/HvTDsCircle.h"
#include "overlay/HvTDsCrop.h"
#include "properties/ClassIds.h"
#include "sdk/effects/Catalogue.h"
#include "sdk/effects/ClassObjects.h"
#include "server/CDsClassFactory.h"
#include "tests/effect/EffectBench.h"
#include "tests/overlay/ToolWorld.h"

namespace vblur {
namespace {

std::atomic<std::int32_t> locks = 0;
enum class Offer { Tool, Stranger, Nothing };
Offer offer = Offer::Tool;

// A viewer layer that is no HvTInteract.
struct StrangeTool : CDSInteractiveTool {};

template <class T>
HRESULT QueryFactoryOf(const GUID& iid, void** result) {
  auto* const factory = new CDsClassFactory<T>(locks);
  const HRESULT answer = factory->QueryInterface(iid, result);
  factory->Release();
  return answer;
}

HRESULT ToolClassObject(const GUID& clsid, const GUID& iid, void** result) {
  if (clsid != classes::kHvTInteract || offer == Offer::Nothing) return kNoSuchClass;
  return offer == Offer::Tool ? QueryFactoryOf<HvTInteract>(iid, result) : QueryFactoryOf<StrangeTool>(iid, result);
}

// Links the pushed tool to itself and to the edited effect.
class LinkingViewer : public test::TestViewer {
 public:
  HRESULT PushContext(std::int32_t kind, IUnknown* tool, std::uintptr_t* context) override {
    EXPECT_EQ(kind, 19);
    if (refuses) return kFailed;
    tool->QueryInterface(IViewerLayer::kIid, layer.Receive());
    layer->OnLinkToOperator(edited);
    layer->OnLinkToViewer(this);
    *context = 1;
    return kOk;
  }
  HRESULT RemoveContext(std::uintptr_t) override {
    ++removals;
    layer->OnUnlinkFromViewer();
    layer->OnUnlinkFromOperator();
    layer.reset();
    return kOk;
  }

  IUnknown* edited = nullptr;
  ComPtr<IViewerLayer> layer;
  bool refuses = false;
  int removals = 0;
};

class OverlayLink : public testing::Test {
 protected:
  OverlayLink() {
    // Where the system makes objects, it is given the classes of the catalogue.
    host::KeepClassesInProcess(true);
    host::CurrentCatalogue().AddClass(classes::kHvTInteract, nullptr, 0);
    host::AddServer(&ToolClassObject);
    offer = Offer::Tool;
    effect = NewBlur();
    viewer.edited = static_cast<IDSProperties*>(effect.get());
    UseAs(*effect, host::EffectKind::Filter);
  }
  ~OverlayLink() override {
    host::RemoveServer(&ToolClassObject);
    host::CurrentCatalogue().RemoveClass(classes::kHvTInteract);
    host::KeepClassesInProcess(false);
  }

  // The first widget of a group.
  template <class Widget>
  Widget* First(HvTContainer& group) {
    return group.Children().First() == nullptr ? nullptr : dynamic_cast<Widget*>(group.Children().First()->element);
  }
  HvTDsCrop* Crop() { return First<HvTDsCrop>(effect->OverlayTool()->ViewZero()); }
  HvTDsCircle* Circle() {
    HvTObject* found = effect->OverlayTool()->FrameCentre().Children().Children().First()->element;
    return dynamic_cast<HvTDsCircle*>(found);
  }
  void Put(PropertyId id, double value) { effect->PutValue(PropertyOf(id).guid, DSVariant::Of(value)); }
  double Get(PropertyId id) {
    DSVariant value;
    effect->GetValue(PropertyOf(id).guid, &value);
    return value.AsNumber();
  }

  test::TestProject project{400.0, 200.0, 400.0, 200.0};
  LinkingViewer viewer;
  ComPtr<Blur> effect;
};

TEST_F(OverlayLink, NeedsAViewer) {
  EXPECT_EQ(effect->ConnectOverlay(nullptr), kNullPointer);
  EXPECT_EQ(effect->OverlayTool(), nullptr);
}

TEST_F(OverlayLink, IsNotMadeForPaint) {
  UseAs(*effect, host::EffectKind::Paint);
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kOk);
  EXPECT_EQ(effect->OverlayTool(), nullptr);
  UseAs(*effect, host::EffectKind::Filter);
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kOk);
  effect->DisconnectOverlay();
  EXPECT_EQ(effect->OverlayTool(), nullptr) << "the page of the paint effect was not counted";
}

TEST_F(OverlayLink, CountsAPageThatFoundNoTool) {
  offer = Offer::Nothing;
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kNoSuchClass);
  offer = Offer::Tool;
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kOk);
  effect->DisconnectOverlay();
  EXPECT_NE(effect->OverlayTool(), nullptr) << "two pages were shown, one was closed";
  EXPECT_EQ(viewer.removals, 0);
  effect->DisconnectOverlay();
  EXPECT_EQ(effect->OverlayTool(), nullptr);
  EXPECT_EQ(viewer.removals, 1);
}

TEST_F(OverlayLink, DoesNotCountAPageWithoutAViewer) {
  EXPECT_EQ(effect->ConnectOverlay(nullptr), kNullPointer);
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kOk);
  effect->DisconnectOverlay();
  EXPECT_EQ(effect->OverlayTool(), nullptr);
}

TEST_F(OverlayLink, TakesAwayWhatItPutOnTheViewerThoughItIsNoTool) {
  offer = Offer::Stranger;
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kNoInterface);
  EXPECT_EQ(effect->OverlayTool(), nullptr);
  EXPECT_EQ(locks, 0) << "the viewer alone holds it";
  ASSERT_TRUE(viewer.layer);
  effect->DisconnectOverlay();
  EXPECT_EQ(viewer.removals, 1);
  EXPECT_FALSE(viewer.layer);
}

TEST_F(OverlayLink, IsCountedAfterTheFirstPage) {
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kOk);
  HvTInteract* const tool = effect->OverlayTool();
  ASSERT_NE(tool, nullptr);
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kOk);
  EXPECT_EQ(effect->OverlayTool(), tool);
  effect->DisconnectOverlay();
  EXPECT_EQ(effect->OverlayTool(), tool);
  EXPECT_EQ(viewer.removals, 0);
  effect->DisconnectOverlay();
  EXPECT_EQ(effect->OverlayTool(), nullptr);
  EXPECT_EQ(viewer.removals, 1);
  effect->DisconnectOverlay();
  EXPECT_EQ(viewer.removals, 1);
  EXPECT_EQ(locks, 0);
}

TEST_F(OverlayLink, PassesOnThatThereIsNoTool) {
  offer = Offer::Nothing;
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kNoSuchClass);
  EXPECT_EQ(effect->OverlayTool(), nullptr);
  static_cast<HvDsEffect&>(*effect).PageShown("crop", 1, 2);
  effect->UpdateOverlayPlacement();
  effect->AttachOverlay();
}

TEST_F(OverlayLink, HasAToolWithoutAPlaceOnTheViewer) {
  viewer.refuses = true;
  EXPECT_EQ(effect->ConnectOverlay(&viewer), kOk);
  ASSERT_NE(effect->OverlayTool(), nullptr);
  EXPECT_FALSE(effect->OverlayTool()->Linked());
  effect->DisconnectOverlay();
  EXPECT_EQ(viewer.removals, 0);
}

TEST_F(OverlayLink, AttachesBothControlsHidden) {
  Put(PropertyId::Blur, 42.0);
  Put(PropertyId::CropLeft, 25.0);
  effect->ConnectOverlay(&viewer);
  ASSERT_NE(Circle(), nullptr);
  ASSERT_NE(Crop(), nullptr);
  EXPECT_FALSE(Circle()->IsVisible());
  EXPECT_FALSE(Crop()->IsVisible());
  EXPECT_EQ(Circle()->Radius(), 42.0f);
  // Before the first frame the limits are the project's size.
  EXPECT_EQ(Crop()->Limits(), (HvBox{0.0f, 400.0f, 0.0f, 200.0f}));
  EXPECT_EQ(Crop()->X0(), 100.0f);
  effect->DisconnectOverlay();
}

TEST_F(OverlayLink, BindsEachControlToItsProperties) {
  Put(PropertyId::Aspect, 50.0);
  Put(PropertyId::CropLeft, 10.0);
  Put(PropertyId::CropRight, 80.0);
  Put(PropertyId::CropBottom, 20.0);
  Put(PropertyId::CropTop, 95.0);
  effect->ConnectOverlay(&viewer);
  EXPECT_EQ(Circle()->Aspect(), 2.0f);
  EXPECT_EQ(Crop()->X0(), 40.0f);
  EXPECT_EQ(Crop()->X1(), 320.0f);
  EXPECT_EQ(Crop()->Y0(), 40.0f);
  EXPECT_EQ(Crop()->Y1(), 190.0f);
  effect->DisconnectOverlay();
}

TEST_F(OverlayLink, ShowsWhatThePageInFrontIsAbout) {
  effect->PageShown("FullBlurPPG");
  effect->ConnectOverlay(&viewer);
  const auto shown = [&](const char* page) {
    effect->PageShown(page);
    return std::pair(Circle()->IsVisible(), Crop()->IsVisible());
  };
  for (const char* page : {"FullBlurPPG", "TransitionBlurPPG", "transition", "HelpPPG"})
    EXPECT_EQ(shown(page), std::pair(true, false)) << page;
  EXPECT_EQ(shown("crop"), std::pair(false, true));
  EXPECT_EQ(shown("Crop"), std::pair(false, false));
  EXPECT_EQ(shown(nullptr), std::pair(false, false));
  viewer.invalidations = 0;
  effect->PageShown("crop");
  EXPECT_GE(viewer.invalidations, 1);
  effect->DisconnectOverlay();
}

// A frame of 100 x 50 pixels.
class OverlayLinkPlaced : public OverlayLink {
 protected:
  // A surface that OpenGL cannot paint on now.
  class ClosedSurface : public IVWSurface {
   public:
    HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE&) override { return kFailed; }
    HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE&) override { return kOk; }
  };

  OverlayLinkPlaced() {
    Paint<Pixel8>(input, 100, 50, black);
    Paint<Pixel8>(output, 100, 50, black);
    effect->ConnectOverlay(&viewer);
    effect->PageShown("crop");
  }
  ~OverlayLinkPlaced() override { effect->DisconnectOverlay(); }

  void Render(IDSImageEffect& renderer) {
    renderer.SetCoordMan(&coordMan);
    renderer.SetEffectHost(&project);
    renderer.SetInput(&input);
    renderer.SetOutput(&output);
    EXPECT_EQ(renderer.RenderFrame(0.0), kOk);
    renderer.SetInput(nullptr);
    renderer.SetOutput(nullptr);
    renderer.SetEffectHost(nullptr);
    renderer.SetCoordMan(nullptr);
  }
  // A clone's frame on another thread.
  void RenderElsewhere() {
    const auto clone = Clone();
    std::thread([&] { Render(*clone); }).join();
  }
  static Pixel8 black(std::int32_t, std::int32_t) { return {0, 0, 0, 255}; }
  ComPtr<IDSImageEffect> Clone() {
    ComPtr<IDSImageEffect> clone;
    EXPECT_EQ(effect->Clone(IDSImageEffect::kIid, clone.Receive()), kOk);
    return clone;
  }

  host::HostImage input;
  host::HostImage output;
  host::CoordMan coordMan{{1.0, 1.0}};
  const HvBox frame{0.0f, 400.0f, 0.0f, 200.0f};
  const HvBox picture{0.0f, 100.0f, 0.0f, 50.0f};
};

TEST_F(OverlayLinkPlaced, FollowsThePictureWhenAPageIsShown) {
  EXPECT_EQ(Crop()->Limits(), frame);
  Render(*effect);
  EXPECT_EQ(Crop()->Limits(), frame);
  effect->PageShown("crop");
  EXPECT_EQ(Crop()->Limits(), picture);
  EXPECT_EQ(effect->OverlayTool()->ViewSize(), (HvPoint{100.0f, 50.0f}));
}

TEST_F(OverlayLinkPlaced, StaysWhereItIsOnANewToolUntilAPageIsShown) {
  Render(*effect);
  effect->DisconnectOverlay();
  effect->ConnectOverlay(&viewer);
  EXPECT_EQ(Crop()->Limits(), frame) << "placed with the first tool";
  EXPECT_EQ(effect->OverlayTool()->ViewSize(), (HvPoint{400.0f, 200.0f}));
  effect->PageShown("crop");
  EXPECT_EQ(Crop()->Limits(), picture);
  EXPECT_EQ(effect->OverlayTool()->ViewSize(), (HvPoint{100.0f, 50.0f}));
}

TEST_F(OverlayLinkPlaced, LiesAtThePlaceOfThePicture) {
  input.Place(InWorld({30.0, 20.0}, {100.0, 50.0}));
  Render(*effect);
  effect->PageShown("crop");
  EXPECT_EQ(Crop()->Limits(), (HvBox{30.0f, 130.0f, 20.0f, 70.0f}));
  EXPECT_EQ(effect->OverlayTool()->ViewOrigin(), (HvPoint{30.0f, 20.0f}));
  EXPECT_EQ(effect->OverlayTool()->SrcCentre().Centre(), (HvPoint{80.0f, 45.0f}));
}

TEST_F(OverlayLinkPlaced, FollowsThePictureOfAClone) {
  Render(*Clone());
  EXPECT_EQ(Crop()->Limits(), picture);
  EXPECT_EQ(Crop()->X1(), 100.0f);
  EXPECT_EQ(effect->OverlayTool()->ViewSize(), (HvPoint{100.0f, 50.0f}));
}

TEST_F(OverlayLinkPlaced, FollowsACloneOfAnotherThreadAtTheNextPage) {
  RenderElsewhere();
  EXPECT_EQ(Crop()->Limits(), frame) << "widgets belong to the viewer's thread";
  EXPECT_EQ(effect->InputPlace().sizeX, 100.0f);
  effect->PageShown("crop");
  EXPECT_EQ(Crop()->Limits(), picture);
}

TEST_F(OverlayLinkPlaced, FollowsACloneOfAnotherThreadAtTheNextPaint) {
  RenderElsewhere();
  ClosedSurface surface;
  effect->OverlayTool()->OnRender(&surface);
  EXPECT_EQ(Crop()->Limits(), picture);
  EXPECT_EQ(effect->OverlayTool()->ViewSize(), (HvPoint{100.0f, 50.0f}));
}

TEST_F(OverlayLinkPlaced, FollowsACloneOfAnotherThreadAtTheNextPenEvent) {
  HvTInteract& tool = *effect->OverlayTool();
  RenderElsewhere();
  tool.OnPenMove({0, 10.0, 10.0});
  EXPECT_EQ(Crop()->Limits(), picture);
  Paint<Pixel8>(input, 60, 40, black);
  RenderElsewhere();
  tool.OnPenDown({1, 10.0, 10.0});
  EXPECT_EQ(Crop()->Limits(), (HvBox{0.0f, 60.0f, 0.0f, 40.0f}));
  tool.OnPenUp({1, 10.0, 10.0});
}

TEST_F(OverlayLinkPlaced, StaysInThePensHandsUntilItIsLifted) {
  HvTInteract& tool = *effect->OverlayTool();
  tool.OnPenDown({1, 0.0, 100.0});
  tool.OnPenMove({1, 100.0, 100.0});
  RenderElsewhere();
  ClosedSurface surface;
  tool.OnRender(&surface);
  tool.OnPenMove({1, 120.0, 100.0});
  EXPECT_EQ(Crop()->Limits(), frame);
  EXPECT_EQ(Crop()->X0(), 120.0f);
  tool.OnPenUp({1, 120.0, 100.0});
  EXPECT_EQ(Get(PropertyId::CropLeft), 30.0);
  tool.OnPenMove({0, 120.0, 100.0});
  EXPECT_EQ(Crop()->Limits(), picture);
  EXPECT_EQ(Crop()->X0(), 30.0f);
}

TEST_F(OverlayLinkPlaced, ReadsNothingAgainWhenNoCloneReported) {
  HvTInteract& tool = *effect->OverlayTool();
  RenderElsewhere();
  tool.OnPenMove({0, 10.0, 10.0});
  Crop()->SetLimits(1.0f, 2.0f, 3.0f, 4.0f);
  tool.OnPenMove({0, 20.0, 10.0});
  EXPECT_EQ(Crop()->Limits(), (HvBox{1.0f, 3.0f, 2.0f, 4.0f}));
}

TEST_F(OverlayLinkPlaced, IsNotAskedForAfterTheEffect) {
  const ComPtr<HvTInteract> tool(effect->OverlayTool());
  RenderElsewhere();
  effect.reset();
  tool->OnPenMove({0, 10.0, 10.0});
  effect = ComPtr<Blur>::Own(new Blur());
  EXPECT_EQ(tool->ViewSize(), (HvPoint{400.0f, 200.0f}));
}

TEST_F(OverlayLink, WritesTheRadiusWhenThePenComesUp) {
  effect->ConnectOverlay(&viewer);
  effect->PageShown("FullBlurPPG");
  Put(PropertyId::Blur, 50.0);
  HvTInteract& tool = *effect->OverlayTool();
  tool.OnPenDown({1, 250.0, 100.0});
  tool.OnPenMove({1, 270.0, 100.0});
  EXPECT_EQ(Get(PropertyId::Blur), 50.0);
  tool.OnPenUp({1, 270.0, 100.0});
  EXPECT_EQ(Get(PropertyId::Blur), 70.0);
  effect->DisconnectOverlay();
}

TEST_F(OverlayLink, IsNotCloned) {
  effect->ConnectOverlay(&viewer);
  ComPtr<IDSImageEffect> clone;
  ASSERT_EQ(effect->Clone(IDSImageEffect::kIid, clone.Receive()), kOk);
  void* object = nullptr;
  clone->QueryInterface(kBlurObject, &object);
  auto cloned = ComPtr<Blur>::Own(static_cast<Blur*>(object));
  EXPECT_EQ(cloned->OverlayTool(), nullptr);
  cloned.reset();
  clone.reset();
  EXPECT_NE(effect->OverlayTool(), nullptr);
  effect->DisconnectOverlay();
}

TEST_F(OverlayLink, EndsWithTheEffectWhilePagesAreOpen) {
  effect->ConnectOverlay(&viewer);
  effect->ConnectOverlay(&viewer);
  effect->PageShown("FullBlurPPG");
  effect.reset();
  EXPECT_EQ(viewer.removals, 1);
  EXPECT_EQ(locks, 0);
}

TEST_F(OverlayLink, LeavesNothingOnAToolThatOutlivesTheEffect) {
  effect->ConnectOverlay(&viewer);
  effect->PageShown("FullBlurPPG");
  const ComPtr<HvTInteract> tool(effect->OverlayTool());
  tool->OnPenMove({0, 210.0, 100.0});
  EXPECT_NE(tool->Hover(), nullptr);
  tool->OnPenDown({1, 210.0, 100.0});
  effect.reset();
  EXPECT_EQ(tool->Hover(), nullptr);
  tool->OnPenMove({1, 220.0, 100.0});
  tool->OnPenUp({1, 220.0, 100.0});
  tool->OnOnTimeChange(1.0);
  EXPECT_EQ(tool->ViewZero().Children().First(), nullptr);
}

TEST_F(OverlayLink, IsMadeAnewAfterTheLastPage) {
  effect->ConnectOverlay(&viewer);
  const ComPtr<HvTInteract> first(effect->OverlayTool());
  effect->DisconnectOverlay();
  Put(PropertyId::Blur, 64.0);
  effect->ConnectOverlay(&viewer);
  EXPECT_NE(effect->OverlayTool(), first.get());
  EXPECT_EQ(Circle()->Radius(), 64.0f);
  EXPECT_EQ(first->ViewZero().Children().First(), nullptr);
  effect->DisconnectOverlay();
}

}  // namespace
}  // namespace vblur
