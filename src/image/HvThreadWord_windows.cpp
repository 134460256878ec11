#include "image/HvThreadWord.h"

#include <windows.h>

namespace vblur {
namespace {

// The system's numbers of the words, until the library is unloaded.
class Numbers {
 public:
  Numbers() {
    for (DWORD& number : numbers_)
      number = ::TlsAlloc();
  }
  ~Numbers() {
    for (const DWORD number : numbers_)
      ::TlsFree(number);
  }
  DWORD of(HvThreadWord which) const { return numbers_[static_cast<int>(which)]; }

 private:
  DWORD numbers_[kHvThreadWords];
};

const Numbers& TheNumbers() {
  static const Numbers numbers;
  return numbers;
}

}  // namespace

std::intptr_t HvGetThreadWord(HvThreadWord which) {
  return reinterpret_cast<std::intptr_t>(::TlsGetValue(TheNumbers().of(which)));
}

void HvSetThreadWord(HvThreadWord which, std::intptr_t value) {
  ::TlsSetValue(TheNumbers().of(which), reinterpret_cast<void*>(value));
}

std::uintptr_t HvThreadNumber() {
  return ::GetCurrentThreadId();
}

}  // namespace vblur
