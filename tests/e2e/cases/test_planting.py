"""Libraries that somebody put in the way: what is loaded of them, and what is not."""
from harness import paths
from harness.case import Case, FOLDER

# What programs are known to take from the folders that are searched, and what Windows itself loads late.
LIBRARIES = ['version.dll', 'uxtheme.dll', 'dwmapi.dll', 'cryptbase.dll', 'apphelp.dll', 'profapi.dll', 'propsys.dll',
             'ntmarta.dll', 'netapi32.dll', 'secur32.dll', 'winmm.dll', 'msimg32.dll', 'riched20.dll', 'oleacc.dll',
             'wtsapi32.dll', 'samcli.dll', 'linkinfo.dll', 'userenv.dll', 'wininet.dll', 'msxml3.dll', 'zip.dll']
OWN = ['Helmkit.dll', 'QLNCustom.dll']
CLASSES = {'Helmkit.LogWriter': '{b1f6d71a-7cc1-491b-aef8-8621a654405c}',
           'Helmkit.RegistryAccess': '{18e364d1-5735-40b2-b03d-36954d91c129}',
           'Helmkit.FileServices': '{62385d53-39ec-4c22-9180-72abac1251ab}',
           'Helmkit.SystemServices': '{721f7504-fc7d-401f-be2f-4dd7ebb1383a}',
           'Helmkit.KeyedList': '{5513fa30-2347-4036-b962-2ba93404b801}',
           'Helmkit.RecordList': '{97b596ac-7068-4590-974a-f26b40a103fb}',
           'Helmkit.Record': '{976a3a90-187d-4ca8-8b32-292c09312882}',
           'QLNCustom.CCustom2': '{cbd90841-4e3e-4e1e-919c-3ac889dd6e8e}'}


class Planting(Case):
    def plant(self, folder, names):
        for name in names:
            self.prefix.put(f'{folder}\\{name}', paths.built(self.architecture, 'planted', 'planted.dll'))

    def loaded(self):
        """The planted libraries that were loaded, by their paths."""
        log = self.prefix.path('C:\\planted.log')
        return log.read_text('utf-16-le').splitlines() if log.exists() else []

    def register_planted(self, hive):
        """For the user, as malware without rights does it; for the computer, as an older copy stands there."""
        path = 'C:\\planted\\planted.dll'
        self.plant('C:\\planted', ['planted.dll'])
        for prog_id, clsid in CLASSES.items():
            self.probe.set_value(hive, f'Software\\Classes\\{prog_id}\\CLSID', '', clsid)
            self.probe.set_value(hive, f'Software\\Classes\\CLSID\\{clsid}\\InprocServer32', '', path)
            self.probe.set_value(hive, f'Software\\Classes\\CLSID\\{clsid}\\InprocServer32', 'ThreadingModel', 'Apartment')

    def use_it(self, *current_folder):
        """A whole run, with a version resource, a backup and lists."""
        self.add_run('Fixture', self.install('awhost32.exe', 'C:\\Program Files\\Fixture\\fixture.exe'))
        self.start(*current_folder)
        self.assertTrue(self.program.rows('ucRun1'))
        self.program.close()

    def test_the_planted_library_tells_that_it_was_loaded(self):
        """Else the others would prove nothing."""
        self.plant(FOLDER, ['QLNCustom.dll'])
        self.launch()
        self.program.dialog().press('OK')
        self.program.wait_for_end()
        self.assertIn(f'{FOLDER}\\QLNCustom.dll', self.loaded())

    def test_the_current_folder(self):
        self.plant('C:\\here', LIBRARIES + OWN)
        self.use_it('C:\\here')
        self.assertEqual(self.loaded(), [])

    def test_the_folders_of_path(self):
        self.plant('C:\\onpath', LIBRARIES + OWN)
        before = self.probe.ask('environment', 'PATH')['text']
        self.probe.ask('setenvironment', 'PATH', 'C:\\onpath;' + before)
        self.use_it()
        self.assertEqual(self.loaded(), [])

    def test_the_folder_of_the_program(self):
        self.plant(FOLDER, LIBRARIES)
        self.use_it()
        self.assertEqual(self.loaded(), [])

    def test_classes_registered_for_the_user_or_the_computer(self):
        """The manifest goes before the registry."""
        for hive in ('HKCU', 'HKLM'):
            self.register_planted(hive)
        self.use_it()
        self.assertEqual(self.loaded(), [])

    def test_classes_registered_beside_a_missing_library(self):
        """The manifest names the library, and nothing takes its place."""
        for hive in ('HKCU', 'HKLM'):
            self.register_planted(hive)
        for name in OWN:
            kept = self.folder / name
            moved = kept.rename(kept.with_suffix('.away'))
            self.launch()
            self.program.dialog().press('OK')
            self.program.wait_for_end()
            self.assertEqual(self.loaded(), [])
            moved.rename(kept)
