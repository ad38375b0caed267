"""Commands with a limit, ended with all that they started."""
import os
import signal
import subprocess
import tempfile
from typing import NamedTuple


class Ran(NamedTuple):
    code: int  # None when it was ended
    output: str


alive = set()


def end_all():
    for process in list(alive):
        os.killpg(process.pid, signal.SIGKILL)


def run(command, limit, environment=None, folder=None, end=lambda: None):
    """`end` is called before the process group is killed, for what has left it."""
    with tempfile.TemporaryFile('w+', encoding='utf-8', errors='replace') as output:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT, cwd=folder,
                                   env=environment, start_new_session=True)
        alive.add(process)
        try:
            code = process.wait(limit)
        except subprocess.TimeoutExpired:
            code = None
        finally:
            if process.poll() is None:
                end()
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
            alive.discard(process)
        output.seek(0)
        return Ran(code, output.read())
