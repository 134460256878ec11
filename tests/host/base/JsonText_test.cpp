#include "host/base/JsonText.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

std::string ParseFailure(const std::string& text) {
  return UsageFailureOf([&] { ParseJson(text); });
}

TEST(JsonText, BuildsTheSameDocumentAsTheLibrary) {
  for (const char* text :
       {"{}", "[]", "3", "null", "\"a\"", R"({"a": [1, {"b": [[], {}]}, -2.5, true], "c": {"a": null}})",
        "[[1, [2, 3]], {\"x\": \"\\u00e4\"}, 18446744073709551615]"}) {
    EXPECT_EQ(ParseJson(text), nlohmann::json::parse(text)) << text;
  }
}

TEST(JsonText, TellsHowABackslashIsWritten) {
  const std::string hint = R"(; write / or \\ for each \ in a file name)";
  EXPECT_EQ(ParseFailure(R"({"file": "C:\pictures\a.png"})"),
            "not JSON (line 1, column 14: invalid string: forbidden character after backslash)" + hint);
  EXPECT_TRUE(ParseFailure(R"(["C:\users"])").ends_with(hint)) << ParseFailure(R"(["C:\users"])");
  EXPECT_FALSE(ParseFailure("[\"a\nb\"]").ends_with(hint)) << ParseFailure("[\"a\nb\"]");
}

TEST(JsonText, NamesTheLineAndTheColumn) {
  EXPECT_EQ(ParseFailure(""), "not JSON (line 1, column 1: unexpected end of input; expected '[', '{', or a literal)");
  EXPECT_EQ(ParseFailure("{\"a\": 1,\n  \"b\" 2}"),
            "not JSON (line 2, column 7: unexpected number literal; expected ':')");
  EXPECT_EQ(ParseFailure("{\n\n\"a\": 1,}"), "not JSON (line 3, column 8: unexpected '}'; expected string literal)");
  EXPECT_EQ(ParseFailure("{} x").substr(0, 27), "not JSON (line 1, column 4:");
  EXPECT_EQ(ParseFailure("[1,\n").substr(0, 48), "not JSON (line 2, column 1: unexpected end of in");
  EXPECT_EQ(ParseFailure("[NaN]"), "not JSON (line 1, column 2: invalid literal)");
  EXPECT_EQ(ParseFailure("{\"a\" \xff"), "not JSON (line 1, column 6: invalid literal; expected ':')");
  EXPECT_EQ(ParseFailure("[\"a\nb\"]").substr(0, 27), "not JSON (line 1, column 4:");
  EXPECT_EQ(ParseFailure(R"({"a" "x\"y"})").substr(0, 27), "not JSON (line 1, column 6:");
}

TEST(JsonText, RefusesNumbersThatDoNotFit) {
  EXPECT_EQ(ParseFailure("{\"a\":\n 1e999}"),
            "line 2, column 2: expected a number that a 64-bit float holds, found \"1e999\"");
}

TEST(JsonText, RefusesAFieldThatIsThereTwice) {
  EXPECT_EQ(ParseFailure(R"({"a": 1, "a": 1})"), "a: this field is there twice, expected it once");
  EXPECT_EQ(ParseFailure(R"({"p": [0, {"b": {"x": 1, "y": 2, "x": 3}}]})"),
            "p/1/b/x: this field is there twice, expected it once");
  EXPECT_EQ(ParseJson(R"([{"a": 1}, {"a": 2}])").size(), 2u);
}

TEST(JsonText, RefusesBottomlessDepth) {
  EXPECT_NE(ParseFailure(std::string(1'000'000, '[')).find("expected at most 32 levels"), std::string::npos);
  EXPECT_NO_THROW(ParseJson(std::string(32, '[') + std::string(32, ']')));
}

}  // namespace
}  // namespace vblur::host
