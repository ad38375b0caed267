"""That what the suite starts has addresses that are not random, and that it says where it may not."""
import contextlib
import ctypes
import io
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from types import SimpleNamespace
from unittest import mock

from harness import addresses, paths

HEAPS = 'for time in 1 2; do grep heap /proc/self/maps; done'
ALLOWED = subprocess.run(['setarch', '-R', 'true'], capture_output=True).returncode == 0
SCRIPT = '. "$1/scripts/fixed-addresses.sh"; echo "$# $2"; ' + HEAPS


def random_addresses():
    ctypes.CDLL(None).personality(0)


def run(command, path=os.environ['PATH'], **options):
    """What a process says that has random addresses, whatever this one has."""
    environment = {**os.environ, 'PATH': path, 'QUILLON_FIXED_ADDRESSES': ''}
    return subprocess.run(command, capture_output=True, text=True, check=True, preexec_fn=random_addresses, env=environment, **options).stdout


def heaps(said):
    return re.findall(r'^([0-9a-f]+)-.*\[heap\]$', said, re.M)


class OfAShellScript(unittest.TestCase):
    def said(self, **options):
        with tempfile.TemporaryDirectory() as folder:
            script = Path(folder) / 'script'
            script.write_text(SCRIPT, encoding='utf-8')
            return run(['bash', script, paths.TOP, 'one argument'], **options)

    @unittest.skipUnless(ALLOWED, 'this system refuses it')
    def test_it_runs_once_with_its_arguments_and_every_heap_in_one_place(self):
        said = self.said()
        self.assertEqual((said.count('2 one argument\n'), '***' in said), (1, False))
        self.assertEqual(len(set(heaps(said))), 1, said)

    def test_it_goes_on_and_says_so_where_that_is_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            refusing = Path(folder) / 'setarch'
            refusing.write_text('#!/bin/sh\nexit 1\n', encoding='utf-8')
            refusing.chmod(0o755)
            said = self.said(path=f'{folder}:{os.environ["PATH"]}')
        self.assertTrue(said.startswith('*** Addresses stay random here'), said)
        self.assertEqual(said.count('2 one argument\n'), 1)


class OfAPythonProgram(unittest.TestCase):
    @unittest.skipUnless(ALLOWED, 'this system refuses it')
    def test_what_it_starts_has_every_heap_in_one_place(self):
        program = f'import subprocess; from harness import addresses; addresses.fix(); subprocess.run({HEAPS!r}, shell=True)'
        said = run([sys.executable, '-c', program], cwd=paths.TOP / 'tests' / 'e2e')
        self.assertEqual((len(heaps(said)), len(set(heaps(said)))), (2, 1), said)

    def test_it_says_so_where_that_is_refused(self):
        library = SimpleNamespace(personality=lambda wanted: 0 if wanted == addresses.ASK else -1)
        with mock.patch.object(ctypes, 'CDLL', return_value=library), contextlib.redirect_stdout(io.StringIO()) as told:
            addresses.fix()
        self.assertIn('*** Addresses stay random here', told.getvalue())


if __name__ == '__main__':
    unittest.main()
