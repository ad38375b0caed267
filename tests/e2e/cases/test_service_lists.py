"""Whole lists of services and drivers, as several Windows versions have them, on the Services page."""
import re

from harness import services
from harness.case import ARCHITECTURE, FAMILY, FOLDER, Case

# The 64-bit XP is a Server 2003 inside; the older family has no services, but reads a key of that name like any other.
WINDOWS = {'win98': '2000', 'win2k': '2000', 'winxp': '2003' if ARCHITECTURE == 'x64' else 'XP', 'win10': '10'}[FAMILY]
ENVIRONMENT = {'systemroot': 'C:\\windows', 'windir': 'C:\\windows', 'programfiles': 'C:\\Program Files'}
LINE = re.compile("Services: '(.*)', '(.*)', '(.*)'")


def expanded(path):
    return re.sub('%(.*?)%', lambda reference: ENVIRONMENT[reference[1].lower()], path)


class ServiceLists(Case):
    def files_of(self, service):
        """What may be shown, in small letters: a file that exists is shown by its full path."""
        path = expanded(service.file).lower()
        if path == 'c:':  # a drive's name alone stands for the current folder there
            return [f'{FOLDER}\\'.lower()]
        found = [f'{folder}\\{path}'.lower() for folder in ('C:\\windows', self.system) if ':' not in path]
        return [path.removeprefix('\\??\\'), *found]

    def test_every_listed_service_has_its_file(self):
        every = list(services.services_of(WINDOWS))
        services.fill(self.probe, every)
        # A key that Wine had keeps its letters, and the registry has an order of its own.
        listed = {service.name.lower(): service for service in every if service.is_listed}
        order = [key for key in map(str.lower, self.probe.keys('HKLM', services.SERVICES)) if key in listed]
        self.assertEqual(len(order), len(listed))
        program = self.start()

        logged = [LINE.fullmatch(text).groups() for text in self.tab_state() if text.startswith('Services: ')]
        self.assertEqual([name for name, _, _ in logged], [row.name for row in program.rows('ucServices1')])
        self.assertEqual(len(logged), len(order))
        wrong = [(key, shown, file) for key, (shown, _, file) in zip(order, logged)
                 if shown != (listed[key].display or shown) or file.lower() not in self.files_of(listed[key])]
        self.assertEqual(wrong, [])
