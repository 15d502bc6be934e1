"""A loopback server for what only a server can show, in a thread of the test."""
import functools
import http.server
import ssl
import threading


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        path = self.path.partition("?")[0]
        if path == "/redirect":
            self.answer(302, b"", ("Location", "tvk://exit?status=OK&response=moved"))
        elif path == "/secret":
            self.answer(401, b"", ("WWW-Authenticate", 'Basic realm="x"'))
        elif path == "/status":
            self.answer(int(self.path[-3:]), b"")
        elif path == "/hold":
            self.server.hold.wait()
            self.answer(200, b"")
        elif path == "/count":
            self.server.count += 1
            self.answer(200, b"%d %s" % (self.server.count, self.headers["User-Agent"].encode()))
        else:
            self.answer(200, self.server.page)

    def answer(self, status, body, *headers):
        self.send_response(status)
        for header in (("Content-Type", "text/html; charset=utf-8"),
                       ("Access-Control-Allow-Origin", "*"),
                       ("Content-Length", str(len(body))), *headers):
            self.send_header(*header)
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


def serve(test, page, certificate=None, hold=None):
    """Serves the page for the life of the test and returns the server's address."""
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.page, server.count, server.hold = page.encode(), 0, hold
    if certificate:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate)
        server.socket = context.wrap_socket(server.socket, server_side=True)
    return f"http{'s' if certificate else ''}://{run(test, server)}"


class FolderHandler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


def serve_folder(test, folder):
    """Serves the files of the folder for the life of the test and returns the server's address."""
    handler = functools.partial(FolderHandler, directory=folder)
    return f"http://{run(test, http.server.ThreadingHTTPServer(('127.0.0.1', 0), handler))}"


def run(test, server):
    """Runs the server for the life of the test and returns its address and port."""
    threading.Thread(target=server.serve_forever, daemon=True).start()
    test.addCleanup(server.server_close)
    test.addCleanup(server.shutdown)
    return f"127.0.0.1:{server.server_port}"
