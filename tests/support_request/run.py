#!/usr/bin/env python3
"""Runs the zip writer and the support request under Wine and looks at their work from outside.

    tests/support_request/run.py [--build build/{}] [--only WORD] x86 x64

`{}` in the build folder stands for the architecture. The last line is `N passed, N failed, N skipped`.
"""
import argparse
import os
import subprocess
import sys
import traceback
from concurrent.futures import ThreadPoolExecutor

import archive_cases
import request_cases
from bench import TOP, Bench

# The waiting cases begin first, so that the others run meanwhile.
WAITING = ('never', 'stall', 'inside', 'nobody', 'endless')
AT_ONCE = 12
PREFIX = TOP / 'build' / 'wine' / 'support-request'
# One flavour is enough for what only takes long, or is Windows' own work.
WIDE_ONLY = ('test_ten_thousand_small_files', 'test_hostile_')


def cases():
    for module in (request_cases, archive_cases):
        for name in dir(module):
            if name.startswith('test_'):
                yield name, getattr(module, name)


def run(job):
    architecture, flavour, name, case, programs, environment = job
    bench = Bench(architecture, flavour, programs, environment)
    bench.drive_c = PREFIX / 'drive_c'
    title = f'{architecture} {flavour} {name}'
    try:
        case(bench)
        print(f'ok    {title}', flush=True)
        return True
    except Exception:
        print(f'FAIL  {title}\n{traceback.format_exc()}', flush=True)
        return False
    finally:
        bench.close()


def imports_of(build):
    done = subprocess.run([TOP / 'scripts' / 'check-imports.py', build / 'support_request' / 'zip_imports.exe'])
    print(('ok    ' if done.returncode == 0 else 'FAIL  ') + 'the zip writer imports only what Windows 98 exports')
    return done.returncode == 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--build', default='build/{}')
    parser.add_argument('--only', default='')
    parser.add_argument('architectures', nargs='+')
    options = parser.parse_args()
    prefix_script = TOP / 'scripts' / 'wine-prefix.sh'
    subprocess.run([prefix_script, 'copy', PREFIX, 'winxp', 'unmanaged'], check=True)
    environment = {**os.environ, 'WINEPREFIX': str(PREFIX), 'WINEDEBUG': '-all', 'LC_ALL': 'C.UTF-8',
                   'WINEDLLOVERRIDES': 'mscoree=;mshtml=;winemenubuilder.exe=d'}
    # Wine takes the label of a drive without a device from this file, once, when it starts.
    (PREFIX / 'drive_c' / '.windows-label').write_text('Quillon Vol')
    # The server of the prefix is there before any limit on file sizes is.
    subprocess.run(['wine', 'cmd', '/c', 'exit'], env=environment, stdout=subprocess.DEVNULL)
    jobs, results = [], []
    for architecture in options.architectures:
        build = TOP / options.build.format(architecture)
        if architecture == 'x86' and not options.only:
            results.append(imports_of(build))
        for flavour in ('wide', 'ansi'):
            jobs += [(architecture, flavour, name, case, build / 'support_request', environment) for name, case in cases()
                     if options.only in name and (flavour == 'wide' or not name.startswith(WIDE_ONLY))]
    jobs.sort(key=lambda job: not any(word in job[2] for word in WAITING))
    with ThreadPoolExecutor(AT_ONCE) as pool:
        results += pool.map(run, jobs)
    subprocess.run([prefix_script, 'stop', PREFIX])
    print(f'{sum(results)} passed, {len(results) - sum(results)} failed, 0 skipped')
    return 0 if results and all(results) else 1


if __name__ == '__main__':
    sys.exit(main())
