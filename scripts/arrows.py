#!/usr/bin/env python3
"""Holds the sources to the arrows between the folders, and draws them.

    scripts/arrows.py            fails for each include against the table below
    scripts/arrows.py --draw     writes docs/images/architecture.svg from the table
    scripts/arrows.py --drawn    fails when that picture is not the table's
"""
import re
import subprocess
import sys
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent
PICTURE = TOP / 'docs' / 'images' / 'architecture.svg'

# folder: the folders whose headers it may include, beside its own.
ARROWS = {
    'app': 'startup support files resources helmkit/client win32/com win32/windows win32/registry win32/files win32/system '
           'win32/base',
    'report': 'startup files resources helmkit/client win32/com win32/registry win32/files win32/system win32/base',
    'startup': 'files resources helmkit/client win32/windows win32/files win32/system win32/base',
    'support': 'resources helmkit/client win32/com win32/windows win32/files win32/system win32/base',
    'files': 'helmkit/client win32/files win32/system win32/base',
    'resources': 'helmkit/client win32/windows win32/system win32/base',
    'helmkit/client': 'win32/com',
    'helmkit': 'win32/com win32/windows win32/registry win32/files win32/system win32/base',
    'plugin': 'win32/com',
    'win32/com': 'win32/registry win32/system win32/base',
    'win32/registry': 'win32/system win32/base',
    'win32/files': 'win32/system win32/base',
    'win32/windows': 'win32/system win32/base',
    'win32/system': 'win32/base',
    'win32/base': '',
}

# Where each folder stands in the picture: column and row.
PLACES = {
    'app': (1.5, 0), 'report': (0.2, 0), 'startup': (0.5, 1), 'support': (2.5, 1), 'files': (0, 2), 'resources': (1.5, 2),
    'helmkit/client': (1, 3), 'helmkit': (3.5, 2), 'plugin': (4.5, 2), 'win32/com': (3.2, 4),
    'win32/windows': (0.2, 4), 'win32/files': (1.2, 4), 'win32/registry': (2.2, 5), 'win32/system': (1.4, 6),
    'win32/base': (1.4, 7),
}


def folder_of(path):
    return max((name for name in ARROWS if path.startswith(name + '/')), key=len, default=None)


def violations():
    listed = subprocess.run(['git', 'ls-files', '-co', '--exclude-standard'], cwd=TOP, check=True,
                            capture_output=True, text=True).stdout.split('\n')
    for path in listed:
        folder = folder_of(path)
        if not folder or not path.endswith(('.cpp', '.h')) or not (TOP / path).exists():
            continue
        for included in re.findall(r'^#include "([^"]+)"', (TOP / path).read_text(), re.MULTILINE):
            target = folder_of(included)
            if target and target != folder and target not in ARROWS[folder].split():
                yield f'{path}: includes {included}, but {folder}/ may not know {target}/'


def boundary(centre, other):
    """Where the line from one box's centre to another's leaves the first box."""
    dx, dy = other[0] - centre[0], other[1] - centre[1]
    scale = min(56 / abs(dx) if dx else 1e9, 16 / abs(dy) if dy else 1e9)
    return centre[0] + dx * scale, centre[1] + dy * scale


def picture():
    centres = {name: (80 + 150 * x, 40 + 64 * y) for name, (x, y) in PLACES.items()}
    lines = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 830 530" font-family="sans-serif" font-size="13">',
             '<defs><marker id="a" markerWidth="8" markerHeight="6" refX="8" refY="3" orient="auto">'
             '<path d="M0 0 8 3 0 6z" fill="#667"/></marker></defs>',
             '<rect width="830" height="530" fill="#fff"/>']
    for name, targets in ARROWS.items():
        for target in targets.split():
            (x1, y1), (x2, y2) = (boundary(centres[a], centres[b]) for a, b in ((name, target), (target, name)))
            lines.append(f'<path d="M{x1:.0f} {y1:.0f} {x2:.0f} {y2:.0f}" stroke="#99a" marker-end="url(#a)"/>')
    for name, (x, y) in centres.items():
        fill = '#e8eef8' if name.startswith('win32') else '#eef6e8' if name.startswith('helmkit') else '#f8f3e4'
        lines.append(f'<rect x="{x - 56:.0f}" y="{y - 16:.0f}" width="112" height="32" rx="4" fill="{fill}" stroke="#667"/>')
        lines.append(f'<text x="{x:.0f}" y="{y + 5:.0f}" text-anchor="middle">{name}/</text>')
    return '\n'.join([*lines, '</svg>', ''])


def main(arguments):
    if arguments == ['--draw']:
        PICTURE.write_text(picture())
        return 0
    if arguments == ['--drawn']:
        if PICTURE.read_text() == picture():
            return 0
        print('docs/images/architecture.svg is not drawn from the table: scripts/arrows.py --draw')
        return 1
    found = list(violations())
    print('\n'.join(found), end='\n' if found else '')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
