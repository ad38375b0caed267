"""The mutants that are known to be the same program, or that nothing could tell apart, with the reason for each.

A row of the table is: file, the line as it stands, the line as it would be, reason; separated by tabs. A row is void when
its line no longer stands in the file, or stands there more than once: what holds for one place need not for another.
"""
from typing import NamedTuple

from .mutants import mutants_of


class Equivalent(NamedTuple):
    file: str
    before: str
    after: str
    reason: str


class Equivalents:
    def __init__(self, rows):
        self.reasons = {row[:3]: row.reason for row in rows}

    @staticmethod
    def read(path):
        lines = path.read_text(encoding='utf-8').splitlines() if path.exists() else []
        return Equivalents([Equivalent(*line.split('\t')) for line in lines if line and not line.startswith('#')])

    def reason(self, mutant):
        return self.reasons.get((mutant.file, mutant.before, mutant.after))

    def void(self, top):
        """The rows that fit no mutant, or more than one."""
        found = {}
        for file in {file for file, *_ in self.reasons}:
            path = top / file
            for mutant in mutants_of(file, path.read_text(encoding='utf-8')) if path.exists() else []:
                look = (file, mutant.before, mutant.after)
                found[look] = found.get(look, 0) + 1
        return [row for row in self.reasons if found.get(row) != 1]
