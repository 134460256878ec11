#include "pages/HelpPPG.h"

#include "tests/pages/OpenedManuals.h"
#include "tests/pages/PageTest.h"

namespace vblur {
namespace {

using host::Calls;
using host::CheckBoxControl;

class HelpPPGTest : public PageTest<HelpPPG> {
 protected:
  static bool ShowsOverlay(const HvTInteract& tool) { return (tool.DisplayFlags() & 1) != 0; }
};

TEST_F(HelpPPGTest, IsNamed) {
  ExpectNamed("HelpPPG", u"Help", 3);
}

TEST_F(HelpPPGTest, MapsItsControls) {
  ExpectControlMap(*page, "Vessin4.3",
                   {
                       {std::nullopt, 11, 1014, true, 16, 1049},
                       {std::nullopt, 0, 1017, true, 18, 1056},
                   });
  const void* const hide = page->GetControlMap()->Find(1014)->variable(*page);
  EXPECT_EQ(RecordOf<bool>(hide).property, PropertyOf(PropertyId::HideOverlayControls).guid);
  EXPECT_FALSE(*static_cast<const bool*>(hide));
  Open();
  EXPECT_EQ(site.dialog->Item(1014)->ToolTip(), u"Turn overlay elements off and on.");
  EXPECT_EQ(site.dialog->Item(1017)->ToolTip(), u"");
}

TEST_F(HelpPPGTest, ShowsItsTexts) {
  Activate();
  EXPECT_EQ(TextOf(1016),
            u"V_Blur can be used to blur or sharpen an image using a fast gaussian filter. The effect is sub-pixel "
            u"accurate that can be animated smoothly over time. It can also be applied to a specific channel "
            u"(including Y/U/V). The Aspect parameter is used to bias the blur in one dimension or the other.\n");
  EXPECT_TRUE(TextOf(1018).starts_with(u"V_Blur ")) << "and the version";
  EXPECT_EQ(TextOf(1019), u"Halvern's Blur and Sharpen Effect");
  EXPECT_EQ(TextOf(1020), u"Copyright (c) Halvern");
  EXPECT_EQ(TextOf(1021), u"All rights reserved.");
}

// The frame is no text, nor is the logo.
TEST_F(HelpPPGTest, FillsItsTextsInOrder) {
  struct Filling : host::PageObserver {
    void OnWindowChanged(host::PageWindow& window) override { ids.push_back(window.Id()); }
    std::vector<std::int32_t> ids;
  } filling;
  // As the dialog is made, before the page fills it.
  class Watching final : public IDSPageSite {
   public:
    Watching(host::RecordingSite& behind, host::PageObserver& observer) : behind_(behind), observer_(observer) {}
    HWND MakeDialog(HMODULE module, std::int32_t dialog, IDSPropertyPage& page) override {
      const HWND made = behind_.MakeDialog(module, dialog, page);
      behind_.dialog->AddObserver(observer_);
      return made;
    }
    void DropDialog(HWND dialog) override { behind_.DropDialog(dialog); }
    void ShowDialog(HWND dialog, bool show) override { behind_.ShowDialog(dialog, show); }
    double CurrentTime() override { return 0.0; }
    IDSUndo* Undo() override { return nullptr; }
    void OnPropertyAccess(const char*, const GUID&, double, double, HRESULT) override {}

   private:
    host::RecordingSite& behind_;
    host::PageObserver& observer_;
  } watching(site, filling);
  page->SetSite(&watching);
  EXPECT_EQ(page->Activate(), kOk);
  EXPECT_EQ(filling.ids, (std::vector{1019, 1020, 1021, 1018, 1016}));
  Close();
}

TEST_F(HelpPPGTest, LinksTheEffect) {
  ExpectLink();
}

TEST_F(HelpPPGTest, LivesWithoutAnEffect) {
  const OpenedManuals manuals;
  ExpectToLiveWithoutEffect();
  EXPECT_EQ(manuals.After(2).size(), 2u) << "the manual opens all the same";
}

TEST_F(HelpPPGTest, CountsInItsServer) {
  ExpectCounted();
}

TEST_F(HelpPPGTest, HidesTheOverlay) {
  Open();
  const HvTInteract& tool = *effect->OverlayTool();
  EXPECT_TRUE(ShowsOverlay(tool));
  auto& hide = Of<CheckBoxControl>(1014);
  EXPECT_FALSE(hide.IsChecked());
  // No paint is possible, but the viewer has been asked for one.
  struct ClosedSurface final : IVWSurface {
    HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE&) override { return kFailed; }
    HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE&) override { return kOk; }
  } surface;
  viewer->Render(surface);
  ASSERT_FALSE(viewer->IsInvalid());
  hide.Toggle();
  EXPECT_FALSE(ShowsOverlay(tool));
  EXPECT_TRUE(viewer->IsInvalid());
  hide.Toggle();
  EXPECT_TRUE(ShowsOverlay(tool));
}

TEST_F(HelpPPGTest, HidingIsNotStoredAndNotUndone) {
  Open();
  Of<CheckBoxControl>(1014).Toggle();
  EXPECT_EQ(Get(PropertyId::HideOverlayControls), 0.0);
  EXPECT_FALSE(history.CanUndo());
  EXPECT_EQ(site.TakenChanges(), (Calls{"begin \"\"", "end"}));
  Put(PropertyId::HideOverlayControls, 1.0);
  Put(PropertyId::HideOverlayControls, 0.0);
  page->Refresh();
  EXPECT_TRUE(Of<CheckBoxControl>(1014).IsChecked()) << "the property does not move it";
  EXPECT_EQ(site.TakenChanges(), Calls{});
}

// Another page keeps the tool: the box is empty, the overlay hidden.
TEST_F(HelpPPGTest, StartsUntickedWhateverTheToolShows) {
  Open();
  effect->ConnectOverlay(Edited());
  const ComPtr<HvTInteract> tool(effect->OverlayTool());
  Of<CheckBoxControl>(1014).Toggle();
  Close();
  page = ComPtr<HelpPPG>::Own(new HelpPPG);
  Open();
  EXPECT_EQ(effect->OverlayTool(), tool.get());
  EXPECT_FALSE(Of<CheckBoxControl>(1014).IsChecked());
  EXPECT_FALSE(ShowsOverlay(*tool));
  effect->DisconnectOverlay();
}

TEST_F(HelpPPGTest, StartsUntickedAgain) {
  Open();
  Of<CheckBoxControl>(1014).Toggle();
  page->Deactivate();
  page->Activate();
  EXPECT_FALSE(Of<CheckBoxControl>(1014).IsChecked());
  const void* const hide = page->GetControlMap()->Find(1014)->variable(*page);
  EXPECT_FALSE(*static_cast<const bool*>(hide));
}

TEST_F(HelpPPGTest, HidesNothingWithoutATool) {
  ToolServer::offers = false;
  Open();
  ASSERT_EQ(effect->OverlayTool(), nullptr);
  Of<CheckBoxControl>(1014).Toggle();
  EXPECT_TRUE(Of<CheckBoxControl>(1014).IsChecked());
}

TEST_F(HelpPPGTest, OpensTheManual) {
  const OpenedManuals manuals;
  Open();
  Press(1017);
  page->Help(u"folder");
  EXPECT_EQ(manuals.After(2), std::vector(2, manuals.Place()));
}

}  // namespace
}  // namespace vblur
