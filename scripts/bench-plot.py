#!/usr/bin/env python3
"""Plots time against number of entries:  bench-plot.py bench.json plot.svg

Both axes are logarithmic, so that time in proportion to the entries is a straight line.
"""
import json
import math
import re
import sys

WIDTH, HEIGHT = 680, 420
LEFT, RIGHT, TOP, BOTTOM = 78, 220, 40, 52
COLOURS = {'general-refresh': '#1f5fa8', 'services-refresh': '#b5541c'}


def series(figures):
    """The figures of several sizes: name to a list of (entries, ours, floor). One size (--quick) makes no line."""
    found = {}
    for figure in figures:
        sized = re.fullmatch(r'(.+)-(\d+)', figure['name'])
        if sized and figure['floor_us']:
            found.setdefault(sized[1], []).append((int(sized[2]), figure['ours_us'], figure['floor_us']))
    return {name: sorted(points) for name, points in found.items() if len(points) > 1}


def decades(values):
    return range(math.floor(math.log10(min(values))), math.ceil(math.log10(max(values))) + 1)


def scale(powers, begin, end):
    first, last = powers[0], powers[-1]
    return lambda value: begin + (math.log10(value) - first) / (last - first) * (end - begin)


def milliseconds(power):
    return f'{10 ** (power - 3):g} ms'


def plot(found):
    points = [point for line in found.values() for point in line]
    columns = decades([entries for entries, _, _ in points])
    rows = decades([time for _, *times in points for time in times])
    x = scale(columns, LEFT, WIDTH - RIGHT)
    y = scale(rows, HEIGHT - BOTTOM, TOP)
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
           f'viewBox="0 0 {WIDTH} {HEIGHT}" font-family="sans-serif" font-size="12">')
    yield f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>'
    yield f'<text x="{LEFT}" y="22" font-size="14">Time of a refresh against number of entries</text>'
    for power in rows:
        at = y(10 ** power)
        yield f'<line x1="{LEFT}" y1="{at:.1f}" x2="{WIDTH - RIGHT}" y2="{at:.1f}" stroke="#ddd"/>'
        yield f'<text x="{LEFT - 8}" y="{at + 4:.1f}" text-anchor="end">{milliseconds(power)}</text>'
    for power in columns:
        at = x(10 ** power)
        yield f'<line x1="{at:.1f}" y1="{TOP}" x2="{at:.1f}" y2="{HEIGHT - BOTTOM}" stroke="#ddd"/>'
        yield f'<text x="{at:.1f}" y="{HEIGHT - BOTTOM + 20}" text-anchor="middle">{10 ** power:,}</text>'
    middle = (LEFT + WIDTH - RIGHT) / 2
    yield f'<text x="{middle:.1f}" y="{HEIGHT - 12}" text-anchor="middle">entries</text>'
    legend = TOP + 16
    for name, line in found.items():
        for whose, column, dash in (('Quillon', 1, ''), ('floor', 2, ' stroke-dasharray="5 4"')):
            colour = COLOURS.get(name, '#444')
            path = ' '.join(f'{x(point[0]):.1f},{y(point[column]):.1f}' for point in line)
            yield f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"{dash}/>'
            for point in line:
                yield f'<circle cx="{x(point[0]):.1f}" cy="{y(point[column]):.1f}" r="3" fill="{colour}"/>'
            begin = WIDTH - RIGHT + 14
            yield (f'<line x1="{begin}" y1="{legend - 4}" x2="{begin + 26}" y2="{legend - 4}" stroke="{colour}" '
                   f'stroke-width="2"{dash}/>')
            yield f'<text x="{begin + 32}" y="{legend}">{name.replace("-", " ")}, {whose}</text>'
            legend += 20
    yield '</svg>'


def main():
    source, target = sys.argv[1:]
    with open(source) as file:
        found = series(json.load(file))
    if not found:
        return
    with open(target, 'w') as file:
        file.write('\n'.join(plot(found)) + '\n')


main()
