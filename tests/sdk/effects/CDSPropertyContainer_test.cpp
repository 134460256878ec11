// The host's property container: values by the static map of a class, curves, aliases and notifications.
#include "platform/CDSPropertyContainer.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ComPtr.h"

namespace vblur {
namespace {

constexpr GUID kSize = MakeGuid("{00000000-0000-0000-0000-000000000001}");
constexpr GUID kChoice = MakeGuid("{00000000-0000-0000-0000-000000000002}");
constexpr GUID kFixed = MakeGuid("{00000000-0000-0000-0000-000000000003}");
constexpr GUID kInherited = MakeGuid("{00000000-0000-0000-0000-000000000004}");
constexpr GUID kAlias = MakeGuid("{00000000-0000-0000-0000-000000000005}");
constexpr GUID kSecondAlias = MakeGuid("{00000000-0000-0000-0000-000000000006}");

class Container : public CDSAliasedPropertyContainer {
 public:
  Container() = default;
  Container(const Container& other) : CDSAliasedPropertyContainer(other) { CopyAnimation(other); }
  ~Container() override { ++ended; }

  HRESULT GetStaticPropertyCount(std::int32_t* count) override {
    *count = 3;
    return kOk;
  }
  HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) override {
    const auto entry = [](const GUID& id, std::int32_t capability, DSValueType type,
                          CDSPropertiesMapEntry::Member member) {
      return CDSPropertiesMapEntry{{.id = id, .capability = capability, .type = type}, member};
    };
    static const std::vector<CDSPropertiesMapEntry> parents = {entry(
        kInherited, 4, DSValueType::Boolean32, [](CDSBasePropertyContainer& c) -> void* { return &Of(c).inherited; })};
    static const std::vector<CDSPropertiesMapEntry> entries = {
        entry(kSize, 5, DSValueType::Float64, [](CDSBasePropertyContainer& c) -> void* { return &Of(c).size; }),
        entry(kChoice, 4, DSValueType::Integer32, [](CDSBasePropertyContainer& c) -> void* { return &Of(c).choice; }),
        entry(kFixed, 4, DSValueType::Float64, [](CDSBasePropertyContainer& c) -> void* { return &Of(c).fixed; })};
    static const CDSPropertiesMap parent{nullptr, parents};
    static const CDSPropertiesMap own{&parent, entries};
    *map = &own;
    return kOk;
  }

  using CDSPropertyContainer::OnPropertyChanged;

  double size = 1.5;
  std::int32_t choice = 7;
  double fixed = 2.5;
  std::int32_t inherited = 1;
  static inline int ended = 0;

 private:
  static Container& Of(CDSBasePropertyContainer& container) { return static_cast<Container&>(container); }
};

struct Listener : IDSPropertyNotify {
  void OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) override {
    changes.push_back(property);
    lastValue = value == nullptr ? -1.0 : value->AsNumber();
    if (value != nullptr) lastVariant = *value;
    lastFlags = flags;
    if (leaveFrom != nullptr) leaveFrom->Unadvise(this);
  }
  std::vector<GUID> changes;
  double lastValue = 0.0;
  DSVariant lastVariant;
  std::uint32_t lastFlags = 0;
  IDSProperties* leaveFrom = nullptr;
};

double ValueOf(Container& container, const GUID& id) {
  DSVariant value;
  EXPECT_EQ(container.GetValue(id, &value), kOk);
  return value.AsNumber();
}

TEST(CDSPropertyContainer, ReachesTheMembersOfTheMapAndOfItsParents) {
  Container container;
  DSVariant value;
  EXPECT_EQ(container.GetValue(kSize, &value), kOk);
  EXPECT_EQ(value.type, DSValueType::Float64);
  EXPECT_EQ(value.number, 1.5);
  EXPECT_EQ(container.GetValue(kChoice, &value), kOk);
  EXPECT_EQ(value.type, DSValueType::Integer32);
  EXPECT_EQ(value.whole, 7);
  EXPECT_EQ(container.GetValue(kInherited, &value), kOk);
  EXPECT_EQ(value.type, DSValueType::Boolean32);
  EXPECT_EQ(value.whole, 1);
  EXPECT_EQ(container.GetValue(kAlias, &value), kWrongArgument);
  EXPECT_EQ(container.GetValue(kSize, nullptr), kNullPointer);
  EXPECT_EQ(container.PutValue(kInherited, DSVariant::Of(0)), kOk);
  EXPECT_EQ(container.inherited, 0);
}

TEST(CDSPropertyContainer, ConvertsValuesToThePropertysType) {
  Container container;
  const std::pair<double, std::int32_t> cases[] = {
      {3.9, 3},
      {-3.9, -3},
      {2147483647.5, 2147483647},
      {-2147483648.5, -2147483647 - 1},
      {2147483648.0, -2147483647 - 1},
      {1e300, -2147483647 - 1},
      {-std::numeric_limits<double>::infinity(), -2147483647 - 1},
      {std::numeric_limits<double>::quiet_NaN(), -2147483647 - 1},
  };
  for (const auto& [given, kept] : cases) {
    EXPECT_EQ(container.PutValue(kChoice, DSVariant::Of(given)), kOk);
    EXPECT_EQ(container.choice, kept) << given;
  }
  EXPECT_EQ(container.PutValue(kSize, DSVariant::Of(12)), kOk);
  EXPECT_EQ(container.size, 12.0);
}

TEST(CDSPropertyContainer, RefusesNumbersThatAreNotFinite) {
  Container container;
  container.size = 1.5;
  for (const double refused : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(container.PutValue(kSize, DSVariant::Of(refused)), kWrongArgument);
    EXPECT_EQ(container.PutCurve(kSize, DSCurve{{{0.0, 1.0}, {1.0, refused}}}), kWrongArgument);
    EXPECT_EQ(container.PutCurve(kSize, DSCurve{{{refused, 1.0}}}), kWrongArgument);
  }
  const DSCurve* curve = nullptr;
  EXPECT_EQ(container.GetCurve(kSize, &curve), kFalse);
  EXPECT_EQ(container.size, 1.5);
}

TEST(CDSPropertyContainer, ACurveStandsForThePlainValueUntilItIsRemoved) {
  Container container;
  const DSCurve curve{{{0.0, 10.0}, {4.0, 30.0}}, DSInterpolation::Linear};
  double value = 0.0;
  const DSCurve* kept = &curve;
  EXPECT_EQ(container.GetCurve(kSize, &kept), kFalse);
  EXPECT_EQ(kept, nullptr);
  EXPECT_EQ(container.GetValueAt(kSize, 2.0, &value), kOk);
  EXPECT_EQ(value, 1.5);
  EXPECT_EQ(container.PutCurve(kSize, curve), kOk);
  EXPECT_EQ(container.GetValueAt(kSize, 2.0, &value), kOk);
  EXPECT_EQ(value, 20.0);
  EXPECT_EQ(ValueOf(container, kSize), 1.5) << "the plain value stays";
  EXPECT_EQ(container.GetCurve(kSize, &kept), kOk);
  EXPECT_EQ(*kept, curve);
  EXPECT_EQ(container.RemoveCurve(kSize), kOk);
  EXPECT_EQ(container.RemoveCurve(kSize), kFalse);
  EXPECT_EQ(container.GetValueAt(kSize, 2.0, &value), kOk);
  EXPECT_EQ(value, 1.5);
}

TEST(CDSPropertyContainer, RefusesCurvesWhereNoneCanBe) {
  Container container;
  const DSCurve curve{{{0.0, 10.0}}, DSInterpolation::Hold};
  const DSCurve* kept = nullptr;
  double value = 0.0;
  EXPECT_EQ(container.PutCurve(kFixed, curve), kFailed);
  EXPECT_EQ(container.PutCurve(kSize, DSCurve{}), kWrongArgument);
  for (const GUID& id : {kAlias}) {
    EXPECT_EQ(container.PutCurve(id, curve), kWrongArgument);
    EXPECT_EQ(container.GetCurve(id, &kept), kWrongArgument);
    EXPECT_EQ(container.RemoveCurve(id), kWrongArgument);
    EXPECT_EQ(container.GetValueAt(id, 0.0, &value), kWrongArgument);
  }
  EXPECT_EQ(container.GetCurve(kSize, nullptr), kNullPointer);
  EXPECT_EQ(container.GetValueAt(kSize, 0.0, nullptr), kNullPointer);
}

TEST(CDSPropertyContainer, AnAliasIsTheProperty) {
  Container container;
  EXPECT_EQ(container.AddAlias(kAlias, kSize), kOk);
  EXPECT_EQ(container.AddAlias(kSecondAlias, kAlias), kOk) << "an alias of an alias";
  EXPECT_EQ(container.AddAlias(kAlias, kChoice), kWrongArgument) << "taken";
  EXPECT_EQ(container.AddAlias(kChoice, kSize), kWrongArgument) << "an id of its own";
  EXPECT_EQ(container.AddAlias(MakeGuid("{00000000-0000-0000-0000-000000000008}"), GUID{}), kWrongArgument);
  for (const GUID& id : {kAlias, kSecondAlias}) {
    EXPECT_EQ(container.PutValue(id, DSVariant::Of(9.0)), kOk);
    EXPECT_EQ(container.size, 9.0);
    EXPECT_EQ(container.PutCurve(id, {{{0.0, 3.0}}, {}}), kOk);
    double value = 0.0;
    EXPECT_EQ(container.GetValueAt(kSize, 0.0, &value), kOk);
    EXPECT_EQ(value, 3.0);
    EXPECT_EQ(container.GetValueAt(id, 0.0, &value), kOk);
    EXPECT_EQ(value, 3.0);
    EXPECT_EQ(container.RemoveCurve(id), kOk);
  }
  Container copy(container);
  EXPECT_EQ(ValueOf(copy, kAlias), 1.5) << "aliases are copied, members are the class's matter";
}

TEST(CDSPropertyContainer, NotifiesOfEveryChangeUnderThePropertysOwnId) {
  Container container;
  Listener listener;
  EXPECT_EQ(container.Advise(nullptr), kNullPointer);
  EXPECT_EQ(container.Advise(&listener), kOk);
  container.AddAlias(kAlias, kSize);
  container.PutValue(kAlias, DSVariant::Of(4.0));
  EXPECT_EQ(listener.lastValue, 4.0);
  container.PutCurve(kAlias, {{{0.0, 3.0}}, {}});
  EXPECT_EQ(listener.lastValue, -1.0);
  container.RemoveCurve(kSize);
  container.PutValue(GUID{}, DSVariant::Of(1.0));
  EXPECT_EQ(listener.changes, (std::vector<GUID>{kSize, kSize, kSize}));
  container.OnPropertyChanged(GUID_ALL_PROPERTIES, nullptr, nullptr, nullptr, 0, 32768);
  EXPECT_EQ(listener.lastFlags, 32768u);

  const Container copy(container);
  const_cast<Container&>(copy).PutValue(kSize, DSVariant::Of(1.0));
  EXPECT_EQ(listener.changes.size(), 4u) << "a copy has no listeners";

  Listener leaving;
  leaving.leaveFrom = &container;
  container.Advise(&leaving);
  container.PutValue(kSize, DSVariant::Of(5.0));
  container.PutValue(kSize, DSVariant::Of(6.0));
  EXPECT_EQ(leaving.changes.size(), 1u);
  EXPECT_EQ(listener.changes.size(), 6u);
  EXPECT_EQ(container.Unadvise(&leaving), kWrongArgument);
}

TEST(CDSPropertyContainer, NotifiesOfValuesAtATime) {
  Container container;
  Listener listener;
  container.Advise(&listener);
  EXPECT_EQ(container.PutValueAt(kSize, 2.0, DSVariant::Of(4.0)), kOk);
  EXPECT_EQ(listener.changes, std::vector{kSize});
  EXPECT_EQ(listener.lastValue, 4.0) << "the plain value";
  container.PutCurve(kSize, {{{0.0, 3.0}}, {}});
  EXPECT_EQ(container.PutValueAt(kSize, 2.0, DSVariant::Of(5.0)), kOk);
  EXPECT_EQ(listener.changes, (std::vector{kSize, kSize, kSize}));
  EXPECT_EQ(listener.lastValue, -1.0) << "a key";
}

TEST(CDSPropertyContainer, NotifiesOfAPlainValueBehindACurveWithoutIt) {
  Container container;
  Listener listener;
  container.PutCurve(kSize, {{{0.0, 3.0}}, {}});
  container.Advise(&listener);
  EXPECT_EQ(container.PutValue(kSize, DSVariant::Of(8.0)), kOk);
  EXPECT_EQ(listener.changes, (std::vector{kSize}));
  EXPECT_EQ(listener.lastValue, -1.0) << "the property is 3 at all times";
  container.RemoveCurve(kSize);
  container.PutValue(kSize, DSVariant::Of(9.0));
  EXPECT_EQ(listener.lastValue, 9.0);
}

TEST(CDSPropertyContainer, NotifiesOfTheValueAsItIsStored) {
  Container container;
  Listener listener;
  container.Advise(&listener);
  const auto expect = [&](DSValueType type, double number, std::int32_t whole) {
    EXPECT_EQ(listener.lastVariant.type, type);
    EXPECT_EQ(listener.lastVariant.number, number);
    EXPECT_EQ(listener.lastVariant.whole, whole);
  };
  container.PutValue(kChoice, DSVariant::Of(3.9));
  expect(DSValueType::Integer32, 0.0, 3);
  container.PutValue(kChoice, DSVariant::Of(1e300));
  expect(DSValueType::Integer32, 0.0, -2147483647 - 1);
  container.PutValue(kSize, DSVariant::Of(4));
  expect(DSValueType::Float64, 4.0, 0);
  container.PutValue(kInherited, DSVariant::Of(1));
  expect(DSValueType::Boolean32, 0.0, 1);
  container.PutValueAt(kSize, 1.0, {DSValueType::Boolean32, 7.0, 1});
  expect(DSValueType::Float64, 1.0, 0);
}

TEST(CDSPropertyContainer, EndsWithItsLastReference) {
  Container::ended = 0;
  auto object = ComPtr<Container>::Own(new Container());
  auto properties = object.As<IDSProperties>();
  ASSERT_TRUE(properties);
  object.reset();
  EXPECT_EQ(Container::ended, 0);
  EXPECT_EQ(properties->AddRef(), 2u);
  EXPECT_EQ(properties->Release(), 1u);
  properties.reset();
  EXPECT_EQ(Container::ended, 1);
}

}  // namespace
}  // namespace vblur
