#!/usr/bin/env python3
"""Gives a Wine prefix the services of a Windows 10 with many programs, for the start figure:

    scripts/bench-services.py DRIVE PROGRAM

670 services with image paths, from the tests' lists of what Windows 10, 2003, XP and 2000 have: C:\\services.reg below
DRIVE, the prefix's drive_c, for `reg import`, and a copy of PROGRAM for each file that they name and that is not there.
"""
import os
import shutil
import sys
from pathlib import Path

TOP = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(TOP / 'tests' / 'e2e'))
from harness.services import services_of  # noqa: E402

WANTED = 670
KEY = 'HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services'


def chosen():
    services = {}
    for windows in ('10', '2003', 'XP', '2000'):
        for service in services_of(windows):
            if service.image and len(services) < WANTED:
                services.setdefault(service.name.lower(), service)
    return services.values()


def expanded(text):
    values = ','.join(f'{byte:02x}' for byte in (text + '\0').encode('utf-16-le'))
    return f'hex(2):{values}'


def registry_file(services):
    lines = ['Windows Registry Editor Version 5.00']
    for service in services:
        lines += ['', f'[{KEY}\\{service.name}]', f'"ImagePath"={expanded(service.image)}']
        if service.display:
            lines.append(f'"DisplayName"={expanded(service.display)}')
    return '\r\n'.join(lines) + '\r\n'


def below(folder, name):
    """Windows does not tell large letters from small ones in names; this machine does."""
    same = [entry.name for entry in os.scandir(folder) if entry.name.lower() == name.lower()] if folder.is_dir() else []
    return folder / (same[0] if same else name)


def place(drive, path):
    """The file below the drive's folder, or None for one elsewhere."""
    path = path.lower().replace('%systemroot%', 'c:\\windows')
    if path.startswith('system32\\'):
        path = 'c:\\windows\\' + path
    if not path.startswith('c:\\') or '%' in path or '~' in path:
        return None
    found = drive
    for part in path[3:].split('\\'):
        found = below(found, part)
    return found


def main(drive, program):
    services = list(chosen())
    made = 0
    for file in {place(drive, service.file) for service in services} - {None}:
        if not file.exists():
            file.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(program, file)
            made += 1
    (drive / 'services.reg').write_bytes(registry_file(services).encode('utf-16'))
    print(f'{len(services)} services, {made} files made')
    return 0 if len(services) == WANTED else 1


sys.exit(main(Path(sys.argv[1]), Path(sys.argv[2])))
