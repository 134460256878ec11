#include "overlay/HvMessage.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace vblur {
namespace {

constexpr std::uint32_t kForbiddenKind = 5;
constexpr std::uint32_t kForbiddenKindToo = 26;

}  // namespace

HvMessage::HvMessage(std::uint32_t id, const char* text) : id_(id) {
  if (text == nullptr) return;
  std::copy_n(text, ::strnlen(text, text_.size() - 1), text_.begin());
}

HvMessage::HvMessage(std::uint32_t id, std::uint32_t kind, const void* payload, std::size_t size)
    : id_(id), kind_(kind) {
  std::memcpy(payload_.data(), payload, std::min(size, payload_.size()));
}

HvMessage::~HvMessage() {
  if (kind_ == kForbiddenKind || kind_ == kForbiddenKindToo) std::abort();
}

std::uint32_t HvMessage::AsWhole() const {
  std::uint32_t value = 0;
  std::memcpy(&value, payload_.data(), sizeof value);
  return value;
}

float HvMessage::AsNumber() const {
  float value = 0.0f;
  std::memcpy(&value, payload_.data(), sizeof value);
  return value;
}

HvPoint HvMessage::AsPosition() const {
  HvPoint value;
  std::memcpy(&value, payload_.data(), sizeof value);
  return value;
}

}  // namespace vblur
