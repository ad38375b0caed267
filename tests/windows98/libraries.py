"""Which functions the system libraries of Windows 98 have, and which of them fail there."""
from pathlib import Path

LIST = Path(__file__).resolve().parent.parent / 'data' / 'windows98-imports.txt'


def exported():
    """Library to a dictionary of its functions: True for one that works, False for one that only exists."""
    libraries, current = {}, None
    for line in LIST.read_text().splitlines():
        if line.startswith('['):
            current = libraries.setdefault(line.strip('[]'), {})
        elif line and not line.startswith('#'):
            name, _, fails = line.partition(' ')
            current[name] = not fails
    return libraries


def failing():
    """The names of functions that exist on Windows 98 and fail when called, whatever their library."""
    libraries = exported()
    return {name for functions in libraries.values() for name, works in functions.items() if not works}


def imitation_of(library):
    """The file name of the imitation, as long as the one it stands for: kernel32.dll, kernel98.dll."""
    stem = library.removesuffix('.dll')
    return stem[:-2] + '98.dll'
