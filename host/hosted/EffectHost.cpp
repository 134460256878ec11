#include "host/hosted/EffectHost.h"

#include <string_view>

namespace vblur::host {

namespace {

const double* FindSize(const ProjectSizes& project, std::string_view key) {
  if (key == kProjectUserSizeX) return &project.user[0];
  if (key == kProjectUserSizeY) return &project.user[1];
  if (key == kProjectWorldSizeX) return &project.world[0];
  if (key == kProjectWorldSizeY) return &project.world[1];
  return nullptr;
}

}  // namespace

HRESULT EffectHost::ContentProperty(const char* key, double& value) const {
  if (key == nullptr) return kNullPointer;
  if (!project_) return kFailed;
  const double* size = FindSize(*project_, key);
  if (size == nullptr) return kWrongArgument;
  value = *size;
  return kOk;
}

}  // namespace vblur::host
