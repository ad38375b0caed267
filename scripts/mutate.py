#!/usr/bin/env python3
"""Puts small random faults into the product and tells which of them the tests notice:

    scripts/mutate.py [--seed N] [--count N] [--jobs N] [--quick] [--again] [--only TEXT] [--list] [FOLDER ...]

Each mutant is put into a copy of the tree under build/mutation, built there and held against the quickest tests that can
see it, then against the others, until one fails. Results go to build/mutation/results.jsonl, and the same seed goes on
where it was left. --quick leaves out what takes long: the unit tests with large inputs, the uploads, the 64-bit build, the
report and the walk, so that of its survivors some may be noticed all the same. --again tries the survivors of the seed once
more; --only takes the mutants whose line, as it stands or as it would be, holds the text, or whose kind it is; --list tries
nothing.
tests/mutation/equivalents.tsv names mutants that are the same program. Ends with 0 when at least 95 of 100 were caught at
their first trial.
"""
import argparse
import os
import queue
import random
import signal
import subprocess
import sys
import threading
from pathlib import Path

TOP = Path(__file__).resolve().parents[1]
sys.path[:0] = [str(TOP / 'scripts'), str(TOP / 'tests' / 'e2e')]
from harness import addresses  # noqa: E402
from harness.display import Display  # noqa: E402
from mutation import results as figures  # noqa: E402
from mutation.equivalents import Equivalents  # noqa: E402
from mutation.mutants import mutants_of_folders  # noqa: E402
from mutation.running import end_all  # noqa: E402
from mutation.scratch import Builder, Tree, Windows  # noqa: E402
from mutation.stages import Late, stages  # noqa: E402
from mutation.trial import tried  # noqa: E402

FOLDERS = ['app', 'startup', 'files', 'helmkit', 'support', 'plugin', 'win32']
WORK = TOP / 'build' / 'mutation'
WANTED = 95
POLITE = 10  # how nice it is, whatever started it: on a busy machine twice as much is no progress at all
SOILING = ('com',)  # stages that, cut short, leave registered classes behind
CHECKED, CHECKED_AFTER = ('wide', 'ansi'), 25  # stages, and trials


def options_of():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--count', type=int, default=100)
    parser.add_argument('--jobs', type=int, default=os.cpu_count())
    parser.add_argument('--quick', action='store_true')
    parser.add_argument('--again', action='store_true')
    parser.add_argument('--only')
    parser.add_argument('--list', action='store_true')
    parser.add_argument('folders', nargs='*')
    options = parser.parse_args()
    options.folders = options.folders or [folder for folder in FOLDERS if (TOP / folder).is_dir()]
    return options


def chosen(options):
    found = mutants_of_folders(TOP, options.folders)
    if options.only:
        found = [mutant for mutant in found if any(options.only in text for text in (mutant.operator, mutant.before, mutant.after))]
    return random.Random(options.seed).sample(found, min(options.count, len(found)))


class Worker(threading.Thread):
    """Takes mutants until there are none, in a tree of its own."""
    lock = threading.Lock()

    def __init__(self, number, todo, results, options):
        super().__init__(daemon=True)
        self.folder, self.todo, self.results, self.options = WORK / str(number), todo, results, options
        self.unchecked = []  # the mutants tried since Windows was last seen as it was
        self.failure = None

    def run(self):
        try:
            with Display() as display:
                windows = Windows(TOP, self.folder / 'prefix', display.name)
                try:
                    self.work(windows)
                finally:
                    windows.close()
        except BaseException as failure:  # told when the thread has ended
            self.failure = failure

    def work(self, windows):
        with self.lock:  # in turn, so that what the first has compiled is there for the next
            tree = Tree(TOP, self.folder / 'tree')
            builder = Builder(tree.folder, os.cpu_count())
            parts = stages(tree, builder, windows)
            if self.options.quick:
                parts = [stage for stage in parts if not isinstance(stage, Late)]
            for stage in [stage for stage in parts if not isinstance(stage, Late)]:
                stage.build()
        builder.jobs = max(1, os.cpu_count() // self.options.jobs)
        for stage in parts:
            stage.prepare()
        for mutant in iter(self.next_mutant, None):
            outcome, stage, *rest = tried(mutant, tree, parts)
            self.tell(mutant, outcome, stage, *rest)
            if stage in SOILING:
                windows.make()
            if len(self.unchecked) >= CHECKED_AFTER:
                self.check(parts, tree, windows)
        self.check(parts, tree, windows)

    def next_mutant(self):
        try:
            return self.todo.get_nowait()
        except queue.Empty:
            return None

    def check(self, parts, tree, windows):
        """A mutant may leave something in Windows at which the next ones' tests fail. Where they fail without a mutant, what
        they said since they last passed is taken back, to be tried again."""
        fault = self.unchecked and self.fault(parts)
        if fault:
            with self.lock:
                print(f'mutate: {len(self.unchecked)} trials are void, without a mutant this fails: {fault}', flush=True)
                for mutant in self.unchecked:
                    self.results.add(mutant, figures.VOID)
            windows.make()
            tree.forget_runs()
            fault = self.fault(parts)
            if fault:
                raise SystemExit(f'mutate: even in a new Windows this fails without a mutant: {fault}')
        self.unchecked = []

    @staticmethod
    def fault(parts):
        return next(filter(None, (stage.fault() for stage in parts if stage.name in CHECKED)), '')

    def tell(self, mutant, outcome, stage, test, seconds):
        self.unchecked.append(mutant)
        with self.lock:
            self.results.add(mutant, outcome, stage, test, seconds)
            told(mutant, outcome, f'{seconds:.0f} s, {self.todo.qsize()} to go', ' '.join(filter(None, [stage, test])))


def told(mutant, outcome, *notes):
    print(f'{outcome:13} {mutant.file}: {mutant.operator}  ({"; ".join(filter(None, notes))})', flush=True)
    if outcome in ('survived', ''):
        print(f'    - {mutant.before}\n    + {mutant.after}', flush=True)


def try_all(mutants, results, options):
    todo = queue.Queue()
    for mutant in mutants:
        todo.put(mutant)
    workers = [Worker(number, todo, results, options) for number in range(min(options.jobs, len(mutants)))]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    for worker in workers:
        if worker.failure:
            raise worker.failure


def main():
    options = options_of()
    os.nice(max(0, POLITE - os.nice(0)))
    addresses.fix()
    equivalents = Equivalents.read(TOP / 'tests' / 'mutation' / 'equivalents.tsv')
    for row in equivalents.void(TOP):
        print('mutate: this equivalent fits no line, or more than one: ' + ' | '.join(row))
    results = figures.Results(WORK / 'results.jsonl', options.seed)
    mutants = chosen(options)
    if options.list:
        for mutant in mutants:
            told(mutant, '', equivalents.reason(mutant) or '')
        return 0
    for mutant in mutants:
        if results.last(mutant) != 'equivalent' and equivalents.reason(mutant):
            results.add(mutant, 'equivalent')
    todo = [mutant for mutant in mutants if results.last(mutant) in ([None, 'survived'] if options.again else [None])]
    if todo:
        subprocess.run(['bash', TOP / 'scripts' / 'wine-prefix.sh', 'has32'], check=True)
        subprocess.run([sys.executable, TOP / 'tests' / 'fixtures' / 'make.py', TOP / 'build' / 'fixtures'], check=True,
                       stdout=subprocess.DEVNULL)
        try_all(todo, results, options)
    first, last = results.outcomes(mutants, 0), results.outcomes(mutants, -1)
    print('\n' + figures.told('first trial', first))
    if last != first:
        print('\n' + figures.told('last trial', last))
    total = {outcome: sum(row[outcome] for row in first.values()) for outcome in figures.OUTCOMES}
    return 0 if figures.share(total) >= WANTED else 1


if __name__ == '__main__':
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    try:
        sys.exit(main())
    finally:
        end_all()
