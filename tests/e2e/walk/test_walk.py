"""One walk through everything that a user can do, in one run of the program."""
from harness import seed
from harness.case import Case, FOLDER, RUN
from harness.program import BUTTON, LIST, PAGES
from harness.waiting import wait_for

GENERAL, WINLOGON, CUSTOM, SERVICES = PAGES[1:]
NOTIFY = 'Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify'
SHELL_LINE = 'System.ini "shell=" line'
WM_SYSCOMMAND, SC_MAXIMIZE, SC_RESTORE = 0x0112, 0xF030, 0xF120


class Walk(Case):
    def test_walk(self):
        seed.install_files(self.prefix)
        seed.fill_registry(self.probe)
        # What its code page cannot say is part of a lived-in Windows, too.
        self.add_run('Ж 中', 'C:\\nowhere\\Ж 中.exe', hive='HKCU')
        self.probe.set_value('HKLM', f'{seed.SERVICES}\\walk', 'ImagePath', 'C:\\nowhere\\walk.sys')
        self.probe.set_value('HKLM', f'{seed.SERVICES}\\walk', 'DisplayName', 'Walk driver')
        self.start()
        for step in [self.turn_all_pages, self.select_every_row, self.refresh_by_key, self.open_context_menu,
                     self.ask_for_properties, self.resize, self.delete_an_entry, self.refuse_a_protected_entry,
                     self.delete_a_package, self.set_a_place_back, self.refresh_by_menu, self.back_up,
                     self.write_a_report, self.ask_for_a_companion, self.open_the_home_page, self.look_at_about,
                     self.open_the_backups, self.leave]:
            step()

    def names(self, page):
        return [row.name for row in self.program.rows(page)]

    def turn_all_pages(self):
        for shift, order in [(False, PAGES[1:] + PAGES[:1]), (True, PAGES[:0:-1] + PAGES[:1])]:
            for page in order:
                self.program.control_tab(shift)
                wait_for(lambda: self.program.visible_pages() == [page], page)

    def select_every_row(self):
        for page in PAGES[1:]:
            self.program.show(page)
            window = self.program.control(page, LIST)['window']
            rows = self.program.rows(page)
            self.assertTrue(rows, page)
            for number in range(len(rows)):
                self.probe.ask('select', window, number)
            self.assertTrue(self.program.rows(page)[-1].selected)

    def refresh_by_key(self):
        self.add_run('Came later', 'C:\\nowhere\\later.exe')
        self.program.keys('key F5')
        wait_for(lambda: 'Came later' in self.names(GENERAL), 'the refreshed list')

    def on(self, page, name):
        self.program.show(page)
        self.program.select(page, name)

    def pop_up(self):
        return any(window['class'] == '#32768' for window in self.program.windows())

    def open_context_menu(self):
        """By the key for it; Escape leaves everything as it was."""
        before = self.names(GENERAL)
        self.on(GENERAL, 'Came later')
        self.program.keys('key Tab', 'key Menu')
        wait_for(self.pop_up, 'the context menu')
        self.program.keys('key Escape')
        wait_for(lambda: not self.pop_up(), 'the context menu to close')
        self.assertEqual(self.names(GENERAL), before)

    def ask_for_properties(self):
        missing = "File 'C:\\nowhere\\walk.sys' not found. "
        self.on(SERVICES, 'Walk driver')
        self.program.press_button(SERVICES)
        self.answer(missing, 'OK')
        self.program.keys('key Tab', 'keydown alt', 'key Return', 'keyup alt')
        self.answer(missing, 'OK')

    def resize(self):
        for page in PAGES[1:]:
            self.program.show(page)
            before = self.program.control(page, BUTTON)['rectangle']
            self.probe.ask('message', self.program.handle, WM_SYSCOMMAND, SC_MAXIMIZE, 0)
            wait_for(lambda: self.program.control(page, BUTTON)['rectangle'] != before, 'the button to move')
            self.probe.ask('message', self.program.handle, WM_SYSCOMMAND, SC_RESTORE, 0)
            wait_for(lambda: self.program.control(page, BUTTON)['rectangle'] == before, 'the button to come back')

    def delete_an_entry(self):
        self.on(GENERAL, 'Came later')
        self.program.press_button(GENERAL)
        self.answer("Are you sure you want to delete 'Came later' from startup?", 'OK')
        self.answer("'Came later' is deleted from startup successfully. ", 'OK')
        wait_for(lambda: 'Came later' not in self.names(GENERAL), 'the refilled list')
        values = self.probe.values('HKLM', RUN)
        self.assertNotIn('Came later', values)
        self.assertIn('SoundMan', values)

    def refuse_a_protected_entry(self):
        name = next(row.name for row in self.program.rows(GENERAL) if row.image == 1)
        before = self.names(GENERAL)
        self.on(GENERAL, name)
        self.program.press_button(GENERAL)
        dialog = self.program.dialog()
        self.assertIn('Unwilling to perform', dialog.text)
        dialog.press('OK')
        self.assertEqual(self.names(GENERAL), before)

    def delete_a_package(self):
        self.assertIn('leftover', self.probe.keys('HKLM', NOTIFY))
        self.on(WINLOGON, 'Not specified')
        self.program.press_button(WINLOGON)
        self.answer("Are you sure you want to delete 'Not specified' from startup?", 'OK')
        self.answer("'Not specified' is deleted from startup successfully. ", 'OK')
        wait_for(lambda: 'Not specified' not in self.names(WINLOGON), 'the refilled list')
        self.assertNotIn('leftover', self.probe.keys('HKLM', NOTIFY))

    def set_a_place_back(self):
        self.on(CUSTOM, SHELL_LINE)
        self.program.press_button(CUSTOM)
        self.answer(f'Are you sure you want to delete excess startups from {SHELL_LINE}?', 'OK')
        self.answer('Startups are deleted successfully.', 'OK')
        content = self.prefix.path('C:\\windows\\system.ini').read_bytes()
        self.assertIn(b'shell=explorer.exe\r\n', content.lower())

    def refresh_by_menu(self):
        self.add_run('Came again', 'C:\\nowhere\\again.exe')
        self.program.choose('f', 'r')
        wait_for(lambda: 'Came again' in self.names(GENERAL), 'the refreshed list')

    def back_up(self):
        before = len(self.backups())
        self.program.choose('t', 'b')
        self.answer('Backup complete successfully.', 'OK')
        self.assertGreater(len(self.backups()), before)

    def open_the_backups(self):
        self.program.choose('t', 'r')
        self.answer('Windows Explorer window will be opened now. Double click on backup file to restore. ', 'OK')
        wait_for(lambda: self.program.windows_named('Backup'), "the folder's window")

    def write_a_report(self):
        """The other program of the folder, in every form and with everything it can tell."""
        listed = len(self.tab_state())
        for arguments, status in [('--format json --all --hash --save state --output out.json', 0),
                                  ('--format csv --output out.csv', 0), ('--compare state --output out.txt', 0),
                                  ('--no-such-option', 2)]:
            pid = self.probe.ask('start', FOLDER + '\\QuillonReport.exe', FOLDER, arguments)['pid']
            wait_for(lambda: not self.probe.ask('state', pid)['running'], 'the report')
            self.assertEqual(self.probe.ask('state', pid)['code'], status, arguments)
        self.assertGreater(len((self.folder / 'out.csv').read_bytes().splitlines()), listed // 2)

    def ask_for_a_companion(self):
        self.program.choose('t', 'm', 'c')
        self.answer('Corvana is not installed on your computer.', 'OK')
        self.answer('Do you want to download Corvana from Mardelix web site?', 'Cancel')

    def open_the_home_page(self):
        self.program.choose('h', 'h')
        self.settle()

    def look_at_about(self):
        before = len(self.program.windows())
        self.program.choose('h', 'a')
        wait_for(lambda: len(self.program.windows()) == before + 1, 'the about box')
        self.program.keys('key Escape')
        wait_for(lambda: len(self.program.windows()) == before, 'the about box to close')

    def leave(self):
        self.assertEqual(self.program.close(), 0)
        self.assertEqual([entry for entry in self.entries() if entry.level == 0], [])
