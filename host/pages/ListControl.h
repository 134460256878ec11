// A list that drops down and shows the entry that is selected, which is its text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/pages/PageWindow.h"

namespace vblur::host {

class ListControl final : public PageWindow {
 public:
  static constexpr std::int32_t kNone = -1;

  // Without entries.
  ListControl(PageDialog& dialog, const ModuleControl& control);

  std::vector<std::u16string> Entries() const;
  // kNone when none is.
  std::int32_t Selected() const;

  // The user selects an entry. False if the list takes no input, and for an entry that it lacks; the page gets a
  // message when another is selected than before.
  bool Choose(std::int32_t index);
  // The entry below or above, the first when none is selected. At the ends it stays.
  bool ChooseNext();
  bool ChoosePrevious();
  // The next entry after the selected one that begins with the letter, from the top again after the last. The letters A
  // to Z match in both cases.
  bool ChooseByLetter(char16_t letter);

  // From the page, which gets no message of these. CB_ADDSTRING returns the entry's index. CB_SETCURSEL selects none
  // and returns CB_ERR for an index that the list lacks. WM_SETTEXT selects the first entry of this very text, and
  // changes nothing and returns CB_ERR if there is none.
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool Has(std::int32_t index) const { return index >= 0 && index < Count(); }
  std::int32_t Count() const;
  LRESULT SelectText(const char16_t* text);
#ifdef _WIN32
  friend class PageDialog;

  // Whether what the list tells its dialog is the user's choice. While it is dropped, entries that the keys pass are
  // none, nor is the one that it is left at without taking it: it shows the entry again that it had before.
  bool IsChosenBy(UINT what);
  void Attach(HWND handle) override;
  bool SeesChange() override;

  // As observers were told last.
  std::int32_t seenSelected_ = kNone;
  std::int32_t seenCount_ = 0;
  std::int32_t beforeDrop_ = kNone;     // selected since it has dropped, as the page knows
  std::optional<std::int32_t> chosen_;  // as it closed, of which the system may tell once more
#else
  LRESULT Add(const char16_t* text);
  LRESULT Clear();
  void Select(std::int32_t index);

  std::vector<std::u16string> entries_;
  std::int32_t selected_ = kNone;
#endif
};

}  // namespace vblur::host
