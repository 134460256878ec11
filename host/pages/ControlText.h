// What the resource text of a static says of the host's own controls: "Blur;class=dsnewnumberctrl;min=0;max=720" is a
// number control with the caption "Blur".
#pragma once

#include <string_view>

#include "host/pages/PageWindow.h"

namespace vblur::host {

struct ControlText {
  PageWindowKind kind = PageWindowKind::Label;  // or Number, or ColourChip
  std::string_view caption;                     // the part before the first semicolon; of a label the whole text
  // Of a number control. What is missing or no finite number keeps these, as do ends that are not in order.
  double minimum = 0.0;
  double maximum = 100.0;
};

// Class and fields in either case, in any order; the last of several counts, unknown ones are passed over. A text
// without a known class is a label's. Points into the text.
ControlText ReadControlText(std::string_view text);
// Of a window that is of such a class, whatever the text says of it.
ControlText ReadControlText(std::string_view text, PageWindowKind known);

}  // namespace vblur::host
