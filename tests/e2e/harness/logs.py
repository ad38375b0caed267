"""The activity logs, and the checksum that one of their lines carries."""
from typing import NamedTuple


class Entry(NamedTuple):
    level: int
    source: str
    code: int
    text: str


def log_entries(file):
    """A line holds time, level, source, code and text, separated by tabs; a log that is not there has none."""
    if not file.is_file():
        return []
    entries = []
    for line in file.read_bytes().decode('utf-8').split('\r\n')[:-1]:
        _, level, source, code, text = line.split('\t')
        entries.append(Entry(int(level), source, int(code), text))
    return entries


def checksum(data):
    """A rotation to the right of 31 bits, then the byte added; a step that leaves 31 bits is skipped."""
    value = 0
    for byte in data:
        step = value // 2 + (value % 2) * 2 ** 30 + byte
        if step <= 2 ** 31 - 1:
            value = step
    return value
