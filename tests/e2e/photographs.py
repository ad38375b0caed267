#!/usr/bin/env python3
"""Photographs every tab and box at several resolutions:  photographs.py x86|x64 FOLDER [DPI ...]  (scripts/screenshots.sh)"""
import os
import subprocess
import sys
from pathlib import Path

from harness import paths, seed
from harness.display import Display
from harness.prefix import Prefix
from harness.probe import Probe
from harness.program import PAGES, Program
from harness.waiting import wait_for

FOLDER = 'C:\\Program Files\\Quillon'
TABS = ['help', 'general', 'winlogon', 'custom', 'services']
RESOLUTIONS = [96, 120, 144, 192]


class Photographer:
    """The program at one resolution, and where its pictures go."""

    def __init__(self, program, folder, dpi):
        self.program = program
        self.folder = folder
        self.dpi = dpi

    def photograph(self, window, name):
        left, top, right, bottom = window['rectangle']
        # Few colours: the pictures are flat, and the repository stays small.
        subprocess.run(['import', '-window', 'root', '-crop', f'{right - left}x{bottom - top}+{left}+{top}', '+repage',
                        '-strip', '-dither', 'None', '-colors', '48', f'PNG8:{self.folder / f"{name}-{self.dpi}.png"}'],
                       check=True, env=self.program.environment)

    def window(self, is_wanted, what):
        return wait_for(lambda: next(filter(is_wanted, self.program.windows()), None), what)

    def main_window(self):
        return self.window(lambda window: window['class'] == 'QuillonMain', 'the main window')

    def tabs(self):
        for page, tab in zip(PAGES, TABS):
            wait_for(lambda: self.program.visible_pages() == [page], f'the page {page}')
            self.settled()
            self.photograph(self.main_window(), tab)
            self.program.control_tab()
        wait_for(lambda: self.program.visible_pages() == PAGES[:1], 'the help page again')

    def settled(self):
        """Two equal pictures in a row."""
        def picture():
            return subprocess.run(['import', '-window', 'root', '-depth', '8', 'ppm:-'], check=True, capture_output=True,
                                  env=self.program.environment).stdout
        wait_for(lambda: picture() == picture(), 'a screen that rests')

    def box(self, name, button):
        """The message box that is open, then away with it."""
        dialog = self.program.dialog()
        self.settled()
        self.photograph(self.window(lambda window: window['class'] == '#32770', 'the box'), name)
        dialog.press(button)

    def deletion(self, page, name, row, *boxes):
        self.program.show(page)
        self.program.select(page, row)
        self.program.press_button(page)
        for number, button in enumerate(boxes):
            self.box(name if not number else f'{name}-{number + 1}', button)

    def boxes(self):
        self.deletion('ucRun1', 'delete', 'Steam', 'OK', 'OK')
        self.deletion('ucRun1', 'refusal', 'Windows Messenger', 'OK')
        self.deletion('ucOther1', 'custom-delete', self.changed_place(), 'Cancel')
        self.program.choose('t', 'b')
        self.box('backup', 'OK')
        self.program.choose('t', 'r')
        self.box('restore', 'Cancel' if 'Cancel' in self.program.dialog().buttons else 'OK')
        self.program.choose('h', 'a')
        about = self.window(lambda window: window['class'] == 'QuillonAbout', 'the about box')
        self.settled()
        self.photograph(about, 'about')
        self.program.keys('key Escape')

    def changed_place(self):
        return next(row.name for row in self.program.rows('ucOther1') if row.image == 0)


def session(probe, folder, dpi, environment):
    seed.fill_registry(probe)
    program = Program(probe, FOLDER + '\\Quillon.exe', environment).wait_for_window()
    photographer = Photographer(program, folder, dpi)
    photographer.tabs()
    photographer.boxes()
    program.close()


def photograph_at(dpi, architecture, folder):
    # Large enough for the window at twice its size.
    with Display('1500x1200') as display:
        os.environ['DISPLAY'] = display.name
        prefix = Prefix(f'e2e-photographs-{os.getpid()}', 'winxp')
        probe = None
        try:
            seed.install_files(prefix)
            prefix.put_program(FOLDER, architecture)
            settings = prefix.folder / 'user.reg'
            settings.write_text(settings.read_text() + f'\n[Control Panel\\\\Desktop]\n"LogPixels"=dword:{dpi:08x}\n')
            # The first program waits until this Windows has started.
            subprocess.run(['wine', 'cmd', '/c', 'exit'], env=prefix.environment, timeout=300)
            probe = Probe(paths.probe(architecture), prefix.environment)
            session(probe, folder, dpi, prefix.environment)
        finally:
            if probe:
                probe.close()
            prefix.remove()


def main(architecture, folder, *chosen):
    Path(folder).mkdir(parents=True, exist_ok=True)
    for dpi in map(int, chosen or RESOLUTIONS):
        photograph_at(dpi, architecture, Path(folder))
        print(f'screenshots: {dpi} per inch', flush=True)


if __name__ == '__main__':
    main(*sys.argv[1:])
