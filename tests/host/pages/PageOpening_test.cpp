// What a page of this build's server shows while it opens, before and after the first update of its properties.
#include <gtest/gtest.h>

#include "properties/ClassIds.h"
#include "tests/host/pages/PagedEffect.h"

namespace vblur::host {
namespace {

// What a list shows of its property between Activate and Refresh is the host's to see: it makes page and dialog itself.
class PageOpening : public testing::Test, private IDSPageSite {
 protected:
  ~PageOpening() override {
    page->Deactivate();
    page->SetSite(nullptr);
  }

  void Make(const GUID& clsid) {
    ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IDSPropertyPage::kIid, page.Receive()), kOk);
    IUnknown* const object = properties.get();
    ASSERT_EQ(page->SetSite(this), kOk);
    ASSERT_EQ(page->SetObjects(1, &object), kOk);
    ASSERT_EQ(page->GetPageInfo(&opened.info), kOk);
    ASSERT_EQ(page->Activate(), kOk);
    opened.dialog = dialog;
    dialog->Show(true);
  }
  void Put(std::string_view name, std::int32_t value) const {
    ASSERT_EQ(properties->PutValue(PropertyNamed(name).guid, DSVariant::Of(value)), kOk);
  }
  std::int32_t Held(std::string_view name) const {
    DSVariant value;
    EXPECT_EQ(properties->GetValue(PropertyNamed(name).guid, &value), kOk);
    return value.whole;
  }
  std::int32_t Selected(std::string_view name) const { return ControlOf<ListControl>(opened, name).Selected(); }

  ComPtr<IDSImageEffect> effect = MakeEffect();
  ComPtr<IDSProperties> properties = effect.As<IDSProperties>();
  ComPtr<IDSPropertyPage> page;
  std::shared_ptr<PageDialog> dialog;
  OpenedPage opened;

 private:
  HWND MakeDialog(HMODULE module, std::int32_t number, IDSPropertyPage& made) override {
    dialog = PageDialog::Make(module, number, made);
    return dialog->Handle();
  }
  void DropDialog(HWND) override { dialog->Close(); }
  void ShowDialog(HWND, bool) override {}
  double CurrentTime() override { return 0.0; }
  IDSUndo* Undo() override { return nullptr; }
  void OnPropertyAccess(const char*, const GUID&, double, double, HRESULT) override {}
};

TEST_F(PageOpening, EffectScalingShowsItsSecondEntryUntilTheFirstUpdate) {
  Put("Effect Scaling", 2);
  Make(classes::kHvTransitionPPG);
  EXPECT_EQ(Selected("Effect Scaling"), 1);
  EXPECT_EQ(Held("Effect Scaling"), 2);
  EXPECT_EQ(page->Refresh(), kOk);
  EXPECT_EQ(Selected("Effect Scaling"), 2);
  Put("Effect Scaling", 0);
  EXPECT_EQ(Selected("Effect Scaling"), 0);
  ControlOf<ButtonControl>(opened, "Reset").Press();
  EXPECT_EQ(Held("Effect Scaling"), 2);
  EXPECT_EQ(Selected("Effect Scaling"), 2);
}

TEST_F(PageOpening, ANoticeOfThePropertyIsAnUpdateToo) {
  Put("Effect Scaling", 0);
  Make(classes::kHvTransitionPPG);
  EXPECT_EQ(Selected("Effect Scaling"), 1);
  Put("Effect Scaling", 2);
  EXPECT_EQ(Selected("Effect Scaling"), 2);
}

TEST_F(PageOpening, TheCropPageShowsTheDefaultEdgesUntilTheFirstUpdate) {
  Put("X Edge Method", 0);
  Put("Y Edge Method", 3);
  Make(classes::kFullCropPPG);
  EXPECT_EQ(Selected("X Edge Method"), 2);
  EXPECT_EQ(Selected("Y Edge Method"), 2);
  EXPECT_EQ(page->Refresh(), kOk);
  EXPECT_EQ(Selected("X Edge Method"), 0);
  EXPECT_EQ(Selected("Y Edge Method"), 3);
}

// Without a history nothing can be undone, and all else works.
TEST_F(PageOpening, ThePageNeedsNoHistory) {
  Make(classes::kFullBlurPPG);
  EXPECT_EQ(ControlOf<NumberControl>(opened, "Blur").Type("42"), std::nullopt);
  DSVariant value;
  EXPECT_EQ(properties->GetValue(PropertyNamed("Blur").guid, &value), kOk);
  EXPECT_EQ(value.number, 42.0);
}

}  // namespace
}  // namespace vblur::host
