#include "host/pages/PageForm.h"

#include <algorithm>
#include <cstdio>

#include "host/base/NameMatch.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/ListControl.h"
#include "host/pages/NumberControl.h"
#include "host/pages/StaticControls.h"
#include "host/properties/PropertyText.h"

namespace vblur::host {

namespace {

constexpr std::size_t kLongestLine = 100;

struct FormLine {
  std::string name;
  std::string value;
  std::string rest;  // range or entries
  std::string marks;
};

std::string RangeInWords(const NumberRange& range) {
  return FormatNumber(range.minimum) + " to " + FormatNumber(range.maximum);
}

const char* MarkInWords(DSAnimationMark mark) {
  switch (mark) {
    case DSAnimationMark::Animated: return "animated";
    case DSAnimationMark::Key: return "key";
    case DSAnimationMark::None: break;
  }
  return "";
}

std::string EntriesInWords(const ListControl& list) {
  std::string all;
  for (const std::u16string& entry : list.Entries())
    all += (all.empty() ? "" : ", ") + AsciiOf(entry);
  return all;
}

std::string ColourInWords(const ColourChipControl& chip) {
  std::string text;
  for (const std::int32_t component : chip.Colour())
    text += (text.empty() ? "" : ", ") + std::to_string(component);
  return text;
}

FormLine LineOf(const OpenedPage& page, const PageWindow& window) {
  FormLine line;
  line.name = page.NameOf(window);
  if (const auto* const number = dynamic_cast<const NumberControl*>(&window); number != nullptr) {
    line.value = number->ShownValue();
    line.rest = RangeInWords(number->Range());
    line.marks = MarkInWords(number->AnimationMark());
  } else if (const auto* const list = dynamic_cast<const ListControl*>(&window); list != nullptr) {
    line.value = "[" + AsciiOf(list->Text()) + "]";
    line.rest = EntriesInWords(*list);
  } else if (const auto* const box = dynamic_cast<const CheckBoxControl*>(&window); box != nullptr) {
    line.name = AsciiOf(window.Text());
    line.value = box->IsChecked() ? "[x]" : "[ ]";
  } else if (const auto* const chip = dynamic_cast<const ColourChipControl*>(&window); chip != nullptr) {
    line.name = "Colour chip";
    line.value = ColourInWords(*chip);
  } else if (window.Kind() == PageWindowKind::Button) {
    line.name = "<" + AsciiOf(window.Text()) + ">";
  }
  if (!window.IsEnabled()) line.marks += line.marks.empty() ? "disabled" : ", disabled";
  return line;
}

// The text broken at spaces into lines of at most kLongestLine, each behind the indent.
std::string Wrapped(std::string text, const std::string& indent) {
  std::ranges::replace(text, '\n', ' ');
  std::string lines;
  while (!text.empty()) {
    const std::size_t room = kLongestLine > indent.size() + 20 ? kLongestLine - indent.size() : 20;
    std::size_t end = text.size();
    if (end > room) {
      end = text.rfind(' ', room);
      if (end == std::string::npos || end == 0) end = std::min(text.find(' '), text.size());
    }
    std::string line = text.substr(0, end);
    while (!line.empty() && line.back() == ' ')
      line.pop_back();
    if (!line.empty()) lines += indent + line + "\n";
    text.erase(0, std::min(end + 1, text.size()));
  }
  return lines;
}

bool IsLabelOfAnother(const OpenedPage& page, const PageWindow& label) {
  return std::ranges::any_of(page.dialog->Items(), [&](const auto& item) {
    if (item.get() == &label) return false;
    const Property* const property = page.PropertyOf(*item);
    if (property == nullptr) return false;
    const std::string text = AsciiOf(label.Text());
    return text == property->shownName || (text.size() == 1 && property->name.ends_with(" " + text));
  });
}

}  // namespace

std::string AsciiOf(std::u16string_view text) {
  std::string ascii;
  for (const char16_t c : text)
    ascii += c < 0x80 ? static_cast<char>(c) : '?';
  return ascii;
}

std::string ExpectedPage(std::span<const std::string_view> pages, std::string_view found) {
  if (pages.empty()) return "the effect has no pages in this use, found " + Quoted(found);
  std::string names;
  for (const std::string_view page : pages)
    names.append(names.empty() ? "" : ", ").append(page);
  return "expected one of the pages " + names + ", found " + Quoted(found);
}

std::string FormatPage(const OpenedPage& page, double time, bool toolTips) {
  std::vector<FormLine> lines;
  std::size_t names = 0;
  std::size_t values = 0;
  const auto& items = page.dialog->Items();
  for (const auto& item : items) {
    lines.push_back(LineOf(page, *item));
    if (item->Kind() == PageWindowKind::Label || item->Kind() == PageWindowKind::Group) continue;
    names = std::max(names, lines.back().name.size());
    values = std::max(values, lines.back().value.size());
  }
  std::string form = page.Title() + " (" + page.name + ") at " + FormatNumber(time) + "\n";
  for (std::size_t i = 0; i < items.size(); ++i) {
    const PageWindow& window = *items[i];
    FormLine& line = lines[i];
    if (!window.IsVisible() && page.dialog->IsVisible()) continue;
    if (window.Kind() == PageWindowKind::Picture) continue;
    if (window.Kind() == PageWindowKind::Group) {
      if (!line.name.empty()) form += "  -- " + line.name + " --\n";
      continue;
    }
    if (window.Kind() == PageWindowKind::Label) {
      if (!IsLabelOfAnother(page, window)) form += Wrapped(AsciiOf(window.Text()), "  ");
      continue;
    }
    std::string text = "  " + line.name;
    if (!line.value.empty() || !line.rest.empty()) {
      text.resize(2 + names + 2, ' ');
      text += line.value;
    }
    const std::size_t column = 2 + names + 2 + values + 2;
    std::string marks = line.marks.empty() ? "" : "(" + line.marks + ")";
    if (!line.rest.empty() || !marks.empty()) {
      text.resize(std::max(text.size() + 2, column), ' ');
      std::string wrapped = Wrapped(line.rest + (line.rest.empty() || marks.empty() ? "" : "  ") + marks,
                                    std::string(column, ' '));
      wrapped.replace(0, std::min(column, wrapped.size()), text);
      form += wrapped;
    } else {
      form += text + "\n";
    }
    if (!toolTips) continue;
    const std::string tip = AsciiOf(items[i]->ToolTip());
    if (!tip.empty()) form += Wrapped(tip, "      ");
  }
  return form;
}

}  // namespace vblur::host
