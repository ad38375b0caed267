#!/usr/bin/env python3
"""Builds what the program meets on Windows 98:  make.py FOLDER PROGRAM_FOLDER

FOLDER/system gets imitations of the system libraries, each with the functions that Windows 98 exports and no
others: those that work are forwarded to the library of today, those that only exist there record their call and
fail, and some behave as they did. FOLDER/program gets the program, importing from the imitations, and without its
manifest, which that Windows does not read.
"""
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
from libraries import LIST, exported, imitation_of  # noqa: E402
from pe import Image  # noqa: E402

COMPILER, SYMBOLS = 'i686-w64-mingw32-g++-win32', 'i686-w64-mingw32-nm'
FLAGS = ['-std=c++20', '-Os', '-Wall', '-Wextra', '-Werror', '-D_WIN32_WINNT=0x0501']
PROGRAM = ['Quillon.exe', 'QuillonReport.exe', 'Helmkit.dll', 'QLNCustom.dll']


def text_symbols(file):
    output = subprocess.run([SYMBOLS, file], check=True, capture_output=True, text=True).stdout
    return re.findall(r' T _(\S+)$', output, re.M)


def argument_bytes(library):
    """How many bytes each function takes from the stack, which its import library knows."""
    file = subprocess.run([COMPILER, f'-print-file-name=lib{library.removesuffix(".dll")}.a'], check=True,
                          capture_output=True, text=True).stdout.strip()
    return dict(symbol.split('@') for symbol in text_symbols(file) if re.fullmatch(r'\w+@\d+', symbol))


def failing_functions(functions, sizes):
    """Assembler text: a function that only exists names itself and gives 0."""
    lines = ['.intel_syntax noprefix', '.text']
    for name in functions:
        lines += [f'.globl _failing_{name}', f'_failing_{name}:', f' push offset 1f', ' call _recordMissing',
                  ' add esp, 4', ' xor eax, eax', f' ret {sizes[name]}', f'1: .asciz "{name}"']
    return '\n'.join(lines) + '\n'


def compiled(source, target):
    subprocess.run([COMPILER, *FLAGS, '-c', source, '-o', target], check=True)
    return target


def build_imitation(library, functions, folder, shared):
    sizes = argument_bytes(library)
    inputs, imitated = [shared], {}
    own = HERE / library.replace('.dll', '.cpp')
    if own.exists():
        inputs.append(compiled(own, folder / f'{library}.o'))
        imitated = {re.match(r'imitated_(\w+)', symbol)[1]: symbol for symbol in text_symbols(inputs[-1])
                    if symbol.startswith('imitated_')}
    assert imitated.keys() <= functions.keys(), imitated.keys() - functions.keys()
    failing = [name for name, works in functions.items() if not works and name not in imitated and name in sizes]
    assembler = folder / f'{library}.s'
    assembler.write_text(failing_functions(failing, sizes))
    inputs.append(assembler)
    real = library.removesuffix('.dll').upper()
    exports = [f'{name} = {symbol}' for name, symbol in imitated.items()]
    exports += [f'{name} = failing_{name}' for name in failing]
    exports += [f'{name} = {real}.{name}' for name, works in functions.items() if works and name not in imitated]
    definition = folder / f'{library}.def'
    definition.write_text('EXPORTS\n' + '\n'.join(exports) + '\n')
    subprocess.run([COMPILER, '-shared', '-static', '-s', '-Wl,--enable-stdcall-fixup', '-o',
                    folder.parent / 'system' / imitation_of(library), *inputs, definition, '-lcomctl32', '-lversion'],
                   check=True)


def patch(file, target, libraries):
    image = Image(file.read_bytes())
    image.import_from(lambda name: imitation_of(name) if name in libraries else 'missing')
    image.drop_manifest()
    target.write_bytes(image.data)


def main(folder, program):
    for name in ['system', 'program', 'objects']:
        (folder / name).mkdir(parents=True, exist_ok=True)
    libraries = exported()
    made = folder / '.made'
    sources = [LIST, *(file for file in HERE.iterdir() if file.is_file())]
    if not made.exists() or made.stat().st_mtime < max(source.stat().st_mtime for source in sources):
        shared = compiled(HERE / 'failing.cpp', folder / 'objects' / 'failing.o')
        with ThreadPoolExecutor(2) as pool:
            list(pool.map(lambda library: build_imitation(library, libraries[library], folder / 'objects', shared),
                          libraries))
        made.touch()
    for name in PROGRAM:
        patch(program / name, folder / 'program' / name, libraries)


if __name__ == '__main__':
    main(Path(sys.argv[1]), Path(sys.argv[2]))
