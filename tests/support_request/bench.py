"""What a case works with: a folder of its own, the drivers under Wine, and other people's archive tools."""
import os
import resource
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent.parent


class Failed(Exception):
    pass


def expect(condition, what):
    if not condition:
        raise Failed(what)


def expect_equal(found, wanted, what):
    expect(found == wanted, f'{what}: found {found!r}, wanted {wanted!r}')


def windows_path(path):
    return 'Z:' + str(path).replace('/', '\\')


class Answer:
    """What a driver told: its lines by name, in order."""

    def __init__(self, text):
        self.text = text
        self.lines = [line.split('\t') for line in text.splitlines() if line]

    def all(self, name):
        return [line[1:] if len(line) > 2 else line[1] for line in self.lines if line[0] == name]

    def one(self, name):
        found = self.all(name)
        return found[0] if found else None

    @property
    def error(self):
        """The number of the error as eight hexadecimal digits, None for success."""
        return (self.one('error') or '').split(' ')[0] or None


class Bench:
    def __init__(self, architecture, flavour, programs, environment):
        self.architecture, self.flavour = architecture, flavour
        self.programs, self.environment = programs, environment
        self.folder = Path(tempfile.mkdtemp(prefix='quillon-support-'))

    def close(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def write(self, name, content=b''):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        return path

    def run(self, program, arguments, file_limit=None):
        def limit():
            if file_limit is not None:
                # A write that goes past the limit fails like one on a full disk, instead of ending the process.
                signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
                resource.setrlimit(resource.RLIMIT_FSIZE, (file_limit, file_limit))

        # Into files: the first program of a session starts Wine's desktop, which inherits what it writes to and would
        # keep a pipe open until the last program of the session has ended.
        with tempfile.TemporaryFile('w+', encoding='utf-8') as output:
            subprocess.run(['wine', self.programs / program, *arguments, f'flavour={self.flavour}'], timeout=300,
                           cwd=self.folder, env=self.environment, stdout=output, stderr=subprocess.DEVNULL, preexec_fn=limit)
            output.seek(0)
            return Answer(output.read())

    def zip(self, archive, specs, *options, delete=False, file_limit=None):
        """Runs cZip over specifications relative to the bench's folder, or full Windows paths."""
        return self.run('zip_driver.exe', ['delete' if delete else 'zip', str(archive), *options,
                                           *(f'spec={spec}' for spec in specs)], file_limit)

    def good_zip(self, archive, specs, *options, delete=False):
        answer = self.zip(archive, specs, *options, delete=delete)
        expect(answer.error is None, f'cZip failed: {answer.text}')
        return answer

    def tool(self, *command, status=0):
        done = subprocess.run(command, cwd=self.folder, capture_output=True, text=True, errors='replace',
                              env={**os.environ, 'LC_ALL': 'C.UTF-8'})
        if status is not None:
            expect_equal(done.returncode, status, f'{command}: {done.stdout[-800:]}{done.stderr[-400:]}')
        return done

    def all_readers_agree(self, archive):
        self.tool('unzip', '-t', archive)
        self.tool('7z', 't', archive)
        self.tool('zip', '-T', archive)

    def leftovers(self):
        return [path.name for path in self.folder.iterdir() if path.name.endswith('.tmp')]
