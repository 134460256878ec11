// A log of the host's calls on an effect, one line each.
#pragma once

#include <chrono>
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

  // `object` owns the operation; `call` is its name and arguments.
  void Note(const std::string& object, const std::string& call, HRESULT result, double seconds);

 private:
  std::mutex lock_;
  std::function<void(const std::string&)> put_;
};

// Makes a call and logs it, if there is a trace. `text` returns name and arguments and is called afterwards; `call`
// returns an HRESULT.
template <typename Text, typename Call>
HRESULT NotedCall(CallTrace* trace, const std::string& object, Text text, Call call) {
  if (trace == nullptr) return call();
  const auto start = std::chrono::steady_clock::now();
  const HRESULT result = call();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  trace->Note(object, text(), result, seconds.count());
  return result;
}

}  // namespace vblur::host
