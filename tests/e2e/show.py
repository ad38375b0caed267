#!/usr/bin/env python3
"""Opens the built program in a lived-in Windows: show.py x86|x64

On a display it is opened for the user. Without one its five tabs are photographed into build/screenshots and
what it found is printed.
"""
import os
import sys

from harness import paths, seed
from harness.display import Display, reachable
from harness.logs import log_entries
from harness.prefix import Prefix
from harness.probe import Probe
from harness.program import PAGES, Program
from harness.waiting import wait_for

FOLDER = 'C:\\Program Files\\Quillon'
TABS = ['help', 'run', 'winlogon', 'other', 'services']


def photograph(program):
    shots = paths.BUILD / 'screenshots'
    shots.mkdir(parents=True, exist_ok=True)
    for number, (page, tab) in enumerate(zip(PAGES, TABS), 1):
        wait_for(lambda: program.visible_pages() == [page], f'the page {page}')
        picture = shots / f'{number}-{tab}.png'
        program.photograph(picture)
        print(f'run: {picture.relative_to(paths.TOP)}')
        program.control_tab()
    wait_for(lambda: program.visible_pages() == PAGES[:1], 'the help page again')


def print_findings(log):
    found = [entry.text for entry in log_entries(log) if entry.source == '' and not entry.text.startswith('Deleting')]
    print('\n'.join(found))
    print(f'run: {len(found)} startup entries found')


def show(architecture, on_display):
    prefix = Prefix('run', 'winxp', window_manager=on_display)
    seed.install_files(prefix)
    folder = prefix.put_program(FOLDER, architecture)
    probe = Probe(paths.probe(architecture), prefix.environment)
    try:
        seed.fill_registry(probe)
        program = Program(probe, FOLDER + '\\Quillon.exe', prefix.environment).wait_for_window()
        if on_display:
            print('run: Quillon is open; close its window to end')
            wait_for(lambda: not program.running(), 'the end', patience=float('inf'), pause=0.5)
        else:
            photograph(program)
            print_findings(folder / 'QLN.log')
            program.close()
    finally:
        probe.close()
        prefix.stop()


def main(architecture):
    if reachable(os.environ.get('DISPLAY')):
        return show(architecture, on_display=True)
    print('run: no display; the program is shown to a virtual one')
    with Display() as display:
        os.environ['DISPLAY'] = display.name
        show(architecture, on_display=False)


if __name__ == '__main__':
    main(sys.argv[1])
