// What a property page needs of the program that shows it: its dialog, the time, and undo.
#pragma once

#include <cstdint>

#include "DsTypes.h"
#include "Module.h"
#include "Window.h"

namespace vblur {

class IDSPropertyPage;

// The program's history of changes.
class IDSUndo {
 public:
  virtual ~IDSUndo() = default;

  // What changes until the matching EndStep is one step; inner steps belong to the outermost. `name` is for menus; null
  // or empty: that of the first property that changes. A step without a change is none.
  virtual void BeginStep(const char16_t* name) = 0;
  virtual void EndStep() = 0;
};

// User-interface thread only.
class IDSPageSite {
 public:
  virtual ~IDSPageSite() = default;

  // Makes a dialog of a module's resources with its controls, whose messages go to the page from then on; null if the
  // module has none of this number. The site keeps it until DropDialog.
  virtual HWND MakeDialog(HMODULE module, std::int32_t dialog, IDSPropertyPage& page) = 0;
  virtual void DropDialog(HWND dialog) = 0;
  virtual void ShowDialog(HWND dialog, bool show) = 0;
  virtual double CurrentTime() = 0;
  // Null: nothing is recorded.
  virtual IDSUndo* Undo() = 0;
  // After each read and write of a property by a page, for traces.
  virtual void OnPropertyAccess(const char* call, const GUID& property, double value, double time, HRESULT result) = 0;
};

}  // namespace vblur
