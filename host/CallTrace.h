// The calls that the host makes on an effect, one line each: for finding out why a frame is what it is.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

#include "platform/DsTypes.h"

namespace vblur::host {

// "0x00000000".
std::string FormatResult(HRESULT result);
// "{9D2E3005-AE89-11D5-9414-0800690F2F3F}".
std::string FormatGuid(const GUID& guid);

// From any thread; lines come one at a time.
class CallTrace {
 public:
  explicit CallTrace(std::function<void(const std::string& line)> put) : put_(std::move(put)) {}

  // `object` says whose operation it was, `call` its name and arguments.
  void Note(const std::string& object, const std::string& call, HRESULT result, double seconds);

 private:
  std::mutex lock_;
  std::function<void(const std::string&)> put_;
};

}  // namespace vblur::host
