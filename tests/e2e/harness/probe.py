"""The probe program's end in Python: one command line out, one JSON line back."""
import json
import os
import select
import subprocess
import time

from .waiting import TimedOut

REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_DWORD_BIG_ENDIAN, REG_LINK, REG_MULTI_SZ = range(8)
REG_QWORD = 11
PATIENCE = 150  # longer than the probe itself waits for a window's answer
PEER_STARTS = 3


class ProbeError(Exception):
    def __init__(self, command, answer):
        super().__init__(f'{command}: {answer["error"]} ({answer["code"]})')
        self.code = answer['code']


class ProbeEnded(AssertionError):
    pass


def tried_again(start, failure):
    """What `start()` gives. Where addresses stay random (addresses.py) Wine fails to start a program at times (1359 is
    one of its answers), so that our own tools and Wine's may be started again. The product never is: its start is
    what is tested."""
    for attempt in range(1, PEER_STARTS + 1):
        try:
            return start()
        except failure as error:
            if attempt == PEER_STARTS:
                raise
            print(f'started again: {error}', flush=True)


def start_peer(probe, path, folder, arguments):
    """Starts a program that is not the product, and gives its process number."""
    return tried_again(lambda: probe.ask('start', path, folder, arguments)['pid'], ProbeError)


def escaped(field):
    text = str(field).replace('\\', '\\\\')
    return text.replace('\t', '\\t').replace('\n', '\\n').replace('\r', '\\r')


def registry_bytes(kind, data):
    """The registry's form of a Python string, list of strings, number or bytes."""
    if isinstance(data, bytes):
        return data
    if kind == REG_DWORD:
        return int(data).to_bytes(4, 'little')
    if kind == REG_MULTI_SZ:
        return ''.join(text + '\0' for text in data).encode('utf-16-le') + b'\0\0'
    return (data + '\0').encode('utf-16-le')


class Probe:
    def __init__(self, program, environment, trace_file=None, before_exec=None):
        tried_again(lambda: self._start(program, environment, trace_file, before_exec), ProbeEnded)

    def _start(self, program, environment, trace_file, before_exec):
        with open(trace_file or os.devnull, 'ab') as trace:
            self.process = subprocess.Popen(['wine', str(program)], env=environment, stdin=subprocess.PIPE,
                                            stdout=subprocess.PIPE, stderr=trace, preexec_fn=before_exec)
        self.pending = b''
        try:
            self.ask('version')
        except ProbeEnded:
            self.close()
            raise

    def ask(self, command, *fields):
        line = '\t'.join([command, *map(escaped, fields)]) + '\n'
        try:
            self.process.stdin.write(line.encode('utf-8'))
            self.process.stdin.flush()
        except BrokenPipeError:
            raise ProbeEnded(f'the probe had ended before "{command}"') from None
        answer = json.loads(self._line(command))
        if 'error' in answer:
            raise ProbeError(line.strip(), answer)
        return answer

    def _line(self, command):
        end = time.monotonic() + PATIENCE
        output = self.process.stdout.fileno()
        while b'\n' not in self.pending:
            if not select.select([output], [], [], max(0, end - time.monotonic()))[0]:
                raise TimedOut(f'the probe did not answer "{command}"')
            chunk = os.read(output, 65536)
            if not chunk:
                raise ProbeEnded(f'the probe ended at "{command}"')
            self.pending += chunk
        line, self.pending = self.pending.split(b'\n', 1)
        return line

    def close(self):
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()

    # The registry.

    def set_value(self, hive, key, name, data, kind=REG_SZ):
        self.ask('regset', hive, key, name, kind, registry_bytes(kind, data).hex())

    def values(self, hive, key):
        """Name to (type, raw bytes), in the registry's order; nothing when there is no such key."""
        try:
            rows = self.ask('regvalues', hive, key)['values']
        except ProbeError as error:
            if error.code == 2:
                return {}
            raise
        return {row['name']: (row['type'], bytes.fromhex(row['data'])) for row in rows}

    def text_values(self, hive, key):
        return {name: raw.decode('utf-16-le').rstrip('\0') for name, (_, raw) in self.values(hive, key).items()}

    def keys(self, hive, key):
        try:
            return self.ask('regkeys', hive, key)['keys']
        except ProbeError as error:
            if error.code == 2:
                return []
            raise
