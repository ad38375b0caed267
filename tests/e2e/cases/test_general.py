"""The general startup programs: what is listed, what is protected."""
from harness.case import Case, RUN
from harness.program import CHECK_OK, QUESTION_IE, Row

ROOT = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\'
POLICY = ROOT + 'policies\\Explorer\\Run'


class Listing(Case):
    def listed(self):
        return [(row.name, row.second, row.image) for row in self.program.rows('ucRun1')]

    def test_names_makers_and_files(self):
        steam = self.install('steam.exe', 'C:\\Program Files\\Steam\\steam.exe')
        library = self.install('nvcpl.dll', 'C:\\windows\\NvCpl.dll')
        plain = self.install('winvnc.exe', 'C:\\Program Files\\TightVNC\\WinVNC.exe')
        unknown = self.install('blankmaker.exe', 'C:\\lucerne.exe')
        self.add_run('a', f'"{steam}" -silent')
        self.add_run('b', f'RUNDLL32.EXE {library},NvStartup')
        self.add_run('c', f'"{plain}" -servicehelper')
        self.add_run('d', 'C:\\nowhere\\gone.exe -x')
        self.add_run('e', unknown)
        self.add_run('f', '')
        program = self.start()
        self.assertEqual(self.listed(), [
            ('Steam', 'Valve Corporation', QUESTION_IE),
            ('NVIDIA Display Properties Extension', 'NVIDIA Corporation', QUESTION_IE),
            ('c', 'Not specified', QUESTION_IE),
            ('d', 'Not specified', QUESTION_IE),
            ('Lucerne Publisher', 'Not specified', QUESTION_IE),
            ('f', 'Not specified', QUESTION_IE)])
        self.assertTrue(program.rows('ucRun1')[0].selected)
        self.assertEqual(program.file_box('ucRun1'), steam)
        for name, file in [('NVIDIA Display Properties Extension', library), ('c', plain),
                           ('d', 'C:\\nowhere\\gone.exe'), ('f', 'Startup program is improperly configured')]:
            program.select('ucRun1', name)
            self.assertEqual(program.file_box('ucRun1'), file)

    def test_version_resources_with_odd_translations(self):
        """No Translation, and one that names another table than there is: the strings are shown all the same."""
        self.add_run('a', self.install('soundman.exe', 'C:\\windows\\soundman.exe'))
        self.add_run('b', self.install('jusched.exe', 'C:\\jusched.exe'))
        self.start()
        self.assertEqual(self.listed(), [
            ('Realtek Sound Manager', 'Realtek Semiconductor Corp.', QUESTION_IE),
            ('Java(TM) Update Scheduler', 'Sun Microsystems, Inc.', QUESTION_IE)])

    def test_the_eleven_places_in_their_order(self):
        places = [('HKLM', RUN), ('HKCU', RUN), ('HKLM', ROOT + 'RunServices'), ('HKCU', ROOT + 'RunServices'),
                  ('HKLM', ROOT + 'RunOnce'), ('HKCU', ROOT + 'RunOnce'), ('HKLM', ROOT + 'RunOnce\\Setup'),
                  ('HKLM', ROOT + 'RunServicesOnce'), ('HKCU', ROOT + 'RunServicesOnce'), ('HKLM', POLICY),
                  ('HKCU', POLICY)]
        for number, (hive, key) in enumerate(places, 1):
            self.add_run(f'entry {number}', f'C:\\nowhere\\{number}.exe', hive, key)
        # The only place of the family that is read under one hive alone.
        self.add_run('not listed', 'C:\\nowhere\\x.exe', 'HKCU', ROOT + 'RunOnce\\Setup')
        self.start()
        ordinary = [f'entry {number}' for number in range(1, 10)]
        self.assertEqual([name for name, _, _ in self.listed()],
                         ordinary + ['C:\\nowhere\\10.exe', 'C:\\nowhere\\11.exe'])

    def test_names_of_policy_entries(self):
        for number, fixture in enumerate(['productdesc.exe', 'productonly.exe', 'companyonly.exe'], 1):
            self.add_run(str(number), self.install(fixture, f'C:\\{fixture}') + ' -t', 'HKCU', POLICY)
        self.add_run('4', '', 'HKCU', POLICY)
        program = self.start()
        self.assertEqual(self.listed(), [
            ('Sales reminder of Adventure Works', 'Adventure Works', QUESTION_IE),
            ('', 'Tailspin Toys', QUESTION_IE),
            ('C:\\companyonly.exe -t', 'Wingtip', QUESTION_IE),
            ('Not specified', 'Not specified', QUESTION_IE)])
        program.select('ucRun1', 'Not specified')
        self.assertEqual(program.file_box('ucRun1'), 'Startup program is improperly configured')

    def test_letters_outside_ascii(self):
        waechter = self.install('waechter.exe', 'C:\\Program Files\\Größe & Co\\wächter.exe')
        self.add_run('Überwachung', f'"{waechter}" -min')
        self.add_run('Überzug', 'C:\\nirgends\\öffner.exe')
        expected = [('Überwachungsdienst für Geräte', 'Größe & Co GmbH', QUESTION_IE),
                    ('Überzug', 'Not specified', QUESTION_IE)]
        # What the code page of the older family cannot say is not tried there.
        if self.family.is_nt:
            scan = self.install('scan.exe', 'C:\\Program Files\\Сканер документов\\scan.exe')
            self.add_run('Сканер', f'"{scan}" /tray')
            expected.append(('Сканер документов', 'ООО «Ромашка»', QUESTION_IE))
        program = self.start()
        self.assertEqual(self.listed(), expected)
        self.assertEqual(program.file_box('ucRun1'), waechter)
        self.assertIn(f"Run: 'Überwachungsdienst für Geräte', 'Größe & Co GmbH', '{waechter}'", self.log_texts())


class Protected(Case):
    def test_programs_that_windows_needs(self):
        """Each family has programs of its own; the others' are ordinary there."""
        both = [('ctfmon.exe', self.system + '\\ctfmon.exe'), ('msmsgs.exe', 'C:\\Program Files\\Messenger\\msmsgs.exe')]
        nt = [('internat.exe', self.system + '\\internat.exe')]
        older = [('scanregw.exe', 'C:\\windows\\scanregw.exe'), ('systray.exe', self.system + '\\systray.exe'),
                 ('taskmon.exe', 'C:\\windows\\taskmon.exe'), ('mstask.exe', self.system + '\\mstask.exe'),
                 ('powrprof.dll', self.system + '\\powrprof.dll')]
        for fixture, path in both + nt + older:
            command = self.install(fixture, path)
            self.add_run(path, f'rundll32.exe {command},x' if fixture.endswith('.dll') else f'"{command}"')
        program = self.start()
        protected = [path for _, path in both + (nt if self.family.is_nt else older)]
        rows = program.rows('ucRun1')
        self.assertEqual([row.second for row in rows], ['Microsoft Corporation'] * len(both + nt + older))
        found = []
        for row in rows:
            program.select('ucRun1', row.name)
            if row.image == CHECK_OK:
                found.append(program.file_box('ucRun1'))
        self.assertEqual(sorted(found), sorted(protected))

    def test_only_that_file_by_that_maker(self):
        self.add_run('1', self.install('ctfmon-foreign.exe', self.system + '\\ctfmon.exe'))
        self.add_run('2', self.install('ctfmon.exe', 'C:\\temp\\ctfmon.exe'))
        self.start()
        self.assertEqual([(row.name, row.second, row.image) for row in self.program.rows('ucRun1')], [
            ('CTF Loader', 'Contoso Ltd.', QUESTION_IE),
            ('CTF Loader', 'Microsoft Corporation', QUESTION_IE)])

    def test_environment_references_are_followed(self):
        self.install('ctfmon.exe', self.system + '\\CTFMON.EXE')
        self.add_run('ctfmon', f'%SystemRoot%\\{self.family.system_folder}\\ctfmon.exe', expand=True)
        program = self.start()
        self.assertEqual(program.rows('ucRun1'), [Row('CTF Loader', 'Microsoft Corporation', CHECK_OK, True)])

    def test_a_protected_row_is_refused(self):
        self.add_run('ctfmon.exe', self.install('ctfmon.exe', self.system + '\\ctfmon.exe'))
        program = self.start()
        before = self.entries()
        program.select('ucRun1', 'CTF Loader')
        program.press_button('ucRun1')
        self.answer("Unwilling to perform. Deleting the 'CTF Loader' may cause serious problems that may require "
                    'you to reinstall your operating system.', 'OK')
        self.assertEqual(list(self.probe.values('HKLM', RUN)), ['ctfmon.exe'])
        self.assertEqual(len(program.rows('ucRun1')), 1)
        self.assertEqual(self.entries(), before)
