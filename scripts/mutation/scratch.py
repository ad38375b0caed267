"""A copy of the tree that the mutants are put into, with builds and a Windows of its own."""
import os
import shutil
import subprocess

from .running import Limits, run

BUILD_LIMIT = Limits(3600)
COPY_LIMIT = Limits(600)


class Tree:
    """The tracked files of the work tree, and those that are about to be. What is equal keeps its time, so that it is not
    built again."""

    def __init__(self, top, folder):
        self.top, self.folder = top, folder
        names = subprocess.run(['git', 'ls-files', '-z', '--cached', '--others', '--exclude-standard'], cwd=top, check=True,
                               capture_output=True, text=True).stdout.split('\0')
        wanted = {name for name in names if name and (top / name).is_file()}
        for path in [path for path in folder.rglob('*') if path.is_file()]:
            name = path.relative_to(folder).as_posix()
            if not name.startswith('build/') and name not in wanted:
                path.unlink()
        for name in sorted(wanted):
            self.copy(name)
        (folder / 'build' / 'wine').mkdir(parents=True, exist_ok=True)
        for shared in ('libzip', 'fixtures'):
            if not (folder / 'build' / shared).exists():
                (folder / 'build' / shared).symlink_to(top / 'build' / shared)
        for base in ('base', 'base32'):
            if not (folder / 'build' / 'wine' / base).exists() and (top / 'build' / 'wine' / base).exists():
                subprocess.run(['cp', '-al', top / 'build' / 'wine' / base, folder / 'build' / 'wine' / base], check=True)

    def forget_runs(self):
        """What the program of the unit tests has written beside itself."""
        beside = self.folder / 'build' / 'x86' / 'tests'
        for left in [*beside.glob('*.log'), *beside.glob('Backup*')]:
            shutil.rmtree(left) if left.is_dir() else left.unlink()

    def copy(self, name):
        source, target = self.top / name, self.folder / name
        if target.exists() and target.read_bytes() == source.read_bytes():
            return
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(source, target)
        os.utime(target)

    def write(self, name, text):
        (self.folder / name).write_text(text, encoding='utf-8')

    def put(self, mutant):
        original = (self.folder / mutant.file).read_text(encoding='utf-8')
        changed = mutant.apply(original)
        assert changed != original, mutant
        self.texts = mutant.file, original, changed
        self.write(mutant.file, changed)

    def put_back(self):
        file, original, _ = self.texts
        self.write(file, original)

    def without_mutant(self, action):
        self.put_back()
        action()
        file, _, changed = self.texts
        self.write(file, changed)


class Builder:
    """Warnings are left to the build itself, and no time of day goes into a program, so that equal programs are equal files."""
    FLAGS = ['-DCMAKE_CXX_FLAGS=-w', *(f'-DCMAKE_{kind}_LINKER_FLAGS=-Wl,--no-insert-timestamp' for kind in ('EXE', 'SHARED'))]

    def __init__(self, folder, jobs):
        self.folder, self.jobs = folder, jobs
        self.environment = {**os.environ, 'CCACHE_BASEDIR': str(folder), 'CCACHE_NOHASHDIR': '1',
                            # Without this it does nothing for sources with a precompiled header.
                            'CCACHE_SLOPPINESS': 'pch_defines,time_macros'}
        if shutil.which('ccache'):
            self.environment['CMAKE_CXX_COMPILER_LAUNCHER'] = 'ccache'
        self.configured = set()

    def build(self, preset, targets):
        if preset not in self.configured:
            flags = self.FLAGS if preset != 'native' else self.FLAGS[:1]
            done = run(['cmake', '--preset', preset, *flags], BUILD_LIMIT, self.environment, self.folder)
            if done.code != 0:
                raise SystemExit(done.output)
            self.configured.add(preset)
        return run(['cmake', '--build', '--preset', preset, f'-j{self.jobs}', '--target', *targets], BUILD_LIMIT,
                   self.environment, self.folder)


class Windows:
    """A Wine prefix that one mutant after the other runs in. A program of its own keeps Wine's services from ending between
    two runs: their start takes about a second, and so does that in a new prefix, where the tests of a mutant's own file
    are often done in less. What a mutant leaves behind is looked for now and then by the tests themselves (Worker.check in
    mutate.py)."""

    def __init__(self, top, folder, display):
        self.script, self.folder = top / 'scripts' / 'wine-prefix.sh', folder
        self.environment = {**os.environ, 'DISPLAY': display, 'WINEPREFIX': str(folder), 'WINEDEBUG': '-all', 'LC_ALL': 'C.UTF-8',
                            # A mutant that crashes is dead without a debugger.
                            'WINEDLLOVERRIDES': 'mscoree=;mshtml=;winemenubuilder.exe=d;winedbg.exe=d'}
        self.keeper = None
        self.make()

    def make(self):
        self.stop()
        run(['bash', self.script, 'copy', self.folder, 'winxp', 'unmanaged'], COPY_LIMIT)
        self.keep()

    def keep(self):
        # It waits for a line that never comes.
        self.keeper = subprocess.Popen(['wine', 'cmd', '/c', 'set', '/p', 'line='], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL, env=self.environment, start_new_session=True)

    def stop(self):
        run(['bash', self.script, 'stop', self.folder], COPY_LIMIT)
        if self.keeper:
            self.keeper.stdin.close()
            self.keeper.wait()
            self.keeper = None

    def run(self, command, limits, folder):
        if self.keeper is None or self.keeper.poll() is not None:
            self.keep()
        return run(['wine', *command], limits, self.environment, folder, end=self.stop)

    def close(self):
        self.stop()
