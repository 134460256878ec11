// The manual while a test looks which documents are opened: there to be opened, and noted instead of shown.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vblur {

// One at a time in a process. On Windows the manual is a file below the system's own folder of programs, and documents
// of its type have a program that notes the name; what was there before comes back.
class OpenedManuals {
 public:
  OpenedManuals();
  ~OpenedManuals();
  OpenedManuals(const OpenedManuals&) = delete;
  OpenedManuals& operator=(const OpenedManuals&) = delete;

  // What was opened up to now. Programs start in their own time: waits up to half a minute for so many.
  std::vector<std::u16string> After(std::size_t count) const;
  // Where the manual is.
  std::u16string Place() const;

 private:
  struct Seen;
  std::unique_ptr<Seen> seen_;
};

}  // namespace vblur
