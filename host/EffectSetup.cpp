#include "host/EffectSetup.h"

#include <string>
#include <variant>

#include "host/Failure.h"

namespace vblur::host {

void ApplyProperties(const PropertyStore& properties, IDSImageEffect& effect) {
  for (const Property& property : kProperties) {
    const PropertyStore::Setting* setting = properties.Find(property.guid);
    const double* value = setting == nullptr ? nullptr : std::get_if<double>(setting);
    const HRESULT result = effect.PutProperty(property.guid, value == nullptr ? property.defaultValue : *value);
    if (result != kOk) {
      throw Failure(ExitCode::WrongUsage, std::string(property.name) + ": the effect does not take this property");
    }
  }
}

}  // namespace vblur::host
