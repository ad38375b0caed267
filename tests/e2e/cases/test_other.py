"""The fixed set of other startup places: listed, and set back to what Windows expects."""
from harness.case import Case
from harness.probe import REG_MULTI_SZ
from harness.program import CHECK_OK, EXCLAMATION_I, QUESTION_IE
from harness.waiting import wait_for

WINLOGON = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon'
SESSION = 'SYSTEM\\CurrentControlSet\\Control\\Session Manager'
DESKTOP = 'Control Panel\\Desktop'
SHELL = 'OS shell particular to the computer (for any user)'


class Other(Case):
    def rows(self):
        return {row.name: (row.second, row.image) for row in self.program.rows('ucOther1')}

    def restore(self, description):
        self.program.select('ucOther1', description)
        self.program.press_button('ucOther1')
        self.answer(f'Are you sure you want to delete excess startups from {description}?', 'OK')
        self.answer('Startups are deleted successfully.', 'OK')

    def test_places_at_their_default_and_changed_ones(self):
        userinit = f'c:\\windows\\{self.family.system_folder}\\userinit.exe,'
        self.probe.set_value('HKLM', WINLOGON, 'Shell', 'Explorer.exe')
        self.probe.set_value('HKLM', WINLOGON, 'Userinit', userinit.upper() + 'C:\\evil.exe,')
        self.probe.set_value('HKLM', WINLOGON, 'VmApplet', 'rundll32 shell32,Control_RunDLL "sysdm.cpl"')
        self.probe.set_value('HKLM', SESSION, 'BootExecute', ['autocheck autochk *'], REG_MULTI_SZ)
        self.probe.set_value('HKCU', DESKTOP, 'SCRNSAVE.EXE', 'C:\\windows\\logon.scr')
        self.prefix.write('C:\\windows\\win.ini', b'[windows]\r\nload=\r\nrun = no\r\nrun=C:\\m.exe\r\n')
        self.prefix.write('C:\\windows\\system.ini', b'[boot]\r\nSHELL=Explorer.exe\r\n')
        self.start()
        self.assertEqual(self.rows(), {
            SHELL: ('Explorer.exe', CHECK_OK),
            'Userinit for MSGina.dll': (userinit.upper() + 'C:\\evil.exe,', EXCLAMATION_I),
            'Session Manager startup programs': ('autocheck autochk *', CHECK_OK),
            'Windows screen saver': ('C:\\windows\\logon.scr', QUESTION_IE),
            'Winlogon VmApplet': ('rundll32 shell32,Control_RunDLL "sysdm.cpl"', CHECK_OK),
            'Win.ini "run=" line': ('C:\\m.exe', EXCLAMATION_I),
            'System.ini "shell=" line': ('Explorer.exe', CHECK_OK)})

    def test_the_ini_file_is_rewritten(self):
        file = self.prefix.write('C:\\windows\\win.ini', b'[windows]\r\n  Run=C:\\m.exe\r\nrun=b\nload=c\r\n; \xe4\r\n')
        self.start()
        self.restore('Win.ini "run=" line')
        wait_for(lambda: 'Win.ini "run=" line' not in self.rows(), 'the refilled list')
        self.assertEqual(file.read_bytes(), b'[windows]\r\nrun=\r\nrun=\r\nload=c\r\n; \xe4\r\n')

    def test_cancel_changes_and_logs_nothing(self):
        self.probe.set_value('HKLM', WINLOGON, 'Shell', 'evil.exe')
        program = self.start()
        before = self.entries()
        program.select('ucOther1', SHELL)
        program.press_button('ucOther1')
        self.answer(f'Are you sure you want to delete excess startups from {SHELL}?', 'Cancel')
        self.assertEqual(self.probe.text_values('HKLM', WINLOGON)['Shell'], 'evil.exe')
        self.assertEqual(self.entries(), before)
