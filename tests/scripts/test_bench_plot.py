"""The plot of a benchmark's figures."""
import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from harness import paths


def plot(*names):
    """The plot of figures of these names; None where there is none."""
    with tempfile.TemporaryDirectory() as folder:
        source, target = Path(folder, 'bench.json'), Path(folder, 'bench.svg')
        source.write_text(json.dumps([{'name': name, 'ours_us': 700, 'floor_us': 900} for name in names]))
        subprocess.run([sys.executable, paths.TOP / 'scripts' / 'bench-plot.py', source, target], check=True, capture_output=True)
        return target.read_text() if target.exists() else None


class BenchPlot(unittest.TestCase):
    def test_two_sizes_give_a_line_for_each_side(self):
        self.assertEqual(plot('start', 'general-refresh-100', 'general-refresh-1000').count('<polyline'), 2)

    def test_one_size_gives_no_plot(self):
        self.assertIsNone(plot('start', 'general-refresh-100'))
