#!/usr/bin/env python3
"""Holds the imports of 32-bit programs against what Windows 98 exports.

    scripts/check-imports.py [--dead] FILE...

Fails on an import that Windows 98 lacks, since such a program does not start there. Imports that are there but
fail when called are counted for information, and named with --dead: they are the wide half of the string edge,
and a few that the C++ runtime never calls on Windows 98.
"""
import re
import subprocess
import sys
from pathlib import Path

LIST = Path(__file__).resolve().parent.parent / 'tests' / 'data' / 'windows98-imports.txt'
OBJDUMP = 'i686-w64-mingw32-objdump'


def exported():
    """Library to a dictionary of its functions: True for one that works, False for one that only exists."""
    libraries, current = {}, None
    for line in LIST.read_text().splitlines():
        if line.startswith('['):
            current = libraries.setdefault(line.strip('[]'), {})
        elif line and not line.startswith('#'):
            name, _, dead = line.partition(' ')
            current[name] = not dead
    return libraries


def imports(program):
    text = subprocess.run([OBJDUMP, '-p', program], check=True, capture_output=True, text=True).stdout
    library = None
    for line in text.splitlines():
        if named := re.match(r'\s*DLL Name: (\S+)', line):
            library = named[1].lower()
        elif function := re.match(r'\s+[0-9a-f]+\s+\d+\s+(\S+)\s*$', line):
            yield library, function[1]


def check(program, libraries, name_dead):
    found = [(library, function) for library, function in imports(program)]
    if not found:
        print(f'{program}: no import table could be read')
        return False
    missing = [f'{library}!{function}' for library, function in found if function not in libraries.get(library, {})]
    dead = [f'{library}!{function}' for library, function in found if libraries.get(library, {}).get(function) is False]
    print(f'{program}: {len(found)} imports, {len(missing)} missing on Windows 98, {len(dead)} failing when called there')
    if missing:
        print('  missing: ' + ' '.join(missing))
    if dead and name_dead:
        print('  failing when called: ' + ' '.join(dead))
    return not missing


def main(arguments):
    programs = [argument for argument in arguments if argument != '--dead']
    libraries = exported()
    return 0 if programs and all([check(program, libraries, '--dead' in arguments) for program in programs]) else 1


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
