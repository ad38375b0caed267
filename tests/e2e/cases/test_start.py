"""What happens before the user does anything: logs, backup, pages."""
import re

from harness.case import Case, RUN
from harness.program import FOOTER


class Start(Case):
    def test_first_lines_of_the_log(self):
        self.start()
        lines = self.entries()[:3]
        self.assertEqual([entry[:3] for entry in lines], [(5, 'FMain.Form_Initialize', 0)] * 3)
        self.assertEqual(lines[0].text, '********** start app')
        self.assertRegex(lines[1].text, r'^Quillon ver\.2\.1\.\d+$')
        self.assertRegex(lines[2].text, r'^Startup: \S+ \S+')

    def test_every_row_is_logged_in_the_order_of_the_pages(self):
        notify = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify\\'
        self.add_run('Gone', 'C:\\nowhere\\gone.exe')
        self.add_run('Nothing', '', hive='HKCU')
        self.probe.set_value('HKLM', notify + 'leftover', 'DLLName', '')
        self.probe.set_value('HKLM', 'SYSTEM\\CurrentControlSet\\Services\\Zulu', 'ImagePath', 'C:\\nowhere\\z.sys')
        self.start()
        texts = self.tab_state()
        self.assertEqual(texts[:3], ["Run: 'Gone', 'Not specified', 'C:\\nowhere\\gone.exe'",
                                     "Run: 'Nothing', 'Not specified', ''",
                                     "Winlogon: 'Not specified', 'Not specified', ''"])
        self.assertEqual(texts[-1], "Services: 'C:\\nowhere\\z.sys', 'Not specified', 'C:\\nowhere\\z.sys'")
        kinds = [text.split(':')[0] for text in texts]
        self.assertEqual(kinds, sorted(kinds, key=['Run', 'Winlogon', 'Other', 'Services'].index))
        self.assertIn("Other: 'OS shell particular to the computer (for any user)', 'explorer.exe'", texts)

    def test_a_backup_is_written(self):
        self.add_run('Steam', '"C:\\Program Files\\Steam\\steam.exe" -silent')
        self.start()
        [backup] = self.backups()
        self.assertRegex(backup.name, r'^Backup [A-Z][a-z]{2} \d{2}, \d{4} \d{2}-\d{2}-\d{2}\.reg$')
        data = backup.read_bytes()
        if self.family.is_nt:
            self.assertEqual(data[:4].hex(), 'fffe5700')
            text = data[2:].decode('utf-16-le')
            self.assertTrue(text.startswith('Windows Registry Editor Version 5.00\r\n'))
        else:
            self.assertEqual(data[:10], b'REGEDIT4\r\n')
            text = data.decode('cp1252')
        self.assertNotIn('\n', text.replace('\r\n', ''))
        section = re.search(r'\[HKEY_LOCAL_MACHINE\\' + RUN.replace('\\', r'\\') + r'\]\r\n(.*?)\r\n(\r\n|$)', text, re.S)
        self.assertIsNotNone(section, text)
        self.assertIn(r'"Steam"="\"C:\\Program Files\\Steam\\steam.exe\" -silent"', section[1])

    def test_the_window_opens_on_the_help_page(self):
        program = self.start()
        self.assertEqual(program.main['text'], 'Quillon')
        self.assertEqual(program.visible_pages(), ['ucHelp1'])
        self.assertEqual(program.selected_tab(), 0)
        footer = next(child for child in program.children() if child['id'] == FOOTER)
        self.assertTrue(footer['text'].startswith('The latest version of Quillon is always available at http'), footer)

    def test_the_program_ends_with_its_window(self):
        program = self.start()
        program.close()
        self.assertFalse(program.running())

    def test_it_opens_where_nothing_can_be_written(self):
        """The names of its files are taken by what cannot be replaced, which stops an administrator too."""
        (self.folder / 'QLN.log').mkdir()
        (self.folder / 'short.log').mkdir()
        (self.folder / 'Backup').write_text('')
        self.folder.chmod(0o555)
        self.addCleanup(self.folder.chmod, 0o755)
        self.add_run('Gone', 'C:\\nowhere\\gone.exe')
        program = self.start()
        self.assertEqual([row.name for row in program.rows('ucRun1')], ['Gone'])
        self.settle()
        self.assertTrue(program.no_dialog())
