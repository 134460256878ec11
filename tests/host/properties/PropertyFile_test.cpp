#include "host/properties/PropertyFile.h"

#include <limits>

#include <gtest/gtest.h>

#include "host/hosted/HostedEffect.h"
#include "tests/support/TestServer.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

// A store with every property set; animated ones have curves of this interpolation.
PropertyStore Strange(Interpolation interpolation) {
  PropertyStore store;
  double value = 0.1;
  for (const Property& property : kProperties) {
    value = value * 1.7 + 1.0 / 3.0;
    if (property.IsAnimated()) {
      store.Set(property.guid, Curve{{{-value, value / 7.0}, {0.1 + 0.2, -5e-324}, {value, 1.7e308}}, interpolation});
    } else if (property.control == PropertyControl::Number) {
      store.Set(property.guid, value);
    } else {
      store.Set(property.guid, property.defaultValue == 0.0 ? property.maximum : 0.0);
    }
  }
  return store;
}

TEST(PropertyFile, HoldsEverythingThatAnEffectHasToTheLastBit) {
  const ScratchFolder folder;
  for (const auto interpolation : {Interpolation::Linear, Interpolation::Hold, Interpolation::Smooth}) {
    const PropertyStore store = Strange(interpolation);
    HostedEffect effect(MakeEffect());
    effect.PutProperties(store);
    const PropertyStore taken = PropertiesOf(effect.PropertyAccess());
    EXPECT_EQ(taken, store);
    WritePropertyFileBeside(taken, folder.path() / "look.json")->Commit();
    const PropertyStore read = ReadPropertyFile(folder.path() / "look.json");
    EXPECT_EQ(read, store);
    EXPECT_EQ(ParseProperties(FormatProperties(store)), store);
    HostedEffect other(MakeEffect());
    other.PutProperties(read);
    EXPECT_EQ(PropertiesOf(other.PropertyAccess()), store);
  }
}

TEST(PropertyFile, DefaultsMakeAShortFile) {
  const ScratchFolder folder;
  const HostedEffect effect(MakeEffect());
  WritePropertyFileBeside(PropertiesOf(effect.PropertyAccess()), folder.path() / "look.json")->Commit();
  EXPECT_EQ(ReadPropertyFile(folder.path() / "look.json"), PropertyStore());
}

TEST(PropertyFile, SaysWhatIsWrongAndWhere) {
  const ScratchFolder folder;
  const std::pair<const char*, const char*> cases[] = {
      {"{\"properties\": {\"Blurr\": 3}}", "properties"},
      {"{\"properties\": {\"Blur\": \"x\"}}", "properties/Blur"},
      {"{\"version\": 2, \"properties\": {}}", "version"},
      {"{\"version\": 1}", "properties: missing"},
      {"{\"input\": {}, \"properties\": {}}", "input"},
      {"[]", "expected {\"version\": 1"},
      {"{", "line 1"},
  };
  for (const auto& [text, expected] : cases) {
    const auto path = folder.Write("look.json", text);
    const std::string message = UsageFailureOf([&] { ReadPropertyFile(path); });
    EXPECT_EQ(message.rfind(path.string() + ": ", 0), 0u) << message;
    EXPECT_NE(message.find(expected), std::string::npos) << message;
  }
}

}  // namespace
}  // namespace vblur::host
