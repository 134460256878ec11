#include "sdk/viewer/EditedObjects.h"

#include <algorithm>
#include <vector>

#include "platform/ComPtr.h"

namespace vblur::host {

namespace {

struct Shown {
  const IUnknown* identity = nullptr;
  IVWViewer* viewer = nullptr;
};

std::vector<Shown>& OldestFirst() {
  static std::vector<Shown> shown;
  return shown;
}

// An object's IUnknown, the same for all of its interfaces.
const IUnknown* IdentityOf(IUnknown* object) {
  ComPtr<IUnknown> identity;
  object->QueryInterface(IUnknown::kIid, identity.Receive());
  return identity.get();
}

}  // namespace

void ShowInViewer(IUnknown* edited, IVWViewer* viewer) {
  std::erase_if(OldestFirst(), [viewer](const Shown& shown) { return shown.viewer == viewer; });
  if (edited != nullptr) OldestFirst().push_back({IdentityOf(edited), viewer});
}

IVWViewer* ViewerOf(IUnknown* edited) {
  const IUnknown* const identity = edited == nullptr ? nullptr : IdentityOf(edited);
  const auto& all = OldestFirst();
  const auto found =
      std::find_if(all.rbegin(), all.rend(), [identity](const Shown& shown) { return shown.identity == identity; });
  return identity == nullptr || found == all.rend() ? nullptr : found->viewer;
}

}  // namespace vblur::host
