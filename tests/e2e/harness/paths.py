"""Where things stand in the tree and in the build output."""
import os
from pathlib import Path

TOP = Path(__file__).resolve().parents[3]
BUILD = TOP / 'build'
LOGS = BUILD / 'test-logs' / 'e2e'
PREFIXES = BUILD / 'wine'
IMITATION = BUILD / 'windows98'
FIXTURES = BUILD / 'fixtures'
REPORTS = BUILD / 'reports'


def program_folder(architecture):
    """The complete program folder. QUILLON_PROGRAM_<ARCH> names another one than dist/<arch>."""
    if os.environ.get('QUILLON_WINDOWS98') == 'imitation':
        return IMITATION / 'program'
    return Path(os.environ.get(f'QUILLON_PROGRAM_{architecture.upper()}') or TOP / 'dist' / architecture)


def built(architecture, *below):
    """A file in the build folder. QUILLON_BUILD_<ARCH> names another one than build/<arch>."""
    return Path(os.environ.get(f'QUILLON_BUILD_{architecture.upper()}') or BUILD / architecture).joinpath(*below)


def probe(architecture):
    return built(architecture, 'tests', 'e2e', 'probe.exe')


def absent(architecture):
    """The first of what every case needs and nobody has built yet, or None."""
    needed = [program_folder(architecture) / 'Quillon.exe', probe(architecture), FIXTURES]
    return next((path for path in needed if not path.exists()), None)
