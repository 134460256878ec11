#include "sdk/effects/RegistryClasses_windows.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/RegistryAccess_windows.h"

namespace vblur::host {
namespace {

constexpr GUID kClass = MakeGuid("{0B1C6E5A-2C1D-4B53-9C58-6E31B1F2D0A7}");
const std::wstring kKey = L"Software\\Classes\\CLSID\\{0B1C6E5A-2C1D-4B53-9C58-6E31B1F2D0A7}";
const std::wstring kServer = kKey + L"\\InprocServer32";
const ServerEntry kEntry = {kClass, L"C:\\V_Blur.dll", L"A class"};

// Two keys of the user's own that stand for the machine's part and the user's.
class RegistryClasses : public testing::Test {
 protected:
  RegistryClasses() : roots_{MakeBelow(HKEY_CURRENT_USER, kAll), MakeBelow(HKEY_CURRENT_USER, kUser)} {}
  ~RegistryClasses() override {
    for (HKEY const root : {roots_.all, roots_.user}) {
      for (const std::wstring& key : {kKey, kServer})
        test::DenyAccess(root, key, 0);
      RegCloseKey(root);
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, kBoth);
  }

  static HKEY MakeBelow(HKEY root, const wchar_t* name) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(root, name, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
    return key;
  }

  static bool HasKey(HKEY root, const std::wstring& key) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, KEY_QUERY_VALUE, &opened) != 0) return false;
    RegCloseKey(opened);
    return true;
  }

  static std::wstring Text(HKEY root, const std::wstring& key, const wchar_t* name = nullptr) {
    std::array<wchar_t, 256> text{};
    DWORD size = sizeof text;
    const LSTATUS read = RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text.data(), &size);
    return read == 0 ? text.data() : L"(none)";
  }

  static constexpr const wchar_t* kBoth = L"Software\\vblur-tests";
  static constexpr const wchar_t* kAll = L"Software\\vblur-tests\\all";
  static constexpr const wchar_t* kUser = L"Software\\vblur-tests\\user";
  RegistryRoots roots_;
};

TEST_F(RegistryClasses, AreEnteredForAllUsers) {
  EXPECT_EQ(EnterClass(roots_, kEntry), kOk);
  EXPECT_EQ(Text(roots_.all, kKey), L"A class");
  EXPECT_EQ(Text(roots_.all, kServer), L"C:\\V_Blur.dll");
  EXPECT_EQ(Text(roots_.all, kServer, L"ThreadingModel"), L"Both");
  EXPECT_FALSE(HasKey(roots_.user, kKey));
  EXPECT_EQ(RemoveClass(roots_, kClass), kOk);
  EXPECT_FALSE(HasKey(roots_.all, kKey));
}

TEST_F(RegistryClasses, AreEnteredForTheUserWhereTheMachineRefuses) {
  test::RefuseWriting(roots_.all, kKey);
  EXPECT_EQ(EnterClass(roots_, kEntry), kOk);
  EXPECT_EQ(Text(roots_.all, kKey), L"(none)");
  EXPECT_EQ(Text(roots_.user, kServer), L"C:\\V_Blur.dll");
}

TEST_F(RegistryClasses, ARefusalOfBothIsAFailureThatLeavesNothing) {
  test::RefuseWriting(roots_.all, kServer);
  test::RefuseWriting(roots_.user, kServer);
  EXPECT_EQ(EnterClass(roots_, kEntry), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  for (HKEY const root : {roots_.all, roots_.user}) {
    EXPECT_EQ(Text(root, kKey), L"(none)") << "written before the refusal";
    EXPECT_EQ(Text(root, kServer), L"(none)");
  }
}

TEST_F(RegistryClasses, ARefusedNewVersionLeavesTheOldOne) {
  ASSERT_EQ(EnterClass(roots_, kEntry), kOk);
  test::RefuseWriting(roots_.all, kServer);
  test::RefuseWriting(roots_.user, kServer);
  EXPECT_LT(EnterClass(roots_, {kClass, L"D:\\V_Blur.dll", L"A newer class"}), 0);
  EXPECT_EQ(Text(roots_.all, kKey), L"A class");
  EXPECT_EQ(Text(roots_.all, kServer), L"C:\\V_Blur.dll");
}

TEST_F(RegistryClasses, WritesThatAreNotKeptLeaveNoKey) {
  {
    RegistryWrites writes(roots_.all);
    EXPECT_EQ(writes.Set(kKey, nullptr, L"A class"), 0);
    EXPECT_EQ(writes.Set(kServer, L"ThreadingModel", L"Both"), 0);
    EXPECT_TRUE(HasKey(roots_.all, kServer));
  }
  EXPECT_FALSE(HasKey(roots_.all, kServer));
  EXPECT_FALSE(HasKey(roots_.all, kKey));
}

TEST_F(RegistryClasses, AServerWithoutAFileIsRefused) {
  EXPECT_EQ(EnterClass(roots_, {kClass, L"", L"A class"}), kFailed);
  EXPECT_FALSE(HasKey(roots_.all, kKey));
}

TEST_F(RegistryClasses, AClassThatIsNowhereCannotBeRemoved) {
  EXPECT_EQ(RemoveClass(roots_, kClass), kFailed);
}

TEST_F(RegistryClasses, AClassThatIsLeftSomewhereIsNotRemoved) {
  ASSERT_EQ(EnterClass({roots_.user, roots_.user}, kEntry), kOk);
  ASSERT_EQ(EnterClass(roots_, kEntry), kOk);
  test::DenyAccess(roots_.all, kKey, DELETE | KEY_SET_VALUE | KEY_ENUMERATE_SUB_KEYS);
  EXPECT_EQ(RemoveClass(roots_, kClass), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  EXPECT_FALSE(HasKey(roots_.user, kKey));
  EXPECT_TRUE(HasKey(roots_.all, kServer));
}

}  // namespace
}  // namespace vblur::host
