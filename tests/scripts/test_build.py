"""What scripts/build.sh makes in a fresh clone."""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from harness import paths

NOTE = '#!/usr/bin/env bash\nprintf \'%s\\n\' "$(basename "$0") $*" >>"$NOTES"\n'
# What the real one leaves behind.
PROGRAMS = """[ "$1" != --build ] || for file in Quillon.exe QuillonReport.exe Helmkit.dll QLNCustom.dll; do
    mkdir -p "build/$3/program" && printf '%s' "$3" >"build/$3/program/$file"
done
"""


class FreshClone(unittest.TestCase):
    def test_what_is_linked_is_made_before_anything_is_configured(self):
        with tempfile.TemporaryDirectory() as folder:
            clone = Path(folder)
            for name, text in [('scripts/libzip.sh', NOTE), ('tools/cmake', NOTE + PROGRAMS)]:
                (clone / name).parent.mkdir()
                (clone / name).write_text(text)
                (clone / name).chmod(0o755)
            shutil.copy(paths.TOP / 'scripts' / 'build.sh', clone / 'scripts')
            environment = {**os.environ, 'PATH': f'{clone}/tools:{os.environ["PATH"]}', 'NOTES': f'{clone}/notes'}
            subprocess.run(['bash', clone / 'scripts' / 'build.sh', 'x64'], env=environment, check=True, capture_output=True)
            self.assertEqual((clone / 'notes').read_text().splitlines(),
                             ['libzip.sh ', 'cmake --preset x64', 'cmake --build --preset x64'])
            self.assertEqual((clone / 'dist' / 'x64' / 'Helmkit.dll').read_text(), 'x64')
