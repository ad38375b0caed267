"""From the setup program to the last file that goes."""
import os
import stat
import unittest

from harness import paths
from harness.program import Program
from installation import FOLDER, Installation, SHORTCUT, WINDOWS, wait_for

NAME = os.environ['QUILLON_WINDOWS']
KIND = WINDOWS[NAME]
RUN = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run'
MINE = ['QLN.log', 'short.log', 'Backup']


class Installing(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.installation = Installation(NAME, NAME)
        self.addCleanup(self.installation.remove)
        self.prefix = self.installation.prefix
        self.folder = self.prefix.path(FOLDER)

    def install(self, arguments='/S'):
        self.assertEqual(self.installation.run(self.installation.setup, arguments), 0)
        self.folder = self.prefix.path(FOLDER)

    def start_program(self, folder=FOLDER):
        return Program(self.installation.probe, folder + '\\Quillon.exe', self.prefix.environment).wait_for_window()

    def assert_installed(self, folder=FOLDER):
        built = paths.TOP / 'dist' / KIND.architecture
        here = self.prefix.path(folder)
        for file in built.iterdir():
            self.assertEqual((here / file.name).read_bytes(), file.read_bytes(), file.name)
        self.assertEqual(self.installation.description().get('InstallLocation'), folder)
        self.assertTrue(self.prefix.path(SHORTCUT).exists() or not KIND.is_nt and self.shortcuts())
        self.assertEqual(self.installation.class_is_registered(), KIND.registers)

    def shortcuts(self):
        return list((self.prefix.folder / 'drive_c').rglob('Quillon.lnk'))

    def assert_works(self):
        """Lists, backs up, deletes; the backup of the start brings the entry back."""
        probe = self.installation.probe
        probe.set_value('HKLM', RUN, 'Gone', 'C:\\nowhere\\gone.exe')
        program = self.start_program()
        program.select('ucRun1', 'Gone')
        program.press_button('ucRun1')
        program.dialog().press('OK')
        program.dialog().press('OK')
        wait_for(lambda: 'Gone' not in probe.values('HKLM', RUN), 'the value to go')
        program.close()
        backup, = (self.folder / 'Backup').glob('Backup *.reg')
        self.installation.run('C:\\windows\\regedit.exe', f'/S "{FOLDER}\\Backup\\{backup.name}"')
        self.assertEqual(probe.text_values('HKLM', RUN)['Gone'], 'C:\\nowhere\\gone.exe')
        probe.ask('regdelete', 'HKLM', RUN, 'Gone')

    def snapshot(self):
        self.installation.sleep()
        seen = self.installation.registry(), self.installation.files()
        self.installation.wake()
        return seen

    def assert_gone(self, before, kept):
        registry, files = self.snapshot()
        self.assertEqual(before[0].keys() ^ registry.keys(), set())
        self.assertEqual({key: (before[0][key], registry[key]) for key in registry if before[0][key] != registry[key]}, {})
        # The uninstaller's copy of itself goes when Windows starts again.
        left = {file for file in files - before[1] if '/~nsu' not in file}
        top = str(self.folder.relative_to(self.prefix.folder / 'drive_c'))
        expected = {top, *(f'{top}/{name}' for name in kept)} if kept else set()
        self.assertEqual({file for file in left if '/Backup/' not in file}, expected)
        self.assertEqual(before[1] - files, set())

    def test_silently(self):
        before = self.snapshot()
        self.install()
        self.assert_installed()
        self.assert_works()
        self.installation.uninstall_silently()
        wait_for(lambda: not (self.folder / 'Quillon.exe').exists(), 'the program to go')
        self.assertFalse(self.installation.class_is_registered())
        self.assert_gone(before, MINE)
        self.assertEqual(len(list((self.folder / 'Backup').iterdir())), 1)

    def test_through_the_pages(self):
        """The licence, the end; uninstalling, with everything: nothing is left."""
        before = self.snapshot()
        setup = self.installation.start(self.installation.setup)
        self.installation.press('Quillon Setup: License Agreement', 'a')
        self.installation.press('Quillon Setup: Completed', 'c')
        self.assertEqual(self.installation.code_of(setup), 0)
        self.folder = self.prefix.path(FOLDER)
        self.assert_installed()
        self.start_program().close()
        self.installation.start(FOLDER + '\\Uninstall.exe')
        self.installation.press('Quillon Uninstall: Confirmation', 'u')
        self.installation.press('Quillon Uninstall$', 'y')
        self.installation.press('Quillon Uninstall: Completed', 'c')
        wait_for(lambda: not self.folder.exists(), 'the folder to go')
        self.assert_gone(before, [])

    def test_over_a_running_copy(self):
        self.install()
        program = self.start_program()
        log = (self.folder / 'QLN.log').read_bytes()
        if KIND.is_nt:
            self.install()
        self.assertTrue(program.running())
        program.close()
        self.install()
        self.assert_installed()
        self.assertTrue((self.folder / 'QLN.log').read_bytes().startswith(log[:100]))
        self.assertTrue(list((self.folder / 'Backup').iterdir()))
        self.assertEqual(list(self.folder.glob('ns*.tmp')), [])

    @unittest.skipUnless(KIND.is_nt, 'files have no owners there')
    def test_a_folder_of_the_command_line(self):
        self.install('/S /D=C:\\Tools\\Quillon')
        self.assert_installed('C:\\Tools\\Quillon')
        # Wine shows rights as those of Unix: the administrators' as the group's, and nothing inherited for others to write.
        mode = stat.S_IMODE(self.prefix.path('C:\\Tools\\Quillon').stat().st_mode)
        self.assertEqual((mode & 0o022, stat.S_IMODE(self.prefix.path('C:\\Tools').stat().st_mode) & 0o022), (0o020, 0))
        self.assertEqual(self.installation.run(self.installation.setup, '/S /D=C:\\Other'), 2)
        self.assertFalse(self.prefix.path('C:\\Other').exists())
        self.installation.uninstall_silently('C:\\Tools\\Quillon')
        wait_for(lambda: not self.prefix.path('C:\\Tools\\Quillon').exists(), 'the folder to go')

    def test_a_filled_folder_is_refused(self):
        planted = self.prefix.write('C:\\Tools\\version.dll', b'planted')
        self.assertEqual(self.installation.run(self.installation.setup, '/S /D=C:\\Tools'), 2)
        self.assertEqual([file.name for file in planted.parent.iterdir()], ['version.dll'])
        self.assertEqual(self.installation.description(), {})


if __name__ == '__main__':
    unittest.main()
