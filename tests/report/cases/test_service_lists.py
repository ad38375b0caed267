"""Whole lists of services: reported, changed in three places, and compared."""
from harness import services
from harness.case import ARCHITECTURE, FAMILY, FOLDER
from report_case import ReportCase

WINDOWS = {'win98': '2000', 'win2k': '2000', 'winxp': '2003' if ARCHITECTURE == 'x64' else 'XP', 'win10': '10'}[FAMILY]
STATE = f'{FOLDER}\\state.jsonl'


class ServiceLists(ReportCase):
    def set_path(self, service, path):
        self.probe.set_value('HKLM', f'{services.SERVICES}\\{service}', 'ImagePath', path)

    def test_three_changes_are_three(self):
        every = list(services.services_of(WINDOWS))
        services.fill(self.probe, every)
        listed = [service.name for service in every if service.is_listed]
        ran = self.json_report('services', '--save', STATE)
        self.keep(ran, f'services-{WINDOWS}')
        self.assertEqual(sorted(entry['key'].rsplit('\\', 1)[-1].lower() for entry in ran.entries),
                         sorted(name.lower() for name in listed))
        self.assertEqual(self.file('state.jsonl').read_bytes(), ran.output)

        same = self.report('services', '--compare', STATE, '--format', 'json')
        self.assertEqual((same.status, same.entries), (0, []))

        changed, removed = listed[3], listed[-2]
        self.set_path(changed, 'C:\\evil\\changed.exe')
        self.probe.ask('regdeletetree', 'HKLM', f'{services.SERVICES}\\{removed}')
        self.set_path('zzadded', 'C:\\evil\\added.exe')
        ran = self.report('services', '--compare', STATE, '--format', 'json', '--save', STATE)
        self.assertEqual((ran.status, ran.errors), (1, ''))
        found = sorted((line['change'], (line.get('after') or line['before'])['key'].rsplit('\\', 1)[-1].lower())
                       for line in ran.entries)
        self.assertEqual(found, [('added', 'zzadded'), ('changed', changed.lower()), ('removed', removed.lower())])
        [line] = [line for line in ran.entries if line['change'] == 'changed']
        self.assertTrue({'command', 'file'} <= set(line['fields']), line)
        self.assertEqual(line['after']['command'], 'C:\\evil\\changed.exe')
        # What was saved is what the next run compares with.
        self.assertEqual(self.report('services', '--compare', STATE, '--quiet')[:2], (0, b''))
