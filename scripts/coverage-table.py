#!/usr/bin/env python3
"""Adds up the counts of builds and prints lines and branches by folder:  coverage-table.py UNREACHED BUILD:GCOV ...

Only the product counts, in whatever build and function it was compiled: a line or branch is reached when one of them
reached it. Branches to the clean-up of an exception are the compiler's and left out. What nothing reached is written
to the file UNREACHED.
"""
import json
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

TOP = Path(__file__).resolve().parents[1]
FOLDERS = ['app', 'startup', 'files', 'helmkit', 'support', 'plugin', 'win32']
AT_ONCE = 40


def reports(build, gcov):
    """One for each object file, those that never ran among them."""
    notes = sorted(str(path) for path in (TOP / build).rglob('*.gcno') if 'CompilerId' not in path.name)
    for at in range(0, len(notes), AT_ONCE):
        done = subprocess.run([gcov, '--json-format', '--stdout', '--branch-probabilities', *notes[at:at + AT_ONCE]],
                              cwd=TOP / build, check=True, capture_output=True, text=True)
        for line in done.stdout.splitlines():
            if line.startswith('{'):
                yield json.loads(line)


class Counts:
    def __init__(self):
        self.lines = defaultdict(lambda: defaultdict(int))  # file to line to count
        self.branches = defaultdict(lambda: defaultdict(int))  # file to (line, number) to count

    def add(self, report, build):
        for part in report['files']:
            name = self.name(part['file'], build)
            if name is None:
                continue
            for line in part['lines']:
                self.lines[name][line['line_number']] += line['count']
                taken = [branch['count'] for branch in line['branches'] if not branch['throw']]
                for number, count in enumerate(taken):
                    self.branches[name][line['line_number'], number] += count

    @staticmethod
    def name(file, build):
        path = (TOP / build / file).resolve()
        if not path.is_relative_to(TOP):
            return None
        relative = path.relative_to(TOP)
        return relative.as_posix() if relative.parts[0] in FOLDERS else None


def reached(table, folder):
    counts = [count for file, part in table.items() if file.split('/')[0] == folder for count in part.values()]
    return sum(count > 0 for count in counts), len(counts)


def told(name, pairs):
    return f'{name:12}' + ''.join(f'{done:8} of {all_of:6} {100 * done / all_of if all_of else 100:6.1f} %' for done, all_of in pairs)


def print_table(counts):
    print(f'\n{"":12}{"lines reached":>26}{"branches taken":>26}')
    total = [(0, 0), (0, 0)]
    for folder in FOLDERS:
        pairs = [reached(table, folder) for table in (counts.lines, counts.branches)]
        if pairs[0][1]:
            print(told(folder, pairs))
            total = [(done + more, all_of + others) for (done, all_of), (more, others) in zip(total, pairs)]
    print(told('all', total))


def write_unreached(counts, path):
    with path.open('w', encoding='utf-8') as file:
        for name in sorted(counts.lines):
            source = (TOP / name).read_text(encoding='utf-8').splitlines()
            for line, count in sorted(counts.lines[name].items()):
                if not count:
                    print(f'{name}:{line}: {source[line - 1].strip()}', file=file)


def main():
    counts = Counts()
    for chosen in sys.argv[2:]:
        build, gcov = chosen.split(':')
        for report in reports(build, gcov):
            counts.add(report, build)
    if not any(count for part in counts.lines.values() for count in part.values()):
        sys.exit('coverage: nothing was counted')
    print_table(counts)
    unreached = Path(sys.argv[1])
    write_unreached(counts, unreached)
    print(f'\ncoverage: what nothing reached is in {unreached.resolve().relative_to(TOP)}')


if __name__ == '__main__':
    main()
