"""Libraries that somebody put in the way: what is loaded of them, and what is not."""
from harness import paths
from harness.case import Case, FOLDER

# What programs are known to take from the folders that are searched, and what Windows itself loads late.
LIBRARIES = ['version.dll', 'uxtheme.dll', 'dwmapi.dll', 'cryptbase.dll', 'apphelp.dll', 'profapi.dll', 'propsys.dll',
             'ntmarta.dll', 'netapi32.dll', 'secur32.dll', 'winmm.dll', 'msimg32.dll', 'riched20.dll', 'oleacc.dll',
             'wtsapi32.dll', 'samcli.dll', 'linkinfo.dll', 'userenv.dll', 'wininet.dll', 'msxml3.dll', 'zip.dll']
OWN = ['Helmkit.dll', 'QLNCustom.dll']


class Planting(Case):
    def plant(self, folder, names):
        for name in names:
            self.prefix.put(f'{folder}\\{name}', paths.built(self.architecture, 'planted', 'planted.dll'))

    def loaded(self):
        """The planted libraries that were loaded, by their paths."""
        log = self.prefix.path('C:\\planted.log')
        return log.read_text('utf-16-le').splitlines() if log.exists() else []

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
