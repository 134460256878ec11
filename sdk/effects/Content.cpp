#include "sdk/effects/Content.h"

#include <atomic>

#include "platform/Content.h"

namespace vblur::host {

namespace {

std::atomic<const IDSEffectHost*> openProject = nullptr;

}  // namespace

void UseContent(const IDSEffectHost* project) {
  openProject = project;
}

OpenContent::OpenContent(const IDSEffectHost& project) : before_(openProject.exchange(&project)) {}

OpenContent::~OpenContent() {
  openProject = before_;
}

}  // namespace vblur::host

namespace vblur {

HRESULT DSContentGetProperty(const char* key, double& value) {
  if (key == nullptr) return kNullPointer;
  const IDSEffectHost* const project = host::openProject;
  return project == nullptr ? kFailed : project->ContentProperty(key, value);
}

}  // namespace vblur
