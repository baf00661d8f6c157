#!/usr/bin/env python3
"""tonadex-cli asks TLS servers with good and bad certificates, made here. Usage: tls_test.py [WINE] CLI"""
import hashlib
import os
import socket
import ssl
import struct
import subprocess
import sys
import tempfile
import threading
from datetime import datetime, timedelta
from pathlib import Path

CLI = sys.argv[1:]
WINE = CLI[:-1]
LIST = "Vals (vals.29)498"
WHOLE = f"HTTP/1.1 200 OK\r\nContent-Length: {len(LIST)}\r\n\r\n{LIST}"
TO_THE_END = f"HTTP/1.1 200 OK\r\n\r\n{LIST}"
AUTHORITY = """[ca]
default_ca=d
[d]
database=index
serial=serial
new_certs_dir=.
default_md=sha256
policy=p
copy_extensions=copy
unique_subject=no
[p]
commonName=supplied
[req]
distinguished_name=n
[n]
"""


class Certificates:
    def __init__(self, folder):
        self.folder = folder
        for name, text in {"conf": AUTHORITY, "index": "", "serial": "01"}.items():
            (folder / name).write_text(text)
        for name in ("ca", "stranger"):
            self.openssl("req", "-x509", "-nodes", "-newkey", "rsa:2048", "-subj", f"/CN={name}",
                         "-config", "conf", "-addext", "basicConstraints=critical,CA:TRUE",
                         "-keyout", f"{name}.key", "-out", f"{name}.pem")

    def openssl(self, *arguments):
        subprocess.run(["openssl", *arguments], cwd=self.folder, check=True, capture_output=True)

    def make(self, name, alternative, issuer="ca", days=(-2, 2)):
        start, end = ((datetime.utcnow() + timedelta(days=d)).strftime("%Y%m%d%H%M%SZ") for d in days)
        self.openssl("req", "-new", "-nodes", "-newkey", "rsa:2048", "-subj", "/CN=localhost", "-config",
                     "conf", "-addext", f"subjectAltName={alternative}", "-keyout", "key", "-out", "csr")
        self.openssl("ca", "-batch", "-config", "conf", "-in", "csr", "-out", "cert", "-notext", "-cert",
                     f"{issuer}.pem", "-keyfile", f"{issuer}.key", "-startdate", start, "-enddate", end)
        (self.folder / name).write_text((self.folder / "key").read_text() + (self.folder / "cert").read_text())


def trust_in_windows(certificate):
    """Installs the certificate authorities in the registry of the test's Wine prefix."""
    der = ssl.PEM_cert_to_DER_cert(certificate.read_text())
    digest = hashlib.sha1(der)
    blob = struct.pack("<III20sIII", 3, 1, 20, digest.digest(), 32, 1, len(der)) + der
    subprocess.run([*WINE, "reg", "add", r"HKLM\Software\Microsoft\SystemCertificates\Root\Certificates" + "\\"
                    + digest.hexdigest().upper(), "/v", "Blob", "/t", "REG_BINARY", "/d", blob.hex(), "/f"], check=True)


def serve(listener, context, reply, farewell):
    """Answers one request with `reply`; then sends close_notify or only closes the connection."""
    try:
        client, _ = listener.accept()
        client = context.wrap_socket(client, server_side=True) if context else client
        client.recv(65536)
        client.sendall(reply.encode())
        client.unwrap() if context and farewell else None
    except OSError:
        pass  # the client rejected the certificate
    client.close()


def ask(trusted, host, context, reply, farewell=True):
    """The program's output, or its error message."""
    with socket.create_server(("127.0.0.1", 0)) as listener:
        thread = threading.Thread(target=serve, args=(listener, context, reply, farewell))
        thread.start()
        done = subprocess.run([*CLI, "azar", "--servidor", f"https://{host}:{listener.getsockname()[1]}"],
                              env={**os.environ, "SSL_CERT_FILE": str(trusted), "SSL_CERT_DIR": "/"},
                              capture_output=True, text=True, timeout=60)
        thread.join()
    return done.stdout + done.stderr


def context(certificate, **properties):
    made = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    made.load_cert_chain(certificate)
    for name, value in properties.items():
        setattr(made, name, value)
    return made


def old_context(certificate):
    made = context(certificate, minimum_version=ssl.TLSVersion.TLSv1, maximum_version=ssl.TLSVersion.TLSv1_1)
    made.set_ciphers("ALL:@SECLEVEL=0")
    return made


with tempfile.TemporaryDirectory() as home:
    home = Path(home)
    certificates = Certificates(home)
    certificates.make("good", "DNS:localhost,IP:127.0.0.1")
    certificates.make("other", "IP:127.0.0.2")  # only its common name is localhost
    certificates.make("expired", "DNS:localhost", days=(-9, -2))
    certificates.make("new", "DNS:localhost", days=(2, 9))
    certificates.make("strange", "DNS:localhost", issuer="stranger")
    good = home / "good"
    v12 = context(good, maximum_version=ssl.TLSVersion.TLSv1_2)
    UNTRUSTED = "no es de confianza"
    if WINE:
        trust_in_windows(home / "ca.pem")
    for case, words in [
            (("ca.pem", "localhost", context(good), WHOLE), "Vals (vals)"),
            (("ca.pem", "127.0.0.1", context(good), WHOLE), "Vals (vals)"),
            (("ca.pem", "localhost", v12, WHOLE), "Vals (vals)"),
            (("ca.pem", "localhost", context(good), TO_THE_END), "Vals (vals)"),
            (("ca.pem", "localhost", context(good), WHOLE, False), "Vals (vals)"),
            (("ca.pem", "localhost", context(good), TO_THE_END, False), "está cortada"),
            (("ca.pem", "localhost", context(good), WHOLE[:-3]), "está cortada"),
            (("ca.pem", "localhost", context(good), ""), "sin responder"),
            (("ca.pem", "localhost", context(home / "other"), WHOLE), "es de otro nombre"),
            (("ca.pem", "127.0.0.1", context(home / "other"), WHOLE), "es de otro nombre"),
            (("ca.pem", "localhost", context(home / "expired"), WHOLE), "ha caducado"),
            (("ca.pem", "localhost", context(home / "new"), WHOLE), "aún no vale"),
            (("ca.pem", "localhost", context(home / "strange"), WHOLE), UNTRUSTED),
            (("good", "localhost", context(home / "strange"), WHOLE), UNTRUSTED),
            (("nada", "localhost", context(good), WHOLE), UNTRUSTED),
            (("ca.pem", "localhost", old_context(good), WHOLE), "conexión cifrada"),
            (("ca.pem", "localhost", None, "HTTP/1.1 400 Bad Request\r\n\r\n"), "no hay https"),
            (("ca.pem", "localhost", None, ""), "no hay https")]:
        trusted, *rest = case
        # Wine does not compare IP addresses; what it trusts is the same in all rows.
        if WINE and (trusted == "nada" or rest[:1] == ["127.0.0.1"] and words.startswith("Vals")):
            continue
        said = ask(home / trusted, *rest)
        assert words in said, (case, said)
