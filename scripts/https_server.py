"""Throwaway certificates and a small HTTPS server on a free loopback port, for tests and demo.

Run as a program, with a folder and if need be a port, it makes an authority in the folder,
FOLDER/root.pem, prints its port and serves /downloads/page, with a release block, until it ends.
"""
import argparse
import contextlib
import pathlib
import socket
import ssl
import subprocess
import sys
import threading

PAGE = b"<html><body>\n<!--ReleaseInfo\r\n4.7.2 (2022-06-30)\r\n-->\n</body></html>\n"
NOT_FOUND = b"HTTP/1.0 404 Not Found\r\n\r\n"
OPENSSL_SETTINGS = """
[req]
distinguished_name = dn
[ca]
default_ca = issuing
[issuing]
database = issued.txt
new_certs_dir = .
rand_serial = yes
unique_subject = no
policy = dn
[dn]
commonName = supplied
[authority]
basicConstraints = critical, CA:TRUE
subjectKeyIdentifier = hash
authorityKeyIdentifier = none
[server]
basicConstraints = CA:FALSE
authorityKeyIdentifier = none
extendedKeyUsage = serverAuth
"""
VALID = "20200101000000Z", "20991231000000Z"
EXPIRED = "20200101000000Z", "20200102000000Z"
FUTURE = "20980101000000Z", "20991231000000Z"
KEYS = {"EC": "EC ec_paramgen_curve:P-256", "RSA-1024": "RSA rsa_keygen_bits:1024",
        "RSA-2048": "RSA rsa_keygen_bits:2048"}
CUT = object()  # a part of a response, see Server


def http_response(body):
    return f"HTTP/1.0 200 OK\r\nContent-Length: {len(body)}\r\n\r\n".encode() + body


def listen(port=0):
    """A listening socket on loopback; port 0 is any."""
    return socket.create_server(("127.0.0.1", port))


def make_certificate(folder, name, issuer=None, kind="server", key="EC", validity=VALID,
                     subject=None):
    """Makes name.pem in the folder, signed by the issuer of that folder or itself.

    The subject, by default the name, is what the certificate calls itself and owns the key,
    subject.key, which is made unless it is there already.
    """
    subject = subject or name
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "openssl.cnf").write_text(OPENSSL_SETTINGS)
    (folder / "issued.txt").touch()

    def openssl(*arguments):
        subprocess.run(["openssl", *arguments], cwd=folder, check=True, capture_output=True)

    if not (folder / f"{subject}.key").exists():
        algorithm, size = KEYS[key].split()
        openssl("genpkey", "-algorithm", algorithm, "-pkeyopt", size, "-out", f"{subject}.key")
    openssl("req", "-config", "openssl.cnf", "-new", "-key", f"{subject}.key",
            "-subj", f"/CN={subject}", "-out", f"{name}.csr")
    signed_by = (["-cert", f"{issuer}.pem", "-keyfile", f"{issuer}.key"] if issuer else
                 ["-selfsign", "-keyfile", f"{subject}.key"])
    not_before, not_after = validity
    openssl("ca", "-batch", "-config", "openssl.cnf", *signed_by, "-in", f"{name}.csr",
            "-md", "sha256", "-startdate", not_before, "-enddate", not_after, "-extensions", kind,
            "-notext", "-out", f"{name}.pem")


def make_chain(folder, prefix="", key="EC"):
    """Makes the authority "root" with such a key, "issuer", signed by it, and "server" by that."""
    make_certificate(folder, f"{prefix}root", kind="authority", key=key)
    make_certificate(folder, f"{prefix}issuer", f"{prefix}root", kind="authority")
    make_certificate(folder, f"{prefix}server", f"{prefix}issuer")


class Server:
    """Answers every request, or those for `path`, with `response` and notes them as they came.

    A response of several parts goes out in as many TLS records; the part CUT ends the connection as
    a broken line would. The server sends the certificates that are named, its own first, out of
    those made in the folder.
    """

    def __init__(self, folder, certificates, response=http_response(PAGE), listener=None, path="",
                 version=ssl.TLSVersion.TLSv1_2, ciphers="DEFAULT:@SECLEVEL=0"):
        self.response = response
        self.path = path
        self.requests = []
        self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.context.set_ciphers(ciphers)
        self.context.minimum_version = self.context.maximum_version = version
        chain = pathlib.Path(folder, "chain.pem")
        chain.write_text("".join(chain.with_name(f"{name}.pem").read_text()
                                 for name in certificates))
        self.context.load_cert_chain(chain, chain.with_name(f"{certificates[0]}.key"))
        self.server_name = None
        self.context.sni_callback = lambda _, name, __: setattr(self, "server_name", name)
        self.listener = listener or listen()
        self.port = str(self.listener.getsockname()[1])

    def serve(self):
        while True:
            try:
                connection, _ = self.listener.accept()
            except OSError:
                return  # closed
            # A client that refuses the server just goes away.
            with contextlib.suppress(OSError), connection:
                with self.context.wrap_socket(connection, server_side=True) as stream:
                    self.answer(stream)

    def answer(self, stream):
        request = b""
        while not request.endswith(b"\r\n\r\n"):
            received = stream.recv(4096)
            if not received:
                return
            request += received
        self.requests.append(request)
        wanted = f"GET {self.path}?".encode(), f"GET {self.path} ".encode()
        found = not self.path or request.startswith(wanted)
        response = self.response if found else NOT_FOUND
        for part in [response] if isinstance(response, bytes) else response:
            if part is CUT:
                stream.shutdown(socket.SHUT_WR)
                while stream.recv(4096):
                    pass
                return
            stream.sendall(part)
        stream.unwrap()  # sends close_notify

    def __enter__(self):
        threading.Thread(target=self.serve, daemon=True).start()
        return self

    def __exit__(self, *_):
        with contextlib.suppress(OSError):  # macOS knows no shutdown of a listening socket
            self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()


def main():
    parser = argparse.ArgumentParser(description="a small HTTPS server for a demonstration")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("port", type=int, nargs="?", default=0)
    arguments = parser.parse_args()
    try:
        listener = listen(arguments.port)  # fails before the files of a running server are replaced
    except (OSError, OverflowError) as error:
        parser.exit(1, f"{parser.prog}: give another port than {arguments.port}: {error}\n")
    make_certificate(arguments.folder, "root", kind="authority")
    make_certificate(arguments.folder, "localhost", "root")  # curl compares the name
    server = Server(arguments.folder, ["localhost", "root"], listener=listener,
                    path="/downloads/page")
    print(server.port, flush=True)
    server.serve()


if __name__ == "__main__":
    main()
