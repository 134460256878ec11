#include "platform/Shell.h"

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sdk/system/ShellAnswers.h"

namespace vblur {
namespace {

// A registry of one key with one text.
class OneKey : public host::ShellAnswers {
 public:
  OneKey() { host::UseShellAnswers(this); }
  ~OneKey() override { host::UseShellAnswers(nullptr); }

  bool HasKey(const std::u16string& key, std::uint32_t access) override {
    asked = access;
    return key == u"Some\\Key";
  }
  std::optional<std::u16string> Text(const std::u16string& key, const std::u16string& name) override {
    EXPECT_EQ(key, u"Some\\Key");
    if (name != u"Name") return std::nullopt;
    return u"four";
  }
  std::intptr_t Open(const std::u16string& operation, const std::u16string& file, std::int32_t show) override {
    opened.push_back(operation + u"|" + file + u"|" + (show == 5 ? u"5" : u"other"));
    return 42;
  }

  std::uint32_t asked = 0;
  std::vector<std::u16string> opened;
};

std::int32_t Open(const char16_t* name, HKEY* opened, HKEY below = HKEY_LOCAL_MACHINE) {
  return RegOpenKeyExW(below, name, 0, 0x1234, opened);
}

class Shell : public testing::Test {
 protected:
  std::int32_t Query(HKEY from, const char16_t* name) {
    return RegQueryValueExW(from, name, nullptr, nullptr, reinterpret_cast<std::uint8_t*>(text.data()), &size);
  }

  std::array<char16_t, 8> text{u"*******"};
  std::uint32_t size = sizeof text;
  HKEY key = 77;
};

TEST_F(Shell, HasNoRegistryAndNoDocumentsWithoutAnswers) {
  EXPECT_EQ(Open(u"Some\\Key", &key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(key, 77u);
  EXPECT_EQ(Query(1, u"Name"), ERROR_FILE_NOT_FOUND);
  EXPECT_LE(ShellExecuteW(nullptr, u"open", u"file", nullptr, nullptr, 5), 32);
}

TEST_F(Shell, ReadsATextOfAKey) {
  const OneKey answers;
  ASSERT_EQ(Open(u"Some\\Key", &key), ERROR_SUCCESS);
  EXPECT_EQ(answers.asked, 0x1234u);
  EXPECT_EQ(Query(key, u"Name"), ERROR_SUCCESS);
  EXPECT_EQ(size, 10u);
  EXPECT_EQ(std::u16string(text.data()), u"four");
  EXPECT_EQ(text[5], u'*');
  EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(Shell, NeedsRoomForTheTextsEnd) {
  const OneKey answers;
  Open(u"Some\\Key", &key);
  size = 9;
  EXPECT_EQ(Query(key, u"Name"), ERROR_MORE_DATA);
  EXPECT_EQ(size, 10u);
  EXPECT_EQ(text[0], u'*');
  EXPECT_EQ(Query(key, u"Name"), ERROR_SUCCESS);
  size = 0;
  EXPECT_EQ(RegQueryValueExW(key, u"Name", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS) << "the size alone";
  EXPECT_EQ(size, 10u);
  RegCloseKey(key);
}

TEST_F(Shell, LacksOtherKeysAndNames) {
  const OneKey answers;
  EXPECT_EQ(Open(u"Other", &key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Open(u"Some\\Key", &key, HKEY_LOCAL_MACHINE + 1), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Open(nullptr, &key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Open(u"Some\\Key", nullptr), ERROR_FILE_NOT_FOUND);
  Open(u"Some\\Key", &key);
  EXPECT_EQ(Query(key, u"Other"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Query(key, nullptr), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Query(key + 1, u"Name"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegQueryValueExW(key, u"Name", nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
  RegCloseKey(key);
}

TEST_F(Shell, ClosesAKeyOnce) {
  const OneKey answers;
  HKEY other = 0;
  Open(u"Some\\Key", &key);
  Open(u"Some\\Key", &other);
  EXPECT_NE(key, other);
  EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
  EXPECT_EQ(RegCloseKey(key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Query(key, u"Name"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Query(other, u"Name"), ERROR_SUCCESS);
  RegCloseKey(other);
}

TEST_F(Shell, FormatsNumbers) {
  std::array<char16_t, 1024> buffer{};
  const auto formatted = [&](const char16_t* format, std::int32_t number) {
    const std::int32_t length = wsprintfW(buffer.data(), format, number, 3);
    EXPECT_EQ(length, static_cast<std::int32_t>(std::u16string(buffer.data()).size()));
    return std::u16string(buffer.data());
  };
  EXPECT_EQ(formatted(u"a%db", 10), u"a10b");
  EXPECT_EQ(formatted(u"%d%d", -2147483647 - 1), u"-21474836483");
  EXPECT_EQ(formatted(u"100%%", 0), u"100%");
  EXPECT_EQ(formatted(u"%q%", 0), u"q");
  EXPECT_EQ(formatted(u"", 0), u"");
}

TEST_F(Shell, CutsAFormattedTextAt1023Characters) {
  std::array<char16_t, 1025> buffer{};
  buffer.fill(u'*');
  const std::u16string format = std::u16string(1022, u'x') + u"%d";
  EXPECT_EQ(wsprintfW(buffer.data(), format.c_str(), 12), 1023);
  EXPECT_EQ(buffer[1022], u'1');
  EXPECT_EQ(buffer[1023], u'\0');
  EXPECT_EQ(buffer[1024], u'*');
}

TEST_F(Shell, PassesADocumentOn) {
  const OneKey answers;
  EXPECT_EQ(ShellExecuteW(nullptr, u"print", u"C:\\file", nullptr, nullptr, 5), 42);
  EXPECT_EQ(ShellExecuteW(nullptr, nullptr, u"file", nullptr, nullptr, 1), 42);
  EXPECT_LE(ShellExecuteW(nullptr, u"open", nullptr, nullptr, nullptr, 5), 32);
  EXPECT_EQ(answers.opened, (std::vector<std::u16string>{u"print|C:\\file|5", u"|file|other"}));
}

}  // namespace
}  // namespace vblur
