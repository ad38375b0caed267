"""The running program as its user sees it: tabs, lists, boxes, buttons and keys."""
import subprocess
from dataclasses import dataclass

from .probe import ProbeError
from .waiting import wait_for

LIST, FILE_BOX, BUTTON, FOOTER = 101, 102, 103, 201
EXCLAMATION_I, CHECK_OK, QUESTION_IE = 0, 1, 2  # positions in the image list: "i", "OK", "IE"
FOCUS_TAKES = 10  # seconds, then it is tried again
PAGES = ['ucHelp1', 'ucRun1', 'ucWinlogon1', 'ucOther1', 'ucServices1']


@dataclass(frozen=True)
class Row:
    name: str
    second: str
    image: int
    selected: bool = False


class Dialog:
    """A message box: its text, and its buttons by their captions."""

    def __init__(self, probe, window):
        self.probe = probe
        self.window = window['window']
        self.title = window['text']
        children = probe.ask('children', self.window)['windows']
        self.buttons = {child['text'].replace('&', ''): child['window']
                        for child in children if child['class'] == 'Button'}
        self.text = '\n'.join(child['text'] for child in children if child['class'] == 'Static' and child['text'])

    def press(self, caption):
        self.probe.ask('press', self.buttons[caption])
        wait_for(lambda: not self._open(), f'the message box "{self.text}" to close')

    def _open(self):
        try:
            self.probe.ask('children', self.window)
            return True
        except ProbeError:
            return False


class Program:
    def __init__(self, probe, path, environment, *current_folder):
        self.probe = probe
        self.environment = environment
        self.pid = probe.ask('start', path, *current_folder)['pid']

    def windows(self):
        return self.probe.ask('windows', self.pid)['windows']

    def _main(self):
        state = self.probe.ask('state', self.pid)
        assert state['running'], f'the program ended before its window was shown: exit code {state["code"]:#x}'
        try:
            return next((window for window in self.windows() if window['class'] == 'QuillonMain'), None)
        except ProbeError:  # it does not answer yet
            return None

    def wait_for_window(self):
        self.main = wait_for(self._main, 'the main window')
        self.handle = self.main['window']
        return self

    def running(self):
        return self.probe.ask('state', self.pid)['running']

    def wait_for_end(self):
        wait_for(lambda: not self.running(), 'the program to end')
        return self.probe.ask('state', self.pid)['code']

    def close(self):
        self.probe.ask('message', self.handle, 0x0010, 0, 0)  # WM_CLOSE
        return self.wait_for_end()

    # Pages and what stands on them.

    def children(self):
        return self.probe.ask('children', self.handle)['windows']

    def visible_pages(self):
        return [child['text'] for child in self.children() if child['class'] == 'QuillonPage' and child['visible']]

    def selected_tab(self):
        strip = next(child for child in self.children() if child['class'] == 'SysTabControl32')
        return self.probe.ask('selectedtab', strip['window'])['index']

    def control(self, page, number):
        children = self.children()
        owner = next(child['window'] for child in children
                     if child['class'] == 'QuillonPage' and child['text'] == page)
        return next(child for child in children if child['id'] == number and child['parent'] == owner)

    def rows(self, page):
        window = self.control(page, LIST)['window']
        answer = wait_for(lambda: self._whole_list(window), 'a list that is not refilled while it is read')
        return [Row(*row['texts'], row['image'], row['selected']) for row in answer['rows']]

    def _whole_list(self, window):
        """Row is asked after row; nothing when a refresh took rows away meanwhile."""
        try:
            return self.probe.ask('rows', window)
        except ProbeError as error:
            if 'LVM_GETITEM' not in str(error):
                raise
            return None

    def file_box(self, page):
        return self.control(page, FILE_BOX)['text']

    def select(self, page, name, occurrence=0):
        """Selects the row with this text, as a click of the user would; gives its position."""
        rows = self.rows(page)
        found = [position for position, row in enumerate(rows) if row.name == name]
        assert len(found) > occurrence, f'no row "{name}" among {[row.name for row in rows]}'
        self.probe.ask('select', self.control(page, LIST)['window'], found[occurrence])
        return found[occurrence]

    def deselect(self, page):
        self.probe.ask('select', self.control(page, LIST)['window'], -1)

    def text_places(self, page):
        """For each row the rectangles of its two texts on the screen: left, top, right, bottom."""
        return self.probe.ask('places', self.control(page, LIST)['window'])['places']

    def press_button(self, page):
        self.probe.ask('press', self.control(page, BUTTON)['window'])

    # Message boxes.

    def _dialog(self):
        return next((window for window in self.windows() if window['class'] == '#32770'), None)

    def dialog(self):
        return Dialog(self.probe, wait_for(self._dialog, 'a message box'))

    def no_dialog(self):
        return self._dialog() is None

    # Real keys, through the display.

    def keys(self, *steps):
        """xdotool steps, for example 'keydown ctrl', 'key Tab', 'keyup ctrl'."""
        self._take_focus()
        for step in steps:
            subprocess.run(['xdotool', *step.split()], check=True, env=self.environment)

    def choose(self, menu, *items):
        """A menu command by its access keys."""
        self.keys('keydown alt', f'key {menu}', 'keyup alt', *[f'key {item}' for item in items])

    def _on_display(self):
        """The X windows of the program, as numbers."""
        return self.windows_named('Quillon')

    def _take_focus(self):
        """Windows says that a window is visible before the display shows it, and what is pressed meanwhile is lost."""
        wait_for(self._focus_topmost, 'the keyboard')

    def _focus_topmost(self):
        windows = self._on_display()
        try:
            return windows and subprocess.run(['xdotool', 'windowfocus', '--sync', windows[-1]], env=self.environment,
                                              timeout=FOCUS_TAKES).returncode == 0
        except subprocess.TimeoutExpired:  # the window went, or another took the keyboard: the topmost may be another now
            return False

    def windows_named(self, title):
        """The visible X windows of any program with this title, as numbers."""
        return subprocess.run(['xdotool', 'search', '--onlyvisible', '--name', f'^{title}$'], capture_output=True,
                              text=True, env=self.environment).stdout.split()

    def show(self, page):
        """Turns the pages until this one is seen."""
        while self.visible_pages() != [page]:
            before = self.visible_pages()
            self.control_tab()
            wait_for(lambda: self.visible_pages() != before, 'the next page')

    def photograph(self, file):
        window = wait_for(self._on_display, 'the window on the display')[-1]
        subprocess.run(['import', '-window', window, file], check=True, env=self.environment)

    def control_tab(self, shift=False):
        pressed = ['keydown ctrl'] + (['keydown shift'] if shift else [])
        released = (['keyup shift'] if shift else []) + ['keyup ctrl']
        self.keys(*pressed, 'key Tab', *released)
