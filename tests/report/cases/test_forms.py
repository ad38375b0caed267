"""Hostile values in every form, read by programs of other people."""
import csv
import io
import json
import subprocess

import jsonschema

from harness import paths
from harness.case import FOLDER, RUN
from harness.probe import REG_EXPAND_SZ
from report_case import ReportCase

POLICY = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run'
NAMES = ['=cmd|"/c calc"!A1', '+1', '-1', '@SUM(A1)', '\tx', '\rx', 'a,b', 'say "a"', 'two\nlines', '\u2028\u202e\x1b[31m',
         "'); DROP TABLE entry;--", '{"a":1}', 'Ж 中 \U0001f600', 'x' * 2000, ' blanks ']
COMMANDS = ['=HYPERLINK("http://x")', 'C:\\"a"\r\n\x00,b.exe', '\x07\x1b]0;t\x07.exe', '%n%s%x', '\\\\?\\C:\\x.exe']
LONE = 'C:\\a\ud83d\ude00\ud83d.exe'


def units(text):
    return text.encode('utf-16-be', 'surrogatepass').hex()


def run(*command, data=None):
    return subprocess.run(command, input=data, stdout=subprocess.PIPE, check=True).stdout


class Forms(ReportCase):
    def setUp(self):
        super().setUp()
        # The older family's registry speaks the code page.
        self.names = [name for name in NAMES if self.family.is_nt or name.encode('cp1252', 'ignore').decode('cp1252') == name]
        for name in self.names:
            self.add_run(name, 'C:\\nowhere.exe')
        for number, command in enumerate(COMMANDS):
            self.add_run(f'command {number}', command)
        self.probe.set_value('HKLM', RUN, 'lone', LONE.encode('utf-16-le', 'surrogatepass'), REG_EXPAND_SZ)
        self.probe.set_value('HKLM', POLICY, 'lone', LONE.encode('utf-16-le', 'surrogatepass'))

    def look_at_broken_texts(self, entries):
        lone = [entry for entry in entries if entry['value'] == 'lone']
        self.assertEqual(len(lone), 2)
        if self.family.is_nt:
            self.assertEqual([entry['command'] for entry in lone], ['C:\\a\U0001f600\ufffd.exe'] * 2)
            self.assertEqual({entry['commandUtf16'] for entry in lone}, {units(LONE)})
            # The policy key's entries are named by their command.
            self.assertEqual(lone[1]['nameUtf16'], units(LONE))

    def test_json(self):
        ran = self.json_report('run')
        values = [entry['value'] for entry in ran.entries]
        self.assertEqual([name for name in self.names if name not in values], [])
        self.look_at_broken_texts(ran.entries)
        self.assertEqual([json.loads(line) for line in run('jq', '-c', '.', data=ran.output).splitlines()], ran.lines)
        self.write('report.json', b'[' + ran.output.strip().replace(b'\n', b',') + b']')
        told = run('sqlite3', ':memory:', "SELECT json_group_array(json_extract(value, '$.value')) FROM "
                   f"json_each(readfile('{self.file('report.json')}')) WHERE json_extract(value, '$.category') NOTNULL")
        self.assertEqual(json.loads(told), values)

    def write(self, name, data):
        self.file(name).write_bytes(data)

    def test_json_keeps_to_its_schema(self):
        schema = json.loads((paths.TOP / 'docs' / 'report.schema.json').read_text())
        jsonschema.Draft7Validator.check_schema(schema)
        validator = jsonschema.Draft7Validator(schema)
        state = f'{FOLDER}\\state.jsonl'
        lines = self.json_report('--all', '--hash', '--save', state).lines
        self.add_run(NAMES[0], 'C:\\other.exe')
        self.probe.ask('regdelete', 'HKLM', RUN, NAMES[1])
        self.add_run('new', 'C:\\new.exe')
        difference = self.report('--all', '--compare', state, '--format', 'json')
        self.assertEqual(sorted(line['change'] for line in difference.entries), ['added', 'changed', 'removed'])
        for line in lines + difference.lines:
            validator.validate(line)
        for wrong in ({}, {**lines[1], 'kind': 'other'}, {**lines[1], 'size': '1'}, {**lines[0], 'format': 2},
                      {**lines[1], 'unknown': 1}):
            self.assertFalse(validator.is_valid(wrong), wrong)

    def test_csv(self):
        ran = self.report('run', '--format', 'csv')
        self.assertEqual((ran.status, ran.errors), (0, ''))
        rows = list(csv.DictReader(io.StringIO(ran.output.decode('utf-8-sig'), newline=''), strict=True))
        entries = self.json_report('run').entries
        self.assertEqual(len(rows), len(entries))
        for row, entry in zip(rows, entries):
            self.assertNotIn(None, row)
            for field in ('value', 'name', 'command', 'file', 'commandUtf16', 'nameUtf16'):
                text = entry.get(field, '')
                self.assertEqual(row[field], "'" * text.startswith(tuple('=+-@\t\r')) + text)
        self.write('report.csv', ran.output)
        counted = run('sqlite3', ':memory:', f'.import --csv "{self.file("report.csv")}" entry', 'SELECT count(*), count(DISTINCT value) FROM entry')
        self.assertEqual(counted.decode().strip(), f'{len(rows)}|{len({row["value"] for row in rows})}')

    def test_text(self):
        ran = self.report('run')
        text = ran.output.decode('utf-8')
        self.assertEqual((ran.status, ran.errors), (0, ''))
        self.assertEqual([c for c in text.replace('\r\n', '') if ord(c) < 32 or c in '\x7f\u2028\u202e'], [])
        whole = ['x' * 2000, 'two␊lines'] + ['Ж 中 \U0001f600', 'C:\\a\U0001f600\ufffd.exe'] * self.family.is_nt
        self.assertEqual([name for name in whole if name not in text], [])
