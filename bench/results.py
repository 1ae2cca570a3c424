"""The output of the programs of bench/, which bench/run keeps in a folder of JSON files."""
import json
import pathlib

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


class Rates:
    """A report of Google Benchmark by row name: medians of repeated rows."""

    def __init__(self, report):
        self.context = report["context"]
        self.rows, self.spreads = {}, {}
        for row in report["benchmarks"]:
            if row.get("error_occurred"):
                continue
            if row.get("aggregate_name") == "cv":
                self.spreads[row["run_name"]] = row["cpu_time"]
            elif row.get("aggregate_name", "median") == "median":
                self.rows[row["run_name"]] = row

    def nanoseconds(self, name):
        row = self.rows[name]
        return row["cpu_time"] * NANOSECONDS[row["time_unit"]]

    def last_cache(self):
        """Bytes of the last-level cache."""
        return max(self.context["caches"], key=lambda cache: cache["level"])["size"]


class Results:
    def __init__(self, folder):
        self.folder = pathlib.Path(folder)

    def path(self, name):
        return self.folder / f"{name}.json"

    def read(self, name):
        return json.loads(self.path(name).read_text(encoding="utf-8"))

    def write(self, name, value):
        self.path(name).write_text(json.dumps(value, indent=1), encoding="utf-8")

    def rates(self, name):
        return Rates(self.read(name))
