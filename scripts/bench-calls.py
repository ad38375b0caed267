#!/usr/bin/env python3
"""Counts the Wine server calls of ours and of the floor in a trace of `bench.exe --rounds 1` (scripts/bench.sh --calls).

The benchmark names events "QuillonBench ours", "... begin" and so on, which stand in the trace. Calls of the processes
that a figure starts are told apart from the benchmark's own.
"""
import collections
import re
import sys

CALL = re.compile(r'^([0-9a-f]{4}): (\w+)\(')
STARTED = '(by the processes started)'
MARK = re.compile(r'QuillonBench (\w+)')


def counted(lines):
    """A pair of Counters by the name of the call, ours and the floor's, for each contest in the trace's order."""
    contests, whose, caller, counting, known = [], None, None, False, set()
    for line in lines:
        call = CALL.match(line)
        if not call or line[call.end():].startswith(') ='):
            continue
        mark = MARK.search(line) if call[2] == 'create_event' else None
        if mark and mark[1] in ('ours', 'floor'):
            if whose is None or mark[1] == 'floor':
                contests.append({'ours': collections.Counter(), 'floor': collections.Counter()})
            whose, caller = mark[1], call[1]
        elif mark:
            counting = mark[1] == 'begin' and whose is not None
            if mark[1] == 'end' and whose == 'ours':
                whose = None
        elif not counting:
            known.add(call[1])
        elif call[1] == caller:
            contests[-1][whose][call[2]] += 1
        elif call[1] not in known:
            contests[-1][whose][STARTED] += 1
    return contests


def main():
    with open(sys.argv[1], errors='replace') as trace:
        for number, contest in enumerate(counted(trace), 1):
            ours, floor = contest['ours'], contest['floor']
            own = [sum(calls.values()) - calls[STARTED] for calls in (ours, floor)]
            print(f'contest {number}: {own[0]} calls of ours, {own[1]} of the floor')
            for name in sorted(ours | floor, key=lambda name: -ours[name] - floor[name]):
                print(f'    {name:32} {ours[name]:8} {floor[name]:8}')


main()
