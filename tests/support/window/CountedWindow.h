// A window that counts how often its picture went out of date. On Windows a real one.
#pragma once

#include <memory>

#include "platform/Window.h"

namespace vblur::test {

class CountedWindow {
 public:
  CountedWindow();
  ~CountedWindow();

  HWND Handle() const;
  // On Windows the system joins those that follow one another to one.
  int Invalidations();

 private:
  struct Counting;

  std::unique_ptr<Counting> counting_;
};

}  // namespace vblur::test
