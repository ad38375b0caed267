"""Deleting a general startup program, from the question to the refilled list."""
from harness.case import Case, RUN
from harness.logs import checksum
from harness.waiting import wait_for


def question(name):
    return f"Are you sure you want to delete '{name}' from startup?"


DENIED = 'Access denied. You must be logged in as an administrator when disabling this startup program. '


class Deleting(Case):
    def deleting_line(self, hive, path):
        data = self.prefix.path(path).read_bytes() if self.prefix.path(path).exists() else b''
        return f"Deleting common({hive}, '{RUN}', '{path}', {len(data)}, {checksum(data)})"

    def names(self):
        return [row.name for row in self.program.rows('ucRun1')]

    def test_cancel_keeps_everything(self):
        self.add_run('Gone', 'C:\\nowhere\\gone.exe')
        self.add_run('Second', 'C:\\nowhere\\second.exe')
        program = self.start()
        before = self.entries()
        self.add_run('Third', 'C:\\nowhere\\third.exe')
        program.select('ucRun1', 'Second')
        program.press_button('ucRun1')
        self.answer(question('Second'), 'Cancel')
        self.assertEqual(list(self.probe.values('HKLM', RUN)), ['Gone', 'Second', 'Third'])
        self.assertEqual(self.names(), ['Gone', 'Second'], 'Cancel must not refresh')
        self.assertEqual(self.entries(), before)

    def test_ok_deletes_that_value_alone(self):
        steam = self.install('steam.exe', 'C:\\Program Files\\Steam\\steam.exe')
        self.add_run('First', 'C:\\nowhere\\first.exe')
        self.add_run('Steam value', f'"{steam}" -silent')
        self.add_run('Last', 'C:\\nowhere\\last.exe')
        program = self.start()
        program.select('ucRun1', 'Steam')
        program.press_button('ucRun1')
        self.answer(question('Steam'), 'OK')
        self.answer("'Steam' is deleted from startup successfully. ", 'OK')
        wait_for(lambda: self.names() == ['First', 'Last'], 'the refilled list')
        self.assertEqual(self.probe.text_values('HKLM', RUN),
                         {'First': 'C:\\nowhere\\first.exe', 'Last': 'C:\\nowhere\\last.exe'})
        self.assertEqual(self.entries()[-1], (5, '', 0, self.deleting_line('HKEY_LOCAL_MACHINE', steam)))
        self.assertTrue(self.prefix.path(steam).exists())
        self.assertEqual(program.file_box('ucRun1'), 'C:\\nowhere\\first.exe')

    def test_a_missing_file_has_size_and_checksum_0(self):
        self.add_run('Gone', 'C:\\nowhere\\gone.exe', 'HKCU')
        program = self.start()
        program.press_button('ucRun1')
        self.answer(question('Gone'), 'OK')
        self.answer("'Gone' is deleted from startup successfully. ", 'OK')
        wait_for(lambda: self.names() == [], 'the empty list')
        self.assertEqual(self.log_texts()[-1],
                         f"Deleting common(HKEY_CURRENT_USER, '{RUN}', 'C:\\nowhere\\gone.exe', 0, 0)")
        self.assertEqual(program.file_box('ucRun1'), '')

    def test_the_same_name_under_both_hives(self):
        self.add_run('Twin', 'C:\\nowhere\\machine.exe', 'HKLM')
        self.add_run('Twin', 'C:\\nowhere\\user.exe', 'HKCU')
        program = self.start()
        self.assertEqual(self.names(), ['Twin', 'Twin'])
        program.select('ucRun1', 'Twin', occurrence=1)
        program.press_button('ucRun1')
        self.answer(question('Twin'), 'OK')
        self.answer("'Twin' is deleted from startup successfully. ", 'OK')
        wait_for(lambda: self.names() == ['Twin'], 'the refilled list')
        self.assertEqual(self.probe.text_values('HKLM', RUN), {'Twin': 'C:\\nowhere\\machine.exe'})
        self.assertEqual(self.probe.text_values('HKCU', RUN), {})

    def test_a_registry_that_refuses(self):
        self.add_run('Kept', 'C:\\nowhere\\kept.exe')
        program = self.start()
        self.add_run('New', 'C:\\nowhere\\new.exe')
        self.probe.ask('regprotect', 'HKLM', RUN)
        program.press_button('ucRun1')
        self.answer(question('Kept'), 'OK')
        self.answer(DENIED, 'OK')
        wait_for(lambda: self.names() == ['Kept', 'New'], 'the list to be refreshed all the same')
        self.assertEqual(list(self.probe.values('HKLM', RUN)), ['Kept', 'New'])
        self.assertEqual(self.entries()[-1],
                         (5, '', 0, f"Deleting common(HKEY_LOCAL_MACHINE, '{RUN}', 'C:\\nowhere\\kept.exe', 0, 0)"))

    def test_a_value_that_is_gone_already(self):
        self.add_run('Gone', 'C:\\nowhere\\gone.exe')
        program = self.start()
        self.probe.ask('regdelete', 'HKLM', RUN, 'Gone')
        program.press_button('ucRun1')
        self.answer(question('Gone'), 'OK')
        self.answer(DENIED, 'OK')
        wait_for(lambda: self.names() == [], 'the empty list')

    def test_a_name_that_the_code_page_lacks(self):
        """Windows 98 calls it by the name of the other value, so neither is touched there."""
        foreign, shown = ('Ж', 'Ж') if self.family.is_nt else ('Ж', '?')
        self.add_run('?', 'C:\\nowhere\\real.exe')
        self.add_run(foreign, 'C:\\nowhere\\foreign.exe')
        program = self.start()
        self.assertEqual(self.names(), ['?', shown])
        program.select('ucRun1', shown, occurrence=int(not self.family.is_nt))
        program.press_button('ucRun1')
        self.answer(question(shown), 'OK')
        self.answer("'Ж' is deleted from startup successfully. " if self.family.is_nt else DENIED, 'OK')
        self.settle()
        left = ['?'] if self.family.is_nt else ['?', foreign]
        self.assertEqual(list(self.probe.values('HKLM', RUN)), left)

    def test_without_a_selection_nothing_happens(self):
        program = self.start()
        self.assertEqual(self.names(), [])
        program.press_button('ucRun1')
        self.settle()
        self.assertTrue(program.no_dialog())
