"""The about box and the help page at two resolutions: photographed, and measured for clipped text and overlaps."""
import os
import subprocess

from harness import paths
from harness.case import Case
from harness.display import Display
from harness.probe import REG_DWORD
from harness.waiting import wait_for

SHOTS = paths.BUILD / 'screenshots'


def overlap(first, second):
    return first[0] < second[2] and second[0] < first[2] and first[1] < second[3] and second[1] < first[3]


def inside(inner, outer):
    return outer[0] <= inner[0] and outer[1] <= inner[1] and inner[2] <= outer[2] and inner[3] <= outer[3]


class Looks(Case):
    def setUp(self):
        display = Display('2200x1600')  # the program is as large as its twips say
        before = os.environ.get('DISPLAY', '')
        os.environ['DISPLAY'] = display.name
        self.addCleanup(display.__exit__)
        self.addCleanup(os.environ.__setitem__, 'DISPLAY', before)
        super().setUp()
        SHOTS.mkdir(parents=True, exist_ok=True)

    def set_resolution(self, dpi):
        """Wine reads it when a session begins."""
        self.probe.set_value('HKCU', 'Control Panel\\Desktop', 'LogPixels', dpi, REG_DWORD)
        self.probe.close()
        self.prefix.stop()
        self.start_probe()

    def photograph(self, window, picture):
        """The window as it stands on the screen."""
        left, top, right, bottom = window['rectangle']
        # Other combinations may be at the same picture.
        taken = SHOTS / f'{os.getpid()}-{picture}'
        subprocess.run(['import', '-window', 'root', '-crop', f'{right - left}x{bottom - top}+{left}+{top}', '+repage',
                        taken], check=True, env=self.prefix.environment)
        taken.replace(SHOTS / picture)

    def assert_text_fits(self, label):
        left, top, right, bottom = label['rectangle']
        needed = self.probe.ask('textheight', right - left, label['text'])
        self.assertLessEqual(needed['width'], right - left, label)
        self.assertLessEqual(needed['height'], bottom - top, label)
        self.assertGreater(needed['height'], 0)

    def of_class(self, windows, name):
        return [window for window in windows if window['class'] == name]

    def look_at_help(self, dpi):
        program = self.start()
        children = program.children()
        page = next(child for child in children if child['class'] == 'QuillonPage' and child['text'] == 'ucHelp1')
        on_page = [child for child in children if child['parent'] == page['window']]
        [picture] = self.of_class(on_page, 'QuillonPicture')
        [label] = self.of_class(on_page, 'Static')
        self.assertEqual(len(on_page), 2)
        self.assertFalse(overlap(picture['rectangle'], label['rectangle']))
        self.assertTrue(inside(picture['rectangle'], page['rectangle']))
        self.assertTrue(inside(label['rectangle'], page['rectangle']))
        self.assert_text_fits(label)
        footer = next(child for child in children if child['id'] == 201)
        self.assert_text_fits(footer)
        self.assertFalse(overlap(footer['rectangle'], page['rectangle']))
        self.assert_picture_is_not_stretched(picture, dpi)
        self.come_back_to_help()
        self.photograph(program.main, f'help-{dpi}.png')

    def assert_picture_is_not_stretched(self, picture, dpi):
        """The pictures in the program are 64 pixels wide at 96 DPI and 128 at 192."""
        left, top, right, bottom = picture['rectangle']
        self.assertEqual((right - left, bottom - top), (64 * dpi // 96,) * 2)

    def come_back_to_help(self):
        """By way of the next page: what was pressed arrives after everything is painted."""
        self.settle()
        self.program.control_tab(shift=True)
        wait_for(lambda: self.program.visible_pages() == ['ucHelp1'], 'the help page')

    def look_at_about(self, dpi):
        program = self.program
        program.keys('keydown alt', 'key h', 'keyup alt', 'key a')
        box = wait_for(lambda: next(iter(self.of_class(program.windows(), 'QuillonAbout')), None), 'the about box')
        children = self.probe.ask('children', box['window'])['windows']
        direct = [child for child in children if child['parent'] == box['window']]
        [picture] = self.of_class(direct, 'QuillonPicture')
        name, link = sorted(self.of_class(direct, 'Static'), key=lambda label: label['rectangle'][1])
        frame, button = sorted(self.of_class(direct, 'Button'), key=lambda window: window['text'])
        [line] = self.of_class(direct, 'QuillonStaticLine')
        self.assertEqual(len(direct), 6)
        for label in (name, link):
            self.assert_text_fits(label)
        self.assert_text_fits(button)
        for inner in (picture, name, link):
            self.assertTrue(inside(inner['rectangle'], frame['rectangle']), inner)
        apart = [picture, name, link, line, button]
        for first in apart:
            self.assertTrue(inside(first['rectangle'], box['rectangle']), first)
            for second in apart:
                self.assertFalse(first is not second and overlap(first['rectangle'], second['rectangle']), (first, second))
        for outer in (line, button):
            self.assertFalse(overlap(outer['rectangle'], frame['rectangle']), outer)
        self.assert_picture_is_not_stretched(picture, dpi)
        self.photograph(box, f'about-{dpi}.png')

    def look(self, dpi):
        self.set_resolution(dpi)
        self.look_at_help(dpi)
        self.look_at_about(dpi)

    def test_at_96_dpi(self):
        self.look(96)

    def test_at_192_dpi(self):
        self.look(192)
