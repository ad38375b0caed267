#!/usr/bin/env python3
"""Installs, runs and uninstalls what scripts/package.sh made:  run.py [-k PATTERN] [WINDOWS ...]

WINDOWS is one of those in harness below, each with a Windows and a display of its own. Without a choice all are taken.
The last line is `N passed, N failed, N skipped`.
"""
import argparse
import os
import subprocess
import sys
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / 'e2e')]
from harness.display import Display  # noqa: E402
from installation import WINDOWS  # noqa: E402


def run_here(pattern):
    loader = unittest.TestLoader()
    loader.testNamePatterns = [f'*{pattern}*'] if pattern else None
    suite = loader.discover(str(HERE / 'cases'), top_level_dir=str(HERE / 'cases'))
    if loader.errors:
        sys.exit('\n'.join(loader.errors))
    result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2).run(suite)
    failed = len({test.id() for test, _ in result.failures + result.errors})
    skipped = len(result.skipped)
    print(f'{result.testsRun - failed - skipped} passed, {failed} failed, {skipped} skipped')
    return 1 if failed or not result.testsRun else 0


def run_on(windows, options):
    with Display() as display:
        environment = {**os.environ, 'DISPLAY': display.name, 'QUILLON_WINDOWS': windows}
        done = subprocess.run([sys.executable, __file__, '--here', *options], env=environment, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True)
    print(f'{windows}\n{done.stdout}', flush=True)
    words = done.stdout.split()[-6:]
    return [int(words[at]) for at in (0, 2, 4)] if words[1::2] == ['passed,', 'failed,', 'skipped'] else [0, 1, 0]


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument('--here', action='store_true', help=argparse.SUPPRESS)
    arguments.add_argument('-k', dest='pattern')
    arguments.add_argument('windows', nargs='*', choices=[*WINDOWS, []])
    chosen = arguments.parse_args()
    if chosen.here:
        return run_here(chosen.pattern)
    counts = [run_on(windows, ['-k', chosen.pattern] if chosen.pattern else []) for windows in chosen.windows or WINDOWS]
    passed, failed, skipped = (sum(column) for column in zip(*counts))
    print(f'{passed} passed, {failed} failed, {skipped} skipped')
    return 1 if failed or not passed else 0


if __name__ == '__main__':
    sys.exit(main())
