"""What a backup brings back through readers that nobody here wrote, and what an export of theirs says otherwise."""
import re
import tempfile
from pathlib import Path

from harness import exported_places, readers
from harness.case import Case, FOLDER, RUN
from harness.exported_places import HIVES, KEYS, SHORT_TEXT, VALUES, WORLD
from harness.probe import REG_EXPAND_SZ, REG_MULTI_SZ, REG_SZ

TEXT_TYPES = (REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ)
SETUP = ('HKLM', exported_places.WINDOWS + '\\RunOnce\\Setup')
HALF_PAIR = WORLD['half a surrogate pair'][1]
LINE_START = re.compile(r'(@|"(?:[^"\\]|\\.)*")=')


def terminated(data):
    return data if not data or data.endswith(b'\0\0') else data + b'\0\0'


def as_wine_reads(kind, data):
    """Version 5.00: a text that does not end in NUL gets one, which takes the place of an odd last byte; behind
    it comes a byte of stray memory then, told here as None. The 64-bit readers crash at a single byte."""
    whole = data[:len(data) // 2 * 2]
    if kind not in TEXT_TYPES or whole.endswith(b'\0\0') or not data:
        return data
    return whole + b'\0\0' if len(data) % 2 == 0 else (whole + b'\0\0', None)


def as_ansi_carries(kind, data):
    """REGEDIT4: the functions of Windows 98 give texts as bytes of the code page, so that no half unit gets that
    far; and the reader adds the NUL that is missing. What the code page lacks is a question mark then."""
    if kind not in TEXT_TYPES:
        return data
    units = data[:len(data) // 2 * 2].decode('utf-16-le')
    return terminated(units.encode('cp1252', 'replace').decode('cp1252').encode('utf-16-le'))


def as_hivex_reads(kind, data):
    """Every byte; but what stands in quotes goes through UTF-8, which has no halves of surrogate pairs."""
    return data if data != HALF_PAIR else data.replace(b'\x3D\xD8', b'\xFD\xFF')


class BackupCase(Case):
    def backup(self):
        self.start()
        [file] = self.backups()
        return file

    def fill(self, short_texts=False):
        exported_places.fill(self.probe, self.family.is_nt)
        for name, (kind, data) in (SHORT_TEXT if short_texts else {}).items():
            self.probe.set_value('HKCU', RUN + '\\short', name, data, kind)
        before = exported_places.capture(self.probe)
        self.assertEqual(len(before), (52 if self.family.is_nt else 51) + short_texts)
        self.assertIn(SETUP, before)
        return before

    def text_of(self, file):
        data = file.read_bytes()
        return data.decode('utf-16', 'surrogatepass') if self.family.is_nt else data.decode('cp1252')

    def path_of(self, file):
        return f'{FOLDER}\\Backup\\{file.name}'

    def assert_came_back(self, before, after, carried):
        """`carried` gives the bytes that a value comes back with, or (bytes, None) when one more byte follows."""
        self.assertEqual(sorted(before), sorted(after))
        for place, values in before.items():
            self.assertEqual(sorted(values), sorted(after[place]), place)
            for name, (kind, data) in values.items():
                kind_after, data_after = after[place][name]
                expected = carried(kind, data)
                if isinstance(expected, tuple):
                    expected = expected[0] + data_after[-1:]
                self.assertEqual((kind_after, data_after), (kind, expected), (place, name))


class RoundTrip(BackupCase):
    def bring_back(self, reader):
        self.addCleanup(reader.close)
        before = self.fill()
        file = self.backup()
        self.assertEqual(exported_places.capture(self.probe), before)
        exported_places.wipe(self.probe)
        self.assertEqual(exported_places.capture(self.probe), {})
        reader.run(self.path_of(file))
        after = exported_places.capture(self.probe)
        self.assert_came_back(before, after, as_wine_reads if self.family.is_nt else as_ansi_carries)
        self.assertEqual(after[SETUP], before[SETUP])

    def test_regedit(self):
        self.bring_back(readers.regedit(self))

    def test_reg_import(self):
        self.bring_back(readers.reg_import(self))

    def test_hivexregedit(self):
        if not self.family.is_nt:
            self.skipTest('hivexregedit takes the bytes of REGEDIT4 texts for UTF-16; it reads version 5.00')
        if not readers.Hivex.is_installed():
            print(f'*** SKIPPED: {self.id()}: hivexregedit is missing, which is in {readers.Hivex.package} ***', flush=True)
            self.skipTest('hivexregedit is missing')
        before = self.fill(short_texts=True)
        with tempfile.TemporaryDirectory() as folder:
            hive = readers.Hivex(Path(folder))
            hive.merge(self.text_of(self.backup()))
            after = hive.tree()
        # The hive has the keys above the places too, and nothing in them.
        above = [place for place in after if place not in before]
        self.assertEqual([after[place] for place in above if after[place]], [])
        self.assert_came_back(before, {place: after[place] for place in after if place not in above}, as_hivex_reads)

    def test_32_bit_readers(self):
        """HKEY_CURRENT_USER is the same to them. They survive a text of a single byte."""
        texts = {name: value for name, value in exported_places.HARD_DATA.items() if value[0] in TEXT_TYPES}
        for name, (kind, data) in (SHORT_TEXT | texts).items():
            self.probe.set_value('HKCU', RUN, name, data, kind)
        before = self.probe.values('HKCU', RUN)
        file = self.backup()
        for reader in (readers.regedit(self, bits=32), readers.reg_import(self, bits=32)):
            self.addCleanup(reader.close)
            self.probe.ask('regdeletetree', 'HKCU', RUN)
            reader.run(self.path_of(file))
            self.assert_came_back({RUN: before}, {RUN: self.probe.values('HKCU', RUN)},
                                  as_wine_reads if self.family.is_nt else as_ansi_carries)


class Notation(BackupCase):
    def test_names_that_no_line_can_hold(self):
        self.probe.set_value('HKCU', RUN, 'line\r\nbreak', 'x')
        self.probe.set_value('HKCU', RUN + '\\key\nbreak', 'v', 'x')
        self.add_run('good', 'C:\\good.exe', hive='HKCU')
        key = 'HKEY_CURRENT_USER\\' + RUN
        omissions = [f'not exported: [{key}] "line\\u000d\\u000abreak"', f'not exported: [{key}\\key\\u000abreak]']
        file = self.backup()
        comments = [line for line in self.text_of(file).split('\r\n') if line.startswith(';')]
        self.assertEqual(comments, ['; ' + omission for omission in omissions])
        logged = [entry for entry in self.entries() if entry.source == 'FMain.BackupRegistry']
        self.assertEqual([(entry.level, entry.text) for entry in logged], [(4, omission) for omission in omissions])
        self.probe.ask('regdeletetree', 'HKCU', RUN)
        reader = readers.regedit(self)
        self.addCleanup(reader.close)
        reader.run(self.path_of(file))
        self.assertEqual(self.probe.text_values('HKCU', RUN), {'good': 'C:\\good.exe'})
        self.assertEqual(self.probe.keys('HKCU', RUN), [])

    def test_what_the_code_page_lacks(self):
        """On Windows 98 question marks stand for it; on the NT family nothing is lost."""
        self.add_run('world', '\u0416 \u4E2D.exe', hive='HKCU')
        file = self.backup()
        self.probe.ask('regdeletetree', 'HKCU', RUN)
        reader = readers.regedit(self)
        self.addCleanup(reader.close)
        reader.run(self.path_of(file))
        self.assertEqual(self.probe.text_values('HKCU', RUN), {'world': '\u0416 \u4E2D.exe' if self.family.is_nt else '? ?.exe'})


def sections(text):
    """Key lines to their value lines, by name, folded lines joined; and whatever else the text holds."""
    keys, others, values = {}, [], None
    for line in text.replace('\\\r\n  ', '').split('\r\n'):
        if line.startswith('['):
            values = keys.setdefault(line, {})
        elif values is not None and (name := LINE_START.match(line)):
            values[name[1]] = line
        elif line:
            others.append(line)
    return keys, others


class SideBySide(BackupCase):
    """The same keys by `reg export` of the 64-bit Wine: the differences are these, and no others."""

    def setUp(self):
        super().setUp()
        if not self.family.is_nt:
            self.skipTest('reg export writes version 5.00 only')
        self.fill(short_texts=True)
        self.probe.set_value('HKCU', RUN, 'line\r\nname', 'x')
        self.text = self.text_of(self.backup())
        self.ours, others = sections(self.text)
        self.assertEqual(others[0], 'Windows Registry Editor Version 5.00')
        self.assertEqual(others[1:], [f'; not exported: [HKEY_CURRENT_USER\\{RUN}] "line\\u000d\\u000aname"'])
        self.export = readers.reg_export(self)
        self.addCleanup(self.export.close)

    def their_text(self, hive, key):
        self.export.arguments = f'export "{hive}\\{key}"'
        (self.folder / 'theirs.reg').unlink(missing_ok=True)
        self.export.run(FOLDER + '\\theirs.reg')
        return (self.folder / 'theirs.reg').read_bytes().decode('utf-16', 'surrogatepass')

    def our_section(self, header):
        return next((key for key in self.ours if key.lower() == header.lower()), None)

    def test_whole_keys(self):
        different, absent, recased = {}, [], []
        for hive, key in KEYS:
            theirs, others = sections(self.their_text(hive, key))
            self.assertEqual(others, ['Windows Registry Editor Version 5.00'])
            for header, lines in theirs.items():
                ours = self.our_section(header)
                recased += [ours] if ours != header else []
                absent += [name for name in lines if name not in self.ours[ours]]
                present = [name for name in lines if name in self.ours[ours]]
                self.assertEqual(list(self.ours[ours]), present, 'the same order')
                different |= {name: (self.ours[ours][name], lines[name]) for name in present
                              if self.ours[ours][name] != lines[name]}
        self.assertEqual(recased, [f'[HKEY_LOCAL_MACHINE\\{exported_places.NT}\\Winlogon\\Notify]'.replace('SOFTWARE', 'Software')])
        self.assertEqual(absent, ['"line\\r\\nname"'])
        self.assertEqual(set(different), {f'"{name}"' for name in [
            'sz line break', 'sz inner NUL', 'sz two NULs', 'sz without NUL', 'sz odd length', 'sz empty data',
            'sz one byte', 'dword of three bytes', 'dword of five bytes']})
        for name, (ours, theirs) in different.items():
            self.assertRegex(ours, r'^"[^"]*"=hex\(%s\):' % ('4' if 'dword' in name else '1'))
            self.assertNotIn('hex', theirs)
        self.assertEqual(different['"sz line break"'][1], '"sz line break"="first\\r\\nsecond\\nthird"')
        self.assertEqual(different['"sz inner NUL"'][1], '"sz inner NUL"="abc"')

    def test_single_values(self):
        for hive, key, name in VALUES:
            header = f'[{HIVES[hive]}\\{key}]'
            theirs = {theirs.lower(): line for theirs, line in sections(self.their_text(hive, key))[0][header].items()}
            ours = self.ours[header]
            if key.endswith('Winlogon'):
                self.assertEqual(list(ours), ['"shell"', '"userinit"', '"VmApplet"', '"UIHost"'])
            # Names keep the letters that the program asks by; Wine itself has "Shell".
            self.assertEqual(ours[f'"{name}"'].split('=', 1)[1], theirs[f'"{name.lower()}"'].split('=', 1)[1])

    def test_blank_lines_and_repeated_headers(self):
        self.assertEqual(self.text.count(f'[HKEY_LOCAL_MACHINE\\{exported_places.NT}\\Winlogon]\r\n'), 4)
        self.assertEqual(self.text.count('\r\n\r\n['), self.text.count('\r\n['), 'a blank line before every header')
        self.assertFalse(self.text.endswith('\r\n\r\n'), 'and none at the end')
        self.assertTrue(self.their_text(*KEYS[0]).endswith('\r\n\r\n'))


class Refused(BackupCase):
    """Where nothing can be written the start goes on, and the log says why there is no backup."""

    def assert_told_and_nothing_left(self):
        self.start()
        told = [entry for entry in self.entries() if entry.source == 'FMain.BackupRegistry']
        self.assertEqual([entry.level for entry in told], [4])
        self.assertNotEqual(told[0].code, 0)
        self.assertIn("Run: 'Gone', 'Not specified', 'C:\\nowhere\\gone.exe'", self.tab_state())
        self.assertEqual(self.program.visible_pages(), ['ucHelp1'])
        self.assertTrue(self.program.no_dialog())
        self.assertEqual([file.name for file in self.folder.iterdir() if file.suffix == '.reg' or '.tmp' in file.name.lower()], [])

    def setUp(self):
        super().setUp()
        self.add_run('Gone', 'C:\\nowhere\\gone.exe')

    def test_a_folder_that_takes_no_file(self):
        # An administrator may write into any folder of a disk, but into none of these.
        (self.folder / 'Backup').symlink_to('/proc/self/ns')
        self.assert_told_and_nothing_left()

    def test_a_file_in_the_place_of_the_folder(self):
        (self.folder / 'Backup').write_text('no folder')
        self.assert_told_and_nothing_left()
        self.assertEqual((self.folder / 'Backup').read_text(), 'no folder')

    def test_no_room_for_the_whole_file(self):
        """Which fails in the midst of the backup."""
        self.probe.set_value('HKLM', RUN, 'large', bytes(65536), 3)
        self.start_probe_with_little_room()
        self.assert_told_and_nothing_left()
        self.assertEqual(self.backups(), [])
