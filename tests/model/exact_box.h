// One box of the filter on floats: exact sums of fixed-point numbers.
#pragma once

#include <cstdint>
#include <vector>

#include "box.h"

namespace model {

/// The box of a radius from 0 up at begin, begin + 1, ... end - 1, in floats held as their bits.
std::vector<std::int32_t> ExactBoxLine(const LineSource& source, std::int64_t begin, std::int64_t end, float radius);

}  // namespace model
