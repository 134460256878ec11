// What listeners do when they hear of a change, an undo or a redo.

#include <optional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/pages/HeldProperties.h"
#include "tests/host/pages/UndoHistoryTest.h"

namespace vblur::host {
namespace {

class UndoAnswers : public UndoHistoryTest {};

TEST_F(UndoAnswers, NotifiesOfWhatItWritesAlone) {
  history.BeginStep(nullptr);
  Put(Blur, 30.0);
  Put(Aspect, 3.0);
  Put(Aspect, 0.0);
  PutCurve(Blend, {{{0.0, 1.0}}, DSInterpolation::Linear});
  history.EndStep();
  Listener listener(*properties);
  history.Undo();
  EXPECT_EQ(listener.notices, (std::vector{IdOf(Blend), IdOf(Blur)})) << "the last change first";
  listener.notices.clear();
  history.Redo();
  EXPECT_EQ(listener.notices, (std::vector{IdOf(Blur), IdOf(Blend)}));
}

TEST_F(UndoAnswers, AnAnswerToAChangeIsTheNextStep) {
  Listener listener(*properties, [&](const GUID& property) {
    if (property == IdOf(Blur)) Put(Aspect, Get(Blur) / 2.0);
  });
  Put(Blur, 40.0);
  EXPECT_EQ(Depths(), Are(2, 0));
  EXPECT_EQ(history.UndoName(), "Aspect");
  history.BeginStep(u"Both");
  Put(Blur, 50.0);
  history.EndStep();
  EXPECT_EQ(Depths(), Are(3, 0));
  history.Undo();
  EXPECT_EQ(Get(Blur), 40.0);
  EXPECT_EQ(Get(Aspect), 20.0);
  EXPECT_EQ(Depths(), Are(2, 1)) << "what the listener writes is what the undo leads to";
}

TEST_F(UndoAnswers, AnAnswerToAnUndoIsAStepAfterIt) {
  Put(Blur, 40.0);
  Put(Channels, 3.0);
  history.Undo();
  Listener listener(*properties, [&](const GUID& property) {
    if (property == IdOf(Blur)) Put(Aspect, 7.0);
    EXPECT_FALSE(history.CanUndo());
    EXPECT_FALSE(history.CanRedo());
    EXPECT_FALSE(history.Undo()) << "one at a time";
    EXPECT_FALSE(history.Redo());
    history.EndStep();  // of no step
  });
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Get(Blur), 10.0);
  EXPECT_EQ(Get(Aspect), 7.0);
  EXPECT_EQ(Depths(), Are(1, 0)) << "the redos are gone";
  EXPECT_EQ(history.UndoName(), "Aspect");
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Get(Aspect), 0.0);
  EXPECT_EQ(Get(Blur), 10.0);
  listener.answers = [&](const GUID& property) {
    if (property == IdOf(Aspect) && Get(Aspect) != 6.5) Put(Aspect, 6.5);
  };
  EXPECT_TRUE(history.Redo());
  EXPECT_EQ(Get(Aspect), 6.5) << "of the property that is being written";
  EXPECT_EQ(Depths(), Are(2, 0));
  listener.answers = {};
  history.Undo();
  EXPECT_EQ(Get(Aspect), 7.0);
  history.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
}

TEST_F(UndoAnswers, TheUndoOverwritesAnswersOnItsWay) {
  history.BeginStep(nullptr);
  Put(Aspect, 1.0);
  Put(Blur, 40.0);
  history.EndStep();
  Listener listener(*properties, [&](const GUID& property) {
    if (property == IdOf(Blur)) Put(Aspect, 7.0);
    if (property == IdOf(Blur)) PutCurve(Aspect, {{{0.0, 1.0}}, DSInterpolation::Linear});
  });
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Get(Aspect), 0.0) << "undone after the blur";
  EXPECT_EQ(CurveOf(Aspect), std::nullopt);
  EXPECT_EQ(Depths(), Are(0, 1));
  EXPECT_TRUE(history.Redo());
  EXPECT_EQ(Get(Aspect), 7.0) << "redone before the blur";
  EXPECT_NE(CurveOf(Aspect), std::nullopt);
  EXPECT_EQ(Depths(), Are(2, 0));
  listener.answers = {};
  history.Undo();
  EXPECT_EQ(Get(Aspect), 1.0);
  EXPECT_EQ(CurveOf(Aspect), std::nullopt);
  history.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
  EXPECT_EQ(Get(Blur), 10.0);
}

TEST_F(UndoAnswers, AnAnswerToAnUndoMayBeAStepWithAName) {
  Put(Blur, 40.0);
  Listener listener(*properties, [&](const GUID& property) {
    if (property != IdOf(Blur)) return;
    history.BeginStep(u"Follow");
    Put(Aspect, 7.0);
    history.EndStep();
  });
  history.Undo();
  EXPECT_EQ(Depths(), Are(1, 0));
  EXPECT_EQ(history.UndoName(), "Follow");
  history.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
  Put(Blur, 20.0);
  EXPECT_EQ(Depths(), Are(2, 0));

  listener.answers = [&](const GUID& property) {
    if (property == IdOf(Blur)) history.BeginStep(u"Stays open");
  };
  history.Undo();
  EXPECT_EQ(Depths(), Are(1, 1));
  history.Undo();
  EXPECT_EQ(Get(Blur), 10.0);
  EXPECT_FALSE(history.CanRedo()) << "a step is open";
  Put(Aspect, 9.0);
  EXPECT_EQ(Depths(), Are(0, 2));
  history.EndStep();
  EXPECT_EQ(Depths(), Are(1, 0));
  EXPECT_EQ(history.UndoName(), "Stays open");
}

TEST_F(UndoAnswers, ManyAnswersToAnUndoAreOneStep) {
  Put(Blur, 40.0);
  Listener listener(*properties, [&](const GUID& property) {
    if (property != IdOf(Blur)) return;
    for (const auto& [name, answered] : {std::pair(u"", Channels), {u"First", Aspect}, {u"Second", Blend}}) {
      history.BeginStep(name);
      history.BeginStep(u"Within");
      Put(answered, 7.0);
      history.EndStep();
      history.EndStep();
    }
  });
  history.Undo();
  EXPECT_EQ(Depths(), Are(1, 0));
  EXPECT_EQ(history.UndoName(), "First");
  history.Undo();
  EXPECT_EQ(HeldBy(*properties), HeldBy(*MakeEffect().As<IDSProperties>()));
}

TEST_F(UndoAnswers, AnAnswerToACurveMayBeThePlainValue) {
  PutCurve(Blur, {{{0.0, 1.0}}, DSInterpolation::Linear});
  bool hasAnswered = false;
  Listener listener(*properties, [&](const GUID&) {
    if (!std::exchange(hasAnswered, true)) Put(Blur, 7.0);
  });
  history.Undo();
  EXPECT_EQ(CurveOf(Blur), std::nullopt);
  EXPECT_EQ(Get(Blur), 7.0);
  EXPECT_EQ(Depths(), Are(1, 0));
  listener.answers = {};
  history.Undo();
  EXPECT_EQ(Get(Blur), 10.0);
}

// A history that was made after a listener, which the effect calls first, therefore.
class UndoAnswersBeforeTheHistory : public UndoHistoryTest {
 protected:
  Listener listener{*properties};
  UndoHistory later{*properties};
};

TEST_F(UndoAnswersBeforeTheHistory, HasChangeAndAnswerInOneStep) {
  listener.answers = [&](const GUID& property) {
    if (property == IdOf(Blend)) Put(Aspect, 7.0);
  };
  Put(Blend, 40.0);
  EXPECT_EQ(later.UndoDepth(), 1u);
  EXPECT_EQ(later.UndoName(), "Aspect") << "the first of the table, of those that changed at once";
  listener.answers = {};
  later.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
  EXPECT_EQ(Get(Blend), 50.0);
}

TEST_F(UndoAnswersBeforeTheHistory, TheAnswersOwnStepHasTheAnswerAlone) {
  listener.answers = [&](const GUID& property) {
    if (property != IdOf(Blend)) return;
    later.BeginStep(u"Follow");
    Put(Aspect, 7.0);
    later.EndStep();
  };
  Put(Blend, 40.0);
  EXPECT_EQ(later.UndoDepth(), 2u);
  EXPECT_EQ(later.UndoName(), "Follow");
  listener.answers = {};
  later.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
  EXPECT_EQ(Get(Blend), 40.0);
  EXPECT_EQ(later.UndoName(), "Blend");
}

TEST_F(UndoAnswersBeforeTheHistory, AListenerMayUndoTheChangeOfWhichItIsTold) {
  bool undone = false;
  listener.answers = [&](const GUID&) {
    if (std::exchange(undone, true)) return;
    EXPECT_TRUE(later.Undo());
  };
  Put(Blend, 40.0);
  EXPECT_EQ(Get(Blend), 50.0);
  EXPECT_EQ(later.UndoDepth(), 0u);
  EXPECT_EQ(later.RedoName(), "Blend");
}

}  // namespace
}  // namespace vblur::host
