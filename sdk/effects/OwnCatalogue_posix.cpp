#include "sdk/effects/OwnCatalogue.h"

namespace vblur::host {

Catalogue& OwnCatalogue() {
  static Catalogue catalogue;
  return catalogue;
}

void KeepClassesInProcess(bool) {}

}  // namespace vblur::host
