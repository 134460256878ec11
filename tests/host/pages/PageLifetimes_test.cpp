// What pages, listeners and observers may do to each other within their calls, and calls out of order. The sanitizers
// see what is used after its end.
#include <functional>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "host/pages/EffectPages.h"
#include "host/pages/NumberControl.h"
#include "host/pages/PagePlayer.h"
#include "host/pages/UndoHistory.h"
#include "properties/ClassIds.h"
#include "resources/Numbers.h"
#include "tests/support/TestServer.h"

namespace vblur::host {
namespace {

// Calls once, at the first notice.
class Once : public IDSPropertyNotify, public PageObserver {
 public:
  explicit Once(std::function<void()> act) : act_(std::move(act)) {}
  void OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) override { Act(); }
  void OnWindowChanged(PageWindow&) override { Act(); }

 private:
  void Act() {
    if (const auto act = std::exchange(act_, nullptr); act) act();
  }

  std::function<void()> act_;
};

// Without dialogs that anybody sees.
class BareSite : public IDSPageSite {
 public:
  HWND MakeDialog(HMODULE module, std::int32_t dialog, IDSPropertyPage& page) override {
    dialog_ = PageDialog::Make(module, dialog, page);
    return dialog_->Handle();
  }
  void DropDialog(HWND) override { std::exchange(dialog_, nullptr)->Close(); }
  void ShowDialog(HWND, bool show) override { dialog_->Show(show); }
  double CurrentTime() override { return 0.0; }
  IDSUndo* Undo() override { return nullptr; }
  void OnPropertyAccess(const char*, const GUID&, double, double, HRESULT) override {}

 private:
  std::shared_ptr<PageDialog> dialog_;
};

class Stranger final : public IUnknown {
 public:
  HRESULT QueryInterface(const GUID&, void** result) override {
    *result = nullptr;
    return kNoInterface;
  }
  std::uint32_t AddRef() override {
    EXPECT_GT(references, 0u) << "it has ended";
    return ++references;
  }
  std::uint32_t Release() override { return --references; }

  std::uint32_t references = 1;
};

ComPtr<IDSPropertyPage> MakePage(const GUID& clsid) {
  ComPtr<IDSPropertyPage> page;
  EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IDSPropertyPage::kIid, page.Receive()), kOk);
  return page;
}

class PageLifetimes : public testing::Test {
 protected:
  NumberControl& BlurControl() {
    return dynamic_cast<NumberControl&>(*pages->Find("FullBlurPPG")->dialog->Item(resources::full_blur::kBlur));
  }
  void OpenOthers() {
    for (const char* name : {"crop", "transition", "TransitionBlurPPG"})
      pages->Show(name);
  }
  double Blur() {
    DSVariant value;
    properties->GetValue(PropertyOf(PropertyId::Blur).guid, &value);
    return value.number;
  }

  ComPtr<IDSImageEffect> effect = MakeEffect();
  ComPtr<IDSProperties> properties = effect.As<IDSProperties>();
  UndoHistory history{*properties};
  std::unique_ptr<EffectPages> pages = std::make_unique<EffectPages>(*properties, history);
};

TEST_F(PageLifetimes, APageThatClosesWithinItsActionLeavesNoStepOpen) {
  for (const bool closesAll : {false, true}) {
    pages = std::make_unique<EffectPages>(*properties, history);
    pages->Show("FullBlurPPG");
    Once closing([&] { closesAll ? pages.reset() : pages->Close("FullBlurPPG"); });
    properties->Advise(&closing);
    EXPECT_FALSE(BlurControl().Type("33").has_value());
    properties->Unadvise(&closing);
    ASSERT_TRUE(history.CanUndo());
    EXPECT_TRUE(history.Undo());
    EXPECT_EQ(Blur(), 10.0);
  }
}

TEST_F(PageLifetimes, AScriptsScrubMayCloseItsPage) {
  PagePlayer player(*pages, history, {});
  Once closing([&] { pages->CloseAll(); });
  pages->Show("FullBlurPPG");
  properties->Advise(&closing);
  EXPECT_NO_THROW(player.Play(ReadPageEvent("scrub Blur 1 2 3", "script:1")));
  properties->Unadvise(&closing);
  EXPECT_EQ(Blur(), 11.0);
  EXPECT_EQ(history.UndoDepth(), 1u);
}

TEST_F(PageLifetimes, ObserversMayOpenPagesWhileTheTimeChanges) {
  const DSCurve curve{{{0.0, 1.0}, {10.0, 2.0}}};
  properties->PutCurve(PropertyOf(PropertyId::Blur).guid, curve);
  pages->Show("FullBlurPPG");
  pages->Show("HelpPPG");
  Once opening([&] { OpenOthers(); });
  BlurControl().AddObserver(opening);
  pages->SetTime(5.0);
  EXPECT_EQ(pages->Count(), 5u);
  EXPECT_EQ(BlurControl().Value(), 1.5);
  BlurControl().RemoveObserver(opening);
}

TEST_F(PageLifetimes, ObserversMayOpenPagesWhileOneIsHidden) {
  pages->Show("FullBlurPPG");
  Once opening([&] { OpenOthers(); });
  pages->Front()->dialog->AddObserver(opening);
  pages->Show("HelpPPG");
  EXPECT_EQ(pages->Count(), 5u);
  EXPECT_EQ(pages->Front()->name, "HelpPPG");
}

TEST_F(PageLifetimes, ADialogThatIsMadeAgainTakesTheEffectOnce) {
  effect->AddRef();
  const std::uint32_t before = effect->Release();
  for (const GUID& clsid : {classes::kFullBlurPPG, classes::kTransitionBlurPPG, classes::kHvTransitionPPG,
                            classes::kHelpPPG, classes::kFullCropPPG}) {
    BareSite site;
    ComPtr<IDSPropertyPage> page = MakePage(clsid);
    IUnknown* const object = properties.get();
    page->SetSite(&site);
    page->SetObjects(1, &object);
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(page->Activate(), kOk);
      EXPECT_EQ(page->Deactivate(), kOk);
    }
    page.reset();
    effect->AddRef();
    EXPECT_EQ(effect->Release(), before) << classes::NameOf(clsid);
  }
}

TEST_F(PageLifetimes, APageMayBeGivenWhatItAloneHolds) {
  Stranger stranger;
  IUnknown* const object = &stranger;
  ComPtr<IDSPropertyPage> page = MakePage(classes::kHelpPPG);
  EXPECT_EQ(page->SetObjects(1, &object), kOk);
  stranger.Release();
  EXPECT_EQ(page->SetObjects(1, &object), kOk);
  EXPECT_EQ(stranger.references, 1u);
  page.reset();
  EXPECT_EQ(stranger.references, 0u);
}

}  // namespace
}  // namespace vblur::host
