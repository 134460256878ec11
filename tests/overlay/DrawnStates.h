// The OpenGL calls of a widget in a series of states, as one text.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "overlay/Drawing.h"
#include "overlay/HvTObject.h"
#include "tests/support/gl/GlRecording.h"
#include "tests/support/gl/GoldenText.h"

namespace vblur::test {

class DrawnStates {
 public:
  // Creates the quadric before the first state.
  DrawnStates() {
    DrawCircleOutline(0, 0, 0);
    recording_.clear();
  }
  ~DrawnStates() { ReleaseOverlayQuadric(); }
  DrawnStates(const DrawnStates&) = delete;
  DrawnStates& operator=(const DrawnStates&) = delete;

  void draw(HvTObject& widget, const std::string& state) {
    recording_.clear();
    widget.Draw();
    text_ += "== " + state + '\n' + recording_.text();
    EXPECT_EQ(recording_.matrixDepth(), 0) << state;
    EXPECT_FALSE(recording_.isInsideBegin()) << state;
  }

  // Against tests/overlay/golden/NAME.txt.
  ::testing::AssertionResult match(const std::string& name) const {
    return matchesGoldenText(std::string(VBLUR_OVERLAY_GOLDEN) + '/' + name + ".txt", text_);
  }

 private:
  GlRecording recording_;
  std::string text_;
};

}  // namespace vblur::test
