#include "image/HvProcessors.h"

#include <array>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace vblur::test {
namespace {

std::vector<std::int32_t> GroupsOf(std::int32_t threads, const std::vector<std::int32_t>& sizes, std::int32_t first) {
  std::vector<std::int32_t> groups;
  for (std::int32_t i = 0; i < threads; ++i)
    groups.push_back(HvGroupOfThread(i, sizes, first));
  return groups;
}

TEST(HvProcessors, ThreadsFillOneGroupAfterTheOtherFromTheFirstOn) {
  EXPECT_EQ(GroupsOf(6, {2, 3, 1}, 0), (std::vector<std::int32_t>{0, 0, 1, 1, 1, 2}));
  EXPECT_EQ(GroupsOf(6, {2, 3, 1}, 1), (std::vector<std::int32_t>{1, 1, 1, 2, 0, 0}));
  EXPECT_EQ(GroupsOf(6, {2, 3, 1}, 2), (std::vector<std::int32_t>{2, 0, 0, 1, 1, 1}));
}

TEST(HvProcessors, MoreThreadsThanProcessorsStartAgain) {
  EXPECT_EQ(GroupsOf(8, {2, 1}, 1), (std::vector<std::int32_t>{1, 0, 0, 1, 0, 0, 1, 0}));
}

TEST(HvProcessors, EachProcessorOfALargeMachineGetsOneThread) {
  const std::array<std::int32_t, 3> sizes = {64, 64, 48};
  std::array<std::int32_t, 3> threads{};
  for (std::int32_t i = 0; i < 64 + 64 + 48; ++i)
    ++threads.at(static_cast<std::size_t>(HvGroupOfThread(i, sizes, 2)));
  EXPECT_EQ(threads, sizes);
}

TEST(HvProcessors, WithoutGroupsThereIsTheFirst) {
  EXPECT_EQ(HvGroupOfThread(5, {}, 0), 0);
  EXPECT_EQ(GroupsOf(3, {2, 0}, 1), (std::vector<std::int32_t>{0, 0, 0}));
  EXPECT_EQ(GroupsOf(3, {4, -1}, 0), (std::vector<std::int32_t>{0, 0, 0}));
}

TEST(HvProcessors, TheMachineHasAtLeastOneAndThisThreadRunsInOneOfItsGroups) {
  EXPECT_GE(HvProcessorCount(), 1);
  EXPECT_GE(HvCurrentGroup(), 0);
}

}  // namespace
}  // namespace vblur::test
