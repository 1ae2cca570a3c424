import hypothesis

# The same examples in every run, and no folder of earlier ones.
hypothesis.settings.register_profile("latchkey", derandomize=True, database=None, deadline=None)
hypothesis.settings.load_profile("latchkey")
