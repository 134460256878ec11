#include "host/pages/PageForm.h"

#include <algorithm>

#include "host/base/Utf8.h"
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
  std::string rest;          // range or entries
  std::string breaksBehind;  // where the rest may be broken: behind this and before a space
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
    all += (all.empty() ? "" : ", ") + Utf8Of(entry);
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
    line.value = "[" + Utf8Of(list->Text()) + "]";
    line.rest = EntriesInWords(*list);
    line.breaksBehind = ",";
  } else if (const auto* const box = dynamic_cast<const CheckBoxControl*>(&window); box != nullptr) {
    line.name = Utf8Of(window.Text());
    line.value = box->IsChecked() ? "[x]" : "[ ]";
  } else if (const auto* const chip = dynamic_cast<const ColourChipControl*>(&window); chip != nullptr) {
    line.name = "Colour chip";
    line.value = ColourInWords(*chip);
  } else if (window.Kind() == PageWindowKind::Button) {
    line.name = "<" + Utf8Of(window.Text()) + ">";
  }
  if (!window.IsEnabled()) line.marks += line.marks.empty() ? "disabled" : ", disabled";
  return line;
}

// The text broken into lines of at most kLongestLine, each behind the indent, at spaces that follow `behind`.
std::string Wrapped(std::string text, const std::string& indent, const std::string& behind = "") {
  std::ranges::replace(text, '\n', ' ');
  const std::string gap = behind + " ";
  std::string lines;
  while (!text.empty()) {
    const std::size_t room = kLongestLine > indent.size() + 20 ? kLongestLine - indent.size() : 20;
    std::size_t end = text.size();
    if (end > room) {
      end = text.rfind(gap, room - behind.size());
      if (end == std::string::npos || end == 0) end = text.find(gap);
      end = end == std::string::npos ? text.size() : end + behind.size();
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
    const std::string text = Utf8Of(label.Text());
    return text == property->shownName || (text.size() == 1 && property->name.ends_with(" " + text));
  });
}

// The widths of names and of values.
struct FormColumns {
  std::size_t names = 0;
  std::size_t values = 0;
};

bool HasValue(const PageWindow& window) {
  switch (window.Kind()) {
    case PageWindowKind::Label:
    case PageWindowKind::Group:
    case PageWindowKind::Picture: return false;
    default: return true;
  }
}

FormColumns ColumnsOf(const OpenedPage& page) {
  FormColumns columns;
  for (const auto& item : page.dialog->Items()) {
    if (!HasValue(*item)) continue;
    const FormLine line = LineOf(page, *item);
    columns.names = std::max(columns.names, line.name.size());
    columns.values = std::max(columns.values, line.value.size());
  }
  return columns;
}

std::string TextOfControl(const FormLine& line, const FormColumns& columns) {
  const std::size_t valueColumn = columns.names + 4;
  const std::size_t restColumn = valueColumn + columns.values + 2;
  std::string text = "  " + line.name;
  if (!line.value.empty()) {
    text.resize(valueColumn, ' ');
    text += line.value;
  }
  const std::string marks = line.marks.empty() ? "" : "(" + line.marks + ")";
  const std::string rest = line.rest + (line.rest.empty() || marks.empty() ? "" : "  ") + marks;
  if (rest.empty()) return text + "\n";
  text.resize(std::max(text.size() + 2, restColumn), ' ');
  return text + Wrapped(rest, std::string(restColumn, ' '), line.breaksBehind).substr(restColumn);
}

std::string TextOf(const OpenedPage& page, const PageWindow& window, const FormColumns& columns) {
  const std::string text = Utf8Of(window.Text());
  switch (window.Kind()) {
    case PageWindowKind::Picture: return "";
    case PageWindowKind::Group: return text.empty() ? "" : "  -- " + text + " --\n";
    case PageWindowKind::Label: return IsLabelOfAnother(page, window) ? "" : Wrapped(text, "  ");
    default: return TextOfControl(LineOf(page, window), columns);
  }
}

// What is seen: controls in the order of the tabulator key, labels before the first control that is below them.
std::vector<PageWindow*> InReadingOrder(const PageDialog& dialog) {
  std::vector<PageWindow*> order;
  std::vector<PageWindow*> labels;
  for (const auto& item : dialog.Items()) {
    if (item->IsVisible()) (item->Kind() == PageWindowKind::Label ? labels : order).push_back(item.get());
  }
  for (PageWindow* const label : labels) {
    const auto isBelow = [label](const PageWindow* item) { return item->Area().y > label->Area().y; };
    order.insert(std::ranges::find_if(order, isBelow), label);
  }
  return order;
}

}  // namespace

std::string FormatPage(const OpenedPage& page, double time, bool toolTips) {
  std::string form = page.Title() + " (" + page.name + ") at " + FormatNumber(time) + "\n";
  const FormColumns columns = ColumnsOf(page);
  for (PageWindow* const item : InReadingOrder(*page.dialog)) {
    form += TextOf(page, *item, columns);
    const std::string tip = toolTips && HasValue(*item) ? Utf8Of(item->ToolTip()) : "";
    if (!tip.empty()) form += Wrapped(tip, "      ");
  }
  return form;
}

}  // namespace vblur::host
