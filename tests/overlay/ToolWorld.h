// Stand-ins for the viewer tool's host: an operator with six animated properties, a viewer and a project.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "overlay/HvTInteract.h"
#include "platform/CDSPropertyContainer.h"
#include "platform/ComPtr.h"
#include "platform/Content.h"
#include "sdk/effects/Content.h"
#include "tests/support/window/CountedWindow.h"

namespace vblur::test {

inline constexpr std::array kOperatorProperties = {
    MakeGuid("{00000000-0000-0000-0000-0000000000A1}"), MakeGuid("{00000000-0000-0000-0000-0000000000A2}"),
    MakeGuid("{00000000-0000-0000-0000-0000000000A3}"), MakeGuid("{00000000-0000-0000-0000-0000000000A4}"),
    MakeGuid("{00000000-0000-0000-0000-0000000000A5}"), MakeGuid("{00000000-0000-0000-0000-0000000000A6}"),
};
inline constexpr const GUID& kBlurId = kOperatorProperties[0];
inline constexpr const GUID& kAspectId = kOperatorProperties[1];
inline constexpr const GUID& kLeftId = kOperatorProperties[2];
inline constexpr const GUID& kRightId = kOperatorProperties[3];
inline constexpr const GUID& kBottomId = kOperatorProperties[4];
inline constexpr const GUID& kTopId = kOperatorProperties[5];

class TestOperator : public CDSAliasedPropertyContainer {
 public:
  using Write = std::pair<GUID, double>;

  HRESULT GetStaticPropertyCount(std::int32_t* count) override {
    *count = static_cast<std::int32_t>(kOperatorProperties.size());
    return kOk;
  }
  HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) override {
    static const auto entries = Entries(std::make_index_sequence<kOperatorProperties.size()>());
    static const CDSPropertiesMap own{nullptr, entries};
    *map = &own;
    return kOk;
  }
  HRESULT PutValue(const GUID& property, const DSVariant& value) override {
    writes.emplace_back(property, value.AsNumber());
    return CDSAliasedPropertyContainer::PutValue(property, value);
  }

  std::array<double, kOperatorProperties.size()> values{10.0, 0.0, 0.0, 100.0, 0.0, 100.0};
  // The values that were put, in order.
  std::vector<Write> writes;

 private:
  template <std::size_t... I>
  static std::array<CDSPropertiesMapEntry, sizeof...(I)> Entries(std::index_sequence<I...>) {
    return {EntryOf<I>()...};
  }
  template <std::size_t i>
  static CDSPropertiesMapEntry EntryOf() {
    constexpr std::int32_t kAnimated = 5;
    CDSPropertiesMapEntry entry;
    entry.param.id = kOperatorProperties[i];
    entry.param.capability = kAnimated;
    entry.member = [](CDSBasePropertyContainer& container) -> void* {
      return &static_cast<TestOperator&>(container).values[i];
    };
    return entry;
  }
};

// Counts the calls of a tool.
class TestViewer : public IVWViewer {
 public:
  virtual ~TestViewer() = default;

  HRESULT QueryInterface(const GUID& iid, void** result) override {
    *result = iid == IUnknown::kIid || iid == IVWViewer::kIid ? static_cast<IVWViewer*>(this) : nullptr;
    return *result == nullptr ? kNoInterface : kOk;
  }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  HRESULT InvalidateLayer(IUnknown*, const void*) override {
    ++invalidations;
    return kOk;
  }
  HWND Window() override { return window.Handle(); }
  double CurrentTime() override { return time; }
  HRESULT BeginInteraction(const tagVWPENEVENT&) override { return Note("begin"); }
  HRESULT DoInteraction(const tagVWPENEVENT&) override { return Note("do"); }
  HRESULT EndInteraction() override { return Note("end"); }
  HRESULT PushContext(std::int32_t, IUnknown*, std::uintptr_t*) override { return kFailed; }
  HRESULT RemoveContext(std::uintptr_t) override { return kFailed; }

  int TakeInvalidations() { return std::exchange(invalidations, 0); }

  int invalidations = 0;
  CountedWindow window;
  double time = 0.0;
  std::vector<std::string> interactions;

 private:
  HRESULT Note(const char* what) {
    interactions.emplace_back(what);
    return kOk;
  }
};

class TestProject : public IDSEffectHost {
 public:
  TestProject(double userX, double userY, double worldX, double worldY) : sizes_{userX, userY, worldX, worldY} {
    host::UseContent(this);
  }
  ~TestProject() override { host::UseContent(nullptr); }

  HRESULT ContentProperty(const char* key, double& value) const override {
    asked.emplace_back(key);
    constexpr std::array keys{kProjectUserSizeX, kProjectUserSizeY, kProjectWorldSizeX, kProjectWorldSizeY};
    for (std::size_t i = 0; i < keys.size(); ++i) {
      if (std::string(keys[i]) != key) continue;
      value = sizes_[i];
      return kOk;
    }
    return kWrongArgument;
  }

  // The keys read, in order.
  mutable std::vector<std::string> asked;

 private:
  std::array<double, 4> sizes_;
};

inline ComPtr<HvTInteract> NewTool() {
  return ComPtr<HvTInteract>::Own(new HvTInteract());
}

// A tool over a frame of 400 x 200 pixels, linked to an operator and a viewer.
struct ToolWorld {
  ToolWorld() {
    tool->OnLinkToOperator(static_cast<IDSProperties*>(theOperator.get()));
    tool->OnLinkToViewer(&viewer);
    viewer.invalidations = 0;
  }
  ~ToolWorld() {
    if (!tool) return;
    tool->OnUnlinkFromViewer();
    tool->OnUnlinkFromOperator();
  }

  void PenDown(double x, double y) { tool->OnPenDown({1, x, y}); }
  void PenMove(double x, double y) { tool->OnPenMove({0, x, y}); }
  void PenUp(double x, double y) { tool->OnPenUp({1, x, y}); }

  TestProject project{400.0, 200.0, 400.0, 200.0};
  ComPtr<TestOperator> theOperator = ComPtr<TestOperator>::Own(new TestOperator());
  TestViewer viewer;
  ComPtr<HvTInteract> tool = NewTool();
};

}  // namespace vblur::test
