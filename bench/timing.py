"""The elapsed time and the processor time of programs."""
import resource
import statistics
import subprocess
import time


def children_times():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime, used.ru_stime


def timed(action):
    """Seconds that the action takes, and the processor time of the programs it started: user and system."""
    before = children_times()
    start = time.perf_counter()
    action()
    seconds = time.perf_counter() - start
    user, system = (now - then for now, then in zip(children_times(), before))
    return {"seconds": seconds, "user": user, "system": system}


def timed_run(*command):
    return timed(lambda: subprocess.run(command, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL))


def median(taken):
    """The median of each figure."""
    return {key: statistics.median(one[key] for one in taken) for key in taken[0]}
