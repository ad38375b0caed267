"""A machine that somebody prepared: what the program believes, and the way back from what it does."""
import re

from harness import readers
from harness.case import Case, FOLDER
from harness.program import CHECK_OK, EXCLAMATION_I
from harness.waiting import wait_for

WINLOGON = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon'
USERINIT = 'Userinit for MSGina.dll'
SHELL = 'OS shell particular to the computer (for any user)'


class Hostile(Case):
    def rows(self):
        return {row.name: (row.second, row.image) for row in self.program.rows('ucOther1')}

    def kept(self, begin):
        return [file for file in self.backups() if re.match(begin + ' [A-Z]', file.name)]

    def restore(self, description):
        self.program.select('ucOther1', description)
        self.program.press_button('ucOther1')
        self.answer(f'Are you sure you want to delete excess startups from {description}?', 'OK')
        self.answer('Startups are deleted successfully.', 'OK')

    def test_a_planted_windir_makes_nothing_genuine_and_nothing_changed(self):
        if self.family.name == 'win98':
            self.skipTest('Windows 98 has no variables of a user')
        genuine = f'C:\\windows\\{self.family.system_folder}\\userinit.exe,'
        self.probe.set_value('HKLM', WINLOGON, 'Userinit', genuine)
        # As a user's own variables are handed to every program that is started, an elevated one too.
        for name in ('windir', 'SystemRoot', 'ProgramFiles'):
            self.probe.ask('setenvironment', name, 'C:\\planted')
        self.start()
        self.assertEqual(self.rows()[USERINIT], (genuine, CHECK_OK))

    def test_a_place_that_was_set_back_comes_back_by_its_own_file(self):
        self.probe.set_value('HKLM', WINLOGON, 'Shell', 'evil "a" \\ b.exe')
        ini = self.prefix.write('C:\\windows\\win.ini', b'[windows]\r\nrun=C:\\m.exe\r\nload=\xe4\n')
        before = ini.read_bytes()
        self.start()
        self.assertEqual(self.rows()[SHELL], ('evil "a" \\ b.exe', EXCLAMATION_I))
        self.restore(SHELL)
        self.restore('Win.ini "run=" line')
        wait_for(lambda: 'Win.ini "run=" line' not in self.rows(), 'the refilled list')
        self.assertEqual(self.probe.text_values('HKLM', WINLOGON)['Shell'], 'Explorer.exe')
        kept, kept_ini = self.kept('Restored'), self.kept('win')
        self.assertEqual((len(kept), len(kept_ini)), (1, 1))
        self.assertEqual(kept_ini[0].read_bytes(), before)
        reader = readers.reg_import(self)
        self.addCleanup(reader.close)
        reader.run(f'{FOLDER}\\Backup\\{kept[0].name}')
        self.assertEqual(self.probe.text_values('HKLM', WINLOGON)['Shell'], 'evil "a" \\ b.exe')

    def test_no_room_for_an_ini_file_that_is_rewritten(self):
        """It stays as it was, nothing is claimed, and no part of a file is left."""
        before = b'[windows]\r\nrun=C:\\m.exe\r\n' + b'; 16 characters\r\n' * 7000
        ini = self.prefix.write('C:\\windows\\win.ini', before)
        self.start_probe_with_little_room()
        self.start()
        description = 'Win.ini "run=" line'
        self.program.select('ucOther1', description)
        self.program.press_button('ucOther1')
        self.answer(f'Are you sure you want to delete excess startups from {description}?', 'OK')
        told = wait_for(lambda: [entry for entry in self.entries() if entry.source == 'ucOther.cmdDelete_Click'][1:],
                        'the second of two lines')
        self.assertEqual([entry.level for entry in told], [4])
        self.assertTrue(self.program.no_dialog())
        self.assertEqual(ini.read_bytes(), before)
        self.assertEqual(self.kept('win'), [])
        left = [file.name for folder in (ini.parent, self.folder / 'Backup') for file in folder.iterdir()
                if file.name.lower().endswith('.tmp')]
        self.assertEqual(left, [])
