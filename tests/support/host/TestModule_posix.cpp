#include "tests/support/host/TestModule.h"

#include "resources/Bitmaps.h"
#include "resources/Dialogs.h"
#include "resources/Strings.h"

namespace vblur {

struct TestModule::Kept {
  HMODULE handle;
};

TestModule::TestModule(const Module& record) : kept_(new Kept{&record}) {}

TestModule::~TestModule() = default;

HMODULE TestModule::Handle() const {
  return kept_->handle;
}

HMODULE ServerResources() {
  static const Module kModule{resources::Strings(), resources::Bitmaps(), resources::Dialogs()};
  return &kModule;
}

}  // namespace vblur
