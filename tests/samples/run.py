#!/usr/bin/env python3
"""Runs the samples of docs/automation.md against the registered library:  run.py x86|x64 ...

The last line is `N passed, N failed, N skipped`.
"""
import os
import shutil
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / 'e2e'))
from harness import paths  # noqa: E402
from harness.prefix import Prefix  # noqa: E402

SAMPLES = paths.TOP / 'docs' / 'samples'
RUN = 'HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run'
MISSING = 'C:\\nowhere\\sample.exe'
MADE = 'C:\\Tools\\steam.exe'

EXPECTED = {
    'startup.vbs': f'Sample: {MISSING}\nSteam: {MADE} by Valve Corporation\n',
    'values.js': 'Windows is in C:\\windows\nType of the value Sample: 1\nType of a missing value: -1\n'
                 '1 record, entry: Sample, 12\n&lt;a &amp; b&gt; YWJj\nRefused: 0x80070057\n',
    'backup_value.exe': 'kept\n'}
KEPT = ('REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run]\r\n'
        '"Sample"="C:\\\\nowhere\\\\sample.exe"\r\n')


class Windows:
    def __init__(self, architecture):
        self.architecture = architecture
        self.prefix = Prefix(f'e2e-samples-{architecture}-{os.getpid()}', 'winxp')
        # A 32-bit library wants 32-bit hosts, and `wine` takes those of 32 bits where there are two.
        self.loader = 'wine' if architecture == 'x86' else shutil.which('wine64') or '/usr/lib/wine/wine64'
        self.system = 'C:\\windows\\' + ('syswow64' if architecture == 'x86' else 'system32')
        library = paths.program_folder(architecture) / 'Helmkit.dll'
        self.prefix.put('C:\\Quillon\\Helmkit.dll', library)
        self.prefix.put(MADE, paths.FIXTURES / 'steam.exe')
        self.run(f'{self.system}\\regsvr32.exe', '/s', 'C:\\Quillon\\Helmkit.dll')
        for name, command in [('Sample', MISSING), ('Steam', MADE)]:
            self.run(f'{self.system}\\reg.exe', 'add', RUN, '/v', name, '/d', command, '/f')

    def run(self, *command):
        return subprocess.run([self.loader, *command], env=self.prefix.environment, capture_output=True, text=True,
                              timeout=300).stdout.replace('\r', '')

    def output_of(self, sample):
        if sample.endswith('.exe'):
            return self.run(str(paths.built(self.architecture, 'samples', sample)))
        self.prefix.put(f'C:\\{sample}', SAMPLES / sample)
        return self.run(f'{self.system}\\cscript.exe', '//nologo', f'C:\\{sample}')


def faults(windows):
    for sample, expected in EXPECTED.items():
        output = windows.output_of(sample)
        if output != expected:
            yield f'{sample} says\n{output}in place of\n{expected}'
    kept = windows.prefix.path('C:\\sample.reg')
    if not kept.exists() or kept.read_bytes().decode('latin-1') != KEPT:
        yield f'backup_value.exe kept {kept.read_bytes() if kept.exists() else "nothing"}'


def main(architectures):
    wrong = 0
    for architecture in architectures:
        windows = Windows(architecture)
        try:
            for fault in faults(windows):
                wrong += 1
                print(f'{architecture}: {fault}')
        finally:
            windows.prefix.remove()
    checks = (len(EXPECTED) + 1) * len(architectures)
    print(f'{checks - wrong} passed, {wrong} failed, 0 skipped')
    return 1 if wrong or not checks else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
