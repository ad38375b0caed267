"""The zip writer's archives, read and made by other people's tools."""
import os
import random
import zipfile

from bench import expect, expect_equal, windows_path

CANCELLED, NOT_FOUND, NO_PATH = '800704C7', '80070002', '80070003'
NO_ARCHIVE, DUPLICATE = '8007000D', '80070034'


def names(bench, archive):
    """Info-ZIP stores UTF-8 as it is, without the flag; zipfile then takes it for code page 437."""
    with zipfile.ZipFile(bench.folder / archive) as file:
        return [info.filename if info.flag_bits & 0x800 else info.filename.encode('cp437').decode() for info in file.infolist()]


def content(bench, archive, name, password=None):
    with zipfile.ZipFile(bench.folder / archive) as file:
        return file.read(name, pwd=password)


def unchanged_after(bench, archive, work, wanted):
    """Runs failing work over an archive, which must stay byte for byte and leave nothing beside it."""
    before = (bench.folder / archive).read_bytes()
    answer = work()
    expect_equal(answer.error, wanted, f'the error of {answer.text}')
    expect((bench.folder / archive).read_bytes() == before, 'the archive has changed')
    expect_equal(bench.leftovers(), [], 'files left behind')
    return answer


def test_by_default_bare_names_are_stored(bench):
    data = random.Random(1).randbytes(100_000)
    bench.write('folder/a.xml', b'<xml>' + b'text ' * 5000 + b'</xml>')
    bench.write('folder/random.bin', data)
    bench.write('folder/empty', b'')
    folder = windows_path(bench.folder / 'folder')
    answer = bench.good_zip('new.zip', [folder + '\\a.xml', folder + '/random.bin', 'folder\\empty'])
    expect_equal(names(bench, 'new.zip'), ['a.xml', 'random.bin', 'empty'], 'names')
    expect_equal(content(bench, 'new.zip', 'random.bin'), data, 'random.bin')
    expect_equal(content(bench, 'new.zip', 'empty'), b'', 'empty')
    expect_equal(answer.one('folder'), windows_path(bench.folder), 'the current folder')
    for name in ('a.xml', 'random.bin', 'empty'):
        told = [int(percent) for told, percent in answer.all('Progress') if told == name]
        expect(told[0] == 0 and told[-1] == 100 and told == sorted(told), f'progress of {name}: {told}')
    bench.all_readers_agree('new.zip')
    listing = bench.tool('unzip', '-Z', '-v', 'new.zip').stdout
    expect('file system or operating system of origin:      MS-DOS, OS/2 or NT FAT' in listing, listing)
    expect('minimum software version required to extract:   2.0' in listing, listing)
    with zipfile.ZipFile(bench.folder / 'new.zip') as file:
        expect_equal(file.getinfo('a.xml').compress_type, zipfile.ZIP_DEFLATED, 'method')
        expect_equal({info.extract_version for info in file.infolist()}, {20}, 'versions')


def test_names_beyond_ascii_are_read_by_everybody(bench):
    # The ANSI flavour reaches what the code page has.
    wanted = ['Übersicht é.txt'] + (['日本 Ж.txt'] if bench.flavour == 'wide' else [])
    for name in wanted:
        bench.write(name, name.encode())
    bench.good_zip('names.zip', wanted)
    expect_equal(names(bench, 'names.zip'), wanted, 'zipfile')
    bench.all_readers_agree('names.zip')
    bench.tool('unzip', '-d', 'unzip', 'names.zip')
    bench.tool('7z', 'x', '-o7z', 'names.zip')
    for reader in ('unzip', '7z'):
        expect_equal(sorted(os.listdir(bench.folder / reader)), sorted(wanted), reader)


def test_folders_below_the_base_path(bench):
    for name in ('base/a.txt', 'base/b.dat', 'base/one/c.txt', 'base/one/two/d.txt', 'outside.txt'):
        bench.write(name, name.encode())
    base = 'BasePath=' + windows_path(bench.folder / 'base')
    answer = bench.good_zip('..\\flat.zip', ['*.txt'], base)
    expect_equal(names(bench, 'flat.zip'), ['a.txt'], 'flat')
    expect_equal(answer.one('folder'), windows_path(bench.folder), 'the current folder')
    bench.good_zip('..\\deep.zip', ['*.txt'], base, 'RecurseSubDirs', 'StoreFolderNames')
    expect_equal(names(bench, 'deep.zip'), ['a.txt', 'one/c.txt', 'one/two/d.txt'], 'deep')
    bench.good_zip('..\\whole.zip', ['*', '..\\outside.txt'], base, 'RecurseSubDirs', 'StoreFolderNames', 'StoreDirectories')
    expect_equal(sorted(names(bench, 'whole.zip')),
                 ['a.txt', 'b.dat', 'one/', 'one/c.txt', 'one/two/', 'one/two/d.txt', 'outside.txt'], 'whole')
    bench.good_zip('..\\bare.zip', ['one'], base, 'RecurseSubDirs', 'StoreDirectories')
    expect_equal(names(bench, 'bare.zip'), ['c.txt', 'd.txt'], 'bare')
    full = windows_path(bench.folder / 'base' / 'one' / 'c.txt')
    bench.good_zip('full.zip', [full], 'StoreFolderNames')
    expect_equal(names(bench, 'full.zip'), [full[3:].replace('\\', '/')], 'full')
    for archive in ('flat.zip', 'deep.zip', 'whole.zip', 'bare.zip', 'full.zip'):
        bench.all_readers_agree(archive)


def test_the_archive_never_holds_itself(bench):
    bench.write('a.txt', b'a')
    bench.good_zip('self.zip', ['*'])
    bench.good_zip('self.zip', ['*'], 'AllowAppend')
    expect_equal(names(bench, 'self.zip'), ['a.txt'], 'names')


def test_encrypted_entries_want_their_password(bench):
    bench.write('secret.txt', b'secret text ' * 100)
    answer = bench.good_zip('locked.zip', ['secret.txt'], 'Encrypt', 'password=open sesame')
    expect_equal(len(answer.all('PasswordRequest')), 1, 'requests')
    bench.tool('unzip', '-P', 'open sesame', '-t', 'locked.zip')
    bench.tool('7z', 't', '-popen sesame', 'locked.zip')
    bench.tool('unzip', '-P', 'wrong', '-t', 'locked.zip', status=82)
    bench.tool('7z', 't', '-pwrong', 'locked.zip', status=2)
    expect_equal(content(bench, 'locked.zip', 'secret.txt', b'open sesame'), b'secret text ' * 100, 'text')
    try:
        content(bench, 'locked.zip', 'secret.txt', b'wrong')
        expect(False, 'zipfile took a wrong password')
    except RuntimeError:
        pass
    unchanged_after(bench, 'locked.zip', lambda: bench.zip('locked.zip', ['secret.txt'], 'Encrypt', 'refuse', 'password=x'), CANCELLED)
    unchanged_after(bench, 'locked.zip', lambda: bench.zip('locked.zip', ['secret.txt'], 'Encrypt'), CANCELLED)
    # An open entry beside a locked one, then the locked one replaced by an open one.
    bench.write('plain.txt', b'plain')
    bench.good_zip('locked.zip', ['plain.txt'], 'AllowAppend')
    expect_equal(content(bench, 'locked.zip', 'plain.txt'), b'plain', 'plain.txt')
    bench.tool('unzip', '-P', 'open sesame', '-t', 'locked.zip')
    bench.good_zip('locked.zip', ['secret.txt'], 'AllowAppend')
    expect_equal(content(bench, 'locked.zip', 'secret.txt'), b'secret text ' * 100, 'unlocked')


def info_zip_archive(bench):
    """An archive made by Info-ZIP of files that are a day old."""
    for name in ('a.txt', 'b.txt', 'sub/c.txt', 'ä.txt'):
        path = bench.write(name, b'old ' + name.encode())
        os.utime(path, (path.stat().st_mtime - 86400,) * 2)
    bench.tool('zip', '-r', 'info.zip', 'a.txt', 'b.txt', 'sub', 'ä.txt')


def test_info_zip_archives_are_updated(bench):
    info_zip_archive(bench)
    bench.write('a.txt', b'new a')
    bench.write('new.txt', b'new')
    bench.good_zip('info.zip', ['a.txt', 'new.txt', 'ä.txt'], 'AllowAppend')
    expect_equal(names(bench, 'info.zip'), ['a.txt', 'b.txt', 'sub/', 'sub/c.txt', 'ä.txt', 'new.txt'], 'names')
    expect_equal(content(bench, 'info.zip', 'a.txt'), b'new a', 'a.txt')
    expect_equal(content(bench, 'info.zip', 'b.txt'), b'old b.txt', 'b.txt')
    bench.all_readers_agree('info.zip')
    # The entry's time is the new file's, also for readers of the extra field that Info-ZIP had written.
    bench.tool('unzip', '-d', 'out', 'info.zip')
    gap = abs((bench.folder / 'out/a.txt').stat().st_mtime - (bench.folder / 'a.txt').stat().st_mtime)
    expect(gap < 3, f'the time of a.txt is {gap} s off')
    # Without AllowAppend the archive is made anew.
    bench.good_zip('info.zip', ['b.txt'])
    expect_equal(names(bench, 'info.zip'), ['b.txt'], 'anew')


def test_info_zip_archives_are_freshened(bench):
    info_zip_archive(bench)
    bench.write('a.txt', b'new a')
    bench.write('new.txt', b'new')
    bench.good_zip('info.zip', ['*.txt'], 'FreshenFiles')
    expect_equal(names(bench, 'info.zip'), ['a.txt', 'b.txt', 'sub/', 'sub/c.txt', 'ä.txt'], 'names')
    expect_equal(content(bench, 'info.zip', 'a.txt'), b'new a', 'a.txt')
    bench.all_readers_agree('info.zip')
    expect_equal(bench.zip('absent.zip', ['a.txt'], 'FreshenFiles').error, NOT_FOUND, 'an absent archive')


def test_only_newer_files_replace_entries(bench):
    info_zip_archive(bench)
    before = (bench.folder / 'info.zip').read_bytes()
    # Other content of the same age is no reason.
    for name in ('a.txt', 'b.txt'):
        age = (bench.folder / name).stat().st_mtime
        os.utime(bench.write(name, b'changed'), (age, age))
    answer = bench.good_zip('info.zip', ['a.txt', 'b.txt'], 'UpdateOnlyIfNewer')
    expect((bench.folder / 'info.zip').read_bytes() == before, f'replaced by files of the same age: {answer.text}')
    bench.write('a.txt', b'newer')
    bench.write('new.txt', b'new')
    bench.good_zip('info.zip', ['a.txt', 'b.txt', 'new.txt'], 'UpdateOnlyIfNewer')
    expect_equal(content(bench, 'info.zip', 'a.txt'), b'newer', 'a.txt')
    expect_equal(content(bench, 'info.zip', 'b.txt'), b'old b.txt', 'b.txt')
    expect_equal(content(bench, 'info.zip', 'new.txt'), b'new', 'new.txt')
    bench.write('b.txt', b'newer b')
    bench.write('other.txt', b'other')
    bench.good_zip('info.zip', ['b.txt', 'other.txt'], 'UpdateOnlyIfNewer', 'FreshenFiles')
    expect_equal(content(bench, 'info.zip', 'b.txt'), b'newer b', 'b.txt')
    expect('other.txt' not in names(bench, 'info.zip'), 'freshening added an entry')
    bench.all_readers_agree('info.zip')


def test_entries_are_deleted(bench):
    info_zip_archive(bench)
    unchanged_after(bench, 'info.zip', lambda: bench.zip('info.zip', ['a.txt', 'nothing.txt'], delete=True), NOT_FOUND)
    bench.good_zip('info.zip', ['sub\\c.txt', 'B.TXT'], delete=True)
    expect_equal(names(bench, 'info.zip'), ['a.txt', 'sub/', 'ä.txt'], 'names')
    bench.all_readers_agree('info.zip')
    bench.good_zip('info.zip', ['C:\\elsewhere\\a.txt'], delete=True)
    expect_equal(names(bench, 'info.zip'), ['sub/', 'ä.txt'], 'by bare name')
    bench.good_zip('info.zip', ['*'], delete=True)
    expect(not (bench.folder / 'info.zip').exists(), 'an empty archive was left')
    expect_equal(bench.zip('info.zip', ['a.txt'], delete=True).error, NOT_FOUND, 'an absent archive')


def test_line_ends_are_converted(bench):
    mixed = b'one\r\ntwo\nthree\rfour\r\r\n' + b'x' * 8180 + b'\r\nlast\r'
    bench.write('mixed.txt', mixed)
    bench.good_zip('lf.zip', ['mixed.txt'], 'ConvertCRLFToLF')
    expect_equal(content(bench, 'lf.zip', 'mixed.txt'), mixed.replace(b'\r\n', b'\n'), 'to LF')
    bench.good_zip('crlf.zip', ['mixed.txt'], 'ConvertLFToCRLF')
    wanted = mixed.replace(b'\r\n', b'\n').replace(b'\n', b'\r\n')
    expect_equal(content(bench, 'crlf.zip', 'mixed.txt'), wanted, 'to CR LF')
    for archive in ('lf.zip', 'crlf.zip'):
        bench.all_readers_agree(archive)
    expect_equal(bench.zip('both.zip', ['mixed.txt'], 'ConvertCRLFToLF', 'ConvertLFToCRLF').error, '80070057', 'both')


def test_failing_work_leaves_the_archive_alone(bench):
    bench.write('a.txt', b'a' * 50_000)
    bench.write('random.bin', random.Random(2).randbytes(3_000_000))
    bench.write('one/same.txt', b'1')
    bench.write('two/same.txt', b'2')
    bench.good_zip('kept.zip', ['a.txt'])
    for options in ((), ('AllowAppend',)):
        def fails(specs, wanted, *more, **limits):
            return unchanged_after(bench, 'kept.zip', lambda: bench.zip('kept.zip', specs, *options, *more, **limits), wanted)

        fails(['a.txt', 'absent.txt'], NOT_FOUND)
        fails(['absent*.txt'], NOT_FOUND)
        fails(['nowhere\\*.txt'], NO_PATH)
        fails(['a.txt'], NO_PATH, 'BasePath=nowhere')
        fails([], '80070057')
        fails(['one\\same.txt', 'two\\same.txt'], DUPLICATE)
        for at in (1, 2, 5, 20):
            answer = fails(['a.txt', 'random.bin'], CANCELLED, f'cancel={at}')
            expect_equal(len(answer.all('Cancel')), at, 'Cancel after it was answered')
        # A disk that is full after one million bytes.
        full = fails(['random.bin'], bench.zip('kept.zip', ['random.bin'], *options, file_limit=1_000_000).error, file_limit=1_000_000)
        expect(full.error is not None, 'a full disk was no error')
    # A process that ends in the middle may leave its temporary file, but not a damaged archive.
    before = (bench.folder / 'kept.zip').read_bytes()
    bench.zip('kept.zip', ['random.bin'], 'kill=20')
    expect((bench.folder / 'kept.zip').read_bytes() == before, 'a killed process has changed the archive')


def test_what_is_no_archive(bench):
    bench.write('a.txt', b'a')
    bench.write('damaged.zip', b'PK\x03\x04 and nothing that follows')
    unchanged_after(bench, 'damaged.zip', lambda: bench.zip('damaged.zip', ['a.txt'], 'AllowAppend'), NO_ARCHIVE)
    unchanged_after(bench, 'damaged.zip', lambda: bench.zip('damaged.zip', ['a.txt'], delete=True), NO_ARCHIVE)
    bench.good_zip('damaged.zip', ['a.txt'])
    expect_equal(names(bench, 'damaged.zip'), ['a.txt'], 'made anew')
    bench.write('empty.zip', b'')
    bench.good_zip('empty.zip', ['a.txt'], 'AllowAppend')
    expect_equal(names(bench, 'empty.zip'), ['a.txt'], 'an empty file')


def test_the_volume_label_is_an_entry_of_its_own_kind(bench):
    (bench.drive_c / 'labelled.txt').write_bytes(b'text')
    bench.good_zip('label.zip', ['C:\\labelled.txt'], 'StoreVolumeLabel')
    with zipfile.ZipFile(bench.folder / 'label.zip') as file:
        found = [(info.filename, info.external_attr, info.file_size) for info in file.infolist()]
    expect_equal(found[1:], [('Quillon Vol', 8, 0)], 'label')
    expect_equal(found[0][0], 'labelled.txt', 'file')
    bench.tool('unzip', '-t', 'label.zip')
    bench.tool('7z', 't', 'label.zip')


def test_ten_thousand_small_files(bench):
    for number in range(10_000):
        bench.write(f'many/{number:05}.txt', b'%d' % number)
    answer = bench.good_zip('many.zip', ['many'], 'RecurseSubDirs', 'quiet')
    with zipfile.ZipFile(bench.folder / 'many.zip') as file:
        expect_equal(sorted(file.namelist()), [f'{number:05}.txt' for number in range(10_000)], 'names')
        expect_equal(file.read('09999.txt'), b'9999', 'the last')
        expect_equal(file.testzip(), None, 'sums')
    expect_equal(answer.all('Progress'), [], 'quiet')
    bench.tool('7z', 't', 'many.zip')
    bench.good_zip('many.zip', ['many\\*'], 'AllowAppend', 'quiet')
    bench.tool('unzip', '-tq', 'many.zip')
