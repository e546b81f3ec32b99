#!/usr/bin/python3
"""A throw-away FTP server for the upload tests, on 127.0.0.1.

Serves one user whose folder is --home, on a free port that it prints as
"PORT n" once it listens. Options:
  --tls DIR             explicit TLS (AUTH TLS) with a certificate made in DIR
                        by openssl; --tls-required refuses plain connections
  --locked NAME         a folder under home where nothing may be made or written
  --drop-after-bytes N  once, after N bytes received in all, the connection is
                        closed in the middle of the transfer
"""
import argparse
import logging
import os
import subprocess
import sys
import threading

from OpenSSL import SSL

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler, TLS_FTPHandler
from pyftpdlib.servers import FTPServer


def main():
    p = argparse.ArgumentParser()
    p.add_argument("--home", required=True)
    p.add_argument("--user", required=True)
    p.add_argument("--password", required=True)
    p.add_argument("--tls")
    p.add_argument("--tls-required", action="store_true")
    p.add_argument("--locked")
    p.add_argument("--drop-after-bytes", type=int, default=0)
    a = p.parse_args()

    logging.basicConfig(level=logging.WARNING)
    auth = DummyAuthorizer()
    auth.add_user(a.user, a.password, a.home, perm="elradfmwMT")
    if a.locked:
        locked = os.path.join(a.home, a.locked)
        os.makedirs(locked, exist_ok=True)
        auth.override_perm(a.user, locked, perm="elr", recursive=True)

    base = FTPHandler
    if a.tls:
        cert = os.path.join(a.tls, "server.pem")
        subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1",
                        "-subj", "/CN=localhost", "-keyout", cert, "-out", cert],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        base = TLS_FTPHandler
        # A context of our own: the client takes up the control connection's
        # TLS session again on each data connection, which needs a session id
        # context on the server.
        context = SSL.Context(SSL.SSLv23_METHOD)
        context.use_certificate_chain_file(cert)
        context.use_privatekey_file(cert)
        context.set_session_id(b"tillora-test")
        base.ssl_context = context
        base.tls_control_required = a.tls_required
        base.tls_data_required = a.tls_required

    received = {"bytes": 0, "dropped": False}

    class Data(base.dtp_handler):
        def recv(self, size):
            chunk = super().recv(size)
            received["bytes"] += len(chunk)
            if a.drop_after_bytes and not received["dropped"] and received["bytes"] >= a.drop_after_bytes:
                received["dropped"] = True
                self.ioloop.call_later(0, self.cmd_channel.close)
            return chunk

        def readable(self):
            # The library closes a data connection that speaks before the
            # transfer command; a TLS client does, to agree on its keys.
            if not self.receive and not self._initialized and getattr(self, "_ssl_requested", False):
                return self._ssl_accepting or self._ssl_want_read
            return super().readable()

    class Handler(base):
        dtp_handler = Data
        authorizer = auth
        banner = "test server ready"
        auth_failed_timeout = 0.2  # a refused login is answered at once

    # Ends with the test that started it: its end closes our standard input.
    threading.Thread(target=lambda: (sys.stdin.read(), os._exit(0)), daemon=True).start()
    server = FTPServer(("127.0.0.1", 0), Handler)
    print("PORT %d" % server.socket.getsockname()[1], flush=True)
    server.serve_forever()


if __name__ == "__main__":
    sys.exit(main())
