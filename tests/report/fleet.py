"""Runs the queries of docs/fleet.md over a folder of reports and holds their answers against Python's."""
import json
import re
import subprocess
import tempfile
from collections import defaultdict
from pathlib import Path

GUIDE = Path(__file__).resolve().parents[2] / 'docs' / 'fleet.md'


def answers(reports, folder):
    """The rows of each query, in the guide's order; the tables are made by its first block."""
    tables, *queries = re.findall(r'^```sql\n(.*?)^```', GUIDE.read_text(), re.M | re.S)
    database = Path(folder) / 'fleet.db'

    def ask(sql):
        done = subprocess.run(['sqlite3', '-json', '-bail', database], input=sql, cwd=reports.parent, text=True,
                              capture_output=True)
        if done.returncode or done.stderr:
            raise ValueError(f'{done.stderr.strip()} in {sql}')
        return json.loads(done.stdout or '[]')

    ask(tables.replace("'reports'", f"'{reports.name}'"))
    return [ask(query) for query in queries]


def read(reports):
    """(report, header, entries) of each file."""
    for file in sorted(reports.glob('*.jsonl')):
        header, *entries = map(json.loads, file.read_text().splitlines())
        yield file.name, header, entries


def rare(machines):
    seen = defaultdict(set)
    for report, _, entries in machines:
        for entry in entries:
            if entry['kind'] != 'unreadable' and entry['state'] != 'protected':
                place = [entry.get(field, '').lower() if field in entry else None for field in ('key', 'value')]
                seen[entry['category'], *place, entry.get('command')].add(report)
    return sum(len(reports) <= 2 for reports in seen.values())


def faults(reports):
    """One line for each answer that is not what the reports hold."""
    machines = list(read(reports)) if reports.is_dir() else []
    if not machines:
        return ['there are no reports']
    try:
        with tempfile.TemporaryDirectory() as folder:
            few, missing, kinds, changed, times = answers(reports, folder)
    except ValueError as error:
        return [str(error)]
    every = [entry for _, _, entries in machines for entry in entries]
    expected = [
        ('what stands on few machines', len(few), rare(machines)),
        ('files that are not there', len(missing), sum(entry.get('exists') is False for entry in every)),
        ('changed places', len(changed), sum(entry.get('state') == 'changed' or entry['kind'] == 'unreadable' for entry in every)),
        ('machines', [row['time'] for row in times], sorted(header['time'] for _, header, _ in machines)),
    ]
    wrong = [f'{what}: {found} in place of {wanted}' for what, found, wanted in expected if found != wanted]
    wrong += [f'{what}: nothing' for what, found, _ in expected if not found]
    several = defaultdict(set)
    for entry in every:
        if entry.get('exists'):
            several[entry['file'].lower()].add((entry.get('maker'), entry.get('fileVersion'), entry['size']))
    paths = {path for path, found in several.items() if len(found) > 1}
    if {row['path'] for row in kinds} != paths:
        wrong.append('one file name with several makers')
    return wrong
