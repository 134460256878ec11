// The host's own controls on property pages: number control and colour chip. A page finds one as the IUnknown that its
// window keeps under the name kControlInterface.
#pragma once

#include <cstdint>

#include "Com.h"
#include "DSVariant.h"

namespace vblur {

inline constexpr const char16_t* kControlInterface = u"DSCTLIFACE";

// Messages of controls to their dialog, by the names to register. WPARAM is the control's id.
inline constexpr const char16_t* kControlNotify = u"DSCTLNOTIFY";              // its value has changed
inline constexpr const char16_t* kControlNotifyComplete = u"DSCTLNOTIFYCOMP";  // and stays as it is
inline constexpr const char16_t* kControlScrub = u"DSCTLSCRUB";      // LPARAM: 1 when a scrub begins, 0 when it ends
inline constexpr const char16_t* kControlToolTip = u"DSCTLTOOLTIP";  // LPARAM: a DSToolTipText to fill

struct DSToolTipText {
  char16_t* buffer = nullptr;
  std::int32_t capacity = 0;
};

// What a number control shows of its property's animation.
enum class DSAnimationMark : std::int32_t {
  None = 0,
  Animated = 1,  // it has keys, none at the current time
  Key = 2,       // one of them is at the current time
};

// Values are 64-bit floats. A new control has the range and value that its text gives.
class IDSNumberControl : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{8AE0F6B1-81D4-11CF-9218-00A024079957}");

  // Both ends included; kWrongArgument if they are not finite or not in order. The value stays as it is.
  virtual HRESULT SetRange(const DSVariant& minimum, const DSVariant& maximum) = 0;
  virtual HRESULT GetRange(DSVariant* minimum, DSVariant* maximum) = 0;
  // Shows a value, which may lie beyond the range; the dialog gets no message.
  virtual HRESULT SetValue(const DSVariant& value) = 0;
  virtual HRESULT GetValue(DSVariant* value) = 0;
  virtual HRESULT SetAnimationMark(DSAnimationMark mark) = 0;

 protected:
  ~IDSNumberControl() = default;
};

// Components from 0 to 255; kWrongArgument for others.
class IDSColourChip : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{68DA9860-91A6-11D0-8606-00A024079957}");

  // Shows a colour; the dialog gets no message.
  virtual HRESULT SetColour(std::int32_t red, std::int32_t green, std::int32_t blue, std::int32_t alpha) = 0;
  virtual HRESULT GetColour(std::int32_t* red, std::int32_t* green, std::int32_t* blue, std::int32_t* alpha) = 0;

 protected:
  ~IDSColourChip() = default;
};

}  // namespace vblur
