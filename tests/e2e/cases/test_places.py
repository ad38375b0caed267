"""Every one of the eighteen other startup places: changed, listed, set back, and what then stands there."""
from typing import NamedTuple, Optional

from harness.case import FAMILY, Case
from harness.picture import Picture
from harness.probe import REG_EXPAND_SZ, REG_MULTI_SZ, REG_SZ
from harness.program import CHECK_OK, EXCLAMATION_I, QUESTION_IE
from harness.waiting import TimedOut, wait_for

PAGE = 'ucOther1'
WINDOWS = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows'
WINLOGON = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon'
SESSION = 'SYSTEM\\CurrentControlSet\\Control\\Session Manager'
DESKTOP = 'Control Panel\\Desktop'
COMMANDS = 'SOFTWARE\\Microsoft\\Command Processor'
RUN_ONCE_EX = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx'
SHELL_FOLDERS = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders'

WIN_INI = b'; \xe4 for 16-bit programs\r\n[windows]\r\n  LOAD=C:\\l.exe \r\nrun=\r\nRun=C:\\m.exe\r\nspooler=yes\r\n'
SYSTEM_INI = b'[boot]\r\nshell=explorer.exe\r\nShell=evil.exe\r\n[drivers]\r\nwave=mmdrv.dll\r\n'
SYSTEM_FOLDER = 'system' if FAMILY == 'win98' else 'system32'
USERINIT = f'c:\\windows\\{SYSTEM_FOLDER}\\userinit.exe,'
VM_APPLET = 'rundll32 shell32,Control_RunDLL "sysdm.cpl"'
SEVERAL = 'One or more startups'
FOLDER_QUESTION = ('Windows Explorer window will be opened now. In order to delete unwanted startups just remove files '
                   "from startup folder. Don't forget to backup these files manually. Press OK to continue.")


class Place(NamedTuple):
    description: str
    value: str  # as it is seeded and shown
    restored: Optional[str]  # as it is shown after deleting; None where the row goes
    image: int = EXCLAMATION_I

    @property
    def row(self):
        return self.description, self.value, self.image

    @property
    def restored_row(self):
        return self.description, self.restored, CHECK_OK


class RegistryPlace(NamedTuple):
    hive: str
    key: str
    name: str
    seeded: tuple  # type and data
    left: Optional[tuple]  # the same after deleting; None where the value goes


REGISTRY_PLACES = [
    (Place('"run=" parameter translated to registry for the user who is currently logged on', 'C:\\1.exe', None),
     RegistryPlace('HKCU', WINDOWS, 'run', (REG_SZ, 'C:\\1.exe'), (REG_SZ, ''))),
    (Place('"run=" parameter translated to registry particular to the computer (for any user)', 'C:\\2.exe', None),
     RegistryPlace('HKLM', WINDOWS, 'run', (REG_SZ, 'C:\\2.exe'), (REG_SZ, ''))),
    (Place('"load=" parameter translated to registry for the user who is currently logged on', 'C:\\3.exe', None),
     RegistryPlace('HKCU', WINDOWS, 'load', (REG_SZ, 'C:\\3.exe'), (REG_SZ, ''))),
    (Place('"load=" parameter translated to registry particular to the computer (for any user)', 'C:\\4.exe', None),
     RegistryPlace('HKLM', WINDOWS, 'load', (REG_SZ, 'C:\\4.exe'), (REG_SZ, ''))),
    (Place('OS shell particular to the computer (for any user)', 'explorer.exe,evil.exe', 'Explorer.exe'),
     RegistryPlace('HKLM', WINLOGON, 'Shell', (REG_SZ, 'explorer.exe,evil.exe'), (REG_SZ, 'Explorer.exe'))),
    (Place('Userinit for MSGina.dll', USERINIT + 'C:\\evil.exe,', USERINIT),
     RegistryPlace('HKLM', WINLOGON, 'Userinit', (REG_SZ, USERINIT + 'C:\\evil.exe,'), (REG_SZ, USERINIT))),
    (Place('Session Manager startup programs', 'autocheck autochk *\nevil', 'autocheck autochk *'),
     RegistryPlace('HKLM', SESSION, 'BootExecute', (REG_MULTI_SZ, ['autocheck autochk *', 'evil']),
                   (REG_MULTI_SZ, ['autocheck autochk *']))),
    (Place('Windows screen saver', 'C:\\windows\\logon.scr', '(NONE)', QUESTION_IE),
     RegistryPlace('HKCU', DESKTOP, 'SCRNSAVE.EXE', (REG_SZ, 'C:\\windows\\logon.scr'), (REG_SZ, '(NONE)'))),
    (Place('Autorun for Command Processor particular to the computer (for any user)', 'evil.cmd', None),
     RegistryPlace('HKLM', COMMANDS, 'AutoRun', (REG_EXPAND_SZ, 'evil.cmd'), (REG_EXPAND_SZ, ''))),
    (Place('Winlogon VmApplet', 'evil.exe', VM_APPLET),
     RegistryPlace('HKLM', WINLOGON, 'VmApplet', (REG_SZ, 'evil.exe'), (REG_SZ, VM_APPLET))),
    # Only Windows XP has a program to fall back on.
    (Place('Logon user interface reference', 'evilui.exe', 'logonui.exe' if FAMILY == 'winxp' else None),
     RegistryPlace('HKLM', WINLOGON, 'UIHost', (REG_EXPAND_SZ, 'evilui.exe'),
                   (REG_EXPAND_SZ, 'logonui.exe') if FAMILY == 'winxp' else None)),
]

LOAD_LINE = Place('Win.ini "load=" line', 'C:\\l.exe', None)
RUN_LINE = Place('Win.ini "run=" line', 'C:\\m.exe', None)
SHELL_LINE = Place('System.ini "shell=" line', 'evil.exe', 'Explorer.exe')
RUN_ONCE_EX_PLACES = [('HKLM', Place('RunOnceEx particular to the computer (for any user)', SEVERAL, None)),
                      ('HKCU', Place('RunOnceEx for the user who is currently logged on', SEVERAL, None))]
# The user's own folder has the same text.
FOLDER_PLACE = Place('Common startup folder particular to the computer (for any user)', SEVERAL, None, QUESTION_IE)
FOLDERS = [('HKLM', 'Common Startup', 'C:\\startups\\everyone'), ('HKCU', 'Startup', 'C:\\startups\\myself')]

PLACES = ([place for place, _ in REGISTRY_PLACES] + [LOAD_LINE, RUN_LINE, SHELL_LINE] +
          [place for _, place in RUN_ONCE_EX_PLACES] + [FOLDER_PLACE] * 2)
RED = {EXCLAMATION_I: {'red'}, CHECK_OK: {'black'}, QUESTION_IE: {'black'}}


class EveryPlace(Case):
    def change_all(self):
        for _, place in REGISTRY_PLACES:
            kind, data = place.seeded
            self.probe.set_value(place.hive, place.key, place.name, data, kind)
        self.win_ini = self.prefix.write('C:\\windows\\win.ini', WIN_INI)
        self.system_ini = self.prefix.write('C:\\windows\\system.ini', SYSTEM_INI)
        for hive, _ in RUN_ONCE_EX_PLACES:
            self.probe.set_value(hive, RUN_ONCE_EX, 'Flags', 'x')
            self.probe.set_value(hive, RUN_ONCE_EX + '\\0001', 'Setup', 'C:\\evil.exe')
            self.probe.set_value(hive, RUN_ONCE_EX + '\\0002\\Depend', '', 'deeper')
        for hive, name, folder in FOLDERS:
            self.probe.set_value(hive, SHELL_FOLDERS, name, folder)
            self.prefix.write(folder + '\\evil.lnk', b'L')

    def rows(self):
        return [(row.name, row.second, row.image) for row in self.program.rows(PAGE)]

    def colours(self):
        """For each row the colours of its two texts; no row may be selected, since that has colours of its own."""
        self.picture = Picture(self.prefix.environment)
        self.text_places = self.program.text_places(PAGE)
        return [(self.picture.ink(text), self.picture.ink(value)) for text, value in self.text_places]

    def assert_colours(self):
        self.program.show(PAGE)
        self.program.deselect(PAGE)
        expected = [({'black'}, RED[image]) for _, _, image in self.rows()]
        try:
            wait_for(lambda: self.colours() == expected, 'the rows to be painted')
        except TimedOut:
            self.assertEqual(self.colours(), expected)

    def assert_changed_values_are_bold(self):
        """The same value stands in red and in black rows."""
        widths = {image: set() for image in (EXCLAMATION_I, QUESTION_IE)}
        for (_, value, image), (_, place) in zip(self.rows(), self.text_places):
            if value == SEVERAL:
                widths[image].add(self.picture.ink_width(place))
        [bold], [plain] = widths[EXCLAMATION_I], widths[QUESTION_IE]
        self.assertGreater(bold, plain)

    def delete(self, place):
        """Presses the button on a place's row, answers, and waits for the refilled list."""
        before = self.rows()
        at = self.program.select(PAGE, place.description)
        self.program.press_button(PAGE)
        self.answer(f'Are you sure you want to delete excess startups from {place.description}?', 'OK')
        self.answer('Startups are deleted successfully.', 'OK')
        after = [place.restored_row] if place.restored else []
        expected = before[:at] + after + before[at + 1:]
        wait_for(lambda: self.rows() == expected, f'{expected} in place of {self.rows()}')
        selected = [position for position, row in enumerate(self.program.rows(PAGE)) if row.selected]
        self.assertEqual(selected, [at if place.restored else 0])
        self.assertEqual(self.entries()[-1], (5, 'ucOther.cmdDelete_Click', 0, 'Restored: ' + place.description))

    def value_at(self, place):
        values = {name.lower(): value for name, value in self.probe.values(place.hive, place.key).items()}
        kind, raw = values.get(place.name.lower(), (None, None))
        if kind is None:
            return None
        texts = raw.decode('utf-16-le').rstrip('\0')
        return kind, texts.split('\0') if kind == REG_MULTI_SZ else texts

    def assert_refused(self, place):
        self.program.select(PAGE, place.description)
        self.program.press_button(PAGE)
        self.answer(f"Unwilling to perform. {place.description} doesn't contain excess startups.", 'OK')

    def open_folder(self, occurrence, folder):
        self.program.select(PAGE, FOLDER_PLACE.description, occurrence)
        self.program.press_button(PAGE)
        self.answer(FOLDER_QUESTION, 'OK')
        name = folder.rsplit('\\', 1)[-1]
        wait_for(lambda: self.program.windows_named(name), f'the window of the folder {name}')
        self.assertTrue(self.prefix.path(folder + '\\evil.lnk').exists())

    def test_changed_listed_and_set_back(self):
        self.change_all()
        self.start()
        self.assertEqual(self.rows(), [place.row for place in PLACES])
        self.assertEqual([text for text in self.tab_state() if text.startswith('Other: ')],
                         [f"Other: '{place.description}', '{place.value}'".replace('\n', '␊') for place in PLACES])
        self.assert_colours()
        self.assert_changed_values_are_bold()
        logged = len(self.entries())

        for place, value in REGISTRY_PLACES:
            self.assertEqual(self.value_at(value), value.seeded)
            self.delete(place)
            self.assertEqual(self.value_at(value), value.left)
        load_restored = WIN_INI.replace(b'  LOAD=C:\\l.exe ', b'load=')
        self.delete(LOAD_LINE)
        self.assertEqual(self.win_ini.read_bytes(), load_restored)
        self.delete(RUN_LINE)
        self.assertEqual(self.win_ini.read_bytes(), load_restored.replace(b'Run=C:\\m.exe', b'run='))
        self.delete(SHELL_LINE)
        self.assertEqual(self.system_ini.read_bytes(), SYSTEM_INI.replace(b'shell=explorer.exe', b'shell=Explorer.exe')
                         .replace(b'Shell=evil.exe', b'shell=Explorer.exe'))
        for hive, place in RUN_ONCE_EX_PLACES:
            self.delete(place)
            self.assertEqual((self.probe.keys(hive, RUN_ONCE_EX), self.probe.values(hive, RUN_ONCE_EX)), ([], {}))

        restored = [place for place in PLACES if place.restored]
        left = [place.restored_row for place in restored] + [FOLDER_PLACE.row] * 2
        self.assertEqual(self.rows(), left)
        self.assert_colours()
        for place in restored:
            self.assert_refused(place)
        for occurrence, (_, _, folder) in enumerate(FOLDERS):
            self.open_folder(occurrence, folder)
        self.assertEqual(self.rows(), left)
        for _, value in REGISTRY_PLACES:
            self.assertEqual(self.value_at(value), value.left)
        self.assertEqual(self.log_texts()[logged:], ['Restored: ' + place.description for place in PLACES[:16]])
