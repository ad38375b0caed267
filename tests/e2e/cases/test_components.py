"""The two component libraries: missing, or replaced by somebody's own."""
from harness import paths
from harness.case import Case


class Components(Case):
    def message(self, name):
        return (f"Component '{name}' or one of its dependencies not correctly registered: a file is missing or "
                'invalid. Try to reinstall Quillon.')

    def assert_ends_with_message(self, name):
        self.launch()
        self.answer(self.message(name), 'OK')
        self.program.wait_for_end()
        self.assertEqual(self.backups(), [])

    def test_without_helmkit(self):
        (self.folder / 'Helmkit.dll').unlink()
        self.assert_ends_with_message('Helmkit.dll')

    def test_without_the_plug_in(self):
        (self.folder / 'QLNCustom.dll').unlink()
        self.assert_ends_with_message('QLNCustom.dll')
        entries = self.entries()
        self.assertEqual([entry.text.split(' ver.')[0].split(': ')[0] for entry in entries[:3]],
                         ['********** start app', 'Quillon', 'Startup'])
        self.assertEqual(entries[3], (4, 'FMain.Form_Initialize', 0, self.message('QLNCustom.dll')))

    def test_a_library_that_is_none(self):
        (self.folder / 'QLNCustom.dll').write_bytes(b'no library')
        self.assert_ends_with_message('QLNCustom.dll')

    def test_a_plug_in_that_replaces_the_logger(self):
        self.prefix.put('C:\\Quillon\\QLNCustom.dll', paths.built(self.architecture, 'replacing_plugin', 'QLNCustom.dll'))
        self.add_run('Gone', 'C:\\nowhere\\gone.exe')
        self.start()
        self.assertEqual(len(self.entries()), 3, self.log_texts())
        replaced = (self.folder / 'replaced.log').read_text(encoding='utf-8')
        # Before anything else is logged, while its logger goes on.
        self.assertEqual(replaced.splitlines()[0], '5||0|plug-in released')
        self.assertIn("Run: 'Gone', 'Not specified', 'C:\\nowhere\\gone.exe'", replaced)
        self.assertNotIn('start app', replaced)

    def test_the_plug_in_runs_before_the_check(self):
        """So the message of a library that is gone goes where the plug-in's logger writes."""
        self.prefix.put('C:\\Quillon\\QLNCustom.dll', paths.built(self.architecture, 'replacing_plugin', 'QLNCustom.dll'))
        (self.folder / 'Helmkit.dll').unlink()
        self.assert_ends_with_message('Helmkit.dll')
        replaced = (self.folder / 'replaced.log').read_text(encoding='utf-8')
        self.assertIn(self.message('Helmkit.dll'), replaced)
        self.assertFalse((self.folder / 'QLN.log').exists())

    def test_a_plug_in_that_fails(self):
        """The start goes on, with one line of level 0 at the end of the first procedure."""
        self.prefix.put('C:\\Quillon\\QLNCustom.dll', paths.built(self.architecture, 'failing_plugin', 'QLNCustom.dll'))
        program = self.start()
        self.assertEqual(program.main['text'], 'Quillon')
        abort = 0x80004004 - (1 << 32)
        self.assertEqual(self.entries()[3], (0, 'FMain.Form_Initialize', abort, 'The plug-in will not start'))
        self.assertEqual([entry.level for entry in self.entries()].count(0), 1)
        self.assertEqual(self.entries('short.log'), self.entries()[3:4])

    def test_the_example_plug_in(self):
        """What went wrong is logged, what was found is not; the plug-in leaves the logs themselves as they are."""
        self.prefix.put('C:\\Quillon\\QLNCustom.dll', paths.built(self.architecture, 'example_plugin', 'QLNCustom.dll'))
        self.add_run('Gone', 'C:\\nowhere\\gone.exe')
        (self.folder / 'Backup').write_text('no folder, so that the backup fails')
        self.start()
        entries = self.entries()
        self.assertEqual([entry.level for entry in entries[:3]], [5, 5, 5])
        self.assertEqual({entry.level for entry in entries[3:]}, {4}, self.log_texts())
        self.assertTrue(self.program.rows('ucRun1'))
