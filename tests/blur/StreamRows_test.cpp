// Rows written past the caches in pieces, at every level of this machine.
#include "blur/StreamRows.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/KernelRuns.h"
#include "tests/support/Random.h"

namespace vblur::test {
namespace {

std::vector<std::byte> randomBytes(Random& random, std::size_t count) {
  std::vector<std::byte> bytes(count);
  for (std::byte& byte : bytes)
    byte = static_cast<std::byte>(random.within(0, 255));
  return bytes;
}

// Rows of some pieces each, that begin anywhere within a cache line and may lie in reverse order.
void compareWithCopies(Random& random) {
  const std::int64_t count = random.within(1, 6);
  std::vector<std::size_t> pieces(static_cast<std::size_t>(random.within(1, 4)));
  std::size_t rowBytes = 0;
  for (std::size_t& bytes : pieces) {
    const bool last = &bytes == &pieces.back();
    bytes = random.oneIn(2) ? static_cast<std::size_t>(random.within(1, 4)) * kCacheLineBytes
                            : static_cast<std::size_t>(random.within(last ? 1 : 64, 256));
    rowBytes += bytes;
  }
  const std::int64_t pitch = static_cast<std::int64_t>(rowBytes) + (random.oneIn(2) ? random.within(0, 70) : 64);
  const auto before = static_cast<std::size_t>(random.within(0, 130));
  const auto source = randomBytes(random, static_cast<std::size_t>(count) * rowBytes);
  auto expected = randomBytes(random, before + static_cast<std::size_t>(count * pitch) + 130);
  auto out = expected;
  const bool upwards = random.oneIn(2);
  const auto place = [&](std::int64_t row) {
    return before + static_cast<std::size_t>((upwards ? count - 1 - row : row) * pitch);
  };
  std::vector<std::byte> waiting(static_cast<std::size_t>(count) * kCacheLineBytes);
  std::size_t at = 0;
  for (const std::size_t& bytes : pieces) {
    std::vector<const std::byte*> rows;
    for (std::int64_t i = 0; i < count; ++i) {
      rows.push_back(source.data() + static_cast<std::size_t>(i) * rowBytes + at);
      std::copy_n(rows.back(), bytes, expected.data() + place(i) + at);
    }
    streamRows({out.data() + place(0) + at, upwards ? -pitch : pitch, count, bytes, &bytes == &pieces.front(),
                &bytes == &pieces.back()},
               rows.data(), waiting.data());
    at += bytes;
  }
  ASSERT_TRUE(out == expected) << HvCpuLevel() << " rows of " << rowBytes;
}

class StreamRows : public AtEachLevel {};

TEST_P(StreamRows, EqualCopiesOfTheirPieces) {
  forRandomCases(2000, compareWithCopies);
  EXPECT_TRUE(kernelsRan({"streamRows"}));
}

INSTANTIATE_TEST_SUITE_P(Levels, StreamRows, testing::ValuesIn(vectorLevels()), levelName);

}  // namespace
}  // namespace vblur::test
