# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The carriers' hosts on this machine: a proxy that takes every connection to them itself."""

import collections
import http.server
import queue
import ssl
import subprocess
import threading
import urllib.parse

import any_pages
import carrier_pages
import framework_pages

DOMAINS = ("usps.com", "ups.com", "fedex.com", "shop.example", "market.example")
_CERTIFICATE_DAYS = "2"

POLICIES = {
    "none": "default-src 'none'",
    "types": "require-trusted-types-for 'script'; trusted-types 'none'",
    "sandbox": "sandbox",
}


class CarrierSite:
    def __init__(self, folder):
        self._context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self._context.load_cert_chain(*_make_certificate(folder))
        self._open = threading.Event()
        self._open.set()
        self._waiting = threading.Semaphore(0)
        self._submitted = queue.Queue()
        self._loads = collections.Counter()
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), self._handler())
        self._server.daemon_threads = True
        self.port = self._server.server_port
        self._thread = threading.Thread(target=self._server.serve_forever, daemon=True)
        self._thread.start()

    def close(self):
        self.answer_slow_pages()
        self._server.shutdown()
        self._server.server_close()

    def hold_slow_pages(self):
        """Pages with `slow` in their query wait from now on."""
        self._open.clear()

    def answer_slow_pages(self):
        self._open.set()

    def wait_for_slow_page(self, timeout):
        """Until a browser waits for one."""
        return self._waiting.acquire(timeout=timeout)

    def next_submitted(self, timeout):
        """Values by field name, as the server received them."""
        return self._submitted.get(timeout=timeout)

    def loads(self, path):
        """How often a browser has asked for it."""
        return self._loads[path]

    def has_more_submitted(self):
        return not self._submitted.empty()

    def _handler(site):
        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_CONNECT(self):
                host = self.path.split(":")[0]
                if not any(host == each or host.endswith("." + each) for each in DOMAINS):
                    self.send_error(403)
                    return
                self.send_response(200)
                self.end_headers()
                self.connection = site._context.wrap_socket(self.connection, server_side=True)
                self.rfile = self.connection.makefile("rb")
                self.wfile = self.connection.makefile("wb", buffering=0)
                self.close_connection = False

            def do_GET(self):
                address = urllib.parse.urlsplit(self.path)
                query = urllib.parse.parse_qs(address.query, keep_blank_values=True)
                document = (carrier_pages.page(address.path, query)
                            or framework_pages.page(
                                address.path, int(query.get("version", ["1"])[0]))
                            or any_pages.page(address.path, query))
                script = framework_pages.script(address.path)
                if document is None and script is None:
                    self.send_error(404)
                    return
                site._loads[address.path] += 1
                if carrier_pages.SUBMITTED in query:
                    site._submitted.put({name: values[0] for name, values in query.items()})
                if "slow" in query:
                    site._waiting.release()
                    site._open.wait()
                content = (document or script).encode("utf-8")
                kind = "text/html" if document else "text/javascript"
                self.send_response(200)
                self.send_header("Content-Type", f"{kind}; charset=utf-8")
                self.send_header("Content-Length", str(len(content)))
                for policy in query.get("policy", ()):
                    self.send_header("Content-Security-Policy", POLICIES[policy])
                self.end_headers()
                self.wfile.write(content)

            def handle_one_request(self):
                try:
                    super().handle_one_request()
                except OSError:
                    self.close_connection = True  # a browser that was killed, or just moved on

            def finish(self):
                super().finish()
                self.connection.close()

            def log_message(self, *_):
                pass

        return Handler


def _make_certificate(folder):
    certificate, key = folder / "site.pem", folder / "site.key"
    names = ",".join(f"DNS:{each},DNS:*.{each}" for each in DOMAINS)
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj",
                    "/CN=carriers", "-days", _CERTIFICATE_DAYS, "-addext",
                    f"subjectAltName={names}", "-keyout", key, "-out", certificate],
                   check=True, stderr=subprocess.DEVNULL)
    return certificate, key
