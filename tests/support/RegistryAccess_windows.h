// Who may do what with a key of the registry.
#pragma once

#include <array>
#include <string>

#include <gtest/gtest.h>

#include <windows.h>

namespace vblur::test {

// Nobody may do what is denied with the key, everybody all else. Nothing happens to a key that is not there.
inline void DenyAccess(HKEY root, const std::wstring& name, DWORD denied) {
  HKEY key = nullptr;
  if (::RegOpenKeyExW(root, name.c_str(), 0, WRITE_DAC, &key) != ERROR_SUCCESS) return;
  alignas(DWORD) std::array<BYTE, SECURITY_MAX_SID_SIZE> everybody{};
  DWORD size = sizeof everybody;
  EXPECT_TRUE(::CreateWellKnownSid(WinWorldSid, nullptr, everybody.data(), &size));
  alignas(DWORD) std::array<BYTE, 256> storage{};
  auto* const list = reinterpret_cast<ACL*>(storage.data());
  EXPECT_TRUE(::InitializeAcl(list, sizeof storage, ACL_REVISION));
  if (denied != 0) {
    EXPECT_TRUE(::AddAccessDeniedAce(list, ACL_REVISION, denied, everybody.data()));
  }
  EXPECT_TRUE(::AddAccessAllowedAce(list, ACL_REVISION, KEY_ALL_ACCESS, everybody.data()));
  SECURITY_DESCRIPTOR security{};
  EXPECT_TRUE(::InitializeSecurityDescriptor(&security, SECURITY_DESCRIPTOR_REVISION));
  EXPECT_TRUE(::SetSecurityDescriptorDacl(&security, TRUE, list, FALSE));
  EXPECT_EQ(::RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, &security), ERROR_SUCCESS);
  ::RegCloseKey(key);
}

// A key that is there, made if need be, and that nobody may write to.
inline void RefuseWriting(HKEY root, const std::wstring& name) {
  HKEY key = nullptr;
  ASSERT_EQ(::RegCreateKeyExW(root, name.c_str(), 0, nullptr, 0, KEY_QUERY_VALUE, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  ::RegCloseKey(key);
  DenyAccess(root, name, KEY_SET_VALUE | KEY_CREATE_SUB_KEY);
}

}  // namespace vblur::test
