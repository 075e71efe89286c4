"""Serves one update package on loopback. The first request for it is cut off in the middle, as by
a server that restarts; a request for the rest is answered with the rest.

Usage: update_server.py BYTES LOG      prints the port when it listens
"""

import http.server
import sys

SIZE = int(sys.argv[1])
LOG = sys.argv[2]
PACKAGE = bytes(i * 7 % 251 for i in range(SIZE))


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    cut_off = False

    def do_GET(self):
        asked_from = self.headers.get("Range", "")
        with open(LOG, "a", encoding="utf-8") as log:
            log.write(f"{self.path} {asked_from or 'whole'}\n")
        if self.path not in ("/update.qvtc", "/cut/update.qvtc"):
            self.send_error(404)
            return
        start = int(asked_from.removeprefix("bytes=").removesuffix("-")) if asked_from else 0
        self.send_response(206 if asked_from else 200)
        if asked_from:
            self.send_header("Content-Range", f"bytes {start}-{SIZE - 1}/{SIZE}")
        self.send_header("Content-Length", str(SIZE - start))
        self.end_headers()
        if self.path.startswith("/cut/") and not Handler.cut_off:
            Handler.cut_off = True
            self.wfile.write(PACKAGE[: SIZE // 2])
            self.close_connection = True
            return
        self.wfile.write(PACKAGE[start:])

    def log_message(self, *_):
        pass


server = http.server.HTTPServer(("127.0.0.1", 0), Handler)
print(server.server_address[1], flush=True)
server.serve_forever()
