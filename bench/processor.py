"""The processor that measurements ran on, and its time."""
import pathlib
import platform


def processor_name():
    for line in pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


def processor_time(taken):
    return taken["user"] + taken["system"]
