"""The report says what the window shows: names, makers, files and signs, in the window's order."""
import re

from harness import seed
from harness.probe import REG_BINARY, REG_DWORD, REG_EXPAND_SZ, REG_MULTI_SZ
from harness.program import CHECK_OK, EXCLAMATION_I, QUESTION_IE
from report_case import ReportCase

PAGES = {'run': ('ucRun1', 'Run'), 'winlogon': ('ucWinlogon1', 'Winlogon'), 'custom': ('ucOther1', 'Other'),
         'services': ('ucServices1', 'Services')}
SIGNS = {'protected': CHECK_OK, 'default': CHECK_OK, 'changed': EXCLAMATION_I, 'ordinary': QUESTION_IE}
RUN_ONCE_EX = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx'
RUN = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run'
POLICY = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run'
SERVICES = 'SYSTEM\\CurrentControlSet\\Services'
DESKTOP = 'Control Panel\\Desktop'


class Window(ReportCase):
    def seed(self):
        seed.install_files(self.prefix)
        seed.fill_registry(self.probe)
        self.add_run('Ж 中', 'C:\\nowhere\\Ж 中.exe', hive='HKCU')
        self.add_run('expanded', '%SystemRoot%\\system32\\ctfmon.exe', expand=True)
        self.probe.set_value('HKCU', RUN, 'number', 7, REG_DWORD)
        self.probe.set_value('HKCU', RUN, 'bytes', b'\1\2', REG_BINARY)
        self.probe.set_value('HKCU', RUN, 'list', ['C:\\a.exe', 'b'], REG_MULTI_SZ)
        self.probe.set_value('HKLM', POLICY, 'empty', '')
        self.probe.set_value('HKCU', DESKTOP, 'SCRNSAVE.EXE', 'C:\\windows\\logon.scr')
        for hive in ('HKLM', 'HKCU'):
            self.probe.set_value(hive, RUN_ONCE_EX + '\\0001', 'Setup', '||C:\\evil.exe -x')
            self.probe.set_value(hive, RUN_ONCE_EX + '\\0001\\Depend', '1', 'C:\\evil.dll|Entry|a,b')
        self.probe.set_value('HKLM', f'{SERVICES}\\known', 'ImagePath', 'system32\\drivers\\cdrom.sys')

    def rows(self, category):
        """(name, maker or value, sign, file) of each row; the log alone has the files, line feeds as signs."""
        page, word = PAGES[category]
        logged = [text for text in self.tab_state() if text.startswith(word + ': ')]
        files = [''] * len(logged)
        if category != 'custom':
            files = [re.fullmatch(f"{word}: '(.*)', '(.*)', '(.*)'", text)[3] for text in logged]
        rows = self.program.rows(page)
        self.assertEqual(len(rows), len(logged))
        return [(row.name, row.second, row.image, file) for row, file in zip(rows, files)]

    @staticmethod
    def row_of(entry):
        """What the window shows of an entry."""
        if entry['category'] == 'custom':
            return entry['name'], entry.get('command', 'One or more startups'), SIGNS[entry['state']], ''
        # An ordinary Winlogon package has the sign of a changed place.
        ordinary = EXCLAMATION_I if entry['category'] == 'winlogon' else QUESTION_IE
        sign = CHECK_OK if entry['state'] == 'protected' else ordinary
        return entry['name'], entry.get('maker', 'Not specified'), sign, entry.get('file', '').replace('\n', '␊')

    def test_every_field_of_every_row(self):
        self.seed()
        self.start()
        ran = self.json_report()
        self.keep(ran, 'lived-in')
        for category in PAGES:
            entries = [entry for entry in ran.entries if entry['category'] == category and entry['kind'] == 'entry']
            self.assertTrue(entries, category)
            self.assertEqual([self.row_of(entry) for entry in entries], self.rows(category))
        self.look_at_places(ran.entries)
        self.look_at_contents(ran.entries)

    def look_at_places(self, entries):
        """Each entry's place holds what the entry tells, read by the probe."""
        types = {1: 'REG_SZ', REG_EXPAND_SZ: 'REG_EXPAND_SZ', REG_BINARY: 'REG_BINARY', REG_DWORD: 'REG_DWORD',
                 REG_MULTI_SZ: 'REG_MULTI_SZ'}
        seen = 0
        for entry in entries:
            if 'commandType' not in entry:
                continue
            hive = {'HKEY_LOCAL_MACHINE': 'HKLM', 'HKEY_CURRENT_USER': 'HKCU'}[entry['hive']]
            values = {name.lower(): value for name, value in self.probe.values(hive, entry['key']).items()}
            kind, raw = values[entry['value'].lower()]
            self.assertEqual(entry['commandType'], types[kind])
            if kind in (1, REG_EXPAND_SZ):
                self.assertEqual(entry['command'], raw.decode('utf-16-le').split('\0')[0])
            seen += 1
        self.assertGreater(seen, 60)
        commands = {entry.get('value'): entry.get('command') for entry in entries}
        self.assertEqual([commands[name] for name in ('number', 'bytes', 'list')], ['7', '01,02', 'C:\\a.exe\nb'])

    def look_at_contents(self, entries):
        contents = [entry for entry in entries if entry['kind'] == 'content']
        below = [(entry['hive'], entry['key'][len(RUN_ONCE_EX):], entry['value'], entry['file'])
                 for entry in contents if entry['key'].startswith(RUN_ONCE_EX)]
        self.assertEqual(below, [(hive, *rest) for hive in ('HKEY_LOCAL_MACHINE', 'HKEY_CURRENT_USER')
                                 for rest in (('\\0001', 'Setup', 'C:\\evil.exe'), ('\\0001\\Depend', '1', 'C:\\evil.dll'))])
        files = [(entry['name'], entry['exists'], entry['size']) for entry in contents if 'placeFile' in entry]
        self.assertEqual(files, [('Digital Line Detect.lnk', True, 4)])
        # A place stands right before what it holds.
        at = entries.index(contents[0])
        self.assertEqual(entries[at - 1]['name'], 'RunOnceEx particular to the computer (for any user)')

    def test_standard_services_on_request(self):
        self.seed()
        usual = [entry['value'] + entry['key'] for entry in self.json_report('services').entries]
        every = self.json_report('services', '--all').entries
        standard = [entry for entry in every if entry['state'] == 'standard']
        self.assertIn(f'{SERVICES}\\known', [entry['key'] for entry in standard])
        self.assertEqual([entry['value'] + entry['key'] for entry in every if entry not in standard], usual)
