// Plans and pictures of sheets for the tests.
#pragma once

#include "host/studies/SheetPanels.h"
#include "host/studies/TestChart.h"

namespace vblur::host {

inline SheetRequest RequestOf(SheetKind kind, const std::map<PropertyId, double>& settings = {}) {
  SheetRequest request;
  request.kind = kind;
  for (const auto& [id, value] : settings) {
    request.properties.Set(PropertyOf(id).guid, value);
    request.given.insert(id);
  }
  return request;
}

// The box radius equals the value of `Blur`.
inline BlurSizeFacts PlainFacts(double blur) {
  return {blur, blur, 1.0};
}

inline SheetPlan PlanOf(SheetKind kind, const std::map<PropertyId, double>& settings = {}) {
  return PlanSheet(RequestOf(kind, settings), PlainFacts);
}

inline double ValueOf(const SheetPanel& panel, PropertyId id) {
  return panel.properties.ValueAt(PropertyOf(id).guid, panel.time);
}

}  // namespace vblur::host
