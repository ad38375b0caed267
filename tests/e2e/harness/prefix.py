"""Throw-away Wine prefixes, each one Windows of a chosen family."""
import os
import shutil
import subprocess
from dataclasses import dataclass

from . import paths


@dataclass(frozen=True)
class Family:
    name: str  # as Wine's setting "Version" names it
    is_nt: bool

    @property
    def system_folder(self):
        return 'system32' if self.is_nt else 'system'


FAMILIES = {family.name: family for family in
            [Family('win98', False), Family('win2k', True), Family('winxp', True), Family('win10', True)]}


class Prefix:
    def __init__(self, name, family, window_manager=False):
        self.family = FAMILIES[family]
        self.folder = paths.PREFIXES / name
        self._script('copy', self.folder, family, *([] if window_manager else ['unmanaged']))

    def _script(self, *arguments):
        subprocess.run(['bash', paths.TOP / 'scripts' / 'wine-prefix.sh', *arguments], check=True)

    @property
    def environment(self):
        # WINEARCH and the like of the developer's own session must not reach in.
        kept = {name: value for name, value in os.environ.items() if not name.startswith('WINE')}
        return {**kept, 'WINEPREFIX': str(self.folder), 'WINEDEBUG': '-all',
                # Wine reads the version resource of its own library where it has one of the same name: the last
                # two are names of fixtures, and nobody here loads them.
                'WINEDLLOVERRIDES': 'mscoree=;mshtml=;winemenubuilder.exe=d;powrprof,cryptnet=n',
                # File names outside ASCII, and the code page 1252 whatever the developer's own language.
                'LC_ALL': 'C.UTF-8'}

    def path(self, windows_path):
        """The file behind a Windows path on C:, with the letter case of what is already there."""
        drive, *parts = windows_path.split('\\')
        assert drive.lower() == 'c:', windows_path
        place = self.folder / 'drive_c'
        for part in parts:
            same = [name for name in (os.listdir(place) if place.is_dir() else []) if name.lower() == part.lower()]
            place = place / (same[0] if same else part)
        return place

    def put(self, windows_path, source):
        """Copies a file in; a hard-linked file of the base prefix is replaced, not written into."""
        target = self.path(windows_path)
        target.parent.mkdir(parents=True, exist_ok=True)
        target.unlink(missing_ok=True)
        shutil.copyfile(source, target)
        return target

    def put_program(self, windows_path, architecture):
        """The program folder without what a run may have left in it."""
        for name in ['Quillon.exe', 'QuillonReport.exe', 'Helmkit.dll', 'QLNCustom.dll']:
            self.put(f'{windows_path}\\{name}', paths.program_folder(architecture) / name)
        return self.path(windows_path)

    def write(self, windows_path, data):
        target = self.path(windows_path)
        target.parent.mkdir(parents=True, exist_ok=True)
        target.unlink(missing_ok=True)
        target.write_bytes(data)
        return target

    def stop(self):
        self._script('stop', self.folder)

    def remove(self):
        self.stop()
        shutil.rmtree(self.folder, ignore_errors=True)
