// Where an image lies in the project.
#pragma once

#include <atomic>
#include <cstdint>

namespace vblur {

// Size and position in project user units, and the origin in whole pixels. All zero for an absent image.
struct PlaceRecord {
  float sizeX = 0.0f;
  float sizeY = 0.0f;
  float positionX = 0.0f;
  float positionY = 0.0f;
  std::int32_t originX = 0;
  std::int32_t originY = 0;
};

// Copies size and position into a record that several clones write at once: each value is atomic, the last one wins.
inline void ReportPlace(const PlaceRecord& from, PlaceRecord& to) {
  const auto put = [](float& place, float value) {
    std::atomic_ref<float>(place).store(value, std::memory_order_relaxed);
  };
  put(to.sizeX, from.sizeX);
  put(to.sizeY, from.sizeY);
  put(to.positionX, from.positionX);
  put(to.positionY, from.positionY);
}

// Reads a record whose size and position clones may be writing.
inline PlaceRecord ReportedPlace(const PlaceRecord& place) {
  const auto get = [](const float& value) {
    return std::atomic_ref<float>(const_cast<float&>(value)).load(std::memory_order_relaxed);
  };
  return {get(place.sizeX), get(place.sizeY), get(place.positionX), get(place.positionY), place.originX, place.originY};
}

// A record that may be copied while clones report to it.
struct ReportedRecord : PlaceRecord {
  ReportedRecord() = default;
  ReportedRecord(const ReportedRecord& other) : PlaceRecord(ReportedPlace(other)) {}
  ReportedRecord& operator=(const PlaceRecord& place) {
    PlaceRecord::operator=(place);
    return *this;
  }
  ReportedRecord& operator=(const ReportedRecord& other) { return *this = ReportedPlace(other); }
};

}  // namespace vblur
