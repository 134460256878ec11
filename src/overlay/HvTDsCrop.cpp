#include "overlay/HvTDsCrop.h"

#include <optional>

#include "overlay/HvTInteract.h"
#include "overlay/ProjectFrame.h"

namespace vblur {

HvTDsCrop::HvTDsCrop() : HvTCropBox("Crop Box", 0.0f, 0.0f, 1.0f, 1.0f) {
  properties_.fill(GUID_NO_PROPERTY);
  Obey(this);
  const ProjectFrame frame = ReadProjectFrame();
  SetLimits(0.0f, 0.0f, static_cast<float>(frame.width), static_cast<float>(frame.height));
}

HvTDsCrop::~HvTDsCrop() {
  Detach();
  LeaveTool();
}

void HvTDsCrop::BindProperties(const GUID& left, const GUID& right, const GUID& bottom, const GUID& top) {
  properties_ = {left, right, bottom, top};
}

HvTDsCrop::Places HvTDsCrop::CurrentPlaces() const {
  return {X0(), X1(), Y0(), Y1()};
}

void HvTDsCrop::TakePlaces(const Places& places) {
  SetBox(static_cast<float>(places[kLeftLine]), static_cast<float>(places[kBottomLine]),
         static_cast<float>(places[kRightLine]), static_cast<float>(places[kTopLine]));
}

HvTDsCrop::Span HvTDsCrop::SpanOf(Line line) const {
  const HvBox& area = Limits();
  if (line == kLeftLine || line == kRightLine) return {area.minX, area.maxX - area.minX};
  return {area.minY, area.maxY - area.minY};
}

double HvTDsCrop::PlaceOf(Line line, double percent) const {
  const Span span = SpanOf(line);
  return static_cast<double>(span.from) + static_cast<double>(span.extent) * percent / 100.0;
}

float HvTDsCrop::PercentOf(Line line, float place) const {
  const Span span = SpanOf(line);
  return (place - span.from) * 100.0f / span.extent;
}

void HvTDsCrop::Commit() {
  if (Tool() == nullptr) return;
  const auto write = [this](HvTRectangle::Edge edge, Line line, float place) {
    if ((EdgeMask() & edge) == 0) return;
    Tool()->WriteAnimated(properties_[line], static_cast<double>(PercentOf(line, place)));
  };
  write(HvTRectangle::kLeft, kLeftLine, X0());
  write(HvTRectangle::kRight, kRightLine, X1());
  write(HvTRectangle::kBottom, kBottomLine, Y0());
  write(HvTRectangle::kTop, kTopLine, Y1());
}

std::int32_t HvTDsCrop::OnPropertyChange(const GUID& property, const DSVariant* value) {
  Places places = CurrentPlaces();
  bool concerned = false;
  for (const Line line : {kLeftLine, kRightLine, kBottomLine, kTopLine}) {
    const GUID& bound = properties_[line];
    std::optional<double> percent;
    if (value != nullptr) {
      if (property == bound || property == GUID_ALL_PROPERTIES) percent = value->AsNumber();
    } else if (Tool() != nullptr) {
      percent = Tool()->ReadIfAffected(property, bound);
    }
    if (!percent) continue;
    places[line] = PlaceOf(line, *percent);
    concerned = true;
  }
  if (concerned) TakePlaces(places);
  return concerned ? 1 : 0;
}

void HvTDsCrop::OnTime(double time) {
  if (Tool() == nullptr) return;
  Places places{};
  for (const Line line : {kLeftLine, kRightLine, kBottomLine, kTopLine}) {
    const auto percent = Tool()->ReadAnimated(properties_[line], time);
    if (!percent) return;
    places[line] = PlaceOf(line, *percent);
  }
  TakePlaces(places);
}

}  // namespace vblur
