"""The form's keys, pressed for real."""
from harness.case import Case
from harness.program import PAGES
from harness.waiting import wait_for


class Keys(Case):
    def assert_shown(self, index):
        wait_for(lambda: self.program.visible_pages() == [PAGES[index]], f'the page {PAGES[index]}')
        self.assertEqual(self.program.selected_tab(), index)

    def names(self):
        return [row.name for row in self.program.rows('ucRun1')]

    def test_control_tab_walks_through_the_pages_and_round(self):
        program = self.start()
        for index in [1, 2, 3, 4, 0]:
            program.control_tab()
            self.assert_shown(index)

    def test_control_shift_tab_from_help_shows_the_services(self):
        program = self.start()
        for index in [4, 3]:
            program.control_tab(shift=True)
            self.assert_shown(index)

    def test_f5_lists_what_has_come_and_gone(self):
        self.add_run('Before', 'C:\\nowhere\\before.exe')
        program = self.start()
        self.add_run('After', 'C:\\nowhere\\after.exe')
        self.probe.ask('regdelete', 'HKLM', 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run', 'Before')
        program.keys('key F5')
        wait_for(lambda: self.names() == ['After'], 'the refreshed list')
        self.assertEqual(len(self.backups()), 1)

    def test_f5_with_a_modifier_does_nothing(self):
        program = self.start()
        self.add_run('After', 'C:\\nowhere\\after.exe')
        for modifier in ['shift', 'ctrl']:
            program.keys(f'keydown {modifier}', 'key F5', f'keyup {modifier}')
        self.settle()
        self.assertEqual(self.names(), [])
