"""Commands with limits, ended with all that they started."""
import os
import resource
import signal
import subprocess
import tempfile
import time
from typing import NamedTuple


class Ran(NamedTuple):
    code: int  # None when it was ended
    output: str
    worked: float = 0.0  # seconds of processor time


class Limits(NamedTuple):
    """Seconds. What goes round in circles is known by the processor time of each process, which says nothing about the
    machine's other work; the clock ends only what waits for ever."""
    clock: float
    processor: float = resource.RLIM_INFINITY


PAUSE, LONGEST_PAUSE = 0.05, 1.0
alive = set()


def end_all():
    for process in list(alive):
        os.killpg(process.pid, signal.SIGKILL)


def waited(process, seconds):
    """The exit code, None for what took too long; and the processor time that it and its own programs took. Time in which
    this did not run either, on a machine that slept or in a session that was stopped, is nobody's."""
    before = time.monotonic()
    while seconds > 0:
        pid, status, usage = os.wait4(process.pid, os.WNOHANG)
        if pid:
            process.returncode = os.waitstatus_to_exitcode(status)
            ended = process.returncode in (-signal.SIGXCPU, -signal.SIGKILL)
            return None if ended else process.returncode, usage.ru_utime + usage.ru_stime
        time.sleep(PAUSE)
        now = time.monotonic()
        seconds -= min(now - before, LONGEST_PAUSE)
        before = now
    return None, 0.0


def run(command, limits, environment=None, folder=None, end=lambda: None):
    """`end` is called before the process group is killed, for what has left it."""
    def limit():
        if limits.processor != resource.RLIM_INFINITY:
            seconds = int(limits.processor) + 1
            resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds + 5))

    with tempfile.TemporaryFile('w+', encoding='utf-8', errors='replace') as output:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT, cwd=folder,
                                   env=environment, start_new_session=True, preexec_fn=limit)
        alive.add(process)
        try:
            code, worked = waited(process, limits.clock)
        finally:
            if process.poll() is None:
                end()
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
            alive.discard(process)
        output.seek(0)
        return Ran(code, output.read(), worked)
