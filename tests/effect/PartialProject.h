// A project of which some sizes can be read.
#pragma once

#include <map>
#include <string>

#include "platform/IDSEffectHost.h"

namespace vblur {

inline constexpr const char* kProjectKeys[] = {kProjectUserSizeX, kProjectUserSizeY, kProjectWorldSizeX,
                                               kProjectWorldSizeY};

// All four unless some are taken out: a user size of 100 by 60, a world size of 100 by 24.
class PartialProject : public IDSEffectHost {
 public:
  HRESULT ContentProperty(const char* key, double& value) const override {
    const auto found = sizes.find(key);
    if (found == sizes.end()) return kFailed;
    value = found->second;
    return kOk;
  }

  std::map<std::string, double> sizes{
      {kProjectUserSizeX, 100.0}, {kProjectUserSizeY, 60.0}, {kProjectWorldSizeX, 100.0}, {kProjectWorldSizeY, 24.0}};
};

}  // namespace vblur
