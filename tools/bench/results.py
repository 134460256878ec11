"""The measurements of a run, by case."""

import json
import statistics

FULL = {"width": "3840", "height": "2160"}
PLAIN = {"threads": "1", "mode": "RGBA", "method": "Blur", "level": "native", "form": "plain", **FULL}


def parse_name(name):
    """what=blur/depth=8/... as a dictionary; what Google Benchmark appends has no equals sign."""
    return dict(part.split("=", 1) for part in name.split("/") if "=" in part)


class Results:
    def __init__(self, data, by_processor=False):
        self.context = data["context"]
        self.errors = []
        # On a busy machine processor time is more reliable for single threads than wall-clock time.
        self.by_processor = by_processor
        self._cases = {}
        waits = []
        for run in data["benchmarks"]:
            if run.get("run_type", "iteration") != "iteration":
                continue
            if run.get("error_occurred"):
                self.errors.append(f"{run['run_name']}: {run.get('error_message', '')}")
                continue
            case = parse_name(run["run_name"])
            alone = case.get("threads") == "1" and "cpu_time" in run
            if alone:
                waits.append(run["real_time"] / max(run["cpu_time"], 1e-9))
            time = run["cpu_time" if alone and self.by_processor else "real_time"]
            milliseconds = time * {"us": 1e-3, "ms": 1.0, "s": 1e3}[run["time_unit"]]
            self._cases.setdefault(tuple(sorted(case.items())), []).append(milliseconds)
        # Wall-clock time over processor time of single threads: 1.0 on an idle machine.
        self.busyness = sum(waits) / len(waits) if waits else 1.0

    @classmethod
    def load(cls, path, by_processor=False):
        with open(path, encoding="utf-8") as file:
            return cls(json.load(file), by_processor)

    def cases(self, what):
        """(case, median in ms) of all cases of a kind, in the order of the run's names."""
        for key, times in self._cases.items():
            case = dict(key)
            if case["what"] == what:
                yield case, statistics.median(times)

    def median(self, what, **wanted):
        """In ms; keys that are not given are those of the goals. None where nothing was measured."""
        wanted = {**PLAIN, **{key: str(value) for key, value in wanted.items()}}
        for case, time in self.cases(what):
            if all(wanted.get(key, value) == value for key, value in case.items() if key != "what"):
                return time
        return None

    def values(self, what, key):
        """All values of a key, numbers in their order, words in order of their names."""
        found = {case[key] for case, _ in self.cases(what) if key in case}
        try:
            return sorted(found, key=float)
        except ValueError:
            return sorted(found)

    def per_megapixel(self, what, **wanted):
        time = self.median(what, **wanted)
        if time is None:
            return None
        size = {**FULL, **{key: str(value) for key, value in wanted.items()}}
        return time / (int(size["width"]) * int(size["height"]) / 1e6)

    def ratio(self, over, under):
        """Of two medians, each (what, keys)."""
        a = self.median(over[0], **over[1])
        b = self.median(under[0], **under[1])
        return None if a is None or b is None else a / b

    def fastest_peer(self, **wanted):
        """(its name, ms) at one depth, radius and number of threads; None where there was none."""
        wanted = {**PLAIN, **{key: str(value) for key, value in wanted.items()}}
        found = [
            (time, case["peer"])
            for case, time in self.cases("peer")
            if all(wanted.get(key, value) == value for key, value in case.items() if key not in ("what", "peer"))
        ]
        return None if not found else (min(found)[1], min(found)[0])
