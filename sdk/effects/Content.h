// Which project is open in the process: what DSContentGetProperty reads.
#pragma once

#include "platform/IDSEffectHost.h"

namespace vblur::host {

// Borrowed: null, or another, before it goes. Belongs to the user-interface thread.
void UseContent(const IDSEffectHost* project);

// The open project for as long as this lives; the one before it is open again afterwards.
class OpenContent {
 public:
  explicit OpenContent(const IDSEffectHost& project);
  ~OpenContent();
  OpenContent(const OpenContent&) = delete;
  OpenContent& operator=(const OpenContent&) = delete;

 private:
  const IDSEffectHost* before_;
};

}  // namespace vblur::host
