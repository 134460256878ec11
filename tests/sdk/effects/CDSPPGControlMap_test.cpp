#include <gtest/gtest.h>

#include "platform/CDSPropertyPage.h"

namespace vblur {
namespace {

constexpr GUID kMapped = MakeGuid("{00000000-0000-0000-0000-0000000000F1}");

constexpr CDSPPGControlMapEntry EntryOf(std::int32_t controlId, std::int32_t flags = 0, const GUID& id = kMapped) {
  CDSPPGControlMapEntry entry{};
  entry.property = id;
  entry.controlId = controlId;
  entry.flags = flags;
  return entry;
}

TEST(CDSPPGControlMap, EndsAtAZeroPropertyWithoutAControl) {
  // Neither of the two alone ends it.
  const CDSPPGControlMapEntry entries[] = {EntryOf(5), EntryOf(-1), EntryOf(7, 0, GUID{}), CDSPPGControlMapEntry{},
                                           EntryOf(9)};
  CDSPPGControlMap map{nullptr, "name", entries};
  EXPECT_EQ(map.Find(5), nullptr) << "not counted yet";
  map.Initialize();
  EXPECT_EQ(map.count, 3u);
  map.Initialize();
  EXPECT_EQ(map.count, 3u);
  EXPECT_EQ(map.Find(5), &entries[0]);
  EXPECT_EQ(map.Find(7), &entries[2]);
  EXPECT_EQ(map.Find(9), nullptr);
  EXPECT_EQ(map.Find(0), nullptr);
}

TEST(CDSPPGControlMap, MayHaveNoEntries) {
  CDSPPGControlMap map;
  map.Initialize();
  EXPECT_EQ(map.count, 0u);
  EXPECT_EQ(map.Find(-1), nullptr);
  const CDSPPGControlMapEntry end{};
  map.entries = &end;
  map.Initialize();
  EXPECT_EQ(map.count, 0u);
}

TEST(CDSPPGControlMap, HasTheEntriesOfItsParentsBehindItsOwn) {
  const CDSPPGControlMapEntry first[] = {EntryOf(5, 1), EntryOf(6, 1), {}};
  const CDSPPGControlMapEntry second[] = {EntryOf(6, 2), EntryOf(7, 2), {}};
  const CDSPPGControlMapEntry third[] = {EntryOf(7, 3), {}};
  CDSPPGControlMap oldest{nullptr, "oldest", first};
  CDSPPGControlMap middle{&oldest, "middle", second};
  CDSPPGControlMap map{&middle, "map", third};
  for (CDSPPGControlMap* each : {&oldest, &middle, &map})
    each->Initialize();
  EXPECT_EQ(map.Find(5), &first[0]);
  EXPECT_EQ(map.Find(6), &second[0]);
  EXPECT_EQ(map.Find(7), &third[0]);
  EXPECT_EQ(middle.Find(7), &second[1]);
  EXPECT_EQ(oldest.Find(7), nullptr);
}

TEST(CDSPPGControlMap, ThatOfTheBaseIsEmpty) {
  EXPECT_EQ(CDSBasePropertyPage::m_ControlMap.parent, nullptr);
  CDSBasePropertyPage::m_ControlMap.Initialize();
  EXPECT_EQ(CDSBasePropertyPage::m_ControlMap.count, 0u);
}

TEST(CDSPPGControlMap, ANewEntryIsTheEnd) {
  const CDSPPGControlMapEntry entry{};
  EXPECT_EQ(entry.property, GUID{});
  EXPECT_EQ(entry.controlId, -1);
  EXPECT_EQ(entry.last, -1);
  EXPECT_EQ(entry.type, VT_EMPTY);
}

}  // namespace
}  // namespace vblur
