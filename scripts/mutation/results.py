"""What came out, one JSON line for each trial, and the figures of it. A later line of a mutant stands beside the first."""
import json

CAUGHT = ('killed', 'timeout')
SAME = ('same program', 'equivalent')
VOID = 'void'  # takes back what was said of the mutant before
OUTCOMES = ('killed', 'timeout', 'survived', 'not compiled', *SAME)


class Results:
    def __init__(self, path, seed):
        self.path, self.seed = path, seed
        self.trials = {}
        if path.exists():
            for line in path.read_text(encoding='utf-8').splitlines():
                trial = json.loads(line)
                if trial['seed'] == seed:
                    self._take(trial)

    def _take(self, trial):
        key = trial['file'], trial['before'], trial['after'], trial['occurrence']
        if trial['outcome'] == VOID:
            self.trials.pop(key, None)
        else:
            self.trials.setdefault(key, []).append(trial)

    def add(self, mutant, outcome, stage='', test='', seconds=0.0):
        trial = {'seed': self.seed, 'file': mutant.file, 'operator': mutant.operator, 'before': mutant.before,
                 'after': mutant.after, 'occurrence': mutant.occurrence, 'outcome': outcome, 'stage': stage, 'test': test,
                 'seconds': round(seconds, 1)}
        self._take(trial)
        self.path.parent.mkdir(parents=True, exist_ok=True)
        with self.path.open('a', encoding='utf-8') as file:
            file.write(json.dumps(trial, ensure_ascii=False) + '\n')

    def last(self, mutant):
        trials = self.trials.get(mutant.key)
        return trials[-1]['outcome'] if trials else None

    def outcomes(self, mutants, which):
        """Folder to outcome to number; `which` is 0 for the first trial of each mutant, -1 for the last."""
        table = {}
        for mutant in mutants:
            trials = self.trials.get(mutant.key)
            if trials:
                row = table.setdefault(mutant.file.split('/')[0], dict.fromkeys(OUTCOMES, 0))
                row[trials[which]['outcome']] += 1
        return table


def share(row):
    """Of those that compile and are not known to be the same program, how many in a hundred were caught."""
    caught = sum(row[outcome] for outcome in CAUGHT)
    judged = caught + row['survived']
    return 100 * caught / judged if judged else 100.0


def told(title, table):
    lines = [f'{title:12}' + ''.join(f'{outcome:>14}' for outcome in OUTCOMES) + f'{"caught":>10}']
    total = dict.fromkeys(OUTCOMES, 0)
    for folder, row in sorted(table.items()):
        lines.append(f'{folder:12}' + ''.join(f'{row[outcome]:14}' for outcome in OUTCOMES) + f'{share(row):8.1f} %')
        total = {outcome: total[outcome] + row[outcome] for outcome in OUTCOMES}
    lines.append(f'{"all":12}' + ''.join(f'{total[outcome]:14}' for outcome in OUTCOMES) + f'{share(total):8.1f} %')
    return '\n'.join(lines)
