#include "overlay/HvT2DAxis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "image/Arithmetic.h"
#include "overlay/Drawing.h"
#include "overlay/ScopeExit.h"

namespace vblur {
namespace {

// Added to the tolerance for the aspect handle and the centre.
constexpr HvPoint kDotMargin{3.0f, 3.0f};
// Half the span of the arc, in radians.
constexpr float kHalfArc = 0.7853982f;
// Half the width of an arrow in the box of the control.
constexpr float kArrowBoxWidth = 3.0f;
constexpr float kAspectHandleOffset = 10.0f;

// Single-precision product, double-precision quotient.
double Radians(float degrees) {
  return static_cast<double>(degrees * 3.1415927f) / 180.0;
}

// In radians, anticlockwise from +x.
float AngleOf(HvPoint offset) {
  return static_cast<float>(std::atan2(static_cast<double>(offset.y), static_cast<double>(offset.x)));
}

// About (0, 0), anticlockwise.
struct PlaneRotation {
  float sine;
  float cosine;

  static PlaneRotation By(float degrees) {
    const double angle = Radians(degrees);
    return {static_cast<float>(std::sin(angle)), static_cast<float>(std::cos(angle))};
  }
  HvPoint operator()(HvPoint p) const { return {p.x * cosine - p.y * sine, p.y * cosine + p.x * sine}; }
};

bool IsNearer(HvPoint offset, HvPoint reach) {
  return std::abs(offset.x) < reach.x && std::abs(offset.y) < reach.y;
}

bool AreOpposite(float a, float b) {
  return (a < 0.0f && b > 0.0f) || (a > 0.0f && b < 0.0f);
}

// The verb of the tool tip; null for none.
const char* VerbOf(std::uint32_t active) {
  switch (active) {
    case HvT2DAxis::kTranslateX:
    case HvT2DAxis::kTranslateY:
    case HvT2DAxis::kTranslate: return "Translates";
    case HvT2DAxis::kScale:
    case HvT2DAxis::kScaleX:
    case HvT2DAxis::kScaleY:
    case HvT2DAxis::kScaleX | HvT2DAxis::kScaleY: return "Scales";
    case HvT2DAxis::kRotate: return "Rotates";
    case HvT2DAxis::kAspect: return "Aspects";
    default: return nullptr;
  }
}

}  // namespace

HvT2DAxis::HvT2DAxis(const char* name, std::uint32_t handleMask) : HvTObject(name), handleMask_(handleMask) {
  PutFlag(kOriginSettable, false);
  PutFlag(kSizeSettable, false);
  HvBox area;
  HvT2DAxis::ComputeBox(area);
  TakeBox(area);
}

HvT2DAxis::~HvT2DAxis() {
  Detach();
}

float HvT2DAxis::XAspect() const {
  return aspect_ < 0.0f ? 1.0f - clampTo(-aspect_, 0.0f, 1.0f) : 1.0f;
}

float HvT2DAxis::YAspect() const {
  return aspect_ > 0.0f ? 1.0f - std::min(aspect_, 1.0f) : 1.0f;
}

HvPoint HvT2DAxis::BoxCorner() const {
  return {XAspect() * scale_ * scaleX_ * AxisLength(), YAspect() * scale_ * scaleY_ * AxisLength()};
}

HvPoint HvT2DAxis::AspectHandlePos() const {
  if (!Offers(kAnyScale)) return {XAspect() * AxisLength(), YAspect() * AxisLength()};
  const HvPoint corner = BoxCorner();
  const float length = std::hypot(corner.x, corner.y);
  if (length == 0.0f) return corner;
  const float offset = kAspectHandleOffset * HandleScale();
  return corner + HvPoint{corner.x / length * offset, corner.y / length * offset};
}

void HvT2DAxis::UpdateMatrices() {
  if ((axisFlags_ & kMatricesStale) == 0) return;
  const HvPoint full = FullScale();
  forward_ = {};
  forward_.Scale(full.x, full.y);
  forward_.Rotate(Radians(rotation_));
  forward_.Translate(centre_.x, centre_.y);
  inverse_ = forward_.Inverse();
  axisFlags_ &= ~static_cast<std::uint32_t>(kMatricesStale);
}

HvPoint HvT2DAxis::ToLocal(HvPoint pos) {
  UpdateMatrices();
  return inverse_.Map(pos);
}

void HvT2DAxis::Restate() {
  axisFlags_ |= kMatricesStale;
  UpdateBox();
}

void HvT2DAxis::SetAxisFlags(std::uint32_t flags) {
  axisFlags_ = flags;
  Restate();
}

void HvT2DAxis::SetCentre(float x, float y) {
  if ((EffectiveMask() & kTranslate) != kTranslate) return;
  if (centre_ == HvPoint{x, y}) return;
  centre_ = {x, y};
  Restate();
}

void HvT2DAxis::SetAxisScale(float x, float y) {
  scaleX_ = x;
  scaleY_ = y;
  Restate();
}

void HvT2DAxis::SetScale(float scale) {
  scale_ = scale;
  Restate();
}

void HvT2DAxis::SetRotation(float degrees) {
  rotation_ = degrees;
  Restate();
}

void HvT2DAxis::SetAspect(float aspect) {
  aspect_ = aspect;
  Restate();
}

void HvT2DAxis::SetHandleScale(float scale) {
  HvTObject::SetHandleScale(scale);
  UpdateBox();
}

void HvT2DAxis::UpdateBox() {
  HvBox area;
  ComputeBox(area);
  TakeBox(area);
}

void HvT2DAxis::TakeBox(const HvBox& area) {
  PutBox({area.minX, area.minY}, {area.maxX - area.minX, area.maxY - area.minY});
}

void HvT2DAxis::ComputeBox(HvBox& box) {
  const std::uint32_t mask = EffectiveMask();
  if (mask == 0) {
    const HvPoint point{HandleScale() * centre_.x, HandleScale() * centre_.y};
    box = BoxOf(point, {0.0f, 0.0f});
    return;
  }
  box = {};
  const auto growBothWays = [&box](float x, float y) {
    box.Grow(HvPoint{x, y});
    box.Grow(HvPoint{-x, -y});
  };
  const PlaneRotation rotate = PlaneRotation::By(rotation_);
  if ((mask & kTranslateX) != 0) growBothWays(AxisLength(), kArrowBoxWidth);
  if ((mask & kTranslateY) != 0) growBothWays(kArrowBoxWidth, AxisLength());
  if ((mask & kRotate) != 0) growBothWays(ArcRadius(), ArcRadius());
  if ((mask & kAnyScale) != 0) {
    // The aspect is ignored.
    const float x = scale_ * AxisLength() * scaleX_;
    const float y = scale_ * AxisLength() * scaleY_;
    for (const HvPoint corner : {HvPoint{x, y}, HvPoint{x, -y}, HvPoint{-x, -y}, HvPoint{-x, y}})
      box.Grow(rotate(corner));
  }
  if ((mask & kAspect) != 0) box.Grow(rotate(AspectHandlePos()) + kDotMargin);
  box.minX += centre_.x;
  box.maxX += centre_.x;
  box.minY += centre_.y;
  box.maxY += centre_.y;
}

HvPick HvT2DAxis::Pick(HvPoint pos, HvPoint tolerance) {
  if ((axisFlags_ & kNoTranslation) != 0) {
    active_ = 0;
    return {};
  }
  const Probe probe = ProbeAt(pos, tolerance);
  const std::uint32_t handle = HandleAt(probe);
  if (handle == 0) {
    ClearTarget();
    active_ = 0;
    return {};
  }
  if ((handle & kAnyScale) != 0) SetFlips(handle, probe);
  SetActiveHandle(handle);
  return this;
}

// With a scale of 0 the units are infinite or NaN, and no comparison with them holds.
HvT2DAxis::Probe HvT2DAxis::ProbeAt(HvPoint pos, HvPoint tolerance) const {
  Probe probe;
  probe.tolerance = tolerance;
  probe.offset = pos - centre_;
  probe.unrotated = PlaneRotation::By(-rotation_)(probe.offset);
  probe.scale = FullScale();
  probe.unit = {probe.unrotated.x / probe.scale.x, probe.unrotated.y / probe.scale.y};
  probe.unitTolerance = {tolerance.x / std::abs(probe.scale.x), tolerance.y / std::abs(probe.scale.y)};
  return probe;
}

std::uint32_t HvT2DAxis::HandleAt(const Probe& probe) const {
  const HvPoint dotReach = probe.tolerance + kDotMargin;
  if (Offers(kAspect) && IsNearer(AspectHandlePos() - probe.unrotated, dotReach)) return kAspect;
  if (Offers(kTranslateX) && Offers(kTranslateY) && IsNearer(probe.offset, dotReach)) return kTranslate;
  const float fromArc = std::abs(std::hypot(probe.unrotated.x, probe.unrotated.y) - ArcRadius());
  const float angle = AngleOf(probe.unrotated);
  if (Offers(kRotate) && fromArc < probe.tolerance.x && -kHalfArc < angle && angle < kHalfArc) return kRotate;
  if (const std::uint32_t handle = ScaleHandleAt(probe); handle != 0) return handle;
  return ArrowAt(probe);
}

std::uint32_t HvT2DAxis::ScaleHandleAt(const Probe& probe) const {
  const float length = AxisLength();
  const HvPoint unit = probe.unit;
  const bool nearX = std::abs(std::abs(unit.x) - length) < probe.unitTolerance.x;
  const bool nearY = std::abs(std::abs(unit.y) - length) < probe.unitTolerance.y;
  if (Offers(kScale) && nearX && nearY) return kScale;
  if (Offers(kScaleX) && nearX && -length < unit.y && unit.y < length) return kScaleX;
  if (Offers(kScaleY) && nearY && -length < unit.x && unit.x < length) return kScaleY;
  return 0;
}

std::uint32_t HvT2DAxis::ArrowAt(const Probe& probe) const {
  const HvPoint tolerance = probe.tolerance;
  if (Offers(kTranslateY) && IsNearer(probe.offset, {tolerance.x, AxisLength() + tolerance.y})) return kTranslateY;
  if (Offers(kTranslateX) && IsNearer(probe.offset, {AxisLength() + tolerance.x, tolerance.y})) return kTranslateX;
  return 0;
}

void HvT2DAxis::SetFlips(std::uint32_t handle, const Probe& probe) {
  flipFlags_ = 0;
  if (handle != kScaleY && AreOpposite(probe.scale.x, probe.unrotated.x)) flipFlags_ |= kFlipX;
  if (handle != kScaleX && AreOpposite(probe.scale.y, probe.unrotated.y)) flipFlags_ |= kFlipY;
}

void HvT2DAxis::SetActiveHandle(std::uint32_t handle) {
  if (Target() != this || active_ != handle) MarkDirty();
  HvTObject::SetTarget(this);
  active_ = handle;
}

std::int32_t HvT2DAxis::Press(HvPoint pos) {
  if (active_ == 0) return 0;
  Send(HvMessage::OfWhole(kInteractionBegins, active_));
  lastPos_ = pos;
  if (IsActive(kRotate)) lastAngle_ = AngleOf(pos - centre_);
  if (IsActive(kAnyScale | kAspect)) {
    const PlaneRotation back = PlaneRotation::By(-rotation_);
    pressSin_ = back.sine;
    pressCos_ = back.cosine;
  }
  return HvTObject::Press(pos);
}

std::int32_t HvT2DAxis::Drag(HvPoint pos) {
  const HvPoint offset = pos - centre_;
  const HvPoint unrotated = PlaneRotation{pressSin_, pressCos_}(offset);
  if (IsActive(kTranslate)) {
    DragTranslate(pos);
  } else if (IsActive(kRotate)) {
    DragRotate(offset);
  } else if (IsActive(kScale)) {
    DragScale(unrotated);
  } else if (IsActive(kScaleX)) {
    scaleX_ = unrotated.x / scale_ / AxisLength();
    if ((flipFlags_ & kFlipX) != 0) scaleX_ = -scaleX_;
  } else if (IsActive(kScaleY)) {
    scaleY_ = unrotated.y / scale_ / AxisLength();
    if ((flipFlags_ & kFlipY) != 0) scaleY_ = -scaleY_;
  } else if (IsActive(kAspect)) {
    DragAspect(unrotated);
  }
  if (active_ != 0) UpdateBox();
  Send(HvMessage::OfWhole(kInteractionChanged, active_));
  // After the message: ComputeBox of a group, and listeners, still see the previous matrices.
  axisFlags_ |= kMatricesStale;
  return 1;
}

void HvT2DAxis::DragTranslate(HvPoint pos) {
  const HvPoint delta = pos - lastPos_;
  lastPos_ = pos;
  if (IsActive(kTranslateX)) centre_.x += delta.x;
  if (IsActive(kTranslateY)) centre_.y += delta.y;
}

void HvT2DAxis::DragRotate(HvPoint offset) {
  const float angle = AngleOf(offset);
  double change = (static_cast<double>(angle) - static_cast<double>(lastAngle_)) * 180.0 / 3.1415927410125732;
  lastAngle_ = angle;
  // Unwrap the jump of atan2 at 180 degrees.
  if (change > 180.0) change -= 360.0;
  if (change < -180.0) change += 360.0;
  rotation_ = static_cast<float>(static_cast<double>(rotation_) + change);
}

// The axis with the larger distance decides.
void HvT2DAxis::DragScale(HvPoint unrotated) {
  const float x = unrotated.x / scaleX_;
  const float y = unrotated.y / scaleY_;
  if (std::abs(x) > std::abs(y)) {
    scale_ = x / AxisLength() * ((flipFlags_ & kFlipX) != 0 ? -1.0f : 1.0f);
  } else {
    scale_ = y / AxisLength() * ((flipFlags_ & kFlipY) != 0 ? -1.0f : 1.0f);
  }
}

void HvT2DAxis::DragAspect(HvPoint unrotated) {
  const float x = unrotated.x / scaleX_;
  const float y = unrotated.y / scaleY_;
  if (x < 0.0f || y < 0.0f) {
    if (aspect_ < 0.0f) aspect_ = -1.0f;
    if (aspect_ > 0.0f) aspect_ = 1.0f;
  } else if (y > x) {
    aspect_ = x / y - 1.0f;
  } else {
    aspect_ = 1.0f - y / x;
  }
}

std::int32_t HvT2DAxis::Release() {
  const ScopeExit lift([this] {
    active_ = 0;
    HvTObject::Release();
  });
  Send(HvMessage::OfWhole(kInteractionEnds, active_));
  return 1;
}

std::int32_t HvT2DAxis::Leave() {
  active_ = 0;
  return HvTObject::Leave();
}

void HvT2DAxis::DrawTip(HvPoint pos) {
  if (Tip() == nullptr || IsPressed()) return;
  const char* const verb = VerbOf(active_);
  if (verb == nullptr) return;
  std::array<char, 256> text;
  std::snprintf(text.data(), text.size(), "%s the %s.", verb, Tip());
  DrawShadowText(text.data(), pos.x, pos.y);
}

}  // namespace vblur
