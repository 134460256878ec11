// A tool that records its calls, and an object with properties for it to edit.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/properties/PropertyText.h"
#include "platform/CDSInteractiveTool.h"
#include "platform/CDSPropertyContainer.h"
#include "platform/ComPtr.h"

namespace vblur {

class RecordingTool : public CDSInteractiveTool {
 public:
  // Tools that share a list record their calls in one order.
  explicit RecordingTool(std::string name = "tool", std::vector<std::string>* calls = nullptr)
      : name_(std::move(name)), calls_(calls == nullptr ? &own_ : calls) {}
  ~RecordingTool() override = default;

  HRESULT OnRender(IVWSurface* surface) override {
    Keep("render");
    if (onRender) onRender(surface);
    return CDSInteractiveTool::OnRender(surface);
  }
  HRESULT OnLinkToOperator(IUnknown* newOperator) override {
    Keep("link operator");
    if (failingOperator) return kFailed;
    const HRESULT result = CDSInteractiveTool::OnLinkToOperator(newOperator);
    if (result == kOk) readAtLink = Read(readFirst);
    return result;
  }
  HRESULT OnUnlinkFromOperator() override {
    Keep("unlink operator");
    return CDSInteractiveTool::OnUnlinkFromOperator();
  }
  HRESULT OnLinkToViewer(IVWViewer* newViewer) override {
    Keep("link viewer");
    return failingViewer ? kFailed : CDSInteractiveTool::OnLinkToViewer(newViewer);
  }
  HRESULT OnUnlinkFromViewer() override {
    Keep("unlink viewer");
    return CDSInteractiveTool::OnUnlinkFromViewer();
  }
  HRESULT OnPenDown(const tagVWPENEVENT& event) override {
    KeepPen("down", event);
    if (!takesPen) return CDSInteractiveTool::OnPenDown(event);
    return OnBeginInteraction(event);
  }
  HRESULT OnPenMove(const tagVWPENEVENT& event) override {
    KeepPen("move", event);
    if (!takesPen) return CDSInteractiveTool::OnPenMove(event);
    return OnDoInteraction(event);
  }
  HRESULT OnPenUp(const tagVWPENEVENT& event) override {
    KeepPen("up", event);
    if (!takesPen) return CDSInteractiveTool::OnPenUp(event);
    if (onUp) onUp();
    return TerminateInteraction();
  }
  HRESULT OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) override {
    Keep("changed " + (value == nullptr ? std::string("a curve") : host::FormatNumber(value->AsNumber())));
    lastChanged = property;
    return CDSInteractiveTool::OnPropertyChanged(property, value, flags);
  }
  HRESULT OnOnTimeChange(double time) override {
    Keep("time " + host::FormatNumber(time));
    return CDSInteractiveTool::OnOnTimeChange(time);
  }

  // -99 when it cannot be read.
  double Read(const GUID& property, double time = -1.0) {
    DSVariant value;
    return GetAnimatedProperty(property, &value, nullptr, time) == kOk ? value.AsNumber() : -99.0;
  }
  HRESULT Write(const GUID& property, double value, double time = -1.0) {
    return SetAnimatedProperty(property, DSVariant::Of(value), nullptr, time, 0);
  }
  HRESULT Redraw() { return InvalidateLayer(1, nullptr); }
  HWND Window() const { return GetViewerWindow(); }
  using CDSInteractiveTool::GetAnimatedProperty;

  std::vector<std::string> Taken() { return std::exchange(*calls_, {}); }

  bool takesPen = false;
  bool failingViewer = false;
  bool failingOperator = false;
  GUID readFirst;
  double readAtLink = -1.0;
  GUID lastChanged;
  std::function<void(IVWSurface*)> onRender;
  std::function<void()> onUp;

 private:
  void Keep(const std::string& call) { calls_->push_back(name_ + ": " + call); }
  void KeepPen(const std::string& call, const tagVWPENEVENT& event) {
    Keep(call + " " + std::to_string(event.button) + " " + host::FormatNumber(event.x) + " " +
         host::FormatNumber(event.y));
  }

  std::string name_;
  std::vector<std::string> own_;
  std::vector<std::string>* calls_;
};

inline ComPtr<RecordingTool> MakeTool(std::string name = "tool", std::vector<std::string>* calls = nullptr) {
  return ComPtr<RecordingTool>::Own(new RecordingTool(std::move(name), calls));
}

// Two numbers that may have curves, and a whole number that may not.
class Edited : public CDSAliasedPropertyContainer {
 public:
  static constexpr GUID kSize = MakeGuid("{00000000-0000-0000-0000-0000000000A1}");
  static constexpr GUID kAspect = MakeGuid("{00000000-0000-0000-0000-0000000000A2}");
  static constexpr GUID kChoice = MakeGuid("{00000000-0000-0000-0000-0000000000A3}");

  HRESULT GetStaticPropertyCount(std::int32_t* count) override {
    *count = 3;
    return kOk;
  }
  HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) override {
    static const CDSPropertiesMapEntry entries[] = {
        {Number(kSize), [](CDSBasePropertyContainer& c) -> void* { return &static_cast<Edited&>(c).size; }},
        {Number(kAspect), [](CDSBasePropertyContainer& c) -> void* { return &static_cast<Edited&>(c).aspect; }},
        {Whole(kChoice), [](CDSBasePropertyContainer& c) -> void* { return &static_cast<Edited&>(c).choice; }},
    };
    static const CDSPropertiesMap all{nullptr, entries};
    *map = &all;
    return kOk;
  }
  const DSCurve* Curve(const GUID& property) {
    const DSCurve* curve = nullptr;
    GetCurve(property, &curve);
    return curve;
  }

  double size = 5.0;
  double aspect = 0.0;
  std::int32_t choice = 2;

 private:
  static CDSParamDef Number(const GUID& id) {
    CDSParamDef param;
    param.id = id;
    param.capability = 5;
    return param;
  }
  static CDSParamDef Whole(const GUID& id) {
    CDSParamDef param;
    param.id = id;
    param.capability = 4;
    param.type = DSValueType::Integer32;
    return param;
  }
};

inline ComPtr<Edited> MakeEdited() {
  return ComPtr<Edited>::Own(new Edited);
}

}  // namespace vblur
