"""Readers of registry exports that nobody here wrote."""
import os
import shutil
import struct
import subprocess
from pathlib import Path

from . import paths
from .exported_places import HIVES
from .probe import Probe, start_peer
from .waiting import wait_for

DUMP = Path(__file__).with_name('hive_dump.pl')


class WineTool:
    """Wine's registry editor or its console tool."""

    def __init__(self, case, program, arguments, bits):
        self.program = program
        self.arguments = arguments
        # A 32-bit program would be given the 32-bit tool even where it names the 64-bit one.
        self.probe = Probe(paths.probe('x64' if bits == 64 else 'x86'), case.prefix.environment)

    def __str__(self):
        return f'{self.program} {self.arguments}'

    def close(self):
        self.probe.close()

    def run(self, windows_path):
        pid = start_peer(self.probe, self.program, 'C:\\', f'{self.arguments} "{windows_path}"')
        wait_for(lambda: not self.probe.ask('state', pid)['running'], f'{self} to end')
        code = self.probe.ask('state', pid)['code']
        if code:
            raise AssertionError(f'{self} gave {code}')


def bits_of(case):
    """Windows 98 is a 32-bit Windows; on the others the program looks behind the redirection, at the 64-bit one."""
    return 64 if case.family.is_nt else 32


def is_redirected(case, bits):
    return case.family.is_nt and bits == 32


def regedit(case, bits=None):
    bits = bits or bits_of(case)
    return WineTool(case, 'C:\\windows\\syswow64\\regedit.exe' if is_redirected(case, bits) else 'C:\\windows\\regedit.exe',
                    '/S', bits)


def _reg(case, arguments, bits):
    bits = bits or bits_of(case)
    folder = 'syswow64' if is_redirected(case, bits) else 'system32'
    return WineTool(case, f'C:\\windows\\{folder}\\reg.exe', arguments, bits)


def reg_import(case, bits=None):
    return _reg(case, 'import', bits)


def reg_export(case):
    return _reg(case, 'export', None)


def cell(record):
    """A record with its length before it, which is negative where it is in use."""
    size = (4 + len(record) + 7) // 8 * 8
    return struct.pack('<i', -size) + record.ljust(size - 4, b'\0')


def minimal_hive():
    """A registry file with nothing but its root key: the base block, and one bin with that key, the access rights
    that every key shares, and free room."""
    absent, name, bin_size, header = 0xFFFFFFFF, b'ROOT', 4096, 32
    rights = struct.pack('<BBHIIII', 1, 0, 0x8000, 0, 0, 0, 0)  # a self-relative descriptor that restricts nothing
    root_size = len(cell(bytes(76 + len(name))))
    root_at, rights_at = header, header + root_size
    root = struct.pack('<2sHQ', b'nk', 0x2C, 0)  # the root, not to be deleted, its name one byte per character
    root += struct.pack('<IIIIII', 0, 0, 0, 0, absent, absent)  # access bits, parent, subkeys and their lists
    root += struct.pack('<IIII', 0, absent, rights_at, absent)  # values, access rights, class name
    root += struct.pack('<IIIIIHH', 0, 0, 0, 0, 0, len(name), 0) + name
    shared = struct.pack('<2sHIIII', b'sk', 0, rights_at, rights_at, 1, len(rights)) + rights
    used = cell(root) + cell(shared)
    free = bin_size - header - len(used)
    cells = used + struct.pack('<i', free).ljust(free, b'\0')
    base = struct.pack('<4sIIQIIIIIII', b'regf', 1, 1, 0, 1, 3, 0, 1, root_at, bin_size, 1).ljust(508, b'\0')
    checksum = 0
    for (number,) in struct.iter_unpack('<I', base):
        checksum ^= number
    base += struct.pack('<I', checksum)
    return base.ljust(4096, b'\0') + struct.pack('<4sIIIIQI', b'hbin', 0, bin_size, 0, 0, 0, 0) + cells


class Hivex:
    """hivexregedit, which merges into a registry file; what it made of it is told by the hivex library."""
    package = 'libwin-hivex-perl'

    def __init__(self, folder):
        self.hive = folder / 'merged.hive'
        self.hive.write_bytes(minimal_hive())
        self.folder = folder

    @staticmethod
    def is_installed():
        return bool(shutil.which('hivexregedit'))

    def merge(self, export):
        """`export` is the text. Keys above those in it have to be there already, and the file is read as UTF-8."""
        keys = [line[1:-1] for line in export.splitlines() if line.startswith('[HKEY')]
        above = sorted({'\\'.join(key.split('\\')[:depth]) for key in keys for depth in range(1, key.count('\\') + 1)})
        self._merge(''.join(f'[\\{key}]\n\n' for key in above))
        self._merge(export)

    def _merge(self, content):
        file = self.folder / 'merged.reg'
        file.write_bytes(content.encode('utf-16', 'surrogatepass').decode('utf-16', 'replace').encode('utf-8'))
        done = subprocess.run(['hivexregedit', '--merge', self.hive, file], capture_output=True, text=True,
                              env={**os.environ, 'PERL_UNICODE': 'D'})
        if done.returncode:
            raise AssertionError(f'hivexregedit gave {done.returncode}: {done.stderr}')

    def tree(self):
        """(hive, key) to name to (type, bytes) of every key with a value or without a subkey."""
        lines = subprocess.run(['perl', DUMP, self.hive], check=True, capture_output=True).stdout.decode('ascii')
        tree, names = {}, {long: short for short, long in HIVES.items()}
        for line in lines.splitlines():
            kind, key, *rest = line.split(' ')
            hive, _, path = bytes.fromhex(key).decode('utf-8').partition('\\')
            values = tree.setdefault((names[hive], path), {})
            if kind == 'value':
                name, number, data = rest
                values[bytes.fromhex(name).decode('utf-8')] = (int(number), bytes.fromhex(data))
        return tree
