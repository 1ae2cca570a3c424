import pathlib
import sys

import hypothesis

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[3] / "tests/support"))

# The same examples in every run, and no folder of earlier ones.
hypothesis.settings.register_profile("latchkey", derandomize=True, database=None, deadline=None)
hypothesis.settings.load_profile("latchkey")
