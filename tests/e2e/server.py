"""Serves what only a server can show, on a port of the system's choice that it prints first.

/page       the content of the file named on the command line
/count      the number of requests for it so far
/redirect   sends the browser to an action URL
/secret     asks for credentials
"""
import http.server
import ssl
import sys


class Handler(http.server.BaseHTTPRequestHandler):
    count = 0

    def do_GET(self):
        path = self.path.partition("?")[0]
        if path == "/redirect":
            self.answer(302, b"", ("Location", "tvk://exit?status=OK&response=moved"))
        elif path == "/secret":
            self.answer(401, b"<script>location='tvk://exit?status=OK&response=refused'</script>",
                        ("WWW-Authenticate", 'Basic realm="x"'))
        elif path == "/count":
            Handler.count += 1
            self.answer(200, b"%d %s" % (Handler.count, self.headers["User-Agent"].encode()))
        else:
            with open(sys.argv[1], "rb") as page:
                self.answer(200, page.read())

    def answer(self, status, body, *headers):
        self.send_response(status)
        self.send_header("Content-Type", "text/html; charset=utf-8")
        self.send_header("Access-Control-Allow-Origin", "*")
        self.send_header("Content-Length", str(len(body)))
        for header in headers:
            self.send_header(*header)
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
if len(sys.argv) > 2:
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(sys.argv[2])
    server.socket = context.wrap_socket(server.socket, server_side=True)
print(server.server_address[1], flush=True)
server.serve_forever()
