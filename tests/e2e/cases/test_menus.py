"""The main menu, by its access keys."""
from harness.case import Case
from harness.waiting import wait_for


class Menus(Case):
    def test_refresh(self):
        program = self.start()
        self.add_run('New', 'C:\\nowhere\\new.exe')
        self.program.choose('f', 'r')
        wait_for(lambda: [row.name for row in program.rows('ucRun1')] == ['New'], 'the refreshed list')

    def test_exit(self):
        self.start()
        self.program.choose('f', 'e')
        self.assertEqual(self.program.wait_for_end(), 0)

    def test_backup(self):
        self.start()
        for file in self.backups():
            file.unlink()
        self.program.choose('t', 'b')
        self.answer('Backup complete successfully.', 'OK')
        self.assertEqual(len(self.backups()), 1)

    def test_backup_tells_success_even_when_it_failed(self):
        (self.folder / 'Backup').write_text('no folder')
        self.start()
        self.program.choose('t', 'b')
        self.answer('Backup complete successfully.', 'OK')
        failures = [entry for entry in self.entries() if entry.source == 'FMain.BackupRegistry']
        self.assertEqual([entry.level for entry in failures], [4, 4])

    def test_a_companion_tool_that_is_not_there(self):
        self.start()
        self.program.choose('t', 'm', 'c')
        self.answer('Corvana is not installed on your computer.', 'OK')
        self.answer('Do you want to download Corvana from Mardelix web site?', 'Cancel')

    def test_a_companion_tool_whose_program_is_gone(self):
        self.probe.set_value('HKLM', 'SOFTWARE\\Mardelix\\Teselin', 'InstallPath', 'C:\\Tools')
        self.start()
        self.program.choose('t', 'm', 't')
        self.answer('Teselin is not installed on your computer.', 'OK')
        self.answer('Do you want to download Teselin from Mardelix web site?', 'Cancel')

    def test_escape_closes_the_about_box(self):
        program = self.start()
        self.program.choose('h', 'a')
        wait_for(lambda: len(program.windows()) == 2, 'the about box')
        program.keys('key Escape')
        wait_for(lambda: len(program.windows()) == 1, 'the about box to close')
        self.assertTrue(program.running())
