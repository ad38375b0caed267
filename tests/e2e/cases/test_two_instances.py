"""Two instances from one folder at once."""
import re
from collections import Counter

from harness.case import Case, FOLDER, RUN
from harness.program import Program
from harness.waiting import wait_for

WINLOGON = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon'
SHELL = 'OS shell particular to the computer (for any user)'
LINE = re.compile(r'\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}\t\d\t[^\t]*\t-?\d+\t[^\r\n]*\r\n')
DENIED = 'Access denied. You must be logged in as an administrator when disabling this startup program.'


class TwoInstances(Case):
    def start_two(self):
        programs = []
        for _ in range(2):
            self.windows98.prepare_start(self.probe, FOLDER)
            programs.append(Program(self.probe, FOLDER + '\\Quillon.exe', self.prefix.environment))
            # Where the right to append alone is there, the system sees to it that no line is written over. Wine looks for
            # the end and writes there in two steps, between which another's line is lost: there the lines come in turn.
            if self.family.is_nt:
                programs[-1].wait_for_window()
        self.program = programs[0]
        return [program.wait_for_window() for program in programs]

    def answer_of(self, program, expected, button):
        dialog = program.dialog()
        self.assertEqual(dialog.text.strip(), expected)
        dialog.press(button)

    def log(self):
        """Whole lines, or the case fails."""
        text = (self.folder / 'QLN.log').read_bytes().decode('utf-8')
        self.assertEqual(LINE.sub('', text), '')
        return text

    def test_both_logs_are_whole_and_so_is_every_backup(self):
        for number in range(300):
            self.add_run(f'Entry {number}', f'C:\\nowhere\\{number}.exe')
        first, second = self.start_two()
        self.log()
        texts = Counter(self.log_texts())
        self.assertEqual(texts['********** start app'], 2)
        for number in range(300):
            self.assertEqual(texts[f"Run: 'Entry {number}', 'Not specified', 'C:\\nowhere\\{number}.exe'"], 2)
        # Every other line stands once for each of the two as well; the start of Windows is told to the second.
        odd = [text for text, count in texts.items() if count % 2 and not text.startswith('Startup: ')]
        self.assertEqual(odd, [])
        contents = {file.read_bytes() for file in self.backups()}
        self.assertEqual(len(contents), 1, [file.name for file in self.backups()])
        [backup] = contents
        backup = backup.decode('utf-16') if self.family.is_nt else backup.decode('cp1252')
        for number in range(300):
            self.assertIn(f'"Entry {number}"="C:\\\\nowhere\\\\{number}.exe"\r\n', backup)
        # No half of a file was left beside it.
        self.assertEqual({file.suffix for file in self.backups()}, {'.reg'})
        for program, name in ((first, 'Entry 1'), (second, 'Entry 2'), (first, 'Entry 3')):
            before = self.log()
            program.select('ucRun1', name)
            program.press_button('ucRun1')
            self.answer_of(program, f"Are you sure you want to delete '{name}' from startup?", 'OK')
            self.answer_of(program, f"'{name}' is deleted from startup successfully.", 'OK')
            after = self.log()
            self.assertTrue(after.startswith(before))
            self.assertIn(name.replace('Entry ', 'nowhere\\'), after[len(before):])

    def test_what_the_other_deleted_is_refused_and_costs_nothing(self):
        for name in ('Alpha', 'Beta', 'Gamma'):
            self.add_run(name, 'C:\\nowhere\\x.exe')
        first, second = self.start_two()
        for program, told in ((first, "'Beta' is deleted from startup successfully."), (second, DENIED)):
            program.select('ucRun1', 'Beta')
            program.press_button('ucRun1')
            self.answer_of(program, "Are you sure you want to delete 'Beta' from startup?", 'OK')
            self.answer_of(program, told, 'OK')
            wait_for(lambda: 'Beta' not in [row.name for row in program.rows('ucRun1')], 'the refilled list')
        self.assertEqual(sorted(name for name in self.probe.values('HKLM', RUN) if name in ('Alpha', 'Beta', 'Gamma')),
                         ['Alpha', 'Gamma'])

    def test_a_place_that_both_set_back_keeps_the_way_back_of_the_first(self):
        self.probe.set_value('HKLM', WINLOGON, 'Shell', 'evil.exe')
        for program in self.start_two():
            program.select('ucOther1', SHELL)
            program.press_button('ucOther1')
            self.answer_of(program, f'Are you sure you want to delete excess startups from {SHELL}?', 'OK')
            self.answer_of(program, 'Startups are deleted successfully.', 'OK')
        [kept] = [file for file in self.backups() if file.name.startswith('Restored ')]
        data = kept.read_bytes()
        self.assertIn('"shell"="evil.exe"', data.decode('utf-16') if self.family.is_nt else data.decode('cp1252'))
        self.assertEqual(self.probe.text_values('HKLM', WINLOGON)['Shell'], 'Explorer.exe')
