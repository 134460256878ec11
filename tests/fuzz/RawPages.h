// Property pages by their class factories, on a site of their own, called in orders that no program would choose.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "effect/Blur.h"
#include "host/pages/PageDialog.h"
#include "platform/CDSPropertyPage.h"
#include "platform/ComPtr.h"
#include "platform/PageSite.h"
#include "tests/support/Random.h"

namespace vblur::test {

class RawPages {
 public:
  explicit RawPages(Random& random);
  // Releases the pages as they are, dialogs and steps open.
  ~RawPages();
  RawPages(const RawPages&) = delete;
  RawPages& operator=(const RawPages&) = delete;

  // One call on one of the pages. The effect is what they may edit, and may be null, as may the stranger. Without
  // `mayDrop` none that ends a dialog.
  void Call(Blur* effect, IUnknown* stranger, bool mayDrop);
  // Of one that is open; null if none is. Borrowed.
  host::PageDialog* SomeDialog();
  // Borrowed; null: nothing is recorded.
  void UseUndo(IDSUndo* undo);
  IDSUndo* Undo() const;

 private:
  class Site;

  int Roll(int below) { return random_.within(0, below - 1); }
  bool Chance(int in) { return random_.oneIn(in); }

  void MakeOrRelease(ComPtr<IDSPropertyPage>& place);
  void SetObjects(IDSPropertyPage& page, Blur* effect, IUnknown* stranger);
  void SetSite(IDSPropertyPage& page);
  void Send(IDSPropertyPage& page);
  void Tell(IDSPropertyPage& page);
  void Ask(IDSPropertyPage& page);

  Random& random_;
  std::array<std::unique_ptr<Site>, 2> sites_;
  std::array<ComPtr<IDSPropertyPage>, 3> pages_;
};

}  // namespace vblur::test
