// A test widget that is hit within its shape and logs its calls.
#pragma once

#include <cmath>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "overlay/HvTManager.h"
#include "overlay/HvTObject.h"

namespace vblur::test {

// Calls in order, each followed by "; ".
struct CallLog {
  std::string text;

  void add(const std::string& call) { text += call + "; "; }
  std::string take() { return std::exchange(text, {}); }
};

inline std::string textOfPoint(HvPoint point) {
  return std::to_string(std::lround(point.x)) + ' ' + std::to_string(std::lround(point.y));
}

// Operations return the results below; the flags are those of the base class.
class Probe : public HvTObject {
 public:
  // `shape` is also the box.
  Probe(CallLog& calls, const char* name, HvBox shape) : HvTObject(name), log(calls), shape_(shape) {
    StoreBox({shape.minX, shape.minY}, {shape.maxX - shape.minX, shape.maxY - shape.minY});
  }

  HvPick Pick(HvPoint pos, HvPoint tolerance) override {
    note("Pick", pos);
    ++picks;
    pickedAt = pos;
    pickedWith = tolerance;
    if (whilePicked) whilePicked();
    if (!hits(shape_, pos)) return {};
    SetTarget(this);
    return this;
  }
  void Draw() override { log.add(std::string("Draw ") + Name()); }
  std::int32_t Drag(HvPoint pos) override {
    note("Drag", pos);
    if (whileDragged) whileDragged();
    return dragResult;
  }
  std::int32_t Press(HvPoint pos) override {
    note("Press", pos);
    HvTObject::Press(pos);
    return pressResult;
  }
  std::int32_t Release() override {
    log.add(std::string("Release ") + Name());
    HvTObject::Release();
    return releaseResult;
  }
  std::int32_t Enter(HvPoint pos) override {
    note("Enter", pos);
    HvTObject::Enter(pos);
    return enterResult;
  }
  std::int32_t Leave() override {
    log.add(std::string("Leave ") + Name());
    HvTObject::Leave();
    return leaveResult;
  }
  void DrawTip(HvPoint pos) override { note("DrawTip", pos); }

  static bool hits(const HvBox& shape, HvPoint pos) {
    return shape.minX <= pos.x && pos.x <= shape.maxX && shape.minY <= pos.y && pos.y <= shape.maxY;
  }
  void dropBox() { PutFlag(kHasBox, false); }
  void setFlag(Flag flag, bool on) { PutFlag(flag, on); }

  CallLog& log;
  // Off by default: a scan picks many.
  bool logsPicks = false;
  int picks = 0;
  HvPoint pickedAt;
  HvPoint pickedWith;
  std::function<void()> whilePicked;
  std::function<void()> whileDragged;
  std::int32_t dragResult = 1;
  std::int32_t pressResult = 1;
  std::int32_t releaseResult = 1;
  std::int32_t enterResult = 1;
  std::int32_t leaveResult = 1;

 private:
  void note(const char* call, HvPoint pos) {
    if (logsPicks || std::string(call) != "Pick") log.add(std::string(call) + ' ' + Name() + ' ' + textOfPoint(pos));
  }

  HvBox shape_;
};

inline HvBox square(float x, float y, float side) {
  return {x, x + side, y, y + side};
}

}  // namespace vblur::test
