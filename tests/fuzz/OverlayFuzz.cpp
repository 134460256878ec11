#include "tests/fuzz/OverlayFuzz.h"

#include <cmath>

#include "host/hosted/HostedEffect.h"
#include "overlay/HvTCropBox.h"
#include "properties/ClassIds.h"
#include "properties/PageNames.h"
#include "properties/PropertyTable.h"
#include "tests/fuzz/WeightedChoice.h"

namespace vblur::test {
namespace {

class RandomSurface : public IVWSurface {
 public:
  explicit RandomSurface(const tagVWOPENGLSURFACE& info, bool opens) : info_(info), opens_(opens) {}
  HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE& info) override {
    info = info_;
    return opens_ ? kOk : kFailed;
  }
  HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE&) override { return kOk; }

 private:
  tagVWOPENGLSURFACE info_;
  bool opens_;
};

constexpr std::array kEdited = {
    PropertyId::Blur,      PropertyId::Aspect,     PropertyId::CropLeft,
    PropertyId::CropRight, PropertyId::CropBottom, PropertyId::CropTop,
};
constexpr auto kPages = [] {
  std::array<const char*, pages::kAll.size() + 2> names{};
  for (std::size_t i = 0; i < pages::kAll.size(); ++i)
    names[i] = pages::kAll[i].data();
  names[pages::kAll.size()] = "no such page";
  return names;
}();

}  // namespace

struct OverlayFuzz::Action {
  const char* name;
  int weight;
  void (OverlayFuzz::*act)();
};

OverlayFuzz::OverlayFuzz(std::uint64_t seed) : random_(seed) {
  for (auto& viewer : viewers_)
    viewer = host::Viewer::Make();
  pages_ = std::make_unique<PageFuzz>(random_, effects_, viewers_);
}

OverlayFuzz::~OverlayFuzz() {
  // Tear down in random order.
  if (Chance(2)) pages_.reset();
  const bool widgetsFirst = Chance(2);
  if (widgetsFirst) {
    for (auto& widget : widgets_) {
      if (widget) widget->Detach();
      widget.reset();
    }
  }
  for (int i = Roll(6); i > 0; --i)
    DropEffect();
  for (auto& viewer : viewers_) {
    viewer->Edit(nullptr);
    viewer->Clear();
    viewer->UseUndo(nullptr);
    viewer.reset();
  }
  for (auto& effect : effects_)
    effect.reset();
  pages_.reset();
  for (auto& tool : kept_)
    tool.reset();
  for (auto& widget : widgets_) {
    if (widget) widget->Detach();
    widget.reset();
  }
}

void OverlayFuzz::Step() {
  static constexpr std::array kActions = {
      Action{"effects made", 4, &OverlayFuzz::MakeEffect},
      Action{"effects dropped", 2, &OverlayFuzz::DropEffect},
      Action{"clones made", 1, &OverlayFuzz::CloneEffect},
      Action{"viewers dropped", 1, &OverlayFuzz::DropViewer},
      Action{"viewers turned to another effect", 4, &OverlayFuzz::Edit},
      Action{"pages opened", 8, &OverlayFuzz::OpenPage},
      Action{"pages closed", 4, &OverlayFuzz::ClosePage},
      Action{"pages shown", 12, &OverlayFuzz::ShowPage},
      Action{"controls hidden or shown", 2, &OverlayFuzz::HideControls},
      Action{"pen events on viewers", 120, &OverlayFuzz::PenOnViewer},
      Action{"pen events on tools", 80, &OverlayFuzz::PenOnTool},
      Action{"pen events from within another", 4, &OverlayFuzz::NestedPen},
      Action{"values put", 16, &OverlayFuzz::PutValue},
      Action{"curves put", 6, &OverlayFuzz::PutCurve},
      Action{"notifications", 6, &OverlayFuzz::Notify},
      Action{"times", 8, &OverlayFuzz::ChangeTime},
      Action{"places of the source", 6, &OverlayFuzz::MoveSource},
      Action{"paints", 12, &OverlayFuzz::Paint},
      Action{"tools kept or let go", 4, &OverlayFuzz::KeepTool},
      Action{"links made or undone", 4, &OverlayFuzz::LinkTool},
      Action{"widgets made", 8, &OverlayFuzz::MakeWidget},
      Action{"widgets dropped", 4, &OverlayFuzz::DropWidget},
      Action{"widgets changed", 8, &OverlayFuzz::MoveWidget},
      Action{"actions on property pages", 300, &OverlayFuzz::UsePages},
  };
  const Action& action = ChooseWeighted(kActions, random_);
  (this->*action.act)();
  ++counts_[action.name];
}

HvPoint OverlayFuzz::Place() {
  if (Chance(12)) return {static_cast<float>(Number()), static_cast<float>(Number())};
  // Near a corner, the centre or a ring of the standard frame.
  const auto near = [this](double value) { return static_cast<float>(value + Between(-6.0f, 6.0f)); };
  if (Chance(3)) return {near(Roll(2) * 1920.0), near(Roll(2) * 1080.0)};
  const double angle = Between(0.0f, 6.3f);
  const double radius = Chance(3) ? 37.0 : Between(0.0f, 200.0f);
  return {near(960.0 + radius * std::cos(angle)), near(540.0 + radius * std::sin(angle))};
}

tagVWPENEVENT OverlayFuzz::Pen() {
  const HvPoint place = Place();
  return {Chance(6) ? Roll(4) : 1, place.x, place.y};
}

ComPtr<HvTInteract> OverlayFuzz::SomeTool() {
  if (Chance(5)) return kept_[static_cast<std::size_t>(Roll(static_cast<int>(kept_.size())))];
  Blur* const effect = SomeEffect();
  return ComPtr<HvTInteract>(effect == nullptr ? nullptr : effect->OverlayTool());
}

void OverlayFuzz::MakeEffect() {
  auto& place = effects_[static_cast<std::size_t>(Roll(kEffects))];
  if (place) return;
  CoCreateInstance(classes::kBlur, nullptr, CLSCTX_INPROC_SERVER, kBlurObject, place.Receive());
  tagDSImgFxInfo use;
  use.record = kDSImgFxInfoRecord;
  constexpr std::array kKinds = {host::EffectKind::Filter, host::EffectKind::Transition, host::EffectKind::Paint};
  use.family = host::FamilyOf(kKinds[Chance(6) ? 2 : static_cast<std::size_t>(Roll(2))]);
  place->GetImageEffectInfo(&use);
}

void OverlayFuzz::DropEffect() {
  auto& place = effects_[static_cast<std::size_t>(Roll(kEffects))];
  if (!place) return;
  // Pages may be open and the effect's tool kept. An edited object must be unlinked before it ends.
  for (const auto& viewer : viewers_)
    viewer->Edit(nullptr);
  for (const auto& tool : kept_) {
    if (tool) tool->OnUnlinkFromOperator();
  }
  place.reset();
}

void OverlayFuzz::CloneEffect() {
  Blur* const effect = SomeEffect();
  if (effect == nullptr) return;
  ComPtr<IDSImageEffect> clone;
  effect->Clone(IDSImageEffect::kIid, clone.Receive());
}

void OverlayFuzz::DropViewer() {
  auto& viewer = viewers_[static_cast<std::size_t>(Roll(kViewers))];
  // Kept tools must not point to it.
  viewer->Edit(nullptr);
  viewer->Clear();
  viewer->UseUndo(nullptr);
  for (const auto& tool : kept_) {
    if (tool) tool->OnUnlinkFromViewer();
  }
  viewer = host::Viewer::Make();
}

void OverlayFuzz::Edit() {
  Blur* const effect = SomeEffect();
  SomeViewer().Edit(effect == nullptr ? nullptr : static_cast<IDSProperties*>(effect));
}

void OverlayFuzz::OpenPage() {
  Blur* const effect = SomeEffect();
  if (effect == nullptr) return;
  host::Viewer& viewer = SomeViewer();
  if (!Chance(8)) viewer.Edit(static_cast<IDSProperties*>(effect));
  effect->ConnectOverlay(&viewer);
  if (Chance(2)) ShowPage();
}

void OverlayFuzz::ClosePage() {
  if (Blur* const effect = SomeEffect(); effect != nullptr) effect->DisconnectOverlay();
}

void OverlayFuzz::ShowPage() {
  Blur* const effect = SomeEffect();
  if (effect != nullptr) effect->PageShown(kPages[static_cast<std::size_t>(Roll(static_cast<int>(kPages.size())))]);
}

void OverlayFuzz::HideControls() {
  if (const ComPtr<HvTInteract> tool = SomeTool(); tool) tool->ShowControls(Chance(2));
}

void OverlayFuzz::PenOnViewer() {
  host::Viewer& viewer = SomeViewer();
  const tagVWPENEVENT event = Pen();
  switch (Roll(4)) {
    case 0: viewer.PenDown(event); break;
    case 1: viewer.PenUp(event); break;
    default: viewer.PenMove(event); break;
  }
}

void OverlayFuzz::PenOnTool() {
  const ComPtr<HvTInteract> tool = SomeTool();
  if (!tool) return;
  const tagVWPENEVENT event = Pen();
  switch (Roll(4)) {
    case 0: tool->OnPenDown(event); break;
    case 1: tool->OnPenUp(event); break;
    default: tool->OnPenMove(event); break;
  }
  if (tool->Hit() != nullptr) ++counts_["of these over a widget"];
}

// Pen events from within a property notification.
void OverlayFuzz::NestedPen() {
  class Nesting : public IDSPropertyNotify {
   public:
    Nesting(OverlayFuzz& fuzz, HvTInteract& tool) : fuzz_(fuzz), tool_(tool) {}
    void OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) override {
      if (nested_) return;
      nested_ = true;
      tool_.OnPenMove(fuzz_.Pen());
      tool_.OnPenUp(fuzz_.Pen());
      tool_.OnPenDown(fuzz_.Pen());
    }

   private:
    OverlayFuzz& fuzz_;
    HvTInteract& tool_;
    bool nested_ = false;
  };
  Blur* const effect = SomeEffect();
  if (effect == nullptr || effect->OverlayTool() == nullptr) return;
  const ComPtr<HvTInteract> tool(effect->OverlayTool());
  Nesting nesting(*this, *tool);
  effect->Advise(&nesting);
  tool->OnPenDown(Pen());
  tool->OnPenMove(Pen());
  tool->OnPenUp(Pen());
  effect->Unadvise(&nesting);
}

void OverlayFuzz::PutValue() {
  Blur* const effect = SomeEffect();
  if (effect == nullptr) return;
  const PropertyId id = kEdited[static_cast<std::size_t>(Roll(static_cast<int>(kEdited.size())))];
  effect->PutValue(PropertyOf(id).guid, DSVariant::Of(Number()));
}

void OverlayFuzz::PutCurve() {
  Blur* const effect = SomeEffect();
  if (effect == nullptr) return;
  const GUID& id = PropertyOf(kEdited[static_cast<std::size_t>(Roll(static_cast<int>(kEdited.size())))]).guid;
  if (Chance(3)) {
    effect->RemoveCurve(id);
    return;
  }
  DSCurve curve;
  for (int i = 0; i <= Roll(3); ++i)
    curve.keys.push_back({static_cast<double>(i) * 10.0, Number()});
  effect->PutCurve(id, curve);
}

void OverlayFuzz::Notify() {
  const ComPtr<HvTInteract> tool = SomeTool();
  if (!tool) return;
  const DSVariant value = DSVariant::Of(Number());
  const GUID property = Chance(2)   ? GUID_ALL_PROPERTIES
                        : Chance(2) ? GUID_NO_PROPERTY
                                    : PropertyOf(PropertyId::CropTop).guid;
  tool->OnPropertyChanged(property, Chance(2) ? &value : nullptr, 0);
}

void OverlayFuzz::ChangeTime() {
  if (Chance(2)) {
    SomeViewer().SetTime(Number());
  } else if (const ComPtr<HvTInteract> tool = SomeTool(); tool) {
    tool->OnOnTimeChange(Number());
  }
}

void OverlayFuzz::MoveSource() {
  const ComPtr<HvTInteract> tool = SomeTool();
  if (tool) tool->SetViewRect(Place(), Place());
}

void OverlayFuzz::Paint() {
  const HvPoint corner = Place();
  const tagVWOPENGLSURFACE info{Chance(9) ? 0 : 1 + Roll(2000), Chance(9) ? 0 : 1 + Roll(1000), corner.x, corner.y,
                                Chance(9) ? Number() : 1920.0,  Chance(9) ? Number() : 1080.0};
  RandomSurface surface(info, !Chance(9));
  SomeViewer().Render(surface);
}

void OverlayFuzz::KeepTool() {
  auto& place = kept_[static_cast<std::size_t>(Roll(static_cast<int>(kept_.size())))];
  place = Chance(2) ? SomeTool() : nullptr;
}

void OverlayFuzz::LinkTool() {
  const ComPtr<HvTInteract> tool = SomeTool();
  if (!tool) return;
  switch (Roll(5)) {
    case 0: tool->OnUnlinkFromOperator(); break;
    case 1: tool->OnUnlinkFromViewer(); break;
    case 2: tool->OnLinkToOperator(nullptr); break;
    case 3: tool->OnLinkToViewer(nullptr); break;
    default: tool->OnLinkToOperator(&SomeViewer()); break;
  }
}

void OverlayFuzz::MakeWidget() {
  auto& place = widgets_[static_cast<std::size_t>(Roll(static_cast<int>(kWidgets)))];
  const ComPtr<HvTInteract> tool = SomeTool();
  if (place || !tool) return;
  const auto mask = static_cast<std::uint32_t>(Roll(128));
  switch (Roll(5)) {
    case 0: place = std::make_unique<HvT2DAxis>("axis", mask); break;
    case 1: place = std::make_unique<HvT2DAxisGroup>("axis group", mask); break;
    case 2: place = std::make_unique<HvTRectangle>("rectangle", -40.0f, -30.0f, 40.0f, 30.0f); break;
    case 3: place = std::make_unique<HvTGroup>(Chance(2) ? nullptr : "group"); break;
    default: place = std::make_unique<HvTCircle>("ring", static_cast<float>(Number())); break;
  }
  if (Chance(2)) place->SetTip("effect");
  // Under one of the tool's nodes, at top level, or under another widget.
  HvTObject* const other = widgets_[static_cast<std::size_t>(Roll(static_cast<int>(kWidgets)))].get();
  switch (Roll(4)) {
    case 0: place->SetParent(&tool->FrameCentre()); break;
    case 1: place->SetParent(&tool->SrcCentre()); break;
    case 2: tool->AddObject(place.get()); break;
    default:
      if (other != nullptr && other != place.get()) place->SetParent(other);
      break;
  }
}

void OverlayFuzz::DropWidget() {
  auto& place = widgets_[static_cast<std::size_t>(Roll(static_cast<int>(kWidgets)))];
  if (!place) return;
  place->Detach();
  place.reset();
}

void OverlayFuzz::MoveWidget() {
  HvTObject* const widget = widgets_[static_cast<std::size_t>(Roll(static_cast<int>(kWidgets)))].get();
  if (widget == nullptr) return;
  switch (Roll(7)) {
    case 0: widget->SetOrigin(Place()); break;
    case 1: widget->SetSize(Place()); break;
    case 2: widget->SetHandleScale(static_cast<float>(Number())); break;
    case 3: widget->SetVisibility(static_cast<std::uint32_t>(Roll(4))); break;
    case 4: widget->MarkDirty(); break;
    case 5: widget->UseStackMatrix(Chance(2)); break;
    default:
      if (auto* const axis = dynamic_cast<HvT2DAxis*>(widget); axis != nullptr) {
        const HvPoint place = Place();
        axis->SetCentre(place.x, place.y);
        axis->SetRotation(static_cast<float>(Number()));
        axis->SetScale(static_cast<float>(Number()));
        axis->SetAspect(static_cast<float>(Number()));
      }
      break;
  }
}

void OverlayFuzz::UsePages() {
  ++counts_[pages_->Step()];
}

}  // namespace vblur::test
