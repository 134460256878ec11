// Link between the effect and its controls over the viewer, while pages are open.
#include <string_view>

#include "effect/Blur.h"
#include "image/HvThreadWord.h"
#include "properties/ClassIds.h"
#include "properties/PageNames.h"
#include "properties/PropertyTable.h"

namespace vblur {
namespace {

void Show(HvTObject& widget, bool show) {
  const std::uint32_t others = widget.State() & ~static_cast<std::uint32_t>(HvTObject::kVisible);
  widget.SetVisibility(show ? others | HvTObject::kVisible : others);
}

}  // namespace

HRESULT HvDsEffect::ConnectOverlay(IUnknown* viewer) {
  if (viewer == nullptr) return kNullPointer;
  if (effectKind == kKindPaint) return kOk;
  ++overlayUseCount;
  if (overlayTool) return kOk;
  ComPtr<IUnknown> tool;
  const HRESULT made =
      CoCreateInstance(classes::kHvTInteract, nullptr, CLSCTX_INPROC_SERVER, IUnknown::kIid, tool.Receive());
  if (made < 0) return made;
  VWControllerPushContext(kVWInteractiveContext, tool.get(), viewer, false, false, 0.0, &overlayContext);
  const HRESULT result = tool->QueryInterface(classes::kHvTInteract, overlayTool.Receive());
  if (overlayTool) {
    overlayThread.store(HvThreadNumber());
    AttachOverlay();
  }
  return result;
}

void HvDsEffect::DisconnectOverlay() {
  if (overlayUseCount == 0) return;
  if (--overlayUseCount == 0) ReleaseOverlay();
}

void HvDsEffect::ReleaseOverlay() {
  overlayUseCount = 0;
  overlayThread.store(0);
  if (overlayTool) DetachOverlay();
  if (overlayContext != 0) VWControllerRemoveContext(overlayContext);
  overlayContext = 0;
  overlayTool.reset();
}

void Blur::AttachOverlay() {
  if (!overlayTool) return;
  blurControl.SetParent(&overlayTool->FrameCentre());
  blurControl.BindProperties(PropertyOf(PropertyId::Blur).guid, PropertyOf(PropertyId::Aspect).guid);
  Show(blurControl, false);
  overlayTool->AddDsObject(&blurControl);
  if (!overlayReady) UpdateOverlayPlacement();

  cropControl.SetParent(&overlayTool->ViewZero());
  cropControl.BindProperties(PropertyOf(PropertyId::CropLeft).guid, PropertyOf(PropertyId::CropRight).guid,
                             PropertyOf(PropertyId::CropBottom).guid, PropertyOf(PropertyId::CropTop).guid);
  Show(cropControl, false);
  overlayTool->AddDsObject(&cropControl);
  if (!overlayReady) UpdateOverlayPlacement();
  overlayReady = true;
  overlayTool->BeforeUse([this] {
    if (overlayPlaceStale.load()) UpdateOverlayPlacement();
  });
}

void Blur::DetachOverlay() {
  overlayTool->BeforeUse(nullptr);
  for (HvTDsObject* binding : {static_cast<HvTDsObject*>(&cropControl), static_cast<HvTDsObject*>(&blurControl)})
    binding->LeaveTool();
  cropControl.Detach();
  blurControl.Detach();
}

void Blur::PageShown(const char* pageName, std::int32_t, std::int32_t) {
  if (!overlayTool) return;
  const std::string_view page = pageName == nullptr ? std::string_view() : pageName;
  Show(blurControl, pages::ShowsCircle(page));
  Show(cropControl, pages::ShowsCropBox(page));
  UpdateOverlayPlacement();
  overlayTool->Redraw();
}

void Blur::UpdateOverlayPlacement() {
  if (!overlayTool) return;
  overlayPlaceStale.store(false);
  const PlaceRecord place = ReportedPlace(frame.inputPlace);
  const HvPoint origin{place.positionX, place.positionY};
  const HvPoint size{place.sizeX, place.sizeY};
  const HvPoint corner = origin + size;
  cropControl.KeepWithinLimits(true);
  cropControl.SetLimits(origin.x, origin.y, corner.x, corner.y);
  cropControl.Refresh();
  overlayTool->SetViewRect(origin, size);
}

}  // namespace vblur
