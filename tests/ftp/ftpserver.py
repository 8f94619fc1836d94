#!/usr/bin/python3
"""An FTP server for the upload tests, run inside a private network namespace.

ftpserver.py ROOT MODE: serves ROOT on 127.0.0.1:21 and prints "ready" once it listens.
MODE: "open" (anonymous may write), "no-login" (anonymous is refused), "read-only"
(anonymous may only read).
"""
import sys

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer

root, mode = sys.argv[1], sys.argv[2]
authorizer = DummyAuthorizer()
if mode == "open":
    authorizer.add_anonymous(root, perm="elradfmw")
elif mode == "read-only":
    authorizer.add_anonymous(root, perm="elr")
elif mode != "no-login":
    sys.exit("unknown mode " + mode)
authorizer.add_user("site", "secret", root, perm="elradfmw")

handler = FTPHandler
handler.authorizer = authorizer
handler.passive_ports = range(30000, 30100)
server = FTPServer(("127.0.0.1", 21), handler)
print("ready", flush=True)
server.serve_forever(timeout=0.2)
