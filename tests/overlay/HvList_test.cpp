#include "overlay/HvList.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace vblur {
namespace {

using Elements = std::vector<int>;

// The elements first to last; checks that the backward links give the same.
Elements elementsOf(const HvList<int>& list) {
  Elements forwards;
  for (const auto* node = list.First(); node != nullptr; node = node->next)
    forwards.push_back(node->element);
  Elements backwards;
  for (const auto* node = list.Last(); node != nullptr; node = node->previous)
    backwards.insert(backwards.begin(), node->element);
  EXPECT_EQ(forwards, backwards);
  return forwards;
}

void fill(HvList<int>& list, const Elements& elements) {
  for (const int element : elements)
    EXPECT_EQ(list.Append(element), element);
}

TEST(HvList, IsEmptyAtFirst) {
  HvList<int> list;
  EXPECT_EQ(list.First(), nullptr);
  EXPECT_EQ(list.Last(), nullptr);
  EXPECT_EQ(list.Cursor(), nullptr);
  list.Start();
  EXPECT_EQ(list.Step(), nullptr);
}

TEST(HvList, AppendsBehindTheLast) {
  HvList<int> list;
  fill(list, {4});
  EXPECT_EQ(list.First(), list.Last());
  fill(list, {9, 4});
  EXPECT_EQ(elementsOf(list), (Elements{4, 9, 4}));
  EXPECT_EQ(list.Cursor(), nullptr);
}

TEST(HvList, TakesOutAnyNode) {
  HvList<int> list;
  fill(list, {1, 2, 3, 4});
  EXPECT_EQ(list.RemoveNode(list.First()->next), 2);
  EXPECT_EQ(elementsOf(list), (Elements{1, 3, 4}));
  EXPECT_EQ(list.RemoveNode(list.First()), 1);
  EXPECT_EQ(list.RemoveNode(list.Last()), 4);
  EXPECT_EQ(elementsOf(list), (Elements{3}));
  EXPECT_EQ(list.RemoveNode(list.First()), 3);
  EXPECT_EQ(elementsOf(list), (Elements{}));
  fill(list, {5});
  EXPECT_EQ(elementsOf(list), (Elements{5}));
}

TEST(HvList, StepsOnWhileTheCurrentNodeIsRemoved) {
  HvList<int> list;
  fill(list, {1, 2, 3});
  Elements seen;
  list.Start();
  while (auto* node = list.Step()) {
    const auto* const behind = list.Cursor();
    seen.push_back(list.RemoveNode(node));
    EXPECT_EQ(list.Cursor(), behind);
  }
  EXPECT_EQ(seen, (Elements{1, 2, 3}));
  EXPECT_EQ(list.First(), nullptr);
}

TEST(HvList, StepsBackWhenTheNodeAtTheCursorIsRemoved) {
  HvList<int> list;
  fill(list, {1, 2, 3});
  list.Start();
  list.Step();
  ASSERT_EQ(list.Cursor()->element, 2);
  list.RemoveNode(list.Cursor());
  EXPECT_EQ(list.Cursor(), list.First());
  Elements seen;
  while (const auto* node = list.Step())
    seen.push_back(node->element);
  EXPECT_EQ(seen, (Elements{1, 3})) << "the node before is visited again";
}

TEST(HvList, StepsOnWhenTheFirstNodeIsRemovedAtTheCursor) {
  HvList<int> list;
  fill(list, {1, 2});
  list.Start();
  list.RemoveNode(list.First());
  ASSERT_NE(list.Cursor(), nullptr);
  EXPECT_EQ(list.Cursor()->element, 2);
  list.RemoveNode(list.First());
  EXPECT_EQ(list.Cursor(), nullptr);
}

TEST(HvList, RemovesEveryNodeOfAnElement) {
  HvList<int> list;
  fill(list, {7, 1, 7, 7, 2, 7});
  EXPECT_FALSE(list.Remove(3));
  EXPECT_TRUE(list.Remove(7));
  EXPECT_EQ(elementsOf(list), (Elements{1, 2}));
  EXPECT_FALSE(list.Remove(7));
}

TEST(HvList, RemovingAnElementEndsAnIteration) {
  HvList<int> list;
  fill(list, {1, 2, 3});
  list.Start();
  list.Step();
  list.Remove(2);
  EXPECT_EQ(list.Step(), nullptr);
}

TEST(HvList, LooksForAnElementWithoutTheCursor) {
  HvList<int> list;
  fill(list, {1, 2, 3});
  list.Start();
  list.Step();
  EXPECT_TRUE(list.Contains(3));
  EXPECT_FALSE(list.Contains(4));
  EXPECT_EQ(list.Cursor()->element, 2);
}

TEST(HvList, ClearsItself) {
  HvList<int> list;
  fill(list, {1, 2, 3});
  list.Clear();
  EXPECT_EQ(elementsOf(list), (Elements{}));
  EXPECT_EQ(list.Cursor(), nullptr);
}

TEST(HvList, NeverOwnsItsElements) {
  const auto element = std::make_unique<int>(3);
  {
    HvList<int*> list;
    list.Append(element.get());
    list.Append(element.get());
  }
  EXPECT_EQ(*element, 3);
}

}  // namespace
}  // namespace vblur
