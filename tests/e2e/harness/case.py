"""What every case starts from: a prefix and a program folder of its own, with a probe inside."""
import os
import resource
import shutil
import signal
import unittest

from . import paths, windows98
from .logs import log_entries
from .prefix import Prefix
from .probe import Probe, REG_EXPAND_SZ, REG_SZ
from .program import Program
from .waiting import wait_for

ARCHITECTURE = os.environ.get('QUILLON_ARCHITECTURE', 'x86')
FAMILY = os.environ.get('QUILLON_FAMILY', 'winxp')
FOLDER = 'C:\\Quillon'
SHOWN = 12  # lines of what Wine said, with a failure
TAB_STATES = ('Run', 'Winlogon', 'Other', 'Services')
RUN = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run'


class Case(unittest.TestCase):
    maxDiff = None
    architecture = ARCHITECTURE
    program = None

    def setUp(self):
        self.name = self.id().replace('.', '-')
        self.prefix = Prefix(f'e2e-{self.architecture}-{FAMILY}-{os.getpid()}', FAMILY)
        self.addCleanup(self.prefix.remove)
        self.family = self.prefix.family
        self.windows98 = windows98.chosen(self.prefix)
        self.system = f'C:\\windows\\{self.family.system_folder}'
        self.folder = self.prefix.put_program(FOLDER, self.architecture)
        paths.LOGS.mkdir(parents=True, exist_ok=True)
        self.start_probe()
        self.addCleanup(self.keep_logs)
        self.addCleanup(self.look_for_refusals)

    def start_probe(self, before_exec=None):
        """What the program will be started from."""
        self.wine_says = self.windows98.trace_file or self.prefix.folder / 'wine.log'
        # Wine's own errors are kept: some end a program without another word.
        environment = {**self.prefix.environment, 'WINEDEBUG': 'fixme-all'}
        self.probe = Probe(paths.probe(self.architecture), environment, self.wine_says, before_exec)
        self.addCleanup(self.probe.close)

    def start_probe_with_little_room(self):
        """As on a full disk: a file of more than 100 000 bytes cannot be written."""

        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100_000, 100_000))

        # What it starts inherits the limit; wineserver, which keeps the registry, runs already and has none.
        self.start_probe(before_exec=limit)

    def keep_logs(self):
        """On a failure what the program wrote is kept, with what was on the screen."""
        outcome = getattr(self._outcome, 'result', None)
        if not outcome or not any(test is self for test, _ in outcome.failures + outcome.errors):
            return
        kept = paths.LOGS / f'{self.architecture}-{FAMILY}-{self.name}'
        shutil.rmtree(kept, ignore_errors=True)
        shutil.copytree(self.folder, kept, ignore=shutil.ignore_patterns('*.exe', '*.dll'))
        shutil.copy(self.wine_says, kept / 'trace')
        said = self.wine_says.read_text(encoding='utf-8', errors='replace').splitlines()
        self.wine_said = '\n'.join(['', 'Wine said at the end:', *said[-SHOWN:], ''])
        os.system(f'import -window root "{kept}/screen.png" 2>/dev/null')

    def look_for_refusals(self):
        if self.program:
            self.assertEqual(self.windows98.refused(), [])

    # Windows around the program.

    def install(self, fixture, windows_path):
        """Puts a fixture program behind a path and gives the path back."""
        self.prefix.put(windows_path, paths.FIXTURES / fixture)
        return windows_path

    def add_run(self, name, command, hive='HKLM', key=RUN, expand=False):
        self.probe.set_value(hive, key, name, command, REG_EXPAND_SZ if expand else REG_SZ)

    def launch(self, *current_folder):
        """Starts the program without waiting for its window."""
        self.windows98.prepare_start(self.probe, FOLDER)
        self.program = Program(self.probe, FOLDER + '\\Quillon.exe', self.prefix.environment, *current_folder)
        return self.program

    def start(self, *current_folder):
        return self.launch(*current_folder).wait_for_window()

    # What the program wrote.

    def entries(self, name='QLN.log'):
        """(level, source, code, text) of each line of a log."""
        return log_entries(self.folder / name)

    def log_texts(self, name='QLN.log'):
        return [entry.text for entry in self.entries(name)]

    def tab_state(self):
        return [entry.text for entry in self.entries() if entry.source == '' and entry.text.split(':')[0] in TAB_STATES]

    def backups(self):
        folder = self.folder / 'Backup'
        return sorted(folder.iterdir()) if folder.is_dir() else []

    def settle(self):
        """Comes back when everything posted to the program so far is done: a key pressed now arrives after it."""
        before = self.program.selected_tab()
        self.program.control_tab()
        wait_for(lambda: self.program.selected_tab() != before, 'the pressed key to arrive')

    # The most common walk through the message boxes.

    def answer(self, expected, button):
        """Waits for a message box, holds its text against the expected one and presses a button."""
        dialog = self.program.dialog()
        self.assertEqual((dialog.title, dialog.text), ('Quillon', expected))
        dialog.press(button)
