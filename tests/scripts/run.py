#!/usr/bin/env python3
"""Tests of what the tests are run by. The last line is `N passed, N failed, N skipped`."""
import sys
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent


def main():
    sys.path[:0] = [str(HERE.parents[1] / 'scripts'), str(HERE.parent / 'e2e')]
    result = unittest.TextTestRunner(sys.stdout, verbosity=2).run(unittest.defaultTestLoader.discover(str(HERE)))
    failed = len(result.failures) + len(result.errors)
    print(f'{result.testsRun - failed - len(result.skipped)} passed, {failed} failed, {len(result.skipped)} skipped')
    return 0 if result.testsRun and not failed else 1


if __name__ == '__main__':
    sys.exit(main())
