// Message between widgets, their listeners and the viewer tool: an event and one value.
#pragma once

#include <array>
#include <cstdint>

#include "overlay/HvGeometry.h"

namespace vblur {

enum HvMessageId : std::uint32_t {
  kPenMoved = 101,
  kPenDown = 102,
  kPenUp = 103,
  kInteractionBegins = 200,
  kInteractionChanged = 201,
  kInteractionEnds = 202,
  kInteractionEndsToo = 203,  // never sent; handled as kInteractionEnds
};

// Type of the payload.
enum HvMessageKind : std::uint32_t {
  kHoldsNothing = 0,
  kHoldsWhole = 1,
  kHoldsNumber = 3,
  kHoldsPosition = 6,
  kHoldsPositionToo = 7,  // accepted, never sent
};

// Lives on the sender's stack for one call; receivers must not keep a pointer. Destroying a message of kind 5 or 26
// aborts the process.
class HvMessage {
 public:
  // The text is cut to 15 characters; null gives an empty one.
  explicit HvMessage(std::uint32_t id, const char* text = nullptr);
  virtual ~HvMessage();
  HvMessage(const HvMessage&) = delete;
  HvMessage& operator=(const HvMessage&) = delete;

  static HvMessage OfWhole(std::uint32_t id, std::uint32_t value) { return {id, kHoldsWhole, &value, sizeof value}; }
  static HvMessage OfNumber(std::uint32_t id, float value) { return {id, kHoldsNumber, &value, sizeof value}; }
  // A pen position in the space of the manager's children.
  static HvMessage OfPosition(std::uint32_t id, HvPoint pos) { return {id, kHoldsPosition, &pos, sizeof pos}; }

  const char* Text() const { return text_.data(); }
  std::uint32_t Id() const { return id_; }
  std::uint32_t Kind() const { return kind_; }
  // Always 0; for tests of the layout.
  std::uint32_t Reserved() const { return reserved_; }

  // The payload by kind; 0 if it was not set.
  std::uint32_t AsWhole() const;
  float AsNumber() const;
  HvPoint AsPosition() const;
  bool IsPosition() const { return kind_ == kHoldsPosition || kind_ == kHoldsPositionToo; }

 protected:
  HvMessage(std::uint32_t id, std::uint32_t kind, const void* payload, std::size_t size);

 private:
  std::array<char, 16> text_{};
  std::uint32_t id_;
  std::uint32_t kind_ = kHoldsNothing;
  std::uint32_t reserved_ = 0;
  std::array<unsigned char, 8> payload_{};
};

}  // namespace vblur
