"""The places that a backup holds: filling them with what is hard to carry, capturing them, and wiping them."""
from .probe import (REG_BINARY, REG_DWORD, REG_DWORD_BIG_ENDIAN, REG_EXPAND_SZ, REG_LINK, REG_MULTI_SZ, REG_NONE,
                    REG_QWORD, REG_SZ, ProbeError)

WINDOWS = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion'
NT = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion'
HIVES = {'HKLM': 'HKEY_LOCAL_MACHINE', 'HKCU': 'HKEY_CURRENT_USER'}

KEYS = [(hive, f'{WINDOWS}\\{key}')
        for key in ['Run', 'RunServices', 'RunOnce', 'RunServicesOnce', 'policies\\Explorer\\Run', 'RunOnceEx']
        for hive in ['HKLM', 'HKCU']] + [('HKLM', f'{NT}\\Winlogon\\Notify')]
VALUES = [('HKCU', f'{NT}\\Windows', 'run'), ('HKLM', f'{NT}\\Windows', 'run'),
          ('HKCU', f'{NT}\\Windows', 'load'), ('HKLM', f'{NT}\\Windows', 'load'),
          ('HKLM', f'{NT}\\Winlogon', 'shell'), ('HKLM', f'{NT}\\Winlogon', 'userinit'),
          ('HKLM', 'SYSTEM\\CurrentControlSet\\Control\\Session Manager', 'BootExecute'),
          ('HKCU', 'Control Panel\\Desktop', 'SCRNSAVE.EXE'), ('HKLM', 'SOFTWARE\\Microsoft\\Command Processor', 'AutoRun'),
          ('HKLM', f'{NT}\\Winlogon', 'VmApplet'), ('HKLM', f'{NT}\\Winlogon', 'UIHost')]


def text(characters):
    return characters.encode('utf-16-le', 'surrogatepass')


# Name to (type, bytes as stored). The names say what is hard.
HARD_DATA = {
    'sz plain': (REG_SZ, text('C:\\Windows\\notepad.exe\0')),
    'sz quotes': (REG_SZ, text('"C:\\Program Files\\a b.exe" /x "\\\\server\\share\\"\0')),
    'sz only a backslash': (REG_SZ, text('\\\0')),
    'sz line break': (REG_SZ, text('first\r\nsecond\nthird\0')),
    'sz tab': (REG_SZ, text('a\tb\0')),
    'sz looks like a header': (REG_SZ, text('[HKEY_LOCAL_MACHINE\\SOFTWARE]\0')),
    'sz of no characters': (REG_SZ, text('\0')),
    'sz empty data': (REG_SZ, b''),
    'sz without NUL': (REG_SZ, text('abc')),
    'sz two NULs': (REG_SZ, text('abc\0\0')),
    'sz inner NUL': (REG_SZ, text('abc\0def\0')),
    'sz odd length': (REG_SZ, text('abcd\0')[:-1]),
    'expand plain': (REG_EXPAND_SZ, text('%windir%\\explorer.exe "%1"\0')),
    'expand long': (REG_EXPAND_SZ, text('%windir%\\' + 'folder\\' * 60 + '\0')),
    'expand empty data': (REG_EXPAND_SZ, b''),
    'expand without NUL': (REG_EXPAND_SZ, text('%x%')),
    'expand inner NUL': (REG_EXPAND_SZ, text('a\0b\0')),
    'expand odd length': (REG_EXPAND_SZ, text('abc\0') + b'Z'),
    'multi plain': (REG_MULTI_SZ, text('one\0two\0\0')),
    'multi without NULs': (REG_MULTI_SZ, text('one')),
    'multi with one NUL': (REG_MULTI_SZ, text('one\0two\0')),
    'multi empty string inside': (REG_MULTI_SZ, text('one\0\0two\0\0')),
    'multi only its end': (REG_MULTI_SZ, text('\0\0')),
    'multi empty data': (REG_MULTI_SZ, b''),
    'multi odd length': (REG_MULTI_SZ, text('one\0\0') + b'Z'),
    'binary': (REG_BINARY, bytes(range(256))),
    'binary empty data': (REG_BINARY, b''),
    'binary of 22': (REG_BINARY, bytes(22)),
    'binary of 64 KiB': (REG_BINARY, bytes((i * 7 + (i >> 8)) & 255 for i in range(65536))),
    'dword': (REG_DWORD, b'\x78\x56\x34\x12'),
    'dword empty data': (REG_DWORD, b''),
    'dword of three bytes': (REG_DWORD, b'\1\2\3'),
    'dword of five bytes': (REG_DWORD, b'\1\2\3\4\5'),
    'big-endian dword': (REG_DWORD_BIG_ENDIAN, b'\1\2\3\4'),
    'qword': (REG_QWORD, b'\1\2\3\4\5\6\7\x88'),
    'qword of two bytes': (REG_QWORD, b'\1\2'),
    'none': (REG_NONE, b'\0\1\xFF'),
    'none empty data': (REG_NONE, b''),
    'link': (REG_LINK, text('\\Registry\\Machine\\Software')),
    'resource list': (8, b'\0\1'),
    'unknown type': (0xABCD, b'Value\0'),
    'unknown type, empty data': (0x100, b''),
    'largest type': (0xFFFFFFFF, b'x'),
}
# Less than one character: the 64-bit readers of Wine crash at it.
SHORT_TEXT = {'sz one byte': (REG_SZ, b'A'), 'expand one byte': (REG_EXPAND_SZ, b'A'), 'multi one byte': (REG_MULTI_SZ, b'A')}
HARD_NAMES = ['', '"', '\\', '\\foo\\bar\\', 'double"quote', "single'quote", 'a=b', '"="', '@', '[x]', ';', '; x', '-',
              ' blanks around ', '\t', 'x' * 255, 'y' * 1000, 'z\\' * 300, 'C:\\x.exe /a:"b"']
# What code page 1252 has, and what only Unicode has.
WESTERN = {'caf\u00E9 \u20AC': (REG_SZ, text('\u00DF\u00D8 \u201Cquoted\u201D\0')),
           'expand \u00FC': (REG_EXPAND_SZ, text('%\u00E4%\0')), 'multi \u00DF': (REG_MULTI_SZ, text('\u00E9\0\u20AC\0\0'))}
WORLD = {'\u0416\u4E2D': (REG_SZ, text('\u0416 \u4E2D \u20AC \U0001F4BE\0')),
         'expand \u0416': (REG_EXPAND_SZ, text('%\u4E2D%\0')), 'multi \u0416': (REG_MULTI_SZ, text('\u0416\0\u4E2D\0\0')),
         'half a surrogate pair': (REG_SZ, text('a\uD83Db\0'))}


def fill(probe, unicode):
    """Puts something into every place, and everything hard into three of them."""
    def put(hive, key, values):
        probe.ask('regcreate', hive, key)
        for name, (kind, data) in values.items():
            probe.set_value(hive, key, name, data, kind)

    for number, (hive, key) in enumerate(KEYS):
        put(hive, key, {f'entry {number}': (REG_SZ, text(f'C:\\place {number}.exe\0'))})
    kinds = [REG_SZ, REG_EXPAND_SZ, REG_SZ, REG_SZ, REG_SZ, REG_SZ, REG_MULTI_SZ, REG_SZ, REG_EXPAND_SZ, REG_SZ, REG_DWORD]
    data = [text('C:\\run.exe\0'), text('%x%\\run.exe\0'), text('\0'), text('load "x"\0'), text('Explorer.exe\0'),
            text('C:\\userinit.exe,\0'), text('autocheck autochk *\0second\0\0'), text('(NONE)\0'),
            text('%comspec%\0'), text('rundll32 shell32,Control_RunDLL "sysdm.cpl"\0'), b'\1\0\0\0']
    for (hive, key, name), kind, stored in zip(VALUES, kinds, data):
        put(hive, key, {name: (kind, stored)})

    run, once, deep = f'{WINDOWS}\\Run', f'{WINDOWS}\\RunOnce', f'{WINDOWS}\\RunOnceEx'
    put('HKLM', run, HARD_DATA | WESTERN | (WORLD if unicode else {}))
    put('HKCU', run, {name: (REG_SZ, text(f'{len(name)}\0')) for name in HARD_NAMES})
    put('HKCU', f'{run}\\names with bytes', {name: (REG_BINARY, bytes(40)) for name in HARD_NAMES})
    put('HKCU', f'{run}\\default', {'': (REG_EXPAND_SZ, text('%default%\0'))})
    put('HKLM', f'{once}\\Setup', {'left over': (REG_SZ, text('C:\\setup.exe /again\0'))})
    path = deep
    for depth in range(20):
        path += f'\\{depth:03}'
        put('HKLM', path, {'': (REG_SZ, text(f'depth {depth}\0')), '1': (REG_SZ, text('a.dll|Entry|\0'))})
    for key in ['key with "quotes"', '[brackets]', 'sl/ash', 'k' * 255, ' blank', 'caf\u00E9', 'empty', ';', '='] + \
            (['\u0416\u4E2D'] if unicode else []):
        put('HKCU', f'{deep}\\{key}', {} if key == 'empty' else {'v': (REG_SZ, text('x\0'))})


def _collect(probe, hive, key, tree):
    tree[(hive, key)] = probe.values(hive, key)
    for name in probe.keys(hive, key):
        _collect(probe, hive, f'{key}\\{name}', tree)


def capture(probe):
    """(hive, key) to name to (type, bytes) of everything in the places; what is not there is absent. Names of single
    values have the letters of the table, whatever those of the registry."""
    tree = {}
    for hive, key in KEYS:
        try:
            probe.ask('regkeys', hive, key)
        except ProbeError:
            continue
        _collect(probe, hive, key, tree)
    for hive, key, name in VALUES:
        found = {stored: value for stored, value in probe.values(hive, key).items() if stored.lower() == name.lower()}
        for value in found.values():
            tree.setdefault((hive, key), {})[name] = value
    return tree


def wipe(probe):
    """Removes the keys themselves too: an import has to make them."""
    present = capture(probe)
    for hive, key in KEYS:
        parent, name = key.rsplit('\\', 1)
        if (hive, key) in present:
            probe.ask('regdeletetree', hive, parent, name)
    for hive, key, name in VALUES:
        if name in present.get((hive, key), {}):
            probe.ask('regdelete', hive, key, name)
