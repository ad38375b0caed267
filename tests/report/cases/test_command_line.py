"""Exit statuses, streams, files, and what cannot be read."""
import hashlib
import os
import signal
import subprocess

from harness.case import FOLDER, RUN
from harness.waiting import wait_for
from report_case import PROGRAM, ReportCase

OUT = f'{FOLDER}\\out file.jsonl'


class CommandLine(ReportCase):
    def test_help_and_version(self):
        ran = self.report('--help')
        self.assertEqual((ran.status, ran.errors), (0, ''))
        self.assertIn(b'--compare FILE', ran.output)
        ran = self.report('--version')
        self.assertRegex(ran.output, rb'^QuillonReport \d+\.\d+\.\d+\n$')

    def test_it_asks_for_no_more_rights_and_no_newer_windows(self):
        program = self.file('QuillonReport.exe').read_bytes()
        self.assertIn(b'requestedExecutionLevel level="asInvoker"', program)
        self.assertNotIn(b'highestAvailable', program)
        self.assertNotIn(b'QLNCustom', program)

    def test_wrong_use(self):
        for arguments in (['--nothing'], ['other'], ['--output'], ['--format', 'xml'], ['--format', 'csv', '--compare', 'x']):
            ran = self.report(*arguments)
            self.assertEqual((ran.status, ran.output), (2, b''), arguments)
            self.assertIn('QuillonReport: ', ran.errors)

    def test_nothing_to_compare_with(self):
        self.file('broken').write_text('{"format":1,"categories":[]}\n{')
        self.file('other').write_text('{"format":1,"categories":["custom"]}\n')
        for name, reason in (('missing', 'missing'), ('broken', 'line 2: no JSON'), ('other', 'lacks the category run')):
            ran = self.report('run', '--compare', f'{FOLDER}\\{name}', '--save', f'{FOLDER}\\saved')
            self.assertEqual((ran.status, ran.output), (2, b''), name)
            self.assertIn(reason, ran.errors)
            self.assertFalse(self.file('saved').exists())

    def test_files_are_written_whole_or_not_at_all(self):
        ran = self.report('run', '--format', 'json', '--output', OUT)
        self.assertEqual((ran.status, ran.output, ran.errors), (0, b'', ''))
        whole = self.file('out file.jsonl').read_bytes()
        self.assertEqual(whole.split(b'\n')[1:], self.report('run', '--format', 'json').output.split(b'\n')[1:])
        ran = self.report('run', '--output', 'C:\\no such folder\\out')
        self.assertEqual((ran.status, ran.output), (2, b''))
        self.assertIn('no such folder', ran.errors)
        self.assertEqual(self.report('run', '--quiet')[:2], (0, b''))
        names = {file.name for file in self.folder.iterdir()}
        self.assertEqual(names, {'Quillon.exe', 'QuillonReport.exe', 'Helmkit.dll', 'QLNCustom.dll', 'out file.jsonl'})

    def begun(self):
        return [file.name for file in self.folder.iterdir() if 'out file' in file.name]

    def test_ctrl_c_leaves_no_half_file(self):
        """The key is pressed at the moment when the first file, finished or not, is seen."""
        for _ in range(3):
            process = subprocess.Popen(['wine', PROGRAM, '--format', 'json', '--output', OUT], env=self.prefix.environment,
                                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            wait_for(self.begun, 'the file', patience=120, pause=0)
            os.kill(process.pid, signal.SIGINT)
            process.wait(120)
            self.assertEqual(self.begun(), ['out file.jsonl'])
            written = self.file('out file.jsonl')
            self.assertTrue(written.read_bytes().endswith(b'}\n'))
            written.unlink()

    def test_a_place_that_cannot_be_read(self):
        self.add_run('before', 'C:\\a.exe')
        self.add_run('user', 'C:\\b.exe', hive='HKCU')
        self.report('run', '--save', OUT)
        self.probe.ask('regconceal', 'HKLM', RUN)
        ran = self.report('run', '--format', 'json', '--compare', OUT)
        self.assertEqual(ran.status, 2)
        self.assertIn('HKEY_LOCAL_MACHINE: ' + RUN, ran.errors)
        told = [(line['change'], line.get('after', line.get('before'))['kind']) for line in ran.entries]
        self.assertEqual(told, [('added', 'unreadable'), ('removed', 'entry')])
        entry = ran.entries[0]['after']
        self.assertEqual((entry['hive'], entry['key']), ('HKEY_LOCAL_MACHINE', RUN))
        self.assertNotIn('value', entry)
        self.assertTrue(entry['error'].startswith(RUN + ': '), entry)
        self.assertEqual(self.report('winlogon').status, 0)

    def test_hashes_are_of_the_files_of_this_machine(self):
        self.prefix.write('C:\\tools\\a b.exe', b'MZ' * 5000)
        self.add_run('here', '"C:\\tools\\a b.exe" -x')
        self.add_run('elsewhere', '\\\\localhost\\c$\\x.exe')
        entries = {entry['value']: entry for entry in self.json_report('run', '--hash').entries}
        here = entries['here']
        self.assertEqual((here['file'], here['exists'], here['size']), ('C:\\tools\\a b.exe', True, 10000))
        self.assertEqual(here['sha256'], hashlib.sha256(b'MZ' * 5000).hexdigest())
        self.assertNotIn('sha256', entries['elsewhere'])
        self.assertTrue(all('sha256' not in entry for entry in self.json_report('run').entries))
