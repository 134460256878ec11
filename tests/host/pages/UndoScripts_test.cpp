// Random sessions: the history against a model that copies everything, after every action.
#include <algorithm>
#include <bit>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/pages/UndoHistory.h"
#include "platform/IDSImageEffect.h"
#include "tests/host/pages/HistoryModel.h"
#include "tests/support/Random.h"
#include "tests/support/TestServer.h"

namespace vblur::host {
namespace {

using test::Random;

struct Noting : IDSPropertyNotify {
  void OnPropertyChanged(const GUID& property, const DSVariant*, std::uint32_t) override { noted.push_back(property); }
  std::vector<GUID> noted;
};

// Half of the watched value, and 1 for those that are large, so that it does not always change.
double AnswerTo(double watched) {
  return std::abs(watched) > 20.0 ? 1.0 : watched / 2.0;
}

class Follower : public IDSPropertyNotify {
 public:
  Follower(IDSProperties& effect, HistoryModel::Follower rules) : effect_(effect), rules_(rules) {}

  void OnPropertyChanged(const GUID& property, const DSVariant*, std::uint32_t) override {
    if (property != GUID_ALL_PROPERTIES && property != kProperties[rules_.watched].guid) return;
    DSVariant watched;
    effect_.GetValue(kProperties[rules_.watched].guid, &watched);
    if (rules_.makesStep) history->BeginStep(u"Follow");
    effect_.PutValue(kProperties[rules_.answered].guid, DSVariant::Of(AnswerTo(watched.number)));
    if (rules_.makesStep) history->EndStep();
  }

  UndoHistory* history = nullptr;

 private:
  IDSProperties& effect_;
  HistoryModel::Follower rules_;
};

std::optional<HistoryModel::Follower> DrawFollower(Random& random) {
  if (random.oneIn(2)) return std::nullopt;
  HistoryModel::Follower rules;
  const bool isBlur = random.oneIn(2);
  rules.watched = static_cast<std::size_t>(isBlur ? PropertyId::Blur : PropertyId::Aspect);
  rules.answered = static_cast<std::size_t>(isBlur ? PropertyId::Aspect : PropertyId::Blur);
  rules.answer = [](const HeldProperty& watched) { return BitsOf(AnswerTo(std::bit_cast<double>(watched.plain))); };
  rules.comesFirst = random.oneIn(2);
  rules.makesStep = random.oneIn(2);
  return rules;
}

class Session {
 public:
  Session(Random& random, IDSImageEffect& effect, IDSProperties& properties)
      : random_(random),
        effect_(effect),
        properties_(properties),
        rules_(DrawFollower(random)),
        model_(HeldBy(properties), rules_) {
    if (rules_) follower_.emplace(properties, *rules_);
    if (rules_ && rules_->comesFirst) properties.Advise(&*follower_);
    history_ = std::make_unique<UndoHistory>(properties);
    if (rules_ && !rules_->comesFirst) properties.Advise(&*follower_);
    if (follower_) follower_->history = history_.get();
    properties.Advise(&noting_);
  }
  ~Session() {
    properties_.Unadvise(&noting_);
    if (follower_) properties_.Unadvise(&*follower_);
  }

  void Act() {
    switch (random_.within(0, 11)) {
      case 0:
      case 1:
      case 2: return PutValue();
      case 3: return PutValueAt();
      case 4: return PutCurve();
      case 5: return RemoveCurve();
      case 6: return Begin();
      case 7: return End();
      case 8:
      case 9: return Move(true);
      case 10: return Move(false);
      default: return random_.oneIn(3) ? SetDefaults() : Move(false);
    }
  }

  void Check() const {
    ASSERT_TRUE(HeldBy(properties_) == model_.Now());
    ASSERT_EQ(history_->UndoDepth(), model_.UndoDepth());
    ASSERT_EQ(history_->RedoDepth(), model_.RedoDepth());
    ASSERT_EQ(history_->CanUndo(), model_.CanUndo());
    ASSERT_EQ(history_->CanRedo(), model_.CanRedo());
    ASSERT_EQ(history_->UndoName(), model_.UndoName());
    ASSERT_EQ(history_->RedoName(), model_.RedoName());
  }

 private:
  // Few, so that they meet again.
  std::size_t DrawProperty() {
    if (random_.oneIn(4)) return static_cast<std::size_t>(random_.within(0, static_cast<int>(kProperties.size()) - 1));
    return static_cast<std::size_t>(random_.oneOf({PropertyId::Blur, PropertyId::Aspect, PropertyId::Channels}));
  }
  double DrawNumber() { return random_.oneOf({0.0, -0.0, 1.0, 10.0, 2.5, 720.0}); }
  double DrawTime() { return random_.oneOf({0.0, -0.0, 1.0, 2.0, 8.5}); }

  // The plain value as the effect stores it.
  static std::uint64_t Stored(std::size_t property, double value) {
    if (kProperties[property].type == DSValueType::Float64) return BitsOf(value);
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(value));
  }

  void PutValue() {
    const std::size_t property = DrawProperty();
    const double value = DrawNumber();
    HeldProperties next = model_.Now();
    next[property].plain = Stored(property, value);
    model_.Change(next, property);
    EXPECT_EQ(properties_.PutValue(kProperties[property].guid, DSVariant::Of(value)), kOk);
  }

  void PutValueAt() {
    const std::size_t property = DrawProperty();
    const double time = DrawTime();
    const double value = DrawNumber();
    HeldProperties next = model_.Now();
    auto& keys = next[property].keys;
    if (keys.empty()) {
      next[property].plain = Stored(property, value);
    } else {
      auto at = keys.begin();
      while (at != keys.end() && std::bit_cast<double>((*at)[0]) < time)
        ++at;
      if (at == keys.end() || std::bit_cast<double>((*at)[0]) != time) at = keys.insert(at, {BitsOf(time), 0});
      (*at)[1] = BitsOf(value);
    }
    model_.Change(next, property);
    EXPECT_EQ(properties_.PutValueAt(kProperties[property].guid, time, DSVariant::Of(value)), kOk);
  }

  void PutCurve() {
    const std::size_t property = DrawProperty();
    DSCurve curve;
    curve.interpolation = static_cast<DSInterpolation>(random_.within(0, 2));
    double time = DrawTime();
    for (int left = random_.within(1, 3); left > 0; --left, time += 1.0)
      curve.keys.push_back({time, DrawNumber()});
    const HRESULT expected = kProperties[property].IsAnimated() ? kOk : kFailed;
    if (expected == kOk) {
      HeldProperties next = model_.Now();
      next[property].TakeCurve(curve);
      model_.Change(next, property);
    }
    EXPECT_EQ(properties_.PutCurve(kProperties[property].guid, curve), expected);
  }

  void RemoveCurve() {
    const std::size_t property = DrawProperty();
    const bool hasOne = !model_.Now()[property].keys.empty();
    if (hasOne) {
      HeldProperties next = model_.Now();
      next[property].RemoveCurve();
      model_.Change(next, property);
    }
    EXPECT_EQ(properties_.RemoveCurve(kProperties[property].guid), hasOne ? kOk : kFalse);
  }

  void SetDefaults() {
    HeldProperties next;
    for (std::size_t i = 0; i < next.size(); ++i)
      next[i].plain = Stored(i, kProperties[i].defaultValue);
    model_.Change(next, std::nullopt);
    EXPECT_EQ(effect_.SetDefaults(), kOk);
  }

  void Begin() {
    switch (random_.within(0, 2)) {
      case 0: model_.Begin(""); return history_->BeginStep(nullptr);
      case 1: model_.Begin(""); return history_->BeginStep(u"");
      default: model_.Begin("Drag"); return history_->BeginStep(u"Drag");
    }
  }

  void End() {
    model_.End();
    history_->EndStep();
  }

  void Move(bool isBack) {
    const HeldProperties before = model_.Now();
    noting_.noted.clear();
    EXPECT_EQ(isBack ? history_->Undo() : history_->Redo(), isBack ? model_.Undo() : model_.Redo());
    if (follower_) return;
    for (std::size_t i = 0; i < before.size(); ++i) {
      const bool isNoted = std::ranges::find(noting_.noted, kProperties[i].guid) != noting_.noted.end();
      EXPECT_EQ(isNoted, before[i] != model_.Now()[i]) << kProperties[i].name;
    }
  }

  Random& random_;
  IDSImageEffect& effect_;
  IDSProperties& properties_;
  std::optional<HistoryModel::Follower> rules_;
  HistoryModel model_;
  std::optional<Follower> follower_;
  Noting noting_;
  std::unique_ptr<UndoHistory> history_;
};

TEST(UndoScripts, EqualTheModelThatCopiesEverything) {
  test::forRandomCases(10000, [&](Random& random) {
    const auto effect = MakeEffect();
    const auto properties = effect.As<IDSProperties>();
    Session session(random, *effect, *properties);
    for (int action = 0; action < 30 && !::testing::Test::HasFailure(); ++action) {
      SCOPED_TRACE("action " + std::to_string(action));
      session.Act();
      session.Check();
    }
  });
}

}  // namespace
}  // namespace vblur::host
