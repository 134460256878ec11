#include "host/EffectHost.h"

#include <string_view>
#include <variant>

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

bool EffectHost::AnimatedValue(const GUID& property, double time, double& value) const {
  const PropertyStore::Setting* setting = properties_.Find(property);
  const auto* curve = setting == nullptr ? nullptr : std::get_if<Curve>(setting);
  if (curve == nullptr) return false;
  value = curve->At(time);
  return true;
}

HRESULT EffectHost::ContentProperty(const char* key, double& value) const {
  if (key == nullptr) return kNullPointer;
  if (!project_) return kFailed;
  const double* size = FindSize(*project_, key);
  if (size == nullptr) return kWrongArgument;
  value = *size;
  return kOk;
}

}  // namespace vblur::host
