"""The parts of the suite that a mutant is held against, quickest first."""
import hashlib
import sys
import time
from pathlib import PurePosixPath

from .running import Limits, run
from .scratch import COPY_LIMIT
from .trial import failing_test

# A mutant may take this much longer than the program itself; by the clock more, since the machine has other work.
PROCESSOR_ROOM, CLOCK_ROOM = 4, 20
LEAST = Limits(clock=300, processor=20)
UNKNOWN = Limits(clock=3600)
TEST_FOLDERS = ('tests/unit', 'tests/helmkit')
# Three quarters of the unit tests' time go to these sources with large inputs or long waits, which seldom notice what the
# others do not. Those of the mutant's own name are run among the related ones all the same.
SLOW_TESTS = ['long_paths_test.cpp', 'cl_test.cpp', 'long_list_test.cpp', 'export_roundtrip_test.cpp']


class Stage:
    """Builds its targets and runs a command of theirs. `programs` is what the mutant must show in."""

    def __init__(self, name, builder, preset, targets, programs, start):
        self.name, self.builder, self.preset, self.targets = name, builder, preset, targets
        self.programs = [builder.folder / 'build' / preset / program for program in programs]
        self.start = start  # (limits, mutant) -> Ran, or None
        self.limits, self.before = UNKNOWN, None

    def build(self):
        return self.builder.build(self.preset, self.targets).code == 0

    def digests(self):
        return [hashlib.sha256(program.read_bytes()).digest() for program in self.programs]

    def changed(self):
        return self.digests() != self.before

    def prepare(self):
        """Without a mutant everything builds and passes; how long that takes sets the limit."""
        done = self.builder.build(self.preset, self.targets)
        if done.code != 0:
            raise SystemExit(f'mutate: without a mutant {self.name} does not build:\n{done.output[-3000:]}')
        self.before = self.digests()
        began = time.monotonic()
        ran = self.start(self.limits, None)
        if ran is not None and ran.code != 0:
            raise SystemExit(f'mutate: without a mutant {self.name} does not pass:\n{ran.output[-3000:]}')
        self.limits = Limits(max(LEAST.clock, CLOCK_ROOM * (time.monotonic() - began)),
                             max(LEAST.processor, PROCESSOR_ROOM * (ran.worked if ran else 0)))

    def run(self, mutant):
        return self.start(self.limits, mutant)

    def fault(self):
        """What fails without a mutant, in the Windows that mutants have run in; empty when nothing does."""
        if not self.build():
            return 'the build'
        ran = self.run(None)
        return '' if ran.code == 0 else failing_test(ran.output)


class Late(Stage):
    """Prepared when the first mutant gets so far, on the tree without it."""

    def __init__(self, without_mutant, *arguments):
        super().__init__(*arguments)
        self.without_mutant = without_mutant

    def prepare(self):
        pass

    def build(self):
        if self.before is None:
            self.without_mutant(super().prepare)
        return super().build()


def related_tests(folder, file):
    """The test sources that include the mutant's header, or have its name."""
    stem = PurePosixPath(file).stem
    header = str(PurePosixPath(file).with_suffix('.h'))
    plain = stem.lower().replace('_', '')
    found = []
    for path in sorted(path for tests in TEST_FOLDERS for path in (folder / tests).glob('*.cpp')):
        name = path.stem.lower().replace('_', '').removesuffix('test')
        if name in plain or plain in name or f'"{header}"' in path.read_text(encoding='utf-8'):
            found.append(path.name)
    return found


def doctest(windows, program, folder, *arguments):
    def start(limits, _):
        return windows.run([str(program), '--no-colors=1', '--abort-after=1', *arguments], limits, folder)
    return start


def related(windows, program, folder):
    def start(limits, mutant):
        names = related_tests(folder, mutant.file) if mutant else []
        if not names:
            return None
        chosen = '--source-file=' + ','.join('*' + name for name in names)
        return windows.run([str(program), '--no-colors=1', '--abort-after=1', '--flavour=wide', chosen], limits, folder)
    return start


def native(folder):
    program = folder / 'build/native/tests/native/native_tests'
    return lambda limits, _: run([str(program), '--no-colors=1', '--abort-after=1'], limits)


def script(folder, windows, *command):
    """A part of the suite with Windows folders of its own."""
    environment = {**windows.environment, 'QUILLON_PROGRAM_X86': str(folder / 'build/x86/program')}

    def start(limits, _):
        return run([sys.executable, *command], limits, environment, folder, end=lambda: end_sessions(folder))
    return start


def end_sessions(folder):
    for prefix in (folder / 'build' / 'wine').glob('*/system.reg'):
        if not prefix.parent.name.startswith('base'):
            run(['bash', folder / 'scripts' / 'wine-prefix.sh', 'stop', prefix.parent], COPY_LIMIT)


def stages(tree, builder, windows):
    folder = tree.folder
    x86, x64 = folder / 'build/x86', folder / 'build/x64'
    products = [f'program/{name}' for name in ('Quillon.exe', 'Helmkit.dll', 'QLNCustom.dll')]
    unit = ['tests/unit_tests.exe']
    report = 'program/QuillonReport.exe'
    drivers = ['zip_driver', 'request_driver', 'zip_imports']

    def in_unit_tests(name, start):
        return Stage(name, builder, 'x86', ['unit_tests'], unit, start)

    slow = ','.join('*' + name for name in SLOW_TESTS)

    def unit_tests(flavour, way):
        return doctest(windows, x86 / unit[0], folder, f'--flavour={flavour}', f'--source-file{way}={slow}')

    return [
        Stage('native', builder, 'native', ['native_tests'], ['tests/native/native_tests'], native(folder)),
        in_unit_tests('related', related(windows, x86 / unit[0], folder)),
        *(in_unit_tests(flavour, unit_tests(flavour, '-exclude')) for flavour in ('wide', 'ansi')),
        Stage('com', builder, 'x86', ['com_tests'], ['com_tests/com_tests.exe', *products[1:]],
              doctest(windows, x86 / 'com_tests/com_tests.exe', x86 / 'com_tests')),
        *(Late(tree.without_mutant, f'slow {flavour}', builder, 'x86', ['unit_tests'], unit, unit_tests(flavour, ''))
          for flavour in ('wide', 'ansi')),
        # Here only to tell that a mutant shows in that program alone; what runs it comes late.
        Stage('report program', builder, 'x86', ['QuillonReport'], [report], lambda *_: None),
        Late(tree.without_mutant, 'support', builder, 'x86', drivers, [*(f'support_request/{name}.exe' for name in drivers), 'program/Helmkit.dll'],
             script(folder, windows, 'tests/support_request/run.py', 'x86')),
        Late(tree.without_mutant, 'x64', builder, 'x64', ['unit_tests'], [*unit, *products],
             doctest(windows, x64 / unit[0], folder, '--flavour=wide')),
        Late(tree.without_mutant, 'report', builder, 'x86', ['QuillonReport', 'Quillon', 'probe'], [report],
             script(folder, windows, 'tests/report/run.py', 'x86:winxp')),
        Late(tree.without_mutant, 'walk', builder, 'x86', ['Quillon', 'probe'], products,
             script(folder, windows, 'tests/e2e/run.py', '--walk', 'x86:win98', 'x86:winxp')),
    ]
