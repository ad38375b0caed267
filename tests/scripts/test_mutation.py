"""The mutants that the operators make, and what is said of one that no test noticed."""
import contextlib
import io
import itertools
import json
import queue
import sys
import tempfile
import time
import types
import unittest
import unittest.mock
from pathlib import Path

import mutate
from mutation import results as figures
from mutation.equivalents import Equivalent, Equivalents
from mutation.mutants import mutants_of
from mutation.running import Limits, run
from mutation.trial import held, tried

TOP = Path(__file__).resolve().parents[2]


def changes(text, operator):
    """What the operator makes of a line of a function."""
    return [mutant.after for mutant in mutants_of('a.cpp', f'void f() {{\n{text}\n}}') if mutant.operator == operator]


class Operators(unittest.TestCase):
    def test_relations(self):
        self.assertEqual(changes('x = a < b;', 'relation'), ['x = a <= b;', 'x = a >= b;'])
        self.assertEqual(changes('x = a == b;', 'relation'), ['x = a != b;'])
        self.assertEqual(changes('std::vector<int> a; g<b>(c);', 'relation'), [])

    def test_arithmetic(self):
        self.assertEqual(changes('x = a && b;', 'arithmetic'), ['x = a || b;'])
        self.assertEqual(changes('x = a - 1;', 'arithmetic'), ['x = a + 1;'])
        self.assertEqual(changes('++i;', 'arithmetic'), ['--i;'])
        self.assertEqual(changes('x = text + L"a"; T&& y; *p = -1;', 'arithmetic'), [])

    def test_negations(self):
        self.assertEqual(changes('x = !a;', 'negation'), ['x = a;'])

    def test_constants(self):
        self.assertEqual(changes('x = 0;', 'constant'), ['x = 1;'])
        self.assertEqual(changes('x = 1;', 'constant'), ['x = 0;'])
        self.assertEqual(changes('x = 0xFFu;', 'constant'), ['x = 0x100u;'])
        self.assertEqual(changes('x = true;', 'constant'), ['x = false;'])
        self.assertEqual(changes("x = L'a';", 'constant'), ["x = L'~';"])
        self.assertEqual(changes('x = L"a";', 'constant'), ['x = L"a~";', 'x = L"";'])

    def test_what_is_no_code_is_left_alone(self):
        self.assertEqual(mutants_of('a.cpp', '#include "a.h"\n#define A \\\n  1\n// 1 == 2\n/* 1 < 2 */ extern "C" {}\n'), [])

    def test_what_only_the_compiler_reads_is_left_alone(self):
        text = 'struct A {\nA(const A&) = delete;\nvoid operator=(A&&) = delete;\nint a = 2;\n};\nstatic_assert(sizeof(A) == 4 && true);'
        self.assertEqual([mutant.after for mutant in mutants_of('a.h', text)], ['int a = 3;'])

    def test_conditions(self):
        self.assertEqual(changes('if (a) b();', 'condition'), ['if (false) b();', 'if (true) b();'])
        self.assertEqual(changes('while (a) b();', 'condition'), ['while (false) b();'])
        self.assertEqual(changes('if (int a = b()) c(a);', 'condition'), [])

    def test_operands(self):
        self.assertEqual(changes('if (a(b, c) && !d || e) f();', 'operand'),
                         ['if (!d || e) f();', 'if (a(b, c) || e) f();', 'if (e) f();', 'if (a(b, c) && !d) f();'])
        self.assertEqual(changes('x = a ? b || c : d;', 'operand'), ['x = a ? c : d;', 'x = a ? b : d;'])
        self.assertEqual(changes('return g([] { return 1; }) && b;', 'operand'), ['return b;', 'return g([] { return 1; });'])
        self.assertEqual(changes('T&& y;', 'operand'), [])

    def test_choices(self):
        self.assertEqual(changes('x = a ? b(1, 2) : c;', 'choice'), ['x = a ? c : b(1, 2);'])

    def test_arguments(self):
        self.assertEqual(changes('f(a, g(b), c);', 'argument'), ['f(g(b), a, c);', 'f(a, c, g(b));', 'f(a, g(b));'])
        self.assertEqual(changes('f(a);', 'argument'), [])
        self.assertEqual(changes('void f(int a, int b);', 'argument'), [])

    def test_statements(self):
        self.assertEqual(changes('f(a);', 'statement'), [''])
        self.assertEqual(changes('a = b; c();', 'statement'), ['c();', 'a = b;'])
        self.assertEqual(changes('if (a) f();', 'statement'), ['if (a) ;'])
        self.assertEqual(changes('int a = 1; const Key key(b); return a;', 'statement'), [])
        self.assertEqual(changes('x = f(a) + g();', 'statement'), [''])

    def test_rows(self):
        self.assertEqual(changes('const Row rows[] = {{1, a}, {2, b}};', 'row'),
                         ['const Row rows[] = { {2, b}};', 'const Row rows[] = {{2, b}, {1, a}};'])

    def test_a_mutant_is_told_by_its_line_and_not_by_its_place(self):
        keys = [{mutant.key for mutant in mutants_of('a.cpp', text)} for text in ('x = a < b;', '\n\n  x  = a < b;')]
        self.assertEqual(*keys)

    def test_the_same_line_twice_gives_two_mutants(self):
        found = [mutant for mutant in mutants_of('a.cpp', 'a(1);\na(1);\n') if mutant.operator == 'constant']
        self.assertEqual([mutant.occurrence for mutant in found], [0, 1])
        self.assertEqual([mutant.apply('a(1);\na(1);\n') for mutant in found], ['a(0);\na(1);\n', 'a(1);\na(0);\n'])

    def test_every_mutant_changes_its_source(self):
        for path in sorted((TOP / 'win32' / 'base').glob('*.cpp')):
            text = path.read_text(encoding='utf-8')
            for mutant in mutants_of(path.name, text):
                self.assertNotEqual(mutant.apply(text), text, mutant)


class Stage:
    """A part of the suite that runs a command of the machine."""

    def __init__(self, name, code='', builds=True, changes=True, limits=Limits(30)):
        self.name, self.builds, self.changes, self.limits = name, builds, changes, limits
        self.command = [sys.executable, '-c', code]

    def build(self):
        return self.builds

    def changed(self):
        return self.changes

    def run(self, _):
        return run(self.command, self.limits)


class Trials(unittest.TestCase):
    passes = Stage('passes')
    fails = Stage('fails', 'print("TEST CASE:  told\\na.cpp(1): MESSAGE: 3\\n====\\nTEST CASE:  the rule\\na.cpp(2): ERROR: no"); raise SystemExit(1)')

    def test_a_mutant_that_nothing_notices_survives(self):
        self.assertEqual(held(None, [self.passes, self.passes]), ('survived', '', ''))

    def test_a_failing_stage_kills_and_is_named_with_its_case(self):
        self.assertEqual(held(None, [self.passes, self.fails]), ('killed', 'fails', 'the rule'))

    def test_what_takes_too_long_is_told_apart(self):
        waits = Stage('waits', 'import time; time.sleep(60)', limits=Limits(0.5))
        circles = Stage('circles', 'while True: pass', limits=Limits(60, 1))
        self.assertEqual(held(None, [waits]), ('timeout', 'waits', ''))
        self.assertEqual(held(None, [circles]), ('timeout', 'circles', ''))

    def test_the_clock_alone_does_not_end_what_has_much_room(self):
        self.assertEqual(held(None, [Stage('slow', 'import time; time.sleep(2)', limits=Limits(600, 1))])[0], 'survived')

    def test_a_time_in_which_nothing_ran_does_not_count(self):
        """As after a machine that slept: the clock has gone on by a thousand seconds at each look."""
        clock = itertools.count(0, 1000)
        with unittest.mock.patch('mutation.running.time', types.SimpleNamespace(monotonic=lambda: next(clock), sleep=time.sleep)):
            self.assertEqual(run([sys.executable, '-c', 'import time; time.sleep(0.3)'], Limits(60)).code, 0)

    def test_what_does_not_compile(self):
        self.assertEqual(held(None, [Stage('compiled', builds=False), self.fails]), ('not compiled', 'compiled', ''))

    def test_a_stage_that_cannot_see_the_mutant_is_left_out(self):
        unseeing = Stage('unseeing', self.fails.command[-1], changes=False)
        self.assertEqual(held(None, [unseeing, self.passes])[0], 'survived')
        self.assertEqual(held(None, [unseeing])[0], 'same program')

    def test_a_stage_without_tests_for_the_file_says_nothing(self):
        self.passes.run = lambda _: None
        self.addCleanup(self.passes.__dict__.pop, 'run')
        self.assertEqual(held(None, [self.passes])[0], 'survived')

    def test_the_source_is_put_back_whatever_happens(self):
        steps = []

        class Tree:
            put = staticmethod(lambda mutant: steps.append('put'))
            put_back = staticmethod(lambda: steps.append('put back'))

        with self.assertRaises(AttributeError):
            tried(None, Tree, [None])
        self.assertEqual(steps, ['put', 'put back'])

    def test_a_run_gives_its_status_and_what_it_said(self):
        ran = run([sys.executable, '-c', 'print("said"); raise SystemExit(3)'], Limits(30))
        self.assertEqual((ran.code, ran.output), (3, 'said\n'))
        self.assertGreater(ran.worked, 0)


class Figures(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.file = Path(folder.name) / 'results.jsonl'
        self.mutants = mutants_of('win32/a.cpp', 'x = a < b;\ny = 0;\n')

    def test_they_are_kept_for_each_seed_and_gone_on_with(self):
        one, other, last = self.mutants[:3]
        results = figures.Results(self.file, 7)
        results.add(one, 'killed', 'wide', 'a case', 1.24)
        results.add(other, 'survived')
        figures.Results(self.file, 8).add(last, 'killed')
        again = figures.Results(self.file, 7)
        self.assertEqual([again.last(mutant) for mutant in self.mutants[:3]], ['killed', 'survived', None])
        self.assertEqual(json.loads(self.file.read_text().splitlines()[0])['seconds'], 1.2)

    def test_the_first_trial_counts_beside_the_last(self):
        results = figures.Results(self.file, 7)
        results.add(self.mutants[0], 'survived')
        results.add(self.mutants[0], 'killed')
        self.assertEqual(results.outcomes(self.mutants, 0)['win32']['survived'], 1)
        self.assertEqual(results.outcomes(self.mutants, -1)['win32']['killed'], 1)

    def test_what_is_taken_back_is_tried_again(self):
        one, other = self.mutants[:2]
        results = figures.Results(self.file, 7)
        for mutant, outcome in ((one, 'killed'), (other, 'killed'), (one, figures.VOID)):
            results.add(mutant, outcome)
        for told in (results, figures.Results(self.file, 7)):
            self.assertEqual([told.last(one), told.last(other)], [None, 'killed'])
            self.assertEqual(told.outcomes(self.mutants, 0)['win32']['killed'], 1)

    def test_a_share_leaves_out_what_does_not_compile_and_what_is_the_same(self):
        row = dict.fromkeys(figures.OUTCOMES, 0) | {'killed': 2, 'timeout': 1, 'survived': 1, 'not compiled': 5, 'same program': 6}
        self.assertEqual(figures.share(row), 75)
        self.assertIn('75.0 %', figures.told('trial', {'win32': row}))


class Checks(unittest.TestCase):
    """Windows as the mutants before have left it."""

    def worker(self, *faults):
        with tempfile.TemporaryDirectory() as folder:
            self.results = figures.Results(Path(folder) / 'results.jsonl', 1)
            worker = mutate.Worker(0, None, self.results, None)
            self.mutants = mutants_of('a.cpp', 'x = a < b;')
            for mutant in self.mutants:
                with contextlib.redirect_stdout(io.StringIO()):
                    worker.todo = queue.Queue()
                    worker.tell(mutant, 'killed', 'wide', 'a case', 1.0)
            answers = iter(faults)
            stage = types.SimpleNamespace(name='wide', fault=lambda: next(answers))
            self.made = []
            with contextlib.redirect_stdout(io.StringIO()) as self.told:
                worker.check([stage], types.SimpleNamespace(forget_runs=lambda: self.made.append('tree')),
                             types.SimpleNamespace(make=lambda: self.made.append('Windows')))
            return worker

    def test_verdicts_stand_where_the_tests_pass(self):
        worker = self.worker('')
        self.assertEqual(([self.results.last(mutant) for mutant in self.mutants], self.made, worker.unchecked),
                         (['killed'] * 2, [], []))

    def test_they_are_taken_back_where_the_tests_fail(self):
        worker = self.worker('a test', '')
        self.assertEqual(([self.results.last(mutant) for mutant in self.mutants], self.made, worker.unchecked),
                         ([None] * 2, ['Windows', 'tree'], []))
        self.assertIn('2 trials are void, without a mutant this fails: a test', self.told.getvalue())

    def test_nothing_goes_on_where_they_always_fail(self):
        self.assertRaisesRegex(SystemExit, 'fails without a mutant: another', self.worker, 'a test', 'another')


class Known(unittest.TestCase):
    def rows(self, text, *pairs):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        (Path(folder.name) / 'a.cpp').write_text(text)
        equivalents = Equivalents([Equivalent('a.cpp', before, after, 'reason') for before, after in pairs])
        return equivalents, equivalents.void(Path(folder.name))

    def test_a_row_is_known_by_its_lines(self):
        equivalents, void = self.rows('x = 0;\n', ('x = 0;', 'x = 1;'))
        self.assertEqual((equivalents.reason(mutants_of('a.cpp', 'x = 0;')[0]), void), ('reason', []))

    def test_a_row_that_fits_nothing_or_two_lines_is_void(self):
        self.assertEqual(len(self.rows('y = 0;\n', ('x = 0;', 'x = 1;'))[1]), 1)
        self.assertEqual(len(self.rows('x = 0;\nx = 0;\n', ('x = 0;', 'x = 1;'))[1]), 1)

    def test_the_table_has_no_void_row(self):
        table = Equivalents.read(TOP / 'tests' / 'mutation' / 'equivalents.tsv')
        self.assertEqual(table.void(TOP), [])
