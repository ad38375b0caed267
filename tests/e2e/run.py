#!/usr/bin/env python3
"""Runs the end-to-end cases:  run.py [--jobs N] [--walk] [-k PATTERN] [ARCHITECTURE:FAMILY[:WAY] ...]

Without a choice every build is tried in every Windows family that it is for, each with a display of its own, four at
a time since they mostly wait. The way is one of harness/windows98.py. --walk takes the one walk through everything that stands in
walk/ in place of the cases. The last line is `N passed, N failed, N skipped`.
"""
import argparse
import os
import shutil
import subprocess
import sys
import textwrap
import time
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
from harness import addresses, paths  # noqa: E402
from harness.display import Display  # noqa: E402

COMBINATIONS = ['x86:win98', 'x86:win2k', 'x86:winxp', 'x86:win10', 'x64:win2k', 'x64:winxp', 'x64:win10']


class Report(unittest.TextTestResult):
    """One line for each case as it ends, with how long it took."""

    def startTest(self, test):
        super().startTest(test)
        self.began = time.monotonic()

    def _line(self, test, outcome):
        name = test.id().split('.', 1)[-1]
        print(f'{outcome:5} {name} ({time.monotonic() - self.began:.1f} s)', flush=True)

    def addSuccess(self, test):
        super().addSuccess(test)
        self._line(test, 'ok')

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self._line(test, 'FAIL')

    def addError(self, test, err):
        super().addError(test, err)
        self._line(test, 'ERROR')

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self._line(test, 'skip')


def run_cases(folder, pattern):
    """The cases of the combination that the environment names, in this process."""
    absent = paths.absent(os.environ['QUILLON_ARCHITECTURE'])
    if absent:
        print(f'{absent} is missing: ./test.sh makes it\n0 passed, 1 failed, 0 skipped')
        return 1
    loader = unittest.TestLoader()
    loader.testNamePatterns = [f'*{pattern}*'] if pattern else None
    suite = loader.discover(str(HERE / folder), top_level_dir=str(HERE / folder))
    if loader.errors:
        sys.exit('\n'.join(loader.errors))
    with open(os.devnull, 'w') as nowhere:
        result = unittest.TextTestRunner(stream=nowhere, resultclass=Report).run(suite)
    for test, trace in result.failures + result.errors:
        print(f'\n{test.id()}\n{trace}{getattr(test, "wine_said", "")}')
    failed = len({test.id() for test, _ in result.failures + result.errors})
    skipped = len(result.skipped)
    print(f'{result.testsRun - failed - skipped} passed, {failed} failed, {skipped} skipped')
    return 1 if failed or not result.testsRun else 0


def run_combination(combination, options):
    """A process of its own, since architecture and family are read once; gives its output and its counts."""
    architecture, family, *way = combination.split(':')
    began = time.monotonic()
    with Display() as display:
        environment = {**os.environ, 'DISPLAY': display.name, 'QUILLON_ARCHITECTURE': architecture,
                       'QUILLON_FAMILY': family, 'QUILLON_WINDOWS98': ''.join(way)}
        command = [sys.executable, __file__, '--here', *options]
        done = subprocess.run(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    paths.LOGS.mkdir(parents=True, exist_ok=True)
    (paths.LOGS / f'{combination.replace(":", "-")}.log').write_text(done.stdout)
    last = done.stdout.rstrip().rsplit('\n', 1)[-1]
    words = last.split()
    counted = len(words) == 6 and words[1::2] == ['passed,', 'failed,', 'skipped']
    counts = [int(number) for number in words[::2]] if counted else [0, 1, 0]
    print(f'e2e {combination:20} {last}  ({time.monotonic() - began:.0f} s)', flush=True)
    if done.returncode or not counted:
        # Indented, so that its own count is not taken for one of the whole run's.
        print(textwrap.indent(done.stdout, '    '), flush=True)
    elif '\n***' in done.stdout:
        print('\n'.join(line for line in done.stdout.splitlines() if line.startswith('***')), flush=True)
    return counts


def sweep():
    """Removes the prefixes of runs that were killed."""
    for folder in paths.PREFIXES.glob('e2e-*'):
        if not Path('/proc', folder.name.rsplit('-', 1)[-1]).exists():
            subprocess.run(['bash', paths.TOP / 'scripts' / 'wine-prefix.sh', 'stop', folder])
            shutil.rmtree(folder, ignore_errors=True)


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument('--here', action='store_true', help=argparse.SUPPRESS)
    arguments.add_argument('--jobs', type=int, default=4)
    arguments.add_argument('--walk', dest='folder', action='store_const', const='walk', default='cases')
    arguments.add_argument('--cases', dest='folder', help=argparse.SUPPRESS)
    arguments.add_argument('-k', dest='pattern')
    arguments.add_argument('combinations', nargs='*', metavar='ARCHITECTURE:FAMILY[:WAY]')
    chosen = arguments.parse_args()
    if chosen.here:
        return run_cases(chosen.folder, chosen.pattern)
    sweep()
    addresses.fix()
    options = ['--cases', chosen.folder, *(['-k', chosen.pattern] if chosen.pattern else [])]
    with ThreadPoolExecutor(chosen.jobs) as pool:
        counts = list(pool.map(lambda combination: run_combination(combination, options),
                               chosen.combinations or COMBINATIONS))
    passed, failed, skipped = (sum(column) for column in zip(*counts))
    print(f'{passed} passed, {failed} failed, {skipped} skipped')
    return 1 if failed or not passed else 0


if __name__ == '__main__':
    sys.exit(main())
