#!/usr/bin/env python3
"""Holds the imports of programs against what Windows has.

    scripts/check-imports.py FILE...              each file by itself: it must start on Windows 98 and 2000 (32-bit)
                                                  or XP x64 (64-bit)
    scripts/check-imports.py --product FOLDER     besides, the files of a program folder together: what fails
                                                  when called on Windows 98 is explained, nothing is explained that
                                                  is not imported, what is looked up at run time is listed, and
                                                  nothing is imported that a file beside the program could stand for

An import that Windows lacks keeps a program from starting there. One that is there but fails when called (the
wide functions of Windows 98) must belong to the string edge, which does not call it there, or be explained.
"""
import re
import subprocess
import sys
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(TOP / 'tests' / 'windows98'))
from libraries import exported  # noqa: E402

DATA = TOP / 'tests' / 'data'
PROGRAM = ('Quillon.exe', 'QuillonReport.exe', 'Helmkit.dll', 'QLNCustom.dll')
# Windows takes these from its own folder whatever lies beside the program: the first eight as its known libraries, comctl32
# because the manifest binds it. msvcrt is the C runtime.
SYSTEM_LIBRARIES = {f'{name}.dll' for name in ('kernel32', 'user32', 'gdi32', 'advapi32', 'shell32', 'ole32', 'oleaut32',
                                               'msvcrt', 'comctl32')}
SOURCES = ('app', 'files', 'helmkit', 'plugin', 'report', 'resources', 'startup', 'support', 'win32')


def meaningful_lines(name):
    return [line for line in (DATA / name).read_text().splitlines() if line and not line.startswith('#')]


def windows_98():
    """(library, function) to True for one that works, False for one that only exists."""
    return {(library, name): works for library, functions in exported().items() for name, works in functions.items()}


def version(text):
    return tuple(int(part) for part in text.split('.'))


def nt_family():
    """Three dictionaries of (library, function) to its first version: of the program, of its look-ups, of x64."""
    tables, section = {'looked up': {}, 'x64': {}, None: {}}, None
    for line in meaningful_lines('windows2000-imports.txt'):
        if line.startswith('['):
            section = line.strip('[]')
            continue
        *library, name, first = line.split()
        table = tables[section if library else None]
        table[library[0] if library else section, name] = version(first)
    return tables[None], tables['looked up'], tables['x64']


def failing_but_explained():
    explained = {}
    for line in meaningful_lines('windows98-failing-imports.txt'):
        function, _, reason = line.partition(': ')
        if not reason:
            sys.exit(f'windows98-failing-imports.txt: no reason is given in "{line}"')
        explained[tuple(function.split())] = reason
    return explained


def wide_half_of_the_edge():
    rows = re.findall(r'^ +X\(\w+, (\w+)\)', (TOP / 'win32' / 'base' / 'flavour.h').read_text(), re.MULTILINE)
    # In 32-bit programs the headers make the one of the other.
    return {name.replace('WindowLongPtr', 'WindowLong') + 'W' for name in rows}


def looked_up_in_sources():
    """The names that the program asks for at run time, wherever they stand in the asking statement."""
    names = set()
    for folder in SOURCES:
        for source in (TOP / folder).rglob('*.cpp'):
            for statement in re.findall(r'(?:systemProcedure<|systemAddress\(|GetProcAddress\()[^;]*;', source.read_text()):
                names.update((name,) for name in re.findall(r'(?<!L)"(\w+)"', statement))
    return names


def is_64bit(program):
    image = Path(program).read_bytes()
    header = int.from_bytes(image[0x3C:0x40], 'little')
    return image[header + 4:header + 6] == b'\x64\x86'


def imports(program):
    objdump = ('x86_64' if is_64bit(program) else 'i686') + '-w64-mingw32-objdump'
    text = subprocess.run([objdump, '-p', program], check=True, capture_output=True, text=True).stdout
    library, found = None, []
    for line in text.splitlines():
        if named := re.match(r'\s*DLL Name: (\S+)', line):
            library = named[1].lower()
        # Newer tools give the number of an import without name a column of its own.
        elif function := re.match(r'\s+[0-9a-f]+(?:\s+(?:<none>|[0-9a-f]+)){1,2}\s+(\S+)\s*$', line):
            found.append((library, function[1]))
    return found


def complain(message, functions):
    if functions:
        print(f'  {message}: ' + ' '.join('!'.join(function) for function in sorted(functions)))
    return bool(functions)


def starts_everywhere(program):
    """Whether every import is there on each Windows that the file is meant for."""
    found = imports(program)
    if not found:
        print(f'{program}: no import table could be read')
        return False
    print(f'{program}: {len(found)} imports')
    program_functions, _, x64_functions = nt_family()
    if is_64bit(program):
        known, oldest, name = program_functions | x64_functions, (5, 2), 'XP x64'
    else:
        known, oldest, name = program_functions, (5, 0), 'Windows 2000'
        if complain('missing on Windows 98', set(found) - set(windows_98())):
            return False
    newer = {function for function in found if known.get(function, (99,)) > oldest}
    return not complain(f'newer than {name}, or of unknown age', newer)


def failing_ones_explained(found):
    """Whether what fails when called on Windows 98 is the edge's wide half or explained, and nothing else is."""
    works, explained, edge = windows_98(), failing_but_explained(), wide_half_of_the_edge()
    failing = {function for function in found if works.get(function) is False}
    of_edge = {function for function in failing - set(explained) if function[1] in edge}
    print(f'{len(found)} functions imported, {len(failing)} of them fail when called on Windows 98: '
          f'{len(of_edge)} the wide half of the string edge, {len(explained)} explained')
    unexplained = complain('fails on Windows 98 and is not explained', failing - of_edge - set(explained))
    return not complain('explained, but not imported or not failing', set(explained) - failing) and not unexplained


def look_ups_listed():
    asked, listed = looked_up_in_sources(), {(name,) for _, name in nt_family()[1]}
    if not asked:
        print('  no function looked up at run time was found in the sources')
        return False
    unlisted = complain('looked up, but not listed', asked - listed)
    return not complain('listed, but not looked up', listed - asked) and not unlisted


def from_the_system(program):
    """Whether no file beside the program can stand for what it imports."""
    return not complain('could be taken from beside the program',
                        {function for function in imports(program) if function[0] not in SYSTEM_LIBRARIES})


def product(folder):
    programs = [Path(folder) / name for name in PROGRAM]
    if not all([check(program) for program in programs for check in (starts_everywhere, from_the_system)]):
        return False
    if is_64bit(programs[0]):
        return True
    found = {function for program in programs for function in imports(program)}
    return all([failing_ones_explained(found), look_ups_listed()])


def main(arguments):
    if len(arguments) == 2 and arguments[0] == '--product':
        return 0 if product(arguments[1]) else 1
    return 0 if arguments and all([starts_everywhere(program) for program in arguments]) else 1


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
