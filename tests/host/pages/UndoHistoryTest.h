// A new effect of this build's server with a history, and listeners that answer changes.
#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/pages/UndoHistory.h"
#include "platform/IDSImageEffect.h"
#include "tests/support/TestServer.h"

namespace vblur::host {

inline const GUID& IdOf(PropertyId property) {
  return PropertyOf(property).guid;
}

// Calls a function for every notice, and keeps the ids.
struct Listener : IDSPropertyNotify {
  explicit Listener(IDSProperties& properties, std::function<void(const GUID&)> answer = {})
      : answers(std::move(answer)), to(&properties) {
    to->Advise(this);
  }
  ~Listener() { to->Unadvise(this); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  void OnPropertyChanged(const GUID& property, const DSVariant*, std::uint32_t) override {
    notices.push_back(property);
    if (answers) answers(property);
  }

  std::vector<GUID> notices;
  std::function<void(const GUID&)> answers;
  ComPtr<IDSProperties> to;
};

class UndoHistoryTest : public ::testing::Test {
 protected:
  using enum PropertyId;

  double Get(PropertyId property) {
    DSVariant value;
    EXPECT_EQ(properties->GetValue(IdOf(property), &value), kOk);
    return value.AsNumber();
  }
  void Put(PropertyId property, double value) {
    EXPECT_EQ(properties->PutValue(IdOf(property), DSVariant::Of(value)), kOk);
  }
  void PutCurve(PropertyId property, const DSCurve& curve) {
    EXPECT_EQ(properties->PutCurve(IdOf(property), curve), kOk);
  }
  // Nothing without a curve.
  std::optional<DSCurve> CurveOf(PropertyId property) {
    const DSCurve* curve = nullptr;
    EXPECT_GE(properties->GetCurve(IdOf(property), &curve), kOk);
    return curve == nullptr ? std::nullopt : std::optional(*curve);
  }
  // Undo and redo depth.
  std::pair<std::size_t, std::size_t> Depths() const { return {history.UndoDepth(), history.RedoDepth()}; }
  static std::pair<std::size_t, std::size_t> Are(std::size_t undos, std::size_t redos) { return {undos, redos}; }

  ComPtr<IDSImageEffect> effect = MakeEffect();
  ComPtr<IDSProperties> properties = effect.As<IDSProperties>();
  UndoHistory history{*properties};
};

}  // namespace vblur::host
