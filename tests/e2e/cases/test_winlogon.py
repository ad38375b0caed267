"""The Winlogon notification packages."""
from harness.case import Case
from harness.program import CHECK_OK, EXCLAMATION_I
from harness.waiting import wait_for

NOTIFY = 'Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify'


class Winlogon(Case):
    def add(self, package, library, *events):
        self.probe.set_value('HKLM', f'{NOTIFY}\\{package}', 'DLLName', library)
        for event in events:
            self.probe.set_value('HKLM', f'{NOTIFY}\\{package}', event, 'On' + event)

    def rows(self):
        return [(row.name, row.second, row.image) for row in self.program.rows('ucWinlogon1')]

    def test_packages_and_their_icons(self):
        self.add('a', self.install('wlnotify.dll', self.system + '\\wlnotify.dll'), 'Logon')
        self.add('b', self.install('wlnotify-foreign.dll', 'C:\\contoso\\wlnotify.dll'))
        self.add('c', self.install('navlogon.dll', 'C:\\windows\\NavLogon.dll'), 'Logon', 'Logoff')
        self.add('d', '')
        self.add('e', 'C:\\nowhere\\x.dll')
        self.start()
        self.assertEqual(self.rows(), [
            ('Common DLL to receive Winlogon notifications', 'Microsoft Corporation', CHECK_OK),
            ('Common DLL to receive Winlogon notifications', 'Contoso Ltd.', EXCLAMATION_I),
            ('Symantec AntiVirus NAVLOGON', 'Symantec Corporation', EXCLAMATION_I),
            ('Not specified', 'Not specified', EXCLAMATION_I),
            ('C:\\nowhere\\x.dll', 'Not specified', EXCLAMATION_I)])

    def test_a_bare_name_is_looked_up_first(self):
        if not self.family.is_nt:
            self.skipTest('Wine looks in system32 even when it plays the older family')
        self.install('sclgntfy.dll', self.system + '\\sclgntfy.dll')
        self.add('sclgntfy', 'sclgntfy.dll')
        self.start()
        self.assertEqual(self.rows(), [('Secondary Logon Service Notification DLL', 'Microsoft Corporation', CHECK_OK)])

    def test_a_protected_package_is_refused(self):
        self.add('a', self.install('wzcdlg.dll', self.system + '\\wzcdlg.dll'))
        program = self.start()
        program.press_button('ucWinlogon1')
        self.answer("Unwilling to perform. Deleting the 'Wireless Zero Configuration Service UI' will cause serious "
                    'problems that will require you to reinstall your operating system.', 'OK')
        self.assertEqual(self.probe.keys('HKLM', NOTIFY), ['a'])
        self.assertEqual([text for text in self.log_texts() if text.startswith('Deleting')], [])

    def test_deleting_removes_the_whole_key(self):
        library = self.install('navlogon.dll', 'C:\\windows\\NavLogon.dll')
        self.add('NavLogon', library, 'Logon', 'Logoff')
        self.add('NavLogon\\Settings\\User', 'C:\\nowhere\\deeper.dll')
        self.add('other', 'C:\\nowhere\\x.dll')
        program = self.start()
        program.select('ucWinlogon1', 'Symantec AntiVirus NAVLOGON')
        program.press_button('ucWinlogon1')
        self.answer("Are you sure you want to delete 'Symantec AntiVirus NAVLOGON' from startup?", 'OK')
        self.answer("'Symantec AntiVirus NAVLOGON' is deleted from startup successfully. ", 'OK')
        wait_for(lambda: len(self.rows()) == 1, 'the refilled list')
        self.assertEqual(self.probe.keys('HKLM', NOTIFY), ['other'])
        self.assertEqual(self.entries()[-1],
                         (5, '', 0, f"Deleting Winlogon('NavLogon', 'Symantec AntiVirus NAVLOGON', '{library}')"))

    def test_a_registry_that_refuses(self):
        self.add('kept', 'C:\\nowhere\\kept.dll', 'Logon')
        program = self.start()
        self.probe.ask('regprotect', 'HKLM', f'{NOTIFY}\\kept')
        program.press_button('ucWinlogon1')
        self.answer("Are you sure you want to delete 'C:\\nowhere\\kept.dll' from startup?", 'OK')
        self.answer('Access denied. You must be logged in as an administrator when disabling this startup program. ',
                    'OK')
        self.settle()
        self.assertEqual(len(self.rows()), 1)
        self.assertEqual(self.probe.text_values('HKLM', f'{NOTIFY}\\kept'),
                         {'DLLName': 'C:\\nowhere\\kept.dll', 'Logon': 'OnLogon'})
        self.assertEqual(self.entries()[-1],
                         (5, '', 0, "Deleting Winlogon('kept', 'C:\\nowhere\\kept.dll', 'C:\\nowhere\\kept.dll')"))
