"""The comparison of ./dev hashes goes red for a changed hash and for a missing frame, in any row and on any platform."""

import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools" / "hashes"))
from matrix import Matrix, Row, as_markdown, as_text, combined, parse  # noqa: E402

LINES = "golden/a 2x2 R8 0000000000000001\ngolden/b 2x2 R16 0000000000000002\n"
TWIN = Row("golden", "effect", "twin", 1)
NATIVE = Row("golden", "effect", "native", 7)


def hashes(**changed):
    return {**parse(LINES)["golden"], **{f"golden/{name}": value for name, value in changed.items()}}


def verdicts(matrix):
    table, all_same = matrix.lines()
    return [line[-1] for line in table[1:]], all_same


class MatrixTest(unittest.TestCase):
    def setUp(self):
        self.matrix = Matrix(["Linux", "Windows"])
        for row in (TWIN, NATIVE):
            for platform in ("Linux", "Windows"):
                self.matrix.add(row, platform, hashes())

    def test_equal_lists_are_the_same(self):
        self.assertEqual(verdicts(self.matrix), (["same", "same"], True))

    def test_a_changed_hash_of_a_platform_is_seen(self):
        self.matrix.add(NATIVE, "Windows", hashes(b="2x2 R16 0000000000000003"))
        self.assertEqual(verdicts(self.matrix), (["same", "DIFFERENT (first frame golden/b, Windows)"], False))

    def test_a_changed_hash_of_a_level_is_seen_on_one_platform(self):
        alone = Matrix(["Linux"])
        alone.add(TWIN, "Linux", hashes())
        alone.add(NATIVE, "Linux", hashes(a="2x2 R8 0000000000000003"))
        self.assertEqual(verdicts(alone), (["same", "DIFFERENT (first frame golden/a, Linux)"], False))

    def test_another_size_is_seen(self):
        self.matrix.add(NATIVE, "Linux", hashes(a="4x1 R8 0000000000000001"))
        self.assertEqual(verdicts(self.matrix)[0][1], "DIFFERENT (first frame golden/a, Linux)")

    def test_a_missing_frame_is_seen(self):
        fewer = hashes()
        del fewer["golden/a"]
        self.matrix.add(TWIN, "Windows", fewer)
        self.assertEqual(verdicts(self.matrix), (["MISSING (first frame golden/a, Windows)", "same"], False))

    def test_a_frame_that_one_list_alone_has_is_missing_in_the_others(self):
        self.matrix.add(TWIN, "Windows", hashes(c="2x2 R8 0000000000000004"))
        self.assertEqual(verdicts(self.matrix), (["MISSING (first frame golden/c, Linux)"] * 2, False))

    def test_a_share_is_not_asked_for_the_rest(self):
        share = hashes()
        del share["golden/b"]
        job = Row("golden", "vblur job", "twin", 1)
        self.matrix.add(job, "Linux", share, ["golden/a"])
        self.assertTrue(verdicts(self.matrix)[1])
        self.matrix.add(job, "Linux", {}, ["golden/a"])
        self.assertEqual(verdicts(self.matrix)[0][2], "MISSING (first frame golden/a, Linux)")

    def test_rows_of_the_same_frames_and_way_stand_together(self):
        matrix = Matrix(["Linux"])
        for level in ("twin", "native"):
            for frames in ("golden", "random"):
                matrix.add(Row(frames, "effect", level, 1), "Linux", {})
        self.assertEqual([(row.frames, row.level) for row in matrix.rows()],
                         [("golden", "twin"), ("golden", "native"), ("random", "twin"), ("random", "native")])

    def test_what_is_not_built_has_a_dash(self):
        self.matrix.add(TWIN, "Windows", None)
        table, all_same = self.matrix.lines()
        self.assertTrue(all_same)
        self.assertEqual(table[1], ["golden", "effect", "twin", "1", "2", combined(hashes()), "-", "same"])

    def test_nothing_is_not_the_same(self):
        self.assertFalse(verdicts(Matrix(["Linux"]))[1])

    def test_the_combined_hash_has_every_frame(self):
        self.assertEqual(combined(hashes()), combined(dict(reversed(hashes().items()))))
        self.assertNotEqual(combined(hashes()), combined(hashes(b="2x2 R16 0000000000000003")))

    def test_the_table_is_printed(self):
        table = [["Frames", ""], ["a", "same"]]
        self.assertEqual(as_text(table), "Frames\na       same\n")
        self.assertEqual(as_markdown(table), "| Frames | |\n| --- | --- |\n| a | same |\n")


if __name__ == "__main__":
    unittest.main()
