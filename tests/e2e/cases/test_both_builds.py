"""The 32-bit program on 64-bit Windows sees what the 64-bit program sees."""
import unittest

from harness import seed
from harness.case import ARCHITECTURE, FOLDER, Case


@unittest.skipUnless(ARCHITECTURE == 'x86', 'once is enough: the case starts both programs')
class BothBuilds(Case):
    def findings(self, architecture):
        """What a build lists, read from its log after it has ended."""
        self.prefix.put_program(FOLDER, architecture)
        (self.folder / 'QLN.log').unlink(missing_ok=True)
        self.start()
        found = self.tab_state()
        self.program.close()
        return found

    def test_a_lived_in_windows_reads_the_same(self):
        if not self.family.is_nt:
            self.skipTest('there is no 64-bit Windows of the older family')
        seed.install_files(self.prefix)
        seed.fill_registry(self.probe)
        narrow, wide = self.findings('x86'), self.findings('x64')
        self.assertGreater(len(narrow), 60)
        self.assertEqual(narrow, wide)
