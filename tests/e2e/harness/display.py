"""Displays without a screen."""
import os
import shutil
import subprocess


class Display:
    """An X server of its own; it chooses a free number."""

    def __init__(self, size='1100x800'):
        if not shutil.which('Xvfb'):
            raise SystemExit('Xvfb is missing: run scripts/setup.sh')
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ['Xvfb', '-displayfd', str(writing), '-screen', '0', f'{size}x24', '-nolisten', 'tcp'],
            pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as answer:
            self.name = ':' + answer.readline().strip()
        if self.name == ':':
            raise SystemExit('Xvfb did not start')

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()


def reachable(name):
    return bool(name) and subprocess.run(['xdpyinfo', '-display', name], capture_output=True).returncode == 0
