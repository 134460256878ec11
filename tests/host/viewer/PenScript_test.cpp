#include "host/viewer/PenScript.h"

#include <gtest/gtest.h>

#include "host/properties/PropertyText.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

using Kind = PenEvent::Kind;

std::vector<PenEvent> Parse(std::string_view text) {
  return ParsePenScript(text, "drag.pen", "shots");
}

TEST(PenScript, ReadsEveryEvent) {
  const auto events = Parse(
      "# a drag\n"
      "move 10 20.5\r\n"
      "\n"
      "\tDOWN -3 4e2 2  # with the second button\n"
      "move 1 2\n"
      "up 5 6\n"
      "time 12.5\n"
      "set Blur 24\n"
      "snap a b.png\n"
      "down 1 1\n"
      "up 1 1");
  ASSERT_EQ(events.size(), 9u);
  EXPECT_EQ(events[0].kind, Kind::Move);
  EXPECT_EQ(events[0].place, "drag.pen:2");
  EXPECT_EQ(events[0].point.x, 10.0);
  EXPECT_EQ(events[0].point.y, 20.5);
  EXPECT_EQ(events[0].button, 0);
  EXPECT_EQ(events[1].kind, Kind::Down);
  EXPECT_EQ(events[1].place, "drag.pen:4");
  EXPECT_EQ(events[1].point.x, -3.0);
  EXPECT_EQ(events[1].point.y, 400.0);
  EXPECT_EQ(events[1].button, 2);
  EXPECT_EQ(events[2].button, 2) << "a move says which button is down";
  EXPECT_EQ(events[3].kind, Kind::Up);
  EXPECT_EQ(events[3].button, 2);
  EXPECT_EQ(events[4].time, 12.5);
  EXPECT_EQ(events[5].property, PropertyNamed("Blur").guid);
  EXPECT_EQ(events[5].setting, PropertyStore::Setting(24.0));
  EXPECT_EQ(events[6].kind, Kind::Snap);
  EXPECT_EQ(events[6].file, "shots/a b.png");
  EXPECT_EQ(events[7].button, 1);
  EXPECT_TRUE(Parse("").empty());
  EXPECT_TRUE(Parse("\n\n# nothing").empty());
}

TEST(PenScript, SetsPropertiesAsTheCommandLineDoes) {
  const auto set = [](const std::string& text) { return Parse("set " + text).front(); };
  EXPECT_EQ(set("Crop Left 12.5").property, PropertyNamed("Crop Left").guid);
  EXPECT_EQ(set("crop-left 12.5").setting, PropertyStore::Setting(12.5));
  EXPECT_EQ(set("MASK RED on").property, PropertyNamed("Mask Red").guid);
  EXPECT_EQ(set("Mask Red on").setting, PropertyStore::Setting(1.0));
  const auto curve = set("Effect Gain 0:100, 24:50");
  ASSERT_TRUE(std::holds_alternative<Curve>(curve.setting));
  EXPECT_EQ(std::get<Curve>(curve.setting).keys, (std::vector<CurveKey>{{0.0, 100.0}, {24.0, 50.0}}));
}

TEST(PenScript, TakesWhatAUserDoesWithAPage) {
  const auto events = Parse("press Reset\nundo\nshow crop\nset \"Crop Left\" 5\npick 1,2,3\n");
  ASSERT_EQ(events.size(), 5u);
  EXPECT_EQ(events[0].kind, Kind::Page);
  EXPECT_EQ(events[0].page.kind, PageEvent::Kind::Press);
  EXPECT_EQ(events[0].page.name, "Reset");
  EXPECT_EQ(events[0].page.place, "drag.pen:1");
  EXPECT_EQ(events[1].page.kind, PageEvent::Kind::Undo);
  EXPECT_EQ(events[2].page.name, "crop");
  EXPECT_EQ(events[3].kind, Kind::Page) << "a name in quotes is a control's";
  EXPECT_EQ(events[3].page.kind, PageEvent::Kind::Set);
  EXPECT_EQ(events[3].page.name, "Crop Left");
  EXPECT_EQ(events[3].page.text, "5");
  EXPECT_EQ(events[4].page.colour, (std::array<std::int32_t, 3>{1, 2, 3}));
}

TEST(PenScript, SaysWhereAndWhatWasExpected) {
  const auto refused = [](const std::string& line) { return UsageFailureOf([&] { Parse("move 1 1\n" + line); }); };
  EXPECT_EQ(refused("jump 1 2"),
            "drag.pen:2: expected move, down, up, time, set, snap or an event of a property page, found \"jump\"");
  EXPECT_EQ(refused("move 1"), "drag.pen:2: expected \"move X Y\", found \"move 1\"");
  EXPECT_EQ(refused("move 1 2 3"), "drag.pen:2: expected \"move X Y\", found \"move 1 2 3\"");
  EXPECT_EQ(refused("down 1 2 3 4"), "drag.pen:2: expected \"down X Y [BUTTON]\", found \"down 1 2 3 4\"");
  EXPECT_EQ(refused("move 1 2x"), "drag.pen:2: expected a number, found \"2x\"");
  EXPECT_EQ(refused("move nan 2"), "drag.pen:2: expected a number, found \"nan\"");
  EXPECT_EQ(refused("move 1e999 2"), "drag.pen:2: expected a number, found \"1e999\"");
  EXPECT_EQ(refused("down 1 2 4"), "drag.pen:2: expected the button 1, 2 or 3, found \"4\"");
  EXPECT_EQ(refused("up 1 2"), "drag.pen:2: expected a down before, the pen is not down");
  EXPECT_EQ(refused("down 1 2\ndown 1 2"), "drag.pen:3: expected an up first, the pen is down");
  EXPECT_EQ(refused("down 1 2\nmove 3 3\n"), "drag.pen:3: expected an up before the end, the pen is down");
  EXPECT_EQ(refused("time"), "drag.pen:2: expected \"time T\", found \"time\"");
  EXPECT_EQ(refused("time soon"), "drag.pen:2: expected a number, found \"soon\"");
  EXPECT_EQ(refused("set Blur"), "drag.pen:2: expected \"set NAME VALUE\", found \"set Blur\"");
  EXPECT_EQ(refused("set Blurr 4"), "drag.pen:2: unknown property \"Blurr\"; did you mean \"Blur\"?");
  EXPECT_EQ(refused("set Blur wide"),
            "drag.pen:2: " + UsageFailureOf([] { ParseSetting(PropertyNamed("Blur"), "wide"); }));
  EXPECT_EQ(refused("snap"), "drag.pen:2: expected \"snap FILE\", found \"snap\"");
  EXPECT_EQ(refused("snap a.xyz").rfind("drag.pen:2: ", 0), 0u);
  EXPECT_EQ(refused(std::string("snap a\0.png", 11)),
            "drag.pen:2: \"a\\u0000.png\": a file name holds no NUL character");
  EXPECT_EQ(refused("snap a.png\nsnap ./a.png"), "drag.pen:3: expected another name, \"./a.png\" is snapped above");
}

TEST(PenScript, IsReadFromAFile) {
  const ScratchFolder folder;
  const auto elsewhere = folder.path() / "other" / "b.png";
  const auto file = folder.Write("drag.pen", "snap a.png\nsnap " + elsewhere.generic_string() + "\n");
  const auto events = ReadPenScript(file);
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].file, folder.path() / "a.png");
  EXPECT_EQ(events[1].file, elsewhere);
  EXPECT_EQ(events[0].place, file.string() + ":1");
  const auto missing = CaughtFailure([&] { ReadPenScript(folder.path() / "none.pen"); });
  EXPECT_EQ(missing->Code(), ExitCode::CannotRead);
  EXPECT_EQ(std::string(missing->what()),
            (folder.path() / "none.pen").string() + ": cannot read the pen script: No such file or directory");
}

}  // namespace
}  // namespace vblur::host
