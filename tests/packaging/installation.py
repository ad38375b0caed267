"""One Windows that Quillon is installed in: its setup program, what is installed, and what changed by it."""
import os
import re
import subprocess
from dataclasses import dataclass
from functools import partial

from harness import paths, waiting
from harness.prefix import Prefix
from harness.probe import Probe

# Windows here starts several times in a case, and the uninstaller goes on as another program.
wait_for = partial(waiting.wait_for, patience=150)


@dataclass(frozen=True)
class Kind:
    bits: int
    version: str  # as Wine's setting "Version" names it
    is_nt: bool
    registers: bool  # before XP the classes are registered

    @property
    def architecture(self):
        return 'x64' if self.bits == 64 else 'x86'


WINDOWS = {'32-bit-98': Kind(32, 'win98', False, True),
           '32-bit-2000': Kind(32, 'win2k', True, True),
           '64-bit-10': Kind(64, 'win10', True, False)}

PACKAGES = paths.TOP / 'dist' / 'packages'
DESCRIPTION = 'Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Quillon'
FOLDER = 'C:\\Program Files\\Quillon'
SHORTCUT = 'C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs\\Quillon.lnk'

# What Wine itself writes at each start, whatever runs: devices, displays, drivers, times.
OF_WINE = re.compile(r'^(system\\(System\\(CurrentControlSet|ControlSet001)\\(Control\\(Class|DeviceClasses|Video|GraphicsDrivers|'
                     r'ComputerName|Session Manager$)|Enum|Hardware Profiles|Services)|Hardware|'
                     r'Software\\Microsoft\\Windows NT\\CurrentVersion\\NetworkCards|Software\\Microsoft\\DirectX)|'
                     r'user\\(Software\\Wine|Volatile))', re.I)


def read_hive(file, name):
    """(key) to its lines, of one of Wine's registry files."""
    keys, lines = {}, None
    for line in file.read_text(errors='replace').splitlines():
        if line.startswith('['):
            path = line[1:line.rindex(']')].replace('\\\\', '\\')
            lines = keys.setdefault(f'{name}\\{path}', [])
        elif lines is not None and line and not line.startswith('#'):
            lines.append(line)
    return keys


class Installation:
    def __init__(self, windows, name):
        self.kind = WINDOWS[windows]
        self.prefix = Prefix(f'e2e-packaging-{name}-{os.getpid()}', 'win98' if self.kind.bits == 32 else self.kind.version)
        # A 32-bit Windows of the NT family: the base of Windows 98 with another version.
        user = self.prefix.folder / 'user.reg'
        user.write_text(user.read_text().replace('"Version"="win98"', f'"Version"="{self.kind.version}"'))
        self.probe = None
        self.wake()

    def wake(self):
        # The first program waits until this Windows has started: one that is ended before never ends.
        subprocess.run(['wine', 'cmd', '/c', 'exit'], env=self.prefix.environment, timeout=300)
        self.probe = Probe(paths.probe(self.kind.architecture), self.prefix.environment)

    def sleep(self):
        """Ends the session, so that the registry stands in its files."""
        self.probe.close()
        self.probe = None
        subprocess.run(['wineserver', '-w'], env=self.prefix.environment, check=True, timeout=90)

    def remove(self):
        if self.probe:
            self.probe.close()
        self.prefix.remove()

    @property
    def setup(self):
        program = next(PACKAGES.glob('Quillon-*-setup.exe'))
        self.prefix.put('C:\\downloads\\' + program.name, program)
        return 'C:\\downloads\\' + program.name

    def start(self, program, arguments=''):
        return self.probe.ask('start', program, 'C:\\', arguments)['pid']

    def code_of(self, pid):
        wait_for(lambda: not self.probe.ask('state', pid)['running'], 'a program to end')
        return self.probe.ask('state', pid)['code']

    def run(self, program, arguments=''):
        return self.code_of(self.start(program, arguments))

    def uninstall_silently(self, folder=FOLDER):
        """The uninstaller goes on as a copy of itself, so its own end tells nothing."""
        self.run(folder + '\\Uninstall.exe', '/S')
        wait_for(lambda: not self.is_described(), 'the uninstaller to end')

    def is_described(self):
        return DESCRIPTION.rsplit('\\', 1)[1] in self.probe.keys('HKLM', DESCRIPTION.rsplit('\\', 1)[0])

    def press(self, title, key):
        """Waits for the window of this title and presses a key with Alt in it, as its user would."""
        def window():
            return subprocess.run(['xdotool', 'search', '--onlyvisible', '--name', f'^{title}'], capture_output=True,
                                  text=True, env=self.prefix.environment).stdout.split()
        found = wait_for(window, f'the window "{title}"')[-1]
        subprocess.run(['xdotool', 'windowfocus', '--sync', found, 'keydown', 'alt', 'key', key, 'keyup', 'alt'],
                       check=True, env=self.prefix.environment, timeout=30)

    def description(self):
        return self.probe.text_values('HKLM', DESCRIPTION)

    def class_is_registered(self, name='Helmkit.LogWriter'):
        return bool(self.probe.values('HKLM', f'Software\\Classes\\{name}\\CLSID'))

    def files(self):
        """The names of all files on the disk but those that Windows keeps for itself in its own folder."""
        top = self.prefix.folder / 'drive_c'
        return {str(file.relative_to(top)) for file in top.rglob('*')
                if not str(file.relative_to(top)).startswith(('downloads', 'windows/'))
                or '/temp/' in str(file).lower()}

    def registry(self):
        keys = {**read_hive(self.prefix.folder / 'system.reg', 'system'), **read_hive(self.prefix.folder / 'user.reg', 'user')}
        return {key: lines for key, lines in keys.items() if not OF_WINE.match(key)}
