"""How the end-to-end run counts, and what of it is tried again."""
import contextlib
import importlib.util
import io
import re
import subprocess
import tempfile
import unittest
from pathlib import Path
from types import SimpleNamespace
from unittest import mock

from harness import paths, probe, readers
from harness.program import Program

RUN = Path(__file__).resolve().parents[1] / 'e2e' / 'run.py'


def end_to_end_run():
    described = importlib.util.spec_from_file_location('end_to_end_run', RUN)
    module = importlib.util.module_from_spec(described)
    described.loader.exec_module(module)
    return module


def counted_by_the_suite(output):
    """What ./test.sh takes for the counts of a step, by its own patterns."""
    patterns = re.search(r"sed -nE (?:\\\n *-e '[^']*' ?)+", (paths.TOP / 'test.sh').read_text(encoding='utf-8'))[0]
    return subprocess.run(['bash', '-c', patterns], input=output, capture_output=True, text=True, check=True).stdout.splitlines()


class Counting(unittest.TestCase):
    def test_a_failing_combination_is_counted_once(self):
        run = end_to_end_run()
        output = 'FAIL  a case\n2 passed, 1 failed, 0 skipped\n'
        printed = io.StringIO()
        with tempfile.TemporaryDirectory() as logs, mock.patch.object(paths, 'LOGS', Path(logs)), \
                mock.patch.object(run, 'Display'), mock.patch.object(run, 'sweep'), \
                mock.patch.object(run.subprocess, 'run', return_value=SimpleNamespace(stdout=output, returncode=1)), \
                mock.patch('sys.argv', ['run.py', 'x86:winxp']), contextlib.redirect_stdout(printed):
            self.assertEqual(run.main(), 1)
        self.assertIn('a case', printed.getvalue())
        self.assertEqual(counted_by_the_suite(printed.getvalue()), ['2 1 0'])


class Missing(unittest.TestCase):
    def test_what_is_not_built_is_named_once(self):
        printed = io.StringIO()
        with mock.patch.dict('os.environ', {'QUILLON_ARCHITECTURE': 'x86', 'QUILLON_PROGRAM_X86': '/not/built'}), \
                contextlib.redirect_stdout(printed):
            self.assertEqual(end_to_end_run().run_cases('cases', None), 1)
        self.assertEqual(printed.getvalue(), '/not/built/Quillon.exe is missing: ./test.sh makes it\n0 passed, 1 failed, 0 skipped\n')


class Refusing:
    """A probe that cannot start a program the first times."""

    def __init__(self, times):
        self.times, self.asked = times, 0

    def ask(self, command, *_):
        self.asked += 1
        if self.asked <= self.times:
            raise probe.ProbeError(command, {'error': 'CreateProcess', 'code': 1359})
        return {'pid': 7, 'running': False, 'code': 0}


class Starting(unittest.TestCase):
    def start_peer(self, refusing):
        with contextlib.redirect_stdout(io.StringIO()) as told:
            return probe.start_peer(refusing, 'reg.exe', 'C:\\', ''), told.getvalue()

    def test_a_peer_is_started_again_which_is_told(self):
        pid, told = self.start_peer(Refusing(2))
        self.assertEqual((pid, told.count('1359')), (7, 2))

    def test_a_peer_that_never_starts_fails(self):
        refusing = Refusing(99)
        with self.assertRaises(probe.ProbeError):
            self.start_peer(refusing)
        self.assertEqual(refusing.asked, probe.PEER_STARTS)

    def test_a_reader_of_exports_is_started_again(self):
        case = SimpleNamespace(prefix=SimpleNamespace(environment={}))
        with mock.patch.object(readers, 'Probe', return_value=Refusing(1)), contextlib.redirect_stdout(io.StringIO()) as told:
            readers.WineTool(case, 'reg.exe', 'import', 32).run('C:\\a.reg')
        self.assertEqual(told.getvalue().count('1359'), 1)

    def test_the_product_is_started_once(self):
        refusing = Refusing(1)
        with self.assertRaises(probe.ProbeError):
            Program(refusing, 'C:\\Quillon\\Quillon.exe', {})
        self.assertEqual(refusing.asked, 1)
