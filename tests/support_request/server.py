"""A support endpoint on the loopback address, with every way of answering that a request must live through."""
import contextlib
import socket
import threading
import time

ANSWERS = {
    '/200': b'HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n\r\nok',
    '/206': b'HTTP/1.1 206 Partial Content\r\nContent-Length: 1\r\nContent-Range: bytes 0-0/2\r\nConnection: close\r\n\r\no',
    '/302': b'HTTP/1.1 302 Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n',
    '/304': b'HTTP/1.1 304 Not Modified\r\nConnection: close\r\n\r\n',
    '/404': b'HTTP/1.1 404 No Such Category\r\nContent-Length: 4\r\nConnection: close\r\n\r\nnone',
    '/500': b'HTTP/1.1 500 Out Of Order\r\nContent-Length: 0\r\nConnection: close\r\n\r\n',
    '/stall': b'HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nten bytes.',
    '/half': b'HTTP/1.1 200 OK\r\nContent-Le',
    '/never': b'',
    '/close': None,
    '/endless-headers': b'HTTP/1.1 200 OK\r\n',
    '/huge-header': b'HTTP/1.1 200 OK\r\nX-Long: ' + b'x' * (4 << 20) + b'\r\nContent-Length: 2\r\nConnection: close\r\n\r\nok',
    '/huge-reason': b'HTTP/1.1 500 ' + b'r' * (1 << 20) + b'\r\nContent-Length: 0\r\nConnection: close\r\n\r\n',
    '/elsewhere': b'HTTP/1.1 307 Elsewhere\r\nLocation: /200\r\nContent-Length: 0\r\nConnection: close\r\n\r\n',
    '/round': b'HTTP/1.1 302 Round\r\nLocation: /round\r\nContent-Length: 0\r\nConnection: close\r\n\r\n',
    '/garbage': b'\x00\xff\x1b[2J\xfe\r\n\r\n' + bytes(range(256)) * 16,
    '/no-status': b'HTTP/1.1\r\n\r\n',
    '/status-of-text': b'HTTP/1.1 two-hundred OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n',
    '/huge-status': b'HTTP/1.1 4294967496 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n',
    '/negative-length': b'HTTP/1.1 200 OK\r\nContent-Length: -1\r\nConnection: close\r\n\r\n',
}
HOLDS_ON = ('/stall', '/half', '/never')
# What is sent again and again behind the answer.
ENDLESS = {
    '/endless-headers': b'X-More: ' + b'h' * 1000 + b'\r\n',
}
PAUSE = 0.02  # seconds between two pieces: a body that came as fast as it can would only fill the machine's memory
PATIENCE = 60  # seconds that it holds on


class Server:
    """Listens from its making to close(); `requests` holds (method, path, headers, body) as they came."""

    def __init__(self):
        self.requests = []
        self.done = threading.Event()
        self.listener = socket.create_server(('127.0.0.1', 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.accept, daemon=True).start()

    def address(self, path):
        return f'http://127.0.0.1:{self.port}{path}'

    def close(self):
        self.done.set()
        self.listener.close()

    def accept(self):
        with contextlib.suppress(OSError):
            while True:
                connection, _ = self.listener.accept()
                threading.Thread(target=self.serve, args=(connection,), daemon=True).start()

    def serve(self, connection):
        with contextlib.suppress(OSError), connection:
            received = self.receive(connection)
            if received is None:
                return
            self.requests.append(received)
            # More may stand behind the path, so that tests can tell their requests apart.
            answer_of = '/' + received[1].split('/')[1]
            if ANSWERS[answer_of] is None:
                return
            connection.sendall(ANSWERS[answer_of])
            if answer_of in HOLDS_ON:
                self.done.wait(PATIENCE)
            began = time.monotonic()
            while answer_of in ENDLESS and time.monotonic() - began < PATIENCE and not self.done.wait(PAUSE):
                connection.sendall(ENDLESS[answer_of])

    @staticmethod
    def receive(connection):
        data = b''
        while b'\r\n\r\n' not in data:
            piece = connection.recv(65536)
            if not piece:
                return None
            data += piece
        head, _, body = data.partition(b'\r\n\r\n')
        first, *lines = head.decode('latin-1').split('\r\n')
        headers = {name.lower(): value.strip() for name, _, value in (line.partition(':') for line in lines)}
        if 'expect' in headers:
            connection.sendall(b'HTTP/1.1 100 Continue\r\n\r\n')
        while len(body) < int(headers.get('content-length', 0)):
            body += connection.recv(65536)
        method, path, _ = first.split(' ')
        return method, path, headers, body


def unused_port():
    with socket.create_server(('127.0.0.1', 0)) as listener:
        return listener.getsockname()[1]
