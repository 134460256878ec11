#include "tests/pages/OpenedManuals.h"

#include "tests/pages/ManualShelf.h"

namespace vblur {

struct OpenedManuals::Seen {
  ManualShelf shelf;
};

OpenedManuals::OpenedManuals() : seen_(std::make_unique<Seen>()) {}
OpenedManuals::~OpenedManuals() = default;

std::vector<std::u16string> OpenedManuals::After(std::size_t) const {
  const std::u16string operation = u"open|";
  std::vector<std::u16string> opened;
  for (const std::u16string& each : seen_->shelf.opened)
    opened.push_back(each.starts_with(operation) ? each.substr(operation.size()) : u"not opened: " + each);
  return opened;
}

std::u16string OpenedManuals::Place() const {
  return seen_->shelf.folder + kManual;
}

}  // namespace vblur
