// The open project, read by DSContentGetProperty.
#pragma once

#include "platform/IDSEffectHost.h"

namespace vblur::host {

// Borrowed: replace it before it ends. User-interface thread only.
void UseContent(const IDSEffectHost* project);

// Opens a project for a scope, then restores the previous one.
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
