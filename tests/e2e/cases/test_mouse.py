"""The right mouse button, pressed and released for real."""
from harness.case import Case
from harness.waiting import wait_for


class RightButton(Case):
    def setUp(self):
        super().setUp()
        self.add_run('one', 'C:\\nowhere\\one.exe')
        self.add_run('two', 'C:\\nowhere\\two.exe')
        self.start().show('ucRun1')
        self.places = self.program.text_places('ucRun1')

    def menus(self):
        return [window for window in self.program.windows() if window['class'] == '#32768' and window['visible']]

    def press_right(self, x, y):
        self.program.keys(f'mousemove {x} {y}', 'click 3')

    def selected(self):
        return [row.name for row in self.program.rows('ucRun1') if row.selected]

    def test_on_a_row(self):
        """The row is selected, and its menu opens where the mouse is."""
        left, top, right, bottom = self.places[1][0]
        x, y = left + 5, (top + bottom) // 2
        self.press_right(x, y)
        [menu] = wait_for(self.menus, 'the context menu')
        self.assertEqual(self.selected(), ['two'])
        self.assertEqual(tuple(menu['rectangle'][:2]), (x, y))
        self.program.keys('key Escape')
        wait_for(lambda: not self.menus(), 'the context menu to close')

    def test_on_the_empty_area(self):
        """Nothing is selected there, so there is nothing to open a menu for."""
        left, top, right, bottom = self.places[-1][0]
        self.press_right(left + 5, bottom + 3 * (bottom - top))
        wait_for(lambda: self.selected() == [], 'the selection to go')
        self.settle()
        self.assertEqual(self.menus(), [])
        self.assertEqual(self.program.file_box('ucRun1'), '')
