#include "host/pages/ListControl.h"

#include <algorithm>

namespace vblur::host {

namespace {

char16_t Lower(char16_t letter) {
  return letter >= u'A' && letter <= u'Z' ? static_cast<char16_t>(letter - u'A' + u'a') : letter;
}

}  // namespace

ListControl::ListControl(PageDialog& dialog, const ModuleControl& control)
    : PageWindow(&dialog, PageWindowKind::List, control, {}) {}

bool ListControl::ChooseNext() {
  return Choose(std::min(Selected() + 1, Count() - 1));
}

bool ListControl::ChoosePrevious() {
  return Choose(std::max(Selected() - 1, 0));
}

bool ListControl::ChooseByLetter(char16_t letter) {
  const std::vector<std::u16string> entries = Entries();
  const auto count = static_cast<std::int32_t>(entries.size());
  const std::int32_t selected = Selected();
  for (std::int32_t i = 1; i <= count; ++i) {
    const std::int32_t index = (selected + i) % count;
    const std::u16string& entry = entries[static_cast<std::size_t>(index)];
    if (!entry.empty() && Lower(entry.front()) == Lower(letter)) return Choose(index);
  }
  return false;
}

}  // namespace vblur::host
