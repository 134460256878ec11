#include "platform/CDSInteractiveTool.h"

#include <gtest/gtest.h>

#include "host/viewer/Viewer.h"
#include "sdk/viewer/ToolObserver.h"
#include "tests/support/host/RecordingTool.h"

namespace vblur {
namespace {

using Keys = std::vector<DSCurveKey>;

class CDSInteractiveToolLinked : public testing::Test {
 protected:
  CDSInteractiveToolLinked() {
    viewer->SetTime(4.0);
    tool->OnLinkToViewer(viewer.get());
    tool->OnLinkToOperator(edited.get());
    tool->Taken();
  }
  // The tool is destroyed first.

  ComPtr<host::Viewer> viewer = host::Viewer::Make();
  ComPtr<Edited> edited = MakeEdited();
  ComPtr<RecordingTool> tool = MakeTool();
};

TEST_F(CDSInteractiveToolLinked, ReadsPlainValuesAndCurves) {
  EXPECT_EQ(tool->Read(Edited::kSize), 5.0);
  EXPECT_EQ(tool->Read(Edited::kChoice), 2.0);
  edited->PutCurve(Edited::kSize, {{{0.0, 10.0}, {10.0, 20.0}}});
  EXPECT_EQ(tool->Read(Edited::kSize), 14.0) << "at the viewer's time";
  EXPECT_EQ(tool->Read(Edited::kSize, 9.0), 19.0);
  EXPECT_EQ(tool->Read(Edited::kSize, -2.0), 10.0) << "-2 is a time like any other";
  EXPECT_EQ(tool->Read(GUID_NO_PROPERTY), -99.0);
  DSVariant value = DSVariant::Of(std::int32_t{7});
  EXPECT_EQ(tool->GetAnimatedProperty(GUID_NO_PROPERTY, &value, nullptr, 0.0), kWrongArgument);
  EXPECT_EQ(value.whole, 7) << "a failure leaves the value alone";
  EXPECT_EQ(tool->GetAnimatedProperty(Edited::kChoice, &value, nullptr, 0.0), kOk);
  EXPECT_EQ(value.type, DSValueType::Float64);
  EXPECT_EQ(value.number, 2.0);
  EXPECT_EQ(tool->GetAnimatedProperty(Edited::kSize, nullptr, nullptr, 0.0), kNullPointer);
}

TEST_F(CDSInteractiveToolLinked, WritesPlainValues) {
  EXPECT_EQ(tool->Write(Edited::kSize, 33.5), kOk);
  EXPECT_EQ(edited->size, 33.5);
  EXPECT_EQ(edited->Curve(Edited::kSize), nullptr);
  EXPECT_EQ(tool->Write(Edited::kChoice, 3.9), kOk);
  EXPECT_EQ(edited->choice, 3);
  EXPECT_EQ(tool->Write(GUID_NO_PROPERTY, 1.0), kWrongArgument);
}

TEST_F(CDSInteractiveToolLinked, GivesACurveAKeyAtTheTime) {
  edited->PutCurve(Edited::kSize, {{{0.0, 10.0}, {10.0, 20.0}}, DSInterpolation::Smooth});
  EXPECT_EQ(tool->Write(Edited::kSize, 50.0), kOk);
  EXPECT_EQ(edited->Curve(Edited::kSize)->keys, (Keys{{0.0, 10.0}, {4.0, 50.0}, {10.0, 20.0}}));
  EXPECT_EQ(tool->Write(Edited::kSize, 60.0), kOk);
  EXPECT_EQ(tool->Write(Edited::kSize, 1.0, -2.0), kOk);
  EXPECT_EQ(tool->Write(Edited::kSize, 2.0, 12.0), kOk);
  EXPECT_EQ(tool->Write(Edited::kSize, 3.0, 10.0), kOk);
  EXPECT_EQ(edited->Curve(Edited::kSize)->keys,
            (Keys{{-2.0, 1.0}, {0.0, 10.0}, {4.0, 60.0}, {10.0, 3.0}, {12.0, 2.0}}));
  EXPECT_EQ(edited->Curve(Edited::kSize)->interpolation, DSInterpolation::Smooth);
  EXPECT_EQ(edited->size, 5.0) << "the plain value stays";
}

TEST_F(CDSInteractiveToolLinked, HearsOfEveryChangeOnce) {
  edited->PutValue(Edited::kAspect, DSVariant::Of(-20.0));
  EXPECT_EQ(tool->Taken(), (std::vector<std::string>{"tool: changed -20"}));
  EXPECT_EQ(tool->lastChanged, Edited::kAspect);
  tool->Write(Edited::kSize, 8.0);
  EXPECT_EQ(tool->Taken(), (std::vector<std::string>{"tool: changed 8"}));
  // Relinked, it is notified once.
  EXPECT_EQ(tool->OnLinkToOperator(edited.get()), kOk);
  tool->Taken();
  edited->PutValue(Edited::kAspect, DSVariant::Of(1.0));
  EXPECT_EQ(tool->Taken(), (std::vector<std::string>{"tool: changed 1"}));
}

TEST_F(CDSInteractiveToolLinked, RefusesWhatItCannotBeLinkedTo) {
  EXPECT_EQ(tool->OnLinkToOperator(nullptr), kNullPointer);
  EXPECT_EQ(tool->OnLinkToOperator(viewer.get()), kNoInterface);
  EXPECT_EQ(tool->OnLinkToViewer(nullptr), kNullPointer);
  EXPECT_EQ(tool->Read(Edited::kSize), 5.0) << "the old links hold";
  EXPECT_EQ(tool->OnUnlinkFromOperator(), kOk);
  EXPECT_EQ(tool->OnUnlinkFromOperator(), kOk);
  EXPECT_EQ(tool->Read(Edited::kSize), -99.0);
}

TEST_F(CDSInteractiveToolLinked, LeavesNothingBehind) {
  tool.reset();
  edited->PutValue(Edited::kSize, DSVariant::Of(1.0));
  viewer->SetTime(5.0);
}

// A listener may release a tool that has not been notified yet.
TEST_F(CDSInteractiveToolLinked, MayBeDestroyedDuringANotification) {
  struct Releasing : IDSPropertyNotify {
    void OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) override { drop(); }
    std::function<void()> drop;
  } releasing;
  const auto other = MakeEdited();
  other->Advise(&releasing);
  tool->OnLinkToOperator(other.get());
  releasing.drop = [&] { tool.reset(); };
  other->PutValue(Edited::kSize, DSVariant::Of(1.0));
  EXPECT_FALSE(tool);
  other->Unadvise(&releasing);
}

TEST(CDSInteractiveTool, WithoutAViewerIsCalm) {
  const auto edited = MakeEdited();
  const auto tool = MakeTool();
  edited->PutCurve(Edited::kSize, {{{0.0, 10.0}, {10.0, 20.0}}});
  tool->OnLinkToOperator(edited.get());
  EXPECT_EQ(tool->Read(Edited::kSize), 10.0) << "the viewer's time is 0 without one";
  EXPECT_EQ(tool->Redraw(), kOk);
  EXPECT_EQ(tool->Window(), nullptr);
  tool->takesPen = true;
  EXPECT_EQ(tool->OnPenDown({1, 0, 0}), kOk);
  EXPECT_EQ(tool->OnPenUp({1, 0, 0}), kOk);
  tool->takesPen = false;
  EXPECT_EQ(tool->OnPenDown({1, 0, 0}), kFalse);
  EXPECT_EQ(tool->OnPenMove({1, 0, 0}), kFalse);
  EXPECT_EQ(tool->OnPenUp({1, 0, 0}), kFalse);
  EXPECT_EQ(tool->OnRender(nullptr), kOk);
}

TEST(CDSInteractiveTool, HasItsInterfaces) {
  const auto tool = MakeTool();
  EXPECT_TRUE(tool.As<IUnknown>());
  EXPECT_EQ(tool.As<IViewerLayer>().get(), static_cast<IViewerLayer*>(tool.get()));
  EXPECT_EQ(tool.As<IViewerEventSink>().get(), static_cast<IViewerEventSink*>(tool.get()));
  EXPECT_EQ(tool.As<IDSPropertyNotifySink>().get(), static_cast<IDSPropertyNotifySink*>(tool.get()));
  EXPECT_EQ(tool.As<IDSTimeNotifySink>().get(), static_cast<IDSTimeNotifySink*>(tool.get()));
  EXPECT_EQ(tool->QueryInterface(IUnknown::kIid, nullptr), kNullPointer);
  void* none = &none;
  EXPECT_EQ(tool->QueryInterface(IVWViewer::kIid, &none), kNoInterface);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(tool->AddRef(), 2u);
  EXPECT_EQ(tool->Release(), 1u);
}

TEST_F(CDSInteractiveToolLinked, IsObserved) {
  struct Observer : host::ToolObserver {
    void OnGetAnimatedProperty(const GUID&, double value, double time, HRESULT) override {
      seen.push_back({time, value});
    }
    void OnSetAnimatedProperty(const GUID&, double value, double time, HRESULT) override {
      seen.push_back({time, -value});
    }
    Keys seen;
  } observer;
  host::UseToolObserver(&observer);
  tool->Read(Edited::kSize);
  tool->Write(Edited::kSize, 8.0, 3.0);
  host::UseToolObserver(nullptr);
  tool->Read(Edited::kSize);
  EXPECT_EQ(observer.seen, (Keys{{-1.0, 5.0}, {3.0, -8.0}}));
}

}  // namespace
}  // namespace vblur
