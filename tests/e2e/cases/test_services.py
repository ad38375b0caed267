"""Services and drivers: listed and shown, never deleted."""
from harness.case import Case
from harness.program import QUESTION_IE

SERVICES = 'SYSTEM\\CurrentControlSet\\Services'


class Services(Case):
    def add(self, name, image, display=None):
        self.probe.set_value('HKLM', f'{SERVICES}\\{name}', 'ImagePath', image)
        if display:
            self.probe.set_value('HKLM', f'{SERVICES}\\{name}', 'DisplayName', display)

    def rows(self):
        return {row.name: (row.second, row.image) for row in self.program.rows('ucServices1')}

    def test_known_good_ones_are_skipped(self):
        self.add('Q1', 'system32\\DRIVERS\\cdrom.sys', 'Q standard driver')
        self.add('Q2', '\\SystemRoot\\System32\\drivers\\AFD.SYS', 'Q standard driver too')
        self.add('Q3', '%SystemRoot%\\System32\\svchost.exe -k netsvcs', 'Q standard service')
        self.add('Q4', '%SystemRoot%\\System32\\svchost.exe -k netsvcs ', 'Q trailing blank')
        self.add('Q5', 'C:\\WINDOWS\\System32\\drivers\\afd.sys', 'Q other spelling')
        self.add('Q6', '', 'Q without program')
        self.start()
        self.assertEqual([name for name in self.rows() if name.startswith('Q ')], ['Q trailing blank', 'Q other spelling'])

    def test_names_makers_and_files(self):
        shield = self.install('mcshield.exe', 'C:\\Program Files\\McAfee\\Mcshield.exe')
        driver = self.install('mfehidk.sys', 'C:\\windows\\system32\\drivers\\mfehidk.sys')
        self.add('Q1', f'"{shield}" /start', 'Q McShield')
        self.add('Q2', '\\SystemRoot\\system32\\drivers\\mfehidk.sys')
        self.add('Q3', 'C:\\nowhere\\q.sys')
        program = self.start()
        rows = self.rows()
        self.assertEqual(rows['Q McShield'], ('McAfee, Inc.', QUESTION_IE))
        self.assertEqual(rows['Host Intrusion Detection Link Driver'], ('McAfee, Inc.', QUESTION_IE))
        self.assertEqual(rows['C:\\nowhere\\q.sys'], ('Not specified', QUESTION_IE))
        program.select('ucServices1', 'Q McShield')
        self.assertEqual(program.file_box('ucServices1'), shield)
        program.select('ucServices1', 'Host Intrusion Detection Link Driver')
        self.assertEqual(program.file_box('ucServices1'), driver)

    def test_the_button_deletes_nothing(self):
        self.add('Q1', 'C:\\nowhere\\q.sys', 'Q driver')
        program = self.start()
        program.select('ucServices1', 'Q driver')
        program.press_button('ucServices1')
        self.answer("File 'C:\\nowhere\\q.sys' not found. ", 'OK')
        self.assertIn('Q1', self.probe.keys('HKLM', SERVICES))
        self.assertIn('Q driver', self.rows())

    def test_properties_change_nothing(self):
        """Wine shows no sheet for a file, so nothing of the sheet is asserted."""
        shield = self.install('mcshield.exe', 'C:\\Program Files\\McAfee\\Mcshield.exe')
        self.add('Q1', f'"{shield}" /start', 'Q McShield')
        program = self.start()
        rows, logged, keys = self.rows(), self.entries(), self.probe.keys('HKLM', SERVICES)
        program.select('ucServices1', 'Q McShield')
        program.press_button('ucServices1')
        self.settle()
        self.assertEqual(self.probe.keys('HKLM', SERVICES), keys)
        self.assertEqual(self.probe.text_values('HKLM', f'{SERVICES}\\Q1'),
                         {'ImagePath': f'"{shield}" /start', 'DisplayName': 'Q McShield'})
        self.assertEqual((self.rows(), self.entries()), (rows, logged))
