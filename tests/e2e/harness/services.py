"""Whole lists of services as Windows versions have them."""
from typing import NamedTuple

from . import paths
from .probe import REG_EXPAND_SZ, REG_SZ
from .seed import SERVICES

TESTS = paths.TOP / 'tests'
LISTS = {'2000': TESTS / 'fixtures' / 'services-windows-2000.tsv', '10': TESTS / 'fixtures' / 'services-windows-10.tsv',
         'XP': TESTS / 'data' / 'services-xp.tsv', '2003': TESTS / 'data' / 'services-2003.tsv'}
OTHERWISE = 'rules give: '


class Service(NamedTuple):
    name: str
    display: str
    image: str
    named_file: str
    note: str

    @property
    def is_listed(self):
        return bool(self.image) and self.note != 'standard'

    @property
    def file(self):
        """What the program takes from the image path, its references to the environment not yet expanded."""
        taken = self.note[len(OTHERWISE):] if self.note.startswith(OTHERWISE) else self.named_file
        prefix = '\\systemroot'
        return '%SystemRoot%' + taken[len(prefix):] if taken.lower().startswith(prefix) else taken


def services_of(windows):
    for line in LISTS[windows].read_text(encoding='utf-8').splitlines():
        if not line.startswith('#'):
            yield Service(*line.split('\t'))


def fill(probe, services):
    """In place of those that Wine has."""
    for service in probe.keys('HKLM', SERVICES):
        probe.ask('regdeletetree', 'HKLM', f'{SERVICES}\\{service}')
    for service in services:
        key = f'{SERVICES}\\{service.name}'
        probe.ask('regcreate', 'HKLM', key)
        if service.image:
            probe.set_value('HKLM', key, 'ImagePath', service.image, REG_EXPAND_SZ)
        if service.display:
            probe.set_value('HKLM', key, 'DisplayName', service.display, REG_SZ)
