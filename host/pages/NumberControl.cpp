#include "host/pages/NumberControl.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/Utf8.h"
#include "host/properties/PropertyText.h"

namespace vblur::host {

namespace {

double SizeOf(NumberStep step) {
  switch (step) {
    case NumberStep::Fine: return NumberControl::kFineStep;
    case NumberStep::Coarse: return NumberControl::kCoarseStep;
    default: return NumberControl::kNormalStep;
  }
}

// Whether two values look alike: NaN is not equal to itself.
bool SameValue(double a, double b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

NumberControl::NumberControl(PageDialog* dialog, const ModuleControl& control, const ControlText& text)
    : OwnControl(dialog, PageWindowKind::Number, control, Widened(text.caption)),
      range_{text.minimum, text.maximum},
      value_(Clamped(0.0)) {}

std::string NumberControl::ShownValue() const {
  constexpr double kDecimals = 1e4;
  constexpr double kLargest = 1e9;
  const double rounded = std::round(value_ * kDecimals) / kDecimals;
  // A number of which nothing would be left is shown as it is.
  return FormatNumber(std::fabs(value_) < kLargest && rounded != 0.0 ? rounded : value_ + 0.0);
}

double NumberControl::Clamped(double value) const {
  return std::clamp(value, range_.minimum, range_.maximum) + 0.0;  // no "-0"
}

double NumberControl::Stepped(double by) const {
  // A step from no number is one from where the range begins.
  const double from = std::isnan(value_) ? range_.minimum : value_;
  return Clamped(WithoutDust(from + by));
}

std::string NumberControl::Complaint(const std::string& why) const {
  const std::string caption = Utf8Of(Text());
  return OnOneLine(caption + (caption.empty() ? "" : ": ") + why);
}

std::optional<std::string> NumberControl::TakeTyped(std::string_view text) {
  if (!TakesInput() || scrub_) return Complaint("takes no input now");
  const auto held = Hold();
  double typed = 0.0;
  try {
    typed = Clamped(ReadTypedNumber(text, value_, range_));
  } catch (const Failure& failure) {
    return Complaint(failure.what());
  }
  // Typing the value that a curve has here sets a key.
  if (mark_ == DSAnimationMark::Animated && SameValue(typed, value_)) Tell(kControlNotify);
  ChangeForGood(typed);
  return std::nullopt;
}

bool NumberControl::TakeKey(NumberKey key, NumberStep step) {
  if (!TakesInput() || scrub_) return false;
  const auto held = Hold();
  switch (key) {
    case NumberKey::Up: ChangeForGood(Stepped(SizeOf(step))); break;
    case NumberKey::Down: ChangeForGood(Stepped(-SizeOf(step))); break;
    case NumberKey::PageUp: ChangeForGood(Stepped(kPageStep)); break;
    case NumberKey::PageDown: ChangeForGood(Stepped(-kPageStep)); break;
    case NumberKey::Home: ChangeForGood(Clamped(range_.minimum)); break;
    case NumberKey::End: ChangeForGood(Clamped(range_.maximum)); break;
  }
  return true;
}

bool NumberControl::TakePress() {
  if (!TakesInput() || scrub_) return false;
  const auto held = Hold();
  scrub_ = ScrubState{value_};
  Tell(kControlScrub, 1);
  return true;
}

bool NumberControl::TakeDrag(std::int32_t steps, NumberStep step) {
  if (!TakesInput() || !scrub_) return false;
  if (steps == 0) return true;
  const auto held = Hold();
  const double value = Stepped(steps * SizeOf(step));
  if (SameValue(value, value_)) return true;
  // The page may end the scrub in the call.
  scrub_->changed = true;
  Change(value);
  return true;
}

bool NumberControl::TakeRelease() {
  const auto scrub = std::exchange(scrub_, std::nullopt);
  if (!scrub) return false;
  const auto held = Hold();
  Finish(*scrub);
  return true;
}

bool NumberControl::TakeCancel() {
  auto scrub = std::exchange(scrub_, std::nullopt);
  if (!scrub) return false;
  const auto held = Hold();
  // As it was, even beyond the range.
  if (Change(scrub->before)) scrub->changed = true;
  Finish(*scrub);
  return true;
}

void NumberControl::Finish(const ScrubState& scrub) const {
  // The last value belongs to the scrub.
  if (scrub.changed) Tell(kControlNotifyComplete);
  Tell(kControlScrub, 0);
}

// Shows the value and tells the page. False if it is the present one.
bool NumberControl::Change(double value) {
  if (SameValue(value, value_)) return false;
  value_ = value;
  Changed();
  Tell(kControlNotify);
  return true;
}

void NumberControl::ChangeForGood(double value) {
  if (Change(value)) Tell(kControlNotifyComplete);
}

HRESULT NumberControl::QueryInterface(const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = iid == IUnknown::kIid || iid == IDSNumberControl::kIid ? static_cast<IDSNumberControl*>(this) : nullptr;
  if (*result == nullptr) return kNoInterface;
  AddRef();
  return kOk;
}

HRESULT NumberControl::SetRange(const DSVariant& minimum, const DSVariant& maximum) {
  const NumberRange range{minimum.AsNumber(), maximum.AsNumber()};
  if (!std::isfinite(range.minimum) || !std::isfinite(range.maximum) || range.minimum > range.maximum) {
    return kWrongArgument;
  }
  range_ = range;
  Changed();
  return kOk;
}

HRESULT NumberControl::GetRange(DSVariant* minimum, DSVariant* maximum) {
  if (minimum == nullptr || maximum == nullptr) return kNullPointer;
  *minimum = DSVariant::Of(range_.minimum);
  *maximum = DSVariant::Of(range_.maximum);
  return kOk;
}

HRESULT NumberControl::SetValue(const DSVariant& value) {
  if (SameValue(value.AsNumber(), value_)) return kOk;
  value_ = value.AsNumber();
  Changed();
  return kOk;
}

HRESULT NumberControl::GetValue(DSVariant* value) {
  if (value == nullptr) return kNullPointer;
  *value = DSVariant::Of(value_);
  return kOk;
}

HRESULT NumberControl::SetAnimationMark(DSAnimationMark mark) {
  if (mark != DSAnimationMark::None && mark != DSAnimationMark::Animated && mark != DSAnimationMark::Key) {
    return kWrongArgument;
  }
  if (std::exchange(mark_, mark) != mark) Changed();
  return kOk;
}

}  // namespace vblur::host
