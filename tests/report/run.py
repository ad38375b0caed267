#!/usr/bin/env python3
"""Runs the cases of QuillonReport and the queries over what they reported:  run.py [-k PATTERN] [ARCHITECTURE:FAMILY ...]

The combinations are those of tests/e2e/run.py. The last line is `N passed, N failed, N skipped`.
"""
import shutil
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / 'e2e')]
import fleet  # noqa: E402
from harness import paths  # noqa: E402


def run_cases(arguments):
    """The output of the end-to-end runner but for its last line, which comes back as counts."""
    command = [sys.executable, HERE.parent / 'e2e' / 'run.py', '--cases', HERE / 'cases', *arguments]
    lines = subprocess.run(command, stdout=subprocess.PIPE, text=True).stdout.splitlines()
    print('\n'.join(lines[:-1]), flush=True)
    passed, _, failed, _, skipped, _ = lines[-1].split() if lines else ('0', '', '1', '', '0', '')
    return [int(passed), int(failed), int(skipped)]


def main(arguments):
    shutil.rmtree(paths.REPORTS, ignore_errors=True)
    passed, failed, skipped = run_cases(arguments)
    if '-k' not in arguments:
        wrong = fleet.faults(paths.REPORTS)
        print('\n'.join(f'FAIL  fleet: {fault}' for fault in wrong) or 'ok    the queries of docs/fleet.md')
        passed, failed = passed + (not wrong), failed + bool(wrong)
    print(f'{passed} passed, {failed} failed, {skipped} skipped')
    return 1 if failed or not passed else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
