#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "host/hosted/CallTrace.h"
#include "host/properties/PropertyText.h"
#include "properties/PropertyTable.h"
#include "tests/apps/PlatformTexts.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class Properties : public ProgramTest {};

TEST_F(Properties, TheTableHoldsEveryOne) {
  const auto text = Run({"properties"});
  const auto json = nlohmann::json::parse(Run({"properties", "--json"}).out)["properties"];
  EXPECT_EQ(text.exit, 0);
  ASSERT_EQ(json.size(), kProperties.size());
  for (std::size_t i = 0; i < kProperties.size(); ++i) {
    const Property& property = kProperties[i];
    EXPECT_NE(text.out.find("\n" + std::string(property.name) + " "), std::string::npos) << property.name;
    EXPECT_EQ(json[i]["name"], property.name);
    EXPECT_EQ(json[i]["option"], "--" + host::OptionName(property));
    EXPECT_EQ(json[i]["default"], property.defaultValue);
    EXPECT_EQ(json[i]["hint"], property.hint);
  }
}

// Machine-readable: every field of the table, and the ids of classes.
TEST_F(Properties, TheDocumentHasEveryFieldAndTheClasses) {
  const auto json = nlohmann::ordered_json::parse(Run({"properties", "--json"}).out);
  EXPECT_EQ(json["version"], 1);
  EXPECT_EQ(json["classes"].size(), 7u);
  EXPECT_EQ(json["classes"]["Blur"], "{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}");
  EXPECT_EQ(json["classes"]["HvTInteract"], "{0DDF6A46-E387-49E6-A334-827E9F4CB919}");
  for (std::size_t i = 0; i < kProperties.size(); ++i) {
    const Property& property = kProperties[i];
    const auto& row = json["properties"][i];
    EXPECT_EQ(row["guid"], host::FormatGuid(property.guid));
    EXPECT_EQ(row["shownName"], property.shownName);
    EXPECT_EQ(row["capability"]["value"], static_cast<int>(property.capability));
    EXPECT_EQ(row["minimum"], property.minimum);
    EXPECT_EQ(row["maximum"], property.maximum);
    EXPECT_EQ(row.value("entries", std::vector<std::string>()),
              std::vector<std::string>(property.entries.begin(), property.entries.end()));
  }
  const char* const channels = R"({
  "name": "Channels",
  "guid": "{9D2E3007-AE89-11D5-9414-0800690F2F3F}",
  "shownName": "Channels",
  "option": "--channels",
  "group": "Blur",
  "kind": "list",
  "type": "integer32",
  "capability": {
    "name": "plain",
    "value": 4
  },
  "animated": false,
  "default": 1.0,
  "minimum": 0.0,
  "maximum": 10.0,
  "entries": [
    "RGB",
    "RGBA",
    "Grey",
    "Red",
    "Green",
    "Blue",
    "Alpha",
    "Luminance",
    "Chroma",
    "U",
    "V"
  ],
  "defaultText": "RGBA",
  "hint": ")";
  EXPECT_EQ(json["properties"][2].dump(2).rfind(channels, 0), 0u) << json["properties"][2].dump(2);
}

TEST_F(Properties, EveryOneIsAnOptionOfRender) {
  const std::string help = Run({"render", "--help"}).out;
  for (const Property& property : kProperties) {
    EXPECT_NE(help.find("  --" + host::OptionName(property) + " "), std::string::npos) << property.name;
  }
}

TEST_F(Properties, BlurDescribesASize) {
  const auto json = nlohmann::json::parse(Run({"properties", "blur", "--json", "--size", "12", "--size", "701"}).out);
  ASSERT_EQ(json["sizes"].size(), 2u);
  EXPECT_EQ(json["sizes"][0]["size"], 12.0);
  EXPECT_EQ(json["sizes"][0]["boxRadius"], 4.0);
  EXPECT_GT(json["sizes"][0]["sigma"], 0.0);
  EXPECT_LT(json["sizes"][1]["flatGain"], 0.98);
  EXPECT_NE(Run({"properties", "Blur"}).out.find("Box radius"), std::string::npos);
  ExpectRefusal({"properties", "Aspect", "--size", "3"}, 2, "--size: goes with the property Blur only");
}

TEST_F(Properties, ListsAreShownInFull) {
  const std::string text = Run({"properties", "mix-back"}).out;
  for (const std::string_view entry : PropertyOf(PropertyId::MixBack).entries) {
    EXPECT_NE(text.find(entry), std::string::npos) << entry;
  }
}

class PropertiesProgram : public ProgramTest {};

TEST_F(PropertiesProgram, SaysWhatItIs) {
  EXPECT_EQ(Run({"--version"}).out.rfind("vblur ", 0), 0u);
  const auto help = Run({"--help"});
  EXPECT_EQ(help.exit, 0);
  for (const char* command : {"render", "job", "properties", "chart"}) {
    EXPECT_NE(help.out.find("\n  " + std::string(command) + " "), std::string::npos) << command;
  }
  EXPECT_EQ(Run({}).exit, 2);
}

TEST_F(PropertiesProgram, DrawsCharts) {
  EXPECT_EQ(Run({"chart", "c.png", "--size", "64x48"}).exit, 0);
  EXPECT_EQ(host::ReadPictureInfo(Path("c.png")).height, 48);
  EXPECT_EQ(Run({"chart", "c.##." + kDeepFormat, "--size", "64x48", "--depth", "16", "--frames", "1-2"}).exit, 0);
  EXPECT_NE(Pixels("c.01." + kDeepFormat, 16), Pixels("c.02." + kDeepFormat, 16));
  ExpectRefusal({"chart", "c.##.png"}, 2, "c.##.png: holds a frame number, so --frames was expected");
  ExpectRefusal({"chart", "d.png", "--size", "0x4"}, 2, "--size: expected at least 1x1");
}

}  // namespace
}  // namespace vblur::cli
