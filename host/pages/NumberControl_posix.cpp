#include "host/pages/NumberControl.h"

namespace vblur::host {

std::optional<std::string> NumberControl::Type(std::string_view text) {
  return TakeTyped(text);
}

bool NumberControl::Key(NumberKey key, NumberStep step) {
  return TakeKey(key, step);
}

bool NumberControl::BeginScrub() {
  return TakePress();
}

bool NumberControl::Scrub(std::int32_t steps, NumberStep step) {
  return TakeDrag(steps, step);
}

bool NumberControl::EndScrub() {
  return TakeRelease();
}

bool NumberControl::CancelScrub() {
  return TakeCancel();
}

}  // namespace vblur::host
