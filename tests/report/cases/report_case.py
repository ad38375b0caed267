"""A case that runs the report program and reads what it puts out."""
import json
import subprocess
import tempfile
from typing import NamedTuple

from harness import paths
from harness.case import ARCHITECTURE, FAMILY, FOLDER, Case

PROGRAM = f'{FOLDER}\\QuillonReport.exe'


class Ran(NamedTuple):
    status: int
    output: bytes
    errors: str

    @property
    def lines(self):
        """The objects of JSON Lines."""
        return [json.loads(line) for line in self.output.decode('ascii').splitlines()]

    @property
    def entries(self):
        return self.lines[1:]


class ReportCase(Case):
    def report(self, *arguments):
        # Files, not pipes: programs that Wine starts for itself hold a pipe open after the report has ended.
        with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
            status = subprocess.call(['wine', PROGRAM, *arguments], env=self.prefix.environment, stdin=subprocess.DEVNULL,
                                     stdout=output, stderr=errors, timeout=300)
            for stream in (output, errors):
                stream.seek(0)
            return Ran(status, output.read(), errors.read().decode('utf-8', 'replace'))

    def json_report(self, *arguments):
        ran = self.report('--format', 'json', *arguments)
        self.assertEqual((ran.status, ran.errors), (0, ''))
        return ran

    def keep(self, ran, seed):
        """For the queries over all machines."""
        paths.REPORTS.mkdir(parents=True, exist_ok=True)
        (paths.REPORTS / f'{ARCHITECTURE}-{FAMILY}-{seed}.jsonl').write_bytes(ran.output)

    def file(self, name):
        return self.prefix.path(f'{FOLDER}\\{name}')
