// Modules for tests of pages: of any record, and with the server's resources.
#pragma once

#include <memory>

#include "platform/Module.h"

namespace vblur {

// A module with the resources of a record, which it borrows. On Windows that is a library's file with nothing else.
class TestModule {
 public:
  explicit TestModule(const Module& record);
  ~TestModule();
  TestModule(const TestModule&) = delete;
  TestModule& operator=(const TestModule&) = delete;

  HMODULE Handle() const;

 private:
  struct Kept;
  std::unique_ptr<Kept> kept_;
};

// On Windows the test program, which links the server's resources.
HMODULE ServerResources();

}  // namespace vblur
