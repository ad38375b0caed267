"""The support request against a real HTTP server."""
import base64
import io
import re
import zipfile
from urllib.parse import unquote_to_bytes
from xml.etree import ElementTree

import server
from bench import expect, expect_equal, windows_path

VALUES = ['+ / = & < > % \\ "double" \'single\'', 'two\r\nlines\nand\ra tab\t', 'Übergröße 日本語 Ж', ' blanks ', '%2B+%5C', ']]>&amp;']
# The request gives up after 20 seconds, which the unit tests hold to the step by a clock of their own. Here the machine may
# be busy: an answer is one that came before, and giving up what happens before the server does.
TIME_LIMIT = 20_000
WITHOUT_LIMIT = server.PATIENCE * 1000
GUID = '[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}'


def ask(bench, address, category='a/b', values=('v',)):
    temporary = bench.folder / 'temp'
    temporary.mkdir(exist_ok=True)
    return bench.run('request_driver.exe', [address, category, 'temp=' + windows_path(temporary),
                                            *(f'value={value}' for value in values)])


def answered(path, result, reason):
    def case(bench):
        with_server = server.Server()
        try:
            answer = ask(bench, with_server.address(path))
            expect_equal((answer.one('result'), answer.one('reason')), (result, reason), path)
            expect(int(answer.one('milliseconds')) < TIME_LIMIT, f'took {answer.one("milliseconds")} ms')
            expect_equal([(method, asked) for method, asked, _, _ in with_server.requests], [('POST', path)], 'requests')
        finally:
            with_server.close()
    return case


test_200_is_accepted = answered('/200', 'true', '(not set)')
test_206_is_accepted = answered('/206', 'true', '(not set)')
test_302_is_accepted = answered('/302', 'true', '(not set)')
test_304_is_accepted = answered('/304', 'true', '(not set)')
test_404_gives_its_reason = answered('/404', 'false', 'No Such Category')
test_500_gives_its_reason = answered('/500', 'false', 'Out Of Order')


def hostile(path):
    def case(bench):
        """An answer that means harm, or nothing: it is told once, clearly and in time."""
        with_server = server.Server()
        try:
            answer = ask(bench, with_server.address(path))
            result, reason = answer.one('result'), answer.one('reason')
            expect((result, reason) == ('true', '(not set)') or result == 'false' and len(reason) <= 2 << 20, answer.text[:200])
            expect(int(answer.one('milliseconds')) < WITHOUT_LIMIT, f'took {answer.one("milliseconds")} ms')
            expect_equal({method for method, _, _, _ in with_server.requests} - {'GET'}, {'POST'}, 'requests')
        finally:
            with_server.close()
        return result, reason
    return case


test_hostile_endless_headers = hostile('/endless-headers')
test_hostile_header_of_4_mib = hostile('/huge-header')
test_hostile_reason_of_1_mib = hostile('/huge-reason')
test_hostile_redirection = hostile('/elsewhere')
test_hostile_redirections_without_end = hostile('/round')
test_hostile_garbage = hostile('/garbage')
test_hostile_no_status = hostile('/no-status')
test_hostile_status_of_text = hostile('/status-of-text')
test_hostile_status_beyond_32_bits = hostile('/huge-status')
test_hostile_negative_length = hostile('/negative-length')


def unanswered(path):
    def case(bench):
        """Ends by the request's own limit. Which reason is given follows from the readyState that the object reached."""
        with_server = server.Server()
        address = with_server.address(path) if path else f'http://127.0.0.1:{server.unused_port()}/'
        try:
            answer = ask(bench, address)
            expect_equal(answer.one('result'), 'false', f'{path}: {answer.text}')
            expect(answer.one('reason') in ('Cannot send. ', ''), f'reason {answer.one("reason")!r}')
            expect(int(answer.one('milliseconds')) < WITHOUT_LIMIT, f'took {answer.one("milliseconds")} ms')
        finally:
            with_server.close()
    return case


test_a_server_that_never_answers = unanswered('/never')
test_a_server_that_sends_headers_and_stalls = unanswered('/stall')
test_a_server_that_stops_inside_the_headers = unanswered('/half')
test_a_server_that_closes_the_connection = unanswered('/close')
test_nobody_listening = unanswered('')


def test_the_posted_body_is_what_went_in(bench):
    with_server = server.Server()
    try:
        answer = ask(bench, with_server.address('/200'), 'Mal/ware/ä', VALUES)
        expect_equal(answer.one('result'), 'true', answer.text)
        (_, _, headers, body), = with_server.requests
    finally:
        with_server.close()
    expect_equal(headers['content-type'].split(';')[0], 'application/x-www-form-urlencoded', 'content type')
    match = re.fullmatch(rb'subject=(.*)&value=(.*)', body)
    expect(match, body[:100])
    subject = re.fullmatch(rf'Mal%5Cware%5Cä%5C({GUID})', match[1].decode())
    expect(subject, match[1])
    expect(b'+' not in match[2] and b'\\' not in match[2], 'a character that had to be encoded')
    archive = base64.b64decode(unquote_to_bytes(match[2]), validate=True)
    with zipfile.ZipFile(io.BytesIO(archive)) as file:
        name, = file.namelist()
        expect_equal(name, subject[1] + '.xml', 'the entry')
        document = file.read(name)
    expect(document.startswith(b'<xml><cat>Mal\\ware\\&#228;</cat><id>' + subject[1].encode() + b'</id><value>'), document[:120])
    expect(document.endswith(b'</value></xml>'), document[-20:])
    root = ElementTree.fromstring(document)
    expect_equal([(element.tag, element.text) for element in root],
                 [('cat', 'Mal\\ware\\ä'), ('id', subject[1])] + [('value', value) for value in VALUES], 'values')
    kept = sorted(path.name for path in (bench.folder / 'temp').iterdir())
    expect(len(kept) == 2 and subject[1] + '.xml' in kept and any(re.fullmatch(r'sc.*\.zip', name) for name in kept), kept)
    expect_equal((bench.folder / 'temp' / (subject[1] + '.xml')).read_bytes(), document, 'the kept document')
