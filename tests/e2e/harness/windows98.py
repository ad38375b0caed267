"""Ways to run the 32-bit program that show what Windows 98 would have refused.

QUILLON_WINDOWS98 chooses one: `trace` records every call that leaves the program's files and looks for one
that only exists on Windows 98; `imitation` runs the program on libraries that have what Windows 98 has, and fail
where it fails.
"""
import os
import re
import sys

from . import paths
from .probe import start_peer
from .waiting import wait_for

sys.path.insert(0, str(paths.TOP / 'tests' / 'windows98'))
import libraries  # noqa: E402
from pe import Image  # noqa: E402

MODULES = ['Quillon.exe', 'QuillonReport.exe', 'Helmkit.dll', 'QLNCustom.dll']


class Nothing:
    """The program as it is."""
    trace_file = None

    def __init__(self, prefix):
        self.prefix = prefix

    def prepare_start(self, probe, folder):
        pass

    def refused(self):
        """What Windows 98 would have refused of what the program did, one line each."""
        return []


class Trace(Nothing):
    """Wine's relay trace of the calls between libraries, held to those that our files make."""

    def __init__(self, prefix):
        super().__init__(prefix)
        self.trace_file = prefix.folder / 'trace'
        registry = prefix.folder / 'user.reg'
        text = registry.read_text()
        # What is kept out for everybody wins over what is asked for.
        text = re.sub(r'^"Relay(From)?Exclude"=.*\n', '', text, flags=re.M)
        registry.write_text(text + f'\n[Software\\\\Wine\\\\Debug]\n"RelayFromInclude"="{";".join(MODULES)}"\n')

    def prepare_start(self, probe, folder):
        probe.ask('setenvironment', 'WINEDEBUG', '+relay,+loaddll,+pid')

    def refused(self):
        """Each function once, with the place of its first call."""
        calls, places = 0, {}
        loaded = []  # (process, first address, one behind the last, name)
        failing = libraries.failing()
        for line in self.trace_file.read_text(encoding='utf-8', errors='replace').splitlines():
            if found := re.match(r'(\w+):.* Loaded L".*?([^\\]+)" at ([0-9A-Fa-f]+): native', line):
                if found[2] in MODULES:
                    start = int(found[3], 16)
                    size = Image((paths.program_folder('x86') / found[2]).read_bytes()).size
                    loaded.append((found[1], start, start + size, found[2]))
            elif found := re.match(r'(\w+):\w+:Call (\w+)\.(\w+)\(.* ret=([0-9a-f]+)$', line):
                place = int(found[4], 16)
                caller = next((f'{name}+{place - start:#x}' for process, start, end, name in loaded
                               if process == found[1] and start <= place < end), None)
                calls += caller is not None
                if caller and found[3] in failing:
                    places.setdefault(f'{found[2]}.{found[3]}', caller)
        seen = {name for *_, name in loaded}
        # A trace without our files in it would let everything pass.
        if 'Quillon.exe' not in seen or calls < 100:
            return [f'the trace shows {calls} calls from {sorted(seen)}: was it switched on?']
        return [f'{function} is called at {caller}' for function, caller in places.items()]


class Imitation(Nothing):
    """Libraries that export what Windows 98 does, and registered classes in place of the manifest."""

    def prepare_start(self, probe, folder):
        if self.prefix.path('C:\\windows\\kernel98.dll').exists():
            return
        for library in (paths.IMITATION / 'system').iterdir():
            self.prefix.put(f'C:\\windows\\{library.name}', library)
        registrar = 'C:\\windows\\system32\\regsvr32.exe'
        for name in ['Helmkit.dll', 'QLNCustom.dll']:
            pid = start_peer(probe, registrar, folder, f'/s "{folder}\\{name}"')
            wait_for(lambda: not probe.ask('state', pid)['running'], f'{name} to be registered')

    def refused(self):
        record = self.prefix.path('C:\\windows98.log')
        return sorted(set(record.read_text().splitlines())) if record.exists() else []


WAYS = {'': Nothing, 'trace': Trace, 'imitation': Imitation}


def chosen(prefix):
    return WAYS[os.environ.get('QUILLON_WINDOWS98', '')](prefix)
