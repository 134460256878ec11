// Shared by the checks of what people hand the program.
#pragma once

#include <algorithm>
#include <stdexcept>
#include <string>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/jobs/JobFile.h"

namespace vblur::test {

inline void Demand(bool holds, const std::string& what) {
  if (!holds) throw std::logic_error(what);
}

// Whether the call throws no Failure; a Failure must be one line with something in it.
template <typename Call>
bool Accepts(Call call) {
  try {
    call();
    return true;
  } catch (const host::Failure& failure) {
    const std::string line = failure.what();
    Demand(!line.empty(), "a refusal without a text");
    Demand(std::ranges::none_of(line, [](unsigned char c) { return c < ' ' || c == 127; }),
           "a refusal that is not one line: " + host::Quoted(line));
    return false;
  }
}

// Each event of a script has a line of its own, and they rise.
template <typename Events>
void CheckPlaces(const Events& events, const std::string& name) {
  long before = 0;
  for (const auto& event : events) {
    Demand(event.place.starts_with(name + ":"), "an event in another file: " + event.place);
    const long line = std::stol(event.place.substr(name.size() + 1));
    Demand(line > before, "an event before the last one: " + event.place);
    before = line;
  }
}

// The job as its file has it. Throws std::logic_error for one that is another job then.
inline host::Job Refiled(const host::Job& job) {
  const std::string text = host::FormatJob(job);
  host::Job again = host::ParseJob(text, job.folder);
  Demand(again == job, "the job is another one after its file:\n" + text);
  return again;
}

}  // namespace vblur::test
