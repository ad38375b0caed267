"""The mutants of a source. None is told by a line number, so that a moved line stays what it is."""
from collections import Counter
from dataclasses import dataclass

from .operators import OPERATORS, Source


@dataclass(frozen=True)
class Mutant:
    file: str
    operator: str
    before: str  # the lines that change, with single blanks
    after: str
    occurrence: int  # among those of the file that look the same
    start: int
    end: int
    replacement: str

    @property
    def key(self):
        return self.file, self.before, self.after, self.occurrence

    def apply(self, text):
        return text[:self.start] + self.replacement + text[self.end:]


def told(text):
    return ' '.join(text.split())


def mutants_of(file, text):
    source, seen, found = Source(text), Counter(), []
    promises = list(source.promises())
    for operator, replacements in OPERATORS.items():
        for start, end, replacement in replacements(source):
            if any(begin <= start < last for begin, last in promises):
                continue
            first = text.rfind('\n', 0, start) + 1
            last = text.find('\n', end)
            last = len(text) if last < 0 else last
            before, after = told(text[first:last]), told(text[first:start] + replacement + text[end:last])
            occurrence = seen[before, after]
            seen[before, after] += 1
            found.append(Mutant(file, operator, before, after, occurrence, start, end, replacement))
    return found


def mutants_of_folders(top, folders):
    found = []
    for folder in folders:
        for path in sorted([*(top / folder).rglob('*.cpp'), *(top / folder).rglob('*.h')]):
            found += mutants_of(path.relative_to(top).as_posix(), path.read_text(encoding='utf-8'))
    return found
