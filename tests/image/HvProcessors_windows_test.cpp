// The pool's threads on a machine of several processor groups, which the system's answers make up.
#include "image/HvProcessors.h"

#include <cstring>
#include <map>
#include <mutex>
#include <vector>

#include "image/HvThreads.h"
#include "tests/support/ImportHook_windows.h"

namespace vblur::test {
namespace {

// Two groups of two processors each.
constexpr WORD kGroups = 2;
constexpr BYTE kProcessors = 2;
constexpr std::int32_t kThreads = 4;

WORD callersGroup = 0;
std::mutex placing;
// By index in the pool; thread 0 is the caller, which stays where it is.
std::map<std::int32_t, std::vector<WORD>> placed;

BOOL WINAPI SayGroups(LOGICAL_PROCESSOR_RELATIONSHIP, PSYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX said, DWORD* length) {
  constexpr DWORD kNeeded = sizeof(SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX) + sizeof(PROCESSOR_GROUP_INFO);
  const bool fits = said != nullptr && *length >= kNeeded;
  *length = kNeeded;
  if (!fits) return FALSE;
  std::memset(said, 0, kNeeded);
  said->Group.ActiveGroupCount = kGroups;
  for (WORD i = 0; i < kGroups; ++i) {
    said->Group.GroupInfo[i].ActiveProcessorCount = kProcessors;
    // Not the first ones.
    said->Group.GroupInfo[i].ActiveProcessorMask = KAFFINITY{0b110} << i;
  }
  return TRUE;
}

void WINAPI SayProcessor(PPROCESSOR_NUMBER number) {
  *number = {callersGroup, 0, 0};
}

BOOL WINAPI NotePlace(HANDLE, const GROUP_AFFINITY* place, PGROUP_AFFINITY) {
  const std::lock_guard lock(placing);
  EXPECT_EQ(place->Mask, KAFFINITY{0b110} << place->Group);
  placed[HvThreadIndex()].push_back(place->Group);
  return TRUE;
}

class HvProcessorsOfGroups : public testing::Test {
 protected:
  HvProcessorsOfGroups() {
    HvSetThreadCount(kThreads);
    placed.clear();
  }
  ~HvProcessorsOfGroups() override { HvSetThreadCount(0); }

  static void RunFrom(WORD group) {
    callersGroup = group;
    HvThreadRun(reinterpret_cast<HvThreadFunction>(+[](const HvCallBlock*) {}), 0);
  }

  HINSTANCE program_ = ::GetModuleHandleW(nullptr);
  HookedImport groups_{program_, "kernel32.dll", "GetLogicalProcessorInformationEx", &SayGroups};
  HookedImport number_{program_, "kernel32.dll", "GetCurrentProcessorNumberEx", &SayProcessor};
  HookedImport place_{program_, "kernel32.dll", "SetThreadGroupAffinity", &NotePlace};
};

TEST_F(HvProcessorsOfGroups, ThreadsFillTheCallersGroupAndThenTheOther) {
  RunFrom(0);
  EXPECT_EQ(placed, (std::map<std::int32_t, std::vector<WORD>>{{1, {0}}, {2, {1}}, {3, {1}}}));
}

TEST_F(HvProcessorsOfGroups, ThreadsThatStandFollowACallerInAnotherGroup) {
  RunFrom(0);
  RunFrom(0);
  RunFrom(1);
  RunFrom(1);
  EXPECT_EQ(placed, (std::map<std::int32_t, std::vector<WORD>>{{1, {0, 1}}, {2, {1, 0}}, {3, {1, 0}}}));
}

}  // namespace
}  // namespace vblur::test
