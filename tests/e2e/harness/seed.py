"""The lived-in Windows of tests/fixtures: its registry, its ini files and the programs behind its entries."""
import importlib.util

from . import paths
from .probe import REG_DWORD, REG_EXPAND_SZ, REG_MULTI_SZ, REG_SZ

TABLES = paths.TOP / 'tests' / 'fixtures'
TYPES = {'sz': REG_SZ, 'expand': REG_EXPAND_SZ, 'multi': REG_MULTI_SZ, 'dword': REG_DWORD}
SERVICES = 'SYSTEM\\CurrentControlSet\\Services'
STARTUP = 'C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs\\StartUp'


def fixture_rows():
    specification = importlib.util.spec_from_file_location('make', TABLES / 'make.py')
    make = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(make)
    return make.rows()


def registry_rows():
    """(hive, key, name, type, data) for every value of the table."""
    for line in (TABLES / 'seed.tsv').read_text(encoding='utf-8').splitlines():
        if line.startswith('['):
            hive, key = line.strip('[]').split('\\', 1)
        elif line and not line.startswith('#'):
            name, kind, data = line.split('\t')
            yield hive, key, name, TYPES[kind], data.split('|') if kind == 'multi' else data


def install_files(prefix):
    folders = {'windows': 'C:\\windows', 'system': f'C:\\windows\\{prefix.family.system_folder}',
               'programs': 'C:\\Program Files'}
    for row in fixture_rows():
        if row['install'] != '-':
            prefix.put(row['install'].format(**folders), paths.FIXTURES / row['file'])
    prefix.write('C:\\windows\\win.ini', b'; for 16-bit app support\r\n[windows]\r\nload=\r\nrun=C:\\WINDOWS\\SYSTEM\\cmmpu.exe\r\n'
                 b'[mail]\r\nmapi=1\r\n')
    prefix.write('C:\\windows\\system.ini', b'[boot]\r\nshell=explorer.exe load.exe -dontrunold\r\n[drivers]\r\nwave=mmdrv.dll\r\n')
    prefix.write(STARTUP + '\\Digital Line Detect.lnk', b'L\0\0\0')


def fill_registry(probe):
    """To be done in the session that the program runs in: Windows runs and removes RunOnce entries when one begins."""
    # Wine's own services stay running, but are not what a lived-in Windows would list.
    for service in probe.keys('HKLM', SERVICES):
        probe.ask('regdeletetree', 'HKLM', f'{SERVICES}\\{service}')
    for hive, key, name, kind, data in registry_rows():
        probe.set_value(hive, key, name, data, kind)
